// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/controls/TControl.h"

class TScrollBarBase;
class TZoomableScrollBar;

/// The track of a scroll bar with its thumb. Main thread.
class TScrollBarButtonBase : public TControl {
public:
	static constexpr int kThumbMinimum = 16;

	/// In pixels along the bar, from the start of the track.
	struct TThumb {
		int mStart;
		int mLength;

		bool Contains(int along) const noexcept { return mStart <= along && along < mStart + mLength; }
	};

	virtual int MinimumLength() const;

	void SetBar(TScrollBarBase* bar);
	TThumb Thumb() const;

	void Draw(TSurface& port) override;
	void OnMouseEnter(int x, int y, int modifiers) override;
	void OnMouseLeave(int x, int y, int modifiers) override;
	bool OnMouseHover(int x, int y, int modifiers) override;
	void OnMouseCaptureReleased(int x, int y, int modifiers) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;
	bool OnMouseDrag(int x, int y, int modifiers) override;

protected:
	TScrollBarBase* Bar() const noexcept { return mBar.Get(); }

	int TrackLength() const;
	/// A point of the window, as a distance from the start of the track.
	int Along(int x, int y) const;
	/// Of the range, for one pixel of the track.
	float UnitsPerPixel() const;
	void SetDragging(bool dragging);

	bool IsDragging() const noexcept { return mDragging; }

	int GrabOffset() const noexcept { return mGrabOffset; }

	int mGrabEndOffset = 0; // from the thumb's far end

private:
	void SetHighlighted(bool highlighted);
	void PageTowards(int along);

	bool mHighlighted = false;
	bool mDragging = false;
	int mGrabOffset = 0; // from the thumb's start
	TWeakPtr<TScrollBarBase> mBar;
};

class TScrollBarButton final : public TScrollBarButtonBase {};

/// With a grip at each end of the thumb. Main thread.
class TZoomableScrollBarButton final : public TScrollBarButtonBase {
public:
	enum TDragMode : int32_t { kNoDrag = -1, kMoveThumb = 0, kMoveStart = 1, kMoveEnd = 2 };

	bool OnMouseHover(int x, int y, int modifiers) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnLeftDoubleClick(int x, int y, int modifiers) override;
	bool OnMouseDrag(int x, int y, int modifiers) override;
	void OnMouseCaptureReleased(int x, int y, int modifiers) override;

private:
	int ModeAt(int along) const;
	TZoomableScrollBar* ZoomableBar() const;

	int mDragMode = kNoDrag;
};
