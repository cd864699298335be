// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/scrolling/TScrollableContentView.h"

#include "framework/graphics/surfaces/TGraphPortPrefs.h"

#include <algorithm>

TPointT<int> TScrollableContentView::WindowSize() const {
	if (mWindowSize.mX >= 0)
		return mWindowSize;
	return Parent() ? Parent()->Size() : Size();
}

void TScrollableContentView::SetScrollPositionX(int value, bool animate) {
	const int position = std::clamp(value, 0, std::max(ScrollRangeX() - WindowSize().mX, 0));
	const TPointT<int> target{-position, CurrentTargetPosition().mY};
	if (animate)
		SlideTo(target);
	else
		SetPosition(target.mX, Position().mY);
}

void TScrollableContentView::SetScrollPositionY(int value, bool animate) {
	const int position = std::clamp(value, 0, std::max(ScrollRangeY() - WindowSize().mY, 0));
	const TPointT<int> target{CurrentTargetPosition().mX, -position};
	if (animate)
		SlideTo(target);
	else
		SetPosition(Position().mX, target.mY);
}

bool TScrollableContentView::MayAnimate() const {
	TGraphPortPrefs* prefs = TGraphPortPrefs::Instance();
	return Speed() > 1.0f && PauseCount() == 0 && prefs && prefs->mVisualEffects.Get();
}

void TScrollableContentView::ScrollTo(TPointT<int> position) {
	const bool animate = MayAnimate();
	SetScrollPositionX(position.mX, animate);
	SetScrollPositionY(position.mY, animate);
}

void TScrollableContentView::ScrollIntoView(const TRectT<int>& rect, bool animate) {
	const TPointT<int> window = WindowSize();
	const auto moved = [](int position, int room, int start, int length) {
		return start < position ? start : std::max(position, start + length - room);
	};
	SetScrollPositionX(moved(ScrollPositionX(), window.mX, rect.mLeft, rect.mWidth), animate && MayAnimate());
	SetScrollPositionY(moved(ScrollPositionY(), window.mY, rect.mTop, rect.mHeight), animate && MayAnimate());
}
