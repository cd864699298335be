// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/views/TView.h"

/// The edges and corners that a window is resized by; lets everything else through to what lies below it. Main thread.
class TWindowResizeBorder final : public TView {
public:
	enum TEdge : int {
		kNoEdge = -1,
		kTop = 0,
		kTopRight = 1,
		kRight = 2,
		kBottomRight = 3,
		kBottom = 4,
		kBottomLeft = 5,
		kLeft = 6,
		kTopLeft = 7
	};

	explicit TWindowResizeBorder(TWindow* window) : mWindow(window) {}

	/// TEdge.
	int EdgeAt(int x, int y) const;

	bool ContainsPoint(int x, int y) const override;

	bool WantsMouseCapture(int x, int y, int /*modifiers*/) override { return EdgeAt(x, y) != kNoEdge; }

	void OnMouseCaptureReleased(int x, int y, int modifiers) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnMouseDrag(int x, int y, int modifiers) override;
	bool OnMouseHover(int x, int y, int modifiers) override;

private:
	/// Of the window, in pixels of the screen.
	TRectT<int> WindowRect() const;

	TPointT<int> mPressOffset; // of the pointer from the start rectangle's edges
	int mEdge = kNoEdge;
	TRectT<int> mStartRect;
	TWeakPtr<TWindow> mWindow;
};
