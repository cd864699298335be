// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/scrolling/TScrollerView.h"

#include "framework/gui/scrolling/TListView.h"
#include "framework/gui/scrolling/TScrollBarButton.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kZoomStep = 1.15f;
constexpr int kStepsWithoutBar = 20; // 5 percent each

int ScaledBy(int value, int numerator, int denominator) {
	return static_cast<int>(std::lround(static_cast<double>(value) * numerator / denominator));
}

} // namespace

TScrollerView::TScrollerView(int horizontalPolicy, int verticalPolicy)
    : mBackground(MakePtr<TBackgroundView>(TSkin::kNoBackground)),
      mHorizontalPolicy(horizontalPolicy),
      mVerticalPolicy(verticalPolicy) {
	mHorizontalBar = MakeBar(horizontalPolicy, TScrollBarBase::kHorizontal);
	mVerticalBar = MakeBar(verticalPolicy, TScrollBarBase::kVertical);
	if (mHorizontalBar) {
		using TLink = TLinkedViewValue<int>;
		mHorizontalBar->SetRangeValue(new TConstLinkedViewValue<int>(this, {this, &TScrollerView::RangeX}));
		mHorizontalBar->SetWindowValue(
		    new TLink(this, {this, &TScrollerView::WindowX}, {this, &TScrollerView::SetWindowX}));
		mHorizontalBar->SetPositionValue(
		    new TLink(this, {this, &TScrollerView::PositionX}, {this, &TScrollerView::SetPositionX}));
	}
	if (mVerticalBar) {
		using TLink = TLinkedViewValue<int>;
		mVerticalBar->SetRangeValue(new TConstLinkedViewValue<int>(this, {this, &TScrollerView::RangeY}));
		mVerticalBar->SetWindowValue(
		    new TLink(this, {this, &TScrollerView::WindowY}, {this, &TScrollerView::SetWindowY}));
		mVerticalBar->SetPositionValue(
		    new TLink(this, {this, &TScrollerView::PositionY}, {this, &TScrollerView::SetPositionY}));
	}
}

TScrollerView::~TScrollerView() = default;

TPtr<TScrollBarBase> TScrollerView::MakeBar(int policy, int orientation) {
	if (policy == kNoBar)
		return nullptr;
	TPtr<TScrollBarBase> bar;
	if (policy == kZoomBar)
		bar = MakePtr<TZoomableScrollBar>(orientation);
	else
		bar = MakePtr<TScrollBar>(orientation);
	bar->AddHiddenAction({this, &TScrollerView::Layout});
	AddChild(bar);
	return bar;
}

void TScrollerView::SetContent(const TPtr<TScrollableContentView>& view) {
	if (mContent == view)
		return;
	if (mContent)
		RemoveChild(mContent.Get());
	mContent = view;
	if (view) {
		InsertChild(view, 0); // below the bars
		if (mHorizontalBar && view->ArrowStepX() > 0)
			mHorizontalBar->SetArrowStep(view->ArrowStepX());
		if (mVerticalBar && view->ArrowStepY() > 0)
			mVerticalBar->SetArrowStep(view->ArrowStepY());
	}
	Layout();
}

void TScrollerView::SetBackground(int kind) {
	mBackground->SetKind(kind);
	Invalidate();
}

void TScrollerView::SetKeepsViewOnResize(bool horizontally, bool vertically) {
	mKeepsViewOnResize = {horizontally, vertically};
}

void TScrollerView::SetAutoHideBars(bool autoHide) {
	for (TScrollBarBase* bar : {mHorizontalBar.Get(), mVerticalBar.Get()})
		if (bar)
			bar->SetAutoHide(autoHide);
}

// Layout

bool TScrollerView::IsShownBar(const TPtr<TScrollBarBase>& bar) const {
	return bar && !bar->IsHidden();
}

// What has no minimum of its own keeps the size that it has given itself.
TPointT<int> TScrollerView::ConstrainedSize() const {
	const TPointT<int> minimum = mContent->MinimumContentSize();
	const TPointT<int> frame = FrameSize();
	return {
	    std::max(minimum.mX > 0 ? minimum.mX : mContent->Width(), frame.mX),
	    std::max(minimum.mY > 0 ? minimum.mY : mContent->Height(), frame.mY)};
}

void TScrollerView::OnResized() {
	Layout();
}

void TScrollerView::OnChildResized(TView& child) {
	if (&child == mContent.Get())
		Layout();
}

void TScrollerView::Layout() {
	if (mIsLayingOut)
		return;
	mIsLayingOut = true;
	const int right = IsShownBar(mVerticalBar) ? TScrollBarBase::kThickness : 0;
	const int bottom = IsShownBar(mHorizontalBar) ? TScrollBarBase::kThickness : 0;
	const TPointT<int> frame{std::max(Width() - right, 0), std::max(Height() - bottom, 0)};
	if (mVerticalBar)
		mVerticalBar->SetRect({Width() - TScrollBarBase::kThickness, 0, TScrollBarBase::kThickness, frame.mY});
	if (mHorizontalBar)
		mHorizontalBar->SetRect({0, Height() - TScrollBarBase::kThickness, frame.mX, TScrollBarBase::kThickness});
	if (mContent) {
		mContent->SetWindowSize(frame);
		KeepView(std::exchange(mFrameSize, frame), frame);
		const TPointT<int> size = ConstrainedSize();
		mContent->SetSize(size.mX, size.mY);
		// What has become smaller may lie beyond its end.
		mContent->SetScrollPositionX(mContent->ScrollPositionX(), false);
		mContent->SetScrollPositionY(mContent->ScrollPositionY(), false);
	}
	mFrameSize = frame;
	mIsLayingOut = false;
}

