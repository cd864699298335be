// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/controls/TRotaryEncoder.h"

#include "framework/graphics/skin/TSkin.h"
#include "framework/gui/controls/MouseDrags.h"
#include "framework/gui/events/TBaseViewsPrefs.h"
#include "framework/gui/windows/TCursor.h"

#include <algorithm>
#include <cmath>
#include <concepts>

namespace {

constexpr float kTravel = 250.0f; // pixels for the whole range
constexpr float kFineFactor = 25.0f;
constexpr int kFineStepFactor = 8; // a stepped value is made finer by asking for longer ways

bool KeepsMouse() {
	TBaseViewsPrefs* prefs = TBaseViewsPrefs::Instance();
	return prefs && prefs->WarpCursorOnDrag().Get();
}

} // namespace

template <class T>
TRotaryEncoder<T>::TRotaryEncoder(TValue<T>* value, TValueRange range)
    : mValue(value),
      mRange(range),
      mpConverter(MakePtr<TValueConverter<T>>(TValueRange{0.0f, 100.0f}, "%")) {
	SetSize(kDefaultSize, kDefaultSize);
	if (value)
		value->AddObserver({this, &TRotaryEncoder::OnValueChanged});
}

template <class T>
void TRotaryEncoder<T>::SetDrawMode(int mode) {
	if (mDrawMode == mode)
		return;
	mDrawMode = mode;
	Invalidate();
}

template <class T>
void TRotaryEncoder<T>::SetConverter(const TPtr<TValueConverter<T>>& converter) {
	mpConverter = converter;
}

template <class T>
T TRotaryEncoder<T>::Value() const {
	return mValue ? mValue->Get() : mLastValue;
}

template <class T>
TString TRotaryEncoder<T>::ValueText() const {
	return mpConverter->ToString(mRange, Value());
}

template <class T>
void TRotaryEncoder<T>::OnValueChanged(TObservable* /*value*/, int32_t reason) {
	if (reason != kObserverAdded && reason != kDidChange)
		return;
	mLastValue = mValue->Get();
	Invalidate();
}

template <class T>
void TRotaryEncoder<T>::SetValue(T value) {
	const auto minimum = static_cast<T>(mRange.mMinimum);
	const auto maximum = static_cast<T>(mRange.mMaximum);
	if (mValue)
		mValue->Set(std::clamp(value, minimum, maximum));
}

template <class T>
void TRotaryEncoder<T>::Draw(TSurface& port) {
	const float position = mpConverter->PositionFromValue(mRange, 1.0f, Value());
	TSkin::Instance()->DrawRotary(port, AbsoluteRect(), position, mHighlighted, IsEnabled(), mDrawMode == kFromMiddle);
}

// Gestures

template <class T>
bool TRotaryEncoder<T>::BeginGesture(int x, int y, bool isRightButton) {
	if (!IsEnabled() || !IsCapturing(this))
		return false;
	mValueAtPress = Value();
	mPressPoint = mLastMousePoint = {x, y};
	mResetting = false;
	mDragged = false;
	if (mGestureAction)
		mGestureAction(isRightButton);
	if (KeepsMouse() && !mCursorIsHidden) {
		mSavedCursor = Cursor();
		mCursorIsHidden = true;
		SetCursor(kEmptyCursor);
	}
	return true;
}

template <class T>
bool TRotaryEncoder<T>::OnLeftMouseDown(int x, int y, int /*modifiers*/) {
	return BeginGesture(x, y, false);
}

template <class T>
bool TRotaryEncoder<T>::OnRightMouseDown(int x, int y, int /*modifiers*/) {
	return BeginGesture(x, y, true);
}

template <class T>
bool TRotaryEncoder<T>::OnLeftDoubleClick(int x, int y, int /*modifiers*/) {
	if (!BeginGesture(x, y, false))
		return false;
	mResetting = true;
	SetValue(mDefault);
	return true;
}

