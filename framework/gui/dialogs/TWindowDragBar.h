// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/views/TView.h"

/// What a window is moved by. A double click maximizes it, and brings it back. Main thread.
class TWindowDragBar final : public TView {
public:
	explicit TWindowDragBar(TWindow* window) : mWindow(window) {}

	bool WantsMouseCapture(int x, int y, int modifiers) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnLeftDoubleClick(int x, int y, int modifiers) override;
	bool OnMouseDrag(int x, int y, int modifiers) override;
	bool OnMouseHover(int x, int y, int modifiers) override;

private:
	bool CanMove() const;

	TWeakPtr<TWindow> mWindow;
	TPointT<int> mPressOffset; // of the pointer from the window's corner, in pixels of the screen
};