void TScrollerView::KeepView(TPointT<int> oldFrame, TPointT<int> newFrame) {
	if (mKeepsViewOnResize.mX && oldFrame.mX > 0 && oldFrame.mX != newFrame.mX) {
		const int position = ScaledBy(mContent->ScrollPositionX(), newFrame.mX, oldFrame.mX);
		mContent->SetSize(ScaledBy(mContent->Width(), newFrame.mX, oldFrame.mX), mContent->Height());
		mContent->SetScrollPositionX(position, false);
	}
	if (mKeepsViewOnResize.mY && oldFrame.mY > 0 && oldFrame.mY != newFrame.mY) {
		const int position = ScaledBy(mContent->ScrollPositionY(), newFrame.mY, oldFrame.mY);
		mContent->SetSize(mContent->Width(), ScaledBy(mContent->Height(), newFrame.mY, oldFrame.mY));
		mContent->SetScrollPositionY(position, false);
	}
}

bool TScrollerView::IsRectCovered(const TRectT<int>& rect) const {
	return mBackground->IsOpaque() || TView::IsRectCovered(rect);
}

void TScrollerView::Draw(TSurface& port) {
	mBackground->DrawBackground(port, AbsoluteRect());
}

// What the bars are bound to

int TScrollerView::PositionX() const {
	return mContent ? mContent->ScrollPositionX() : 0;
}

int TScrollerView::PositionY() const {
	return mContent ? mContent->ScrollPositionY() : 0;
}

void TScrollerView::SetPositionX(int position) {
	if (mContent)
		mContent->SetScrollPositionX(position, false);
}

void TScrollerView::SetPositionY(int position) {
	if (mContent)
		mContent->SetScrollPositionY(position, false);
}

int TScrollerView::WindowX() const {
	return FrameSize().mX;
}

int TScrollerView::WindowY() const {
	return FrameSize().mY;
}

// A smaller window onto the same content is a larger content.
void TScrollerView::SetWindowX(int window) {
	if (mContent && window > 0)
		mContent->ZoomX(static_cast<float>(WindowX()) / static_cast<float>(window), 0);
}

void TScrollerView::SetWindowY(int window) {
	if (mContent && window > 0)
		mContent->ZoomY(static_cast<float>(WindowY()) / static_cast<float>(window), 0);
}

int TScrollerView::RangeX() const {
	return mContent ? mContent->ScrollRangeX() : 0;
}

int TScrollerView::RangeY() const {
	return mContent ? mContent->ScrollRangeY() : 0;
}

// Wheel

bool TScrollerView::CanScrollByWheel() const {
	return mWheelScrolls && mContent && (RangeX() > WindowX() || RangeY() > WindowY());
}

bool TScrollerView::IsLeftToNested(int x, int y) const {
	for (TView* view = mContent->TopViewAt(x, y); view && view != this; view = view->Parent()) {
		const auto* scroller = dynamic_cast<TScrollerView*>(view);
		const auto* list = dynamic_cast<TListView*>(view);
		if ((scroller && scroller->CanScrollByWheel()) || (list && list->HasRowsOutOfSight()))
			return true;
	}
	return false;
}

int TScrollerView::WheelStep(bool vertical) const {
	const TScrollBarBase* bar = vertical ? mVerticalBar.Get() : mHorizontalBar.Get();
	return bar ? bar->ArrowStep() : std::max((vertical ? Height() : Width()) / kStepsWithoutBar, 1);
}

// At its end the wheel is used up all the same, so that it does not go on with what lies around.
bool TScrollerView::ScrollByWheel(bool vertical, int direction) {
	const int range = vertical ? RangeY() : RangeX();
	const int window = vertical ? WindowY() : WindowX();
	if (range <= window)
		return false;
	const int position = vertical ? PositionY() : PositionX();
	const int target = std::clamp(position + direction * WheelStep(vertical), 0, range - window);
	if (target != position && vertical)
		SetPositionY(target);
	else if (target != position)
		SetPositionX(target);
	return true;
}

void TScrollerView::ZoomByWheel(int x, int y, bool closer) {
	const float factor = closer ? kZoomStep : 1.0f / kZoomStep;
	mContent->ZoomX(factor, x - mContent->AbsolutePosition().mX);
	mContent->ZoomY(factor, y - mContent->AbsolutePosition().mY);
}

bool TScrollerView::Wheel(int x, int y, int modifiers, int direction, bool sideways) {
	if (!mContent || IsLeftToNested(x, y))
		return false;
	if (!mWheelScrolls) {
		if (mWheelZooms && !sideways)
			ZoomByWheel(x, y, direction < 0);
		return mWheelZooms;
	}
	if (sideways)
		return ScrollByWheel(false, direction);
	if (mHorizontalBar && mVerticalBar) {
		const bool turned = (modifiers & kMouseOption) != 0;
		return ScrollByWheel(mWheelScrollsVerticalFirst != turned, direction);
	}
	return ScrollByWheel(!mHorizontalBar, direction);
}

bool TScrollerView::OnWheelUp(int x, int y, int modifiers) {
	return Wheel(x, y, modifiers, -1, false);
}

bool TScrollerView::OnWheelDown(int x, int y, int modifiers) {
	return Wheel(x, y, modifiers, 1, false);
}

bool TScrollerView::OnWheelLeft(int x, int y, int modifiers) {
	return Wheel(x, y, modifiers, -1, true);
}

bool TScrollerView::OnWheelRight(int x, int y, int modifiers) {
	return Wheel(x, y, modifiers, 1, true);
}
