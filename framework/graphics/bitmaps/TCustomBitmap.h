// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/bitmaps/TBitmap.h"

/// An empty image to draw into, at the scale of the interface. It is black again after the scale has changed.
class TCustomBitmap final : public TBitmap {
public:
	/// Logical pixels.
	explicit TCustomBitmap(TPointT<int> size) : mSize(size) {}

	TPointT<int> Size() override { return mSize; }

	void Load() override;

private:
	TPointT<int> mSize;
};
