// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TPointT.h"
#include "platform/TWindowGlueClient.h"

#include <cstdint>
#include <span>

/// A picture for the pointer.
struct TCursorImage {
	TPointT<int> mSize;
	TPointT<int> mHotSpot;
	std::span<const uint32_t> mPixels; // rows from the top, 0xAARRGGBB, colours not multiplied by alpha
};

/// The pointer over the windows of this platform object. GUI thread; screen coordinates in pixels.
class TCursorImpl {
public:
	virtual ~TCursorImpl() = default;

	/// Whether Define has been called for this id since the last Forget.
	virtual bool IsDefined(int id) const = 0;
	/// The picture is copied.
	virtual void Define(int id, const TCursorImage& image) = 0;
	/// For another scale.
	virtual void ForgetAll() = 0;

	/// 0 at first.
	virtual int Current() const = 0;
	/// An id that is not defined shows the system's arrow.
	virtual void SetCurrent(int id) = 0;

	virtual TPointT<int> MousePosition() const = 0;
	/// Warps the pointer. The move that follows from it reaches the window like any other.
	virtual void SetMousePosition(TPointT<int> position) = 0;
	/// As the system has it at this moment, whatever has been delivered.
	virtual bool IsButtonDown(TMouseButton button) const = 0;
};
