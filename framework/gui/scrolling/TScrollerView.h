// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/layout/TBackgroundView.h"
#include "framework/gui/scrolling/TScrollBar.h"
#include "framework/gui/scrolling/TScrollableContentView.h"

/// A frame through which a larger view is seen, with scroll bars at its right and lower edge. Main thread.
class TScrollerView : public TView {
public:
	enum TBarPolicy : int32_t { kNoBar = 0, kBar = 1, kZoomBar = 2 };

	TScrollerView(int horizontalPolicy, int verticalPolicy);
	~TScrollerView() override;

	void SetContent(const TPtr<TScrollableContentView>& view);

	TScrollableContentView* Content() const noexcept { return mContent.Get(); }

	TScrollBarBase* HorizontalBar() const noexcept { return mHorizontalBar.Get(); }

	TScrollBarBase* VerticalBar() const noexcept { return mVerticalBar.Get(); }

	/// TSkin::TBackground.
	void SetBackground(int kind);
	/// The same content stays in sight when the frame changes its size.
	void SetKeepsViewOnResize(bool horizontally, bool vertically);
	void SetWheelScrolls(bool scrolls) { mWheelScrolls = scrolls; }

	/// The wheel alone scrolls sideways, with Option vertically.
	void SetWheelScrollsHorizontalFirst(bool horizontal) { mWheelScrollsVerticalFirst = !horizontal; }

	void SetWheelZooms(bool zooms) { mWheelZooms = zooms; }

	/// Bars hide while there is nothing to scroll.
	void SetAutoHideBars(bool autoHide);

	/// What of the content is seen.
	TPointT<int> FrameSize() const noexcept { return mFrameSize; }

	void OnResized() override;
	void OnChildResized(TView& child) override;
	bool IsRectCovered(const TRectT<int>& rect) const override;
	void Draw(TSurface& port) override;
	bool OnWheelUp(int x, int y, int modifiers) override;
	bool OnWheelDown(int x, int y, int modifiers) override;
	bool OnWheelLeft(int x, int y, int modifiers) override;
	bool OnWheelRight(int x, int y, int modifiers) override;

private:
	TPtr<TScrollBarBase> MakeBar(int policy, int orientation);
	TPointT<int> ConstrainedSize() const;
	void Layout();
	void KeepView(TPointT<int> oldFrame, TPointT<int> newFrame);
	bool CanScrollByWheel() const;
	bool Wheel(int x, int y, int modifiers, int direction, bool sideways);
	bool ScrollByWheel(bool vertical, int direction);
	void ZoomByWheel(int x, int y, bool closer);
	bool IsLeftToNested(int x, int y) const;
	int WheelStep(bool vertical) const;
	bool IsShownBar(const TPtr<TScrollBarBase>& bar) const;

	int PositionX() const;
	int PositionY() const;
	void SetPositionX(int position);
	void SetPositionY(int position);
	int WindowX() const;
	int WindowY() const;
	void SetWindowX(int window);
	void SetWindowY(int window);
	int RangeX() const;
	int RangeY() const;

	TPtr<TScrollableContentView> mContent;
	TPtr<TScrollBarBase> mHorizontalBar;
	TPtr<TScrollBarBase> mVerticalBar;
	TPtr<TBackgroundView> mBackground;
	bool mIsLayingOut = false;
	TPointT<int> mFrameSize{-1, -1};
	const int mHorizontalPolicy;
	const int mVerticalPolicy;
	TPointT<bool> mKeepsViewOnResize;
	bool mWheelScrolls = true;
	bool mWheelScrollsVerticalFirst = true;
	bool mWheelZooms = false;
};
