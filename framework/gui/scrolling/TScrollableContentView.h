// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/scrolling/TSlideableView.h"

/// What lies inside a TScrollerView: larger than that, and moved about in it. Main thread.
class TScrollableContentView : public TSlideableView {
public:
	virtual int ScrollRangeX() const { return Width(); }

	virtual int ScrollRangeY() const { return Height(); }

	/// The first pixel shown.
	virtual int ScrollPositionX() const { return -Position().mX; }

	virtual int ScrollPositionY() const { return -Position().mY; }

	/// Clamped to what can be shown.
	virtual void SetScrollPositionX(int value, bool animate);
	virtual void SetScrollPositionY(int value, bool animate);

	virtual void ZoomX(float /*factor*/, int /*pointerX*/) {}

	virtual void ZoomY(float /*factor*/, int /*pointerY*/) {}

	/// The size may not go below it.
	virtual TPointT<int> MinimumContentSize() const { return {}; }

	/// One step of the arrows and of the wheel; 0 leaves it to the bars.
	virtual int ArrowStepX() const { return 0; }

	virtual int ArrowStepY() const { return 0; }

	TPointT<int> ScrollPosition() const { return {ScrollPositionX(), ScrollPositionY()}; }

	/// Smoothly, where that is wanted.
	void ScrollTo(TPointT<int> position);
	/// As little as brings the rectangle, in coordinates of the view, into sight.
	void ScrollIntoView(const TRectT<int>& rect, bool animate);

	/// What of it can be seen: as the frame around says, else as large as the view above.
	TPointT<int> WindowSize() const;

	void SetWindowSize(TPointT<int> size) noexcept { mWindowSize = size; }

private:
	bool MayAnimate() const;

	TPointT<int> mWindowSize{-1, -1};
};
