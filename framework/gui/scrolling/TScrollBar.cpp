// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/scrolling/TScrollBar.h"

#include "framework/graphics/bitmaps/TRecolorableBitmap.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/gui/scrolling/TScrollBarButton.h"

#include <algorithm>

namespace {

/// At an end of the bar.
TPtr<TButton> MakeArrow(const char* fileName) {
	const auto button = MakePtr<TButton>(TString(), kScrollBarButton);
	const TPtr<TBitmap> bitmap = MakePtr<TRecolorableBitmap>(fileName);
	button->SetBitmaps(bitmap, bitmap, true);
	button->SetRepeat(true);
	return button;
}

} // namespace

TScrollBarBase::TScrollBarBase(int orientation, const TPtr<TScrollBarButtonBase>& track)
    : mOrientation(orientation),
      mUpButton(MakeArrow(orientation == kVertical ? "Icons/ArrowUp.bmp" : "Icons/ArrowLeft.bmp")),
      mDownButton(MakeArrow(orientation == kVertical ? "Icons/ArrowDown.bmp" : "Icons/ArrowRight.bmp")),
      mTrack(track) {
	mTrack->SetBar(this);
	mUpButton->SetClickAction({this, &TScrollBarBase::ArrowBack});
	mDownButton->SetClickAction({this, &TScrollBarBase::ArrowForward});
	AddChild(mTrack);
	AddChild(mUpButton);
	AddChild(mDownButton);
}

TScrollBarBase::~TScrollBarBase() = default;

// Numbers

void TScrollBarBase::Rebind(TWeakPtr<TValue<int>>& place, TValue<int>* value) {
	if (place)
		place->RemoveObserver({this, &TScrollBarBase::OnNumberChanged});
	place = value;
	if (value)
		value->AddObserver({this, &TScrollBarBase::OnNumberChanged});
}

void TScrollBarBase::SetPositionValue(TValue<int>* value) {
	Rebind(mPositionValue, value);
}

void TScrollBarBase::SetWindowValue(TValue<int>* value) {
	Rebind(mWindowValue, value);
}

void TScrollBarBase::SetRangeValue(TValue<int>* value) {
	Rebind(mRangeValue, value);
}

void TScrollBarBase::OnNumberChanged(TObservable* /*value*/, int32_t reason) {
	if (reason != kObserverAdded && reason != kDidChange)
		return;
	UpdateHidden();
	Invalidate();
}

int TScrollBarBase::Position() const {
	return mPositionValue ? mPositionValue->Get() : 0;
}

int TScrollBarBase::Window() const {
	return mWindowValue ? mWindowValue->Get() : 0;
}

int TScrollBarBase::Range() const {
	return mRangeValue ? mRangeValue->Get() : 0;
}

int TScrollBarBase::PositionAfter(int delta) const {
	return static_cast<int>(
	    std::clamp(int64_t{Position()} + delta, int64_t{0}, std::max(int64_t{Range()} - Window(), int64_t{0})));
}

void TScrollBarBase::SetPosition(int position) {
	const auto delta = int64_t{position} - Position();
	Step(static_cast<int>(std::clamp(delta, int64_t{-kLargestStep}, int64_t{kLargestStep})));
}

void TScrollBarBase::Step(int delta) {
	if (mPositionValue)
		mPositionValue->Set(PositionAfter(delta));
	Invalidate();
}

// Parts

void TScrollBarBase::SetAutoHide(bool autoHide) {
	mAutoHide = autoHide;
	UpdateHidden();
}

void TScrollBarBase::SetHasButtons(bool hasButtons) {
	mHasButtons = hasButtons;
	OnResized();
}

void TScrollBarBase::AddHiddenAction(const TFunctionPtr<void>& action) {
	mHiddenActions.Append(action);
}

void TScrollBarBase::OnResized() {
	TControl::OnResized();
	const bool isVertical = mOrientation == kVertical;
	const int length = isVertical ? Height() : Width();
	const int thickness = isVertical ? Width() : Height();
	const auto rect = [&](int start, int end) {
		return isVertical ? TRectT<int>{0, start, thickness, end - start}
		                  : TRectT<int>{start, 0, end - start, thickness};
	};
	int arrow = mHasButtons ? thickness : 0;
	if (mHasButtons && length < 2 * thickness)
		arrow = 3 * length < 4 * thickness ? 0 : length / 2; // two thirds of their size are the least
	mButtonsShown = arrow > 0;
	mTrackShown = !mHasButtons || length - 2 * thickness >= mTrack->MinimumLength();
	mUpButton->SetRect(rect(0, arrow));
	mDownButton->SetRect(rect(length - arrow, length));
	if (mTrackShown)
		mTrack->SetRect(rect(arrow, length - arrow));
	UpdateHidden();
}

void TScrollBarBase::UpdateHidden() {
	const bool hidden = mAutoHide && !CanScroll();
	const bool changed = hidden != mHidden;
	mHidden = hidden;
	mUpButton->SetVisible(!hidden && mButtonsShown);
	mDownButton->SetVisible(!hidden && mButtonsShown);
	mTrack->SetVisible(!hidden && mTrackShown);
	if (!changed)
		return;
	Invalidate();
	const TPtr<TScrollBarBase> keepAlive(this);
	const TList<TFunctionPtr<void>> actions = mHiddenActions;
	for (const TFunctionPtr<void>& action : actions)
		action();
}

bool TScrollBarBase::ContainsPoint(int x, int y) const {
	return !mHidden && TControl::ContainsPoint(x, y);
}

void TScrollBarBase::Draw(TSurface& port) {
	const TSkin::TOrientation orientation = mOrientation == kVertical ? TSkin::kVertical : TSkin::kHorizontal;
	if (!mHidden)
		TSkin::Instance()->DrawScrollBarTrack(port, AbsoluteRect(), orientation, IsEnabled());
}

void TScrollBarBase::OnEnabledChanged() {
	mUpButton->SetEnabled(IsEnabled());
	mDownButton->SetEnabled(IsEnabled());
	mTrack->SetEnabled(IsEnabled());
}

bool TScrollBarBase::OnWheelUp(int /*x*/, int /*y*/, int /*modifiers*/) {
	Step(-mArrowStep);
	return true;
}

bool TScrollBarBase::OnWheelDown(int /*x*/, int /*y*/, int /*modifiers*/) {
	Step(mArrowStep);
	return true;
}

TScrollBar::TScrollBar(int orientation) : TScrollBarBase(orientation, MakePtr<TScrollBarButton>()) {}

// Zoom

TZoomableScrollBar::TZoomableScrollBar(int orientation)
    : TScrollBarBase(orientation, MakePtr<TZoomableScrollBarButton>()) {}

void TZoomableScrollBar::SetWindow(int window) {
	if (WindowValue())
		WindowValue()->Set(std::clamp(window, 1, std::max(Range() - Position(), 1)));
	Invalidate();
}

void TZoomableScrollBar::SetPositionAndWindow(int position, int window) {
	const int start = std::clamp(position, 0, std::max(Range() - 1, 0));
	// Whichever order keeps both inside the range.
	if (start > Position()) {
		SetWindow(window);
		SetPosition(start);
	} else {
		SetPosition(start);
		SetWindow(window);
	}
}