/// A stepped value goes one step a pixel, if the range is no longer than that.
template <class T>
float TRotaryEncoder<T>::PixelsForRange(bool fine) const {
	if constexpr (std::integral<T>)
		return std::min(mRange.Length(), kTravel);
	return fine ? kTravel * kFineFactor : kTravel;
}

// Within the way of one pixel.
template <class T>
T TRotaryEncoder<T>::CaughtAt(T value, float pixels) const {
	const auto pixel = static_cast<float>(mpConverter->DeltaFromPixels(1.0f, pixels, mRange));
	const auto isNear = [&](float place) { return std::abs(static_cast<float>(value) - place) <= pixel; };
	if (mSnapToDefault && isNear(static_cast<float>(mDefault)))
		value = mDefault;
	const float middle = mRange.mMinimum + mRange.Length() / 2.0f;
	return mDrawMode == kFromMiddle && isNear(middle) ? static_cast<T>(middle) : value;
}

template <class T>
int TRotaryEncoder<T>::TakeWayUp(int x, int y) {
	const int way = mLastMousePoint.mY - y;
	const bool isFineStep = std::integral<T> && (KeyModifiers() & kCommandModifier);
	if (std::abs(way) < MouseDrags::Threshold() * (isFineStep ? kFineStepFactor : 1))
		return 0;
	mLastMousePoint = {x, y};
	return way;
}

template <class T>
bool TRotaryEncoder<T>::OnMouseDrag(int x, int y, int modifiers) {
	mDragged = true;
	const int way = TakeWayUp(x, y);
	if (way == 0 || mResetting)
		return true;
	const float pixels = PixelsForRange((modifiers & kMouseCommand) != 0);
	const T step = mpConverter->DeltaFromPixels(static_cast<float>(way), pixels, mRange);
	SetValue(CaughtAt(Value() + step, pixels));
	if (KeepsMouse())
		KeepMouseInside(x, y);
	return true;
}

// Over the upper edge to the lower one and back, so that there is always room to go on.
template <class T>
void TRotaryEncoder<T>::KeepMouseInside(int x, int y) {
	const TRectT<int> rect = AbsoluteRect();
	if (rect.IsEmpty() || (y >= rect.mTop && y < rect.Bottom()))
		return;
	const int below = (y - rect.mTop) % rect.mHeight;
	mLastMousePoint = {x, rect.mTop + (below < 0 ? below + rect.mHeight : below)};
	WarpMouse(mLastMousePoint);
}

template <class T>
bool TRotaryEncoder<T>::OnLeftMouseUp(int /*x*/, int /*y*/, int modifiers) {
	return IsCapturing(this) || (modifiers & kMouseAutoRepeat);
}

template <class T>
void TRotaryEncoder<T>::OnMouseCaptureReleased(int x, int y, int /*modifiers*/) {
	if (mCursorIsHidden) {
		if (mDragged)
			WarpMouse(mPressPoint);
		SetCursor(mSavedCursor);
		mCursorIsHidden = false;
	}
	const TPointT<int> mouse = mDragged && KeepsMouse() ? mPressPoint : TPointT<int>{x, y};
	mDragged = false;
	SetHighlighted(IsEnabled() && ContainsPoint(mouse.mX, mouse.mY));
}

template <class T>
void TRotaryEncoder<T>::SetHighlighted(bool highlighted) {
	if (mHighlighted == highlighted)
		return;
	mHighlighted = highlighted;
	Invalidate();
}

template <class T>
void TRotaryEncoder<T>::OnMouseEnter(int /*x*/, int /*y*/, int /*modifiers*/) {
	if (IsEnabled() && (!HasMouseCapture() || IsCapturing(this)))
		SetHighlighted(true);
}

template <class T>
void TRotaryEncoder<T>::OnMouseLeave(int /*x*/, int /*y*/, int /*modifiers*/) {
	if (!HasMouseCapture() || IsCapturing(this))
		SetHighlighted(false);
}

template <class T>
void TRotaryEncoder<T>::OnEnabledChanged() {
	SetHighlighted(false);
}

template class TRotaryEncoder<float>;
