// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TSingleton.h"
#include "framework/foundation/values/TPointT.h"

#include <array>
#include <cstdint>

/// The pictures of the pointer.
enum TCursorId : int32_t {
	kDefaultCursor = 0,
	kDragCursor = 1,
	kCanDragCursor = 2,
	kCanDropCursor = 3,
	kCanCopyCursor = 4,
	kCanCreateAliasCursor = 5,
	kCanCloneCursor = 6,
	kCanNotDropCursor = 7,
	kDefaultCursor2 = 8,
	kEmptyCursor = 9, // hides the pointer
	kEditTextCursor = 10,
	kValueChooserCursor = 11,
	kPencilCursor = 12,
	kPlaceMarkerCursor = 13,
	kCrosshairCursor = 14,
	kMoveCursor = 15,
	kResizeVerticalCursor = 16,
	kResizeHorizontalCursor = 17,
	kResizeEdgeVerticalCursor = 18,
	kResizeEdgeHorizontalCursor = 19,
	kResizeEdgeDiagonalLeftCursor = 20,
	kResizeEdgeDiagonalRightCursor = 21,
	kZoomVerticalCursor = 22,
	kZoomHorizontalCursor = 23,
	kZoomCursor = 24,
	kExtendLeftCursor = 25,
	kExtendRightCursor = 26,
	kExtendTopCursor = 27,
	kExtendBottomCursor = 28,
	kExtendLeftAliasCursor = 29,
	kExtendRightAliasCursor = 30,
	kExtendTopAliasCursor = 31,
	kExtendBottomAliasCursor = 32,
	kPlayCursor = 33,
	kNumberOfCursors = 34
};

/// The pointer. Positions are pixels of the screen. Main thread.
class TCursor final : public TSingleton<TCursor> {
public:
	/// TCursorId.
	int Current() const;
	/// Loads the picture at its first use; without one the pointer is the system's arrow.
	void SetCurrent(int id);
	TPointT<int> MousePosition() const;
	void SetMousePosition(TPointT<int> position);
	bool IsLeftButtonDown() const;
	bool IsRightButtonDown() const;
	bool IsMiddleButtonDown() const;

	bool IsAnyButtonDown() const { return IsLeftButtonDown() || IsRightButtonDown() || IsMiddleButtonDown(); }

	/// The pictures are loaded again, for another scale.
	void ReloadPictures();

	static void CreateService();

private:
	void Show(int id);

	std::array<bool, kNumberOfCursors> mMissing{}; // the picture could not be loaded
};

/// Brings back the cursor that was there before the guard.
class [[nodiscard]] TCursorGuard {
public:
	TCursorGuard();
	~TCursorGuard();

	/// Nothing is brought back.
	void Forget() noexcept { mPrevious = kNumberOfCursors; }

	TCursorGuard(const TCursorGuard&) = delete;
	TCursorGuard& operator=(const TCursorGuard&) = delete;

private:
	int mPrevious;
};
