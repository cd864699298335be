// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/controls/TValueDragger.h"

#include "framework/graphics/skin/TSkin.h"
#include "framework/gui/controls/MouseDrags.h"
#include "framework/gui/windows/TCursor.h"

#include <algorithm>

template <class T>
TValueDragger<T>::TValueDragger(const TGetter& getter, const TSetter& setter, T minimum, T maximum)
    : mValue(new TLinkedViewValue<T>(this, getter, setter)),
      mMinimum(minimum),
      mMaximum(maximum) {
	mValue->AddObserver({this, &TValueDragger::OnValueChanged});
	SetCursor(kResizeVerticalCursor);
}

template <class T>
void TValueDragger<T>::OnValueChanged(TObservable* /*value*/, int32_t reason) {
	if (reason == kDidChange)
		Invalidate();
}

template <class T>
void TValueDragger<T>::SetDisplayText(const TString& text) {
	if (mDisplayText == text)
		return;
	mDisplayText = text;
	Invalidate();
}

template <class T>
TString TValueDragger<T>::DisplayedText() const {
	return mDisplayText.IsEmpty() ? TString::ToString(Value()) : mDisplayText;
}

template <class T>
void TValueDragger<T>::Draw(TSurface& port) {
	TSkin::Instance()->DrawValueBox(port, AbsoluteRect(), DisplayedText(), 0, kAlignCenter, IsEnabled());
}

template <class T>
void TValueDragger<T>::StepBy(int64_t steps) {
	if (!mValue)
		return;
	const int64_t value = int64_t{Value()} + steps * int64_t{mStep};
	mValue->Set(static_cast<T>(std::clamp(value, int64_t{mMinimum}, int64_t{mMaximum})));
}

template <class T>
bool TValueDragger<T>::Press(int y, bool isRightButton) {
	if (!IsEnabled() || !IsCapturing(this))
		return false;
	mDragging = true;
	mLastY = y;
	if (!(mClickMode & (isRightButton ? kRightClick : kLeftClick)))
		return true;
	if (mClickAction)
		mClickAction(isRightButton);
	else
		StepBy(isRightButton ? -1 : 1);
	return true;
}

template <class T>
bool TValueDragger<T>::OnLeftMouseDown(int /*x*/, int y, int /*modifiers*/) {
	return Press(y, false);
}

template <class T>
bool TValueDragger<T>::OnRightMouseDown(int /*x*/, int y, int /*modifiers*/) {
	return Press(y, true);
}

// One step for each way that counts as a drag.
template <class T>
bool TValueDragger<T>::OnMouseDrag(int /*x*/, int y, int /*modifiers*/) {
	if (!mDragging)
		return false;
	const int steps = (mLastY - y) / MouseDrags::Threshold();
	if (steps == 0)
		return true;
	mLastY -= steps * MouseDrags::Threshold();
	StepBy(steps);
	return true;
}

template <class T>
bool TValueDragger<T>::OnLeftMouseUp(int /*x*/, int /*y*/, int /*modifiers*/) {
	return mDragging;
}

template <class T>
void TValueDragger<T>::OnMouseCaptureReleased(int /*x*/, int /*y*/, int /*modifiers*/) {
	mDragging = false;
}

template <class T>
bool TValueDragger<T>::OnWheelUp(int /*x*/, int /*y*/, int /*modifiers*/) {
	if (!IsEnabled())
		return false;
	StepBy(1);
	return true;
}

template <class T>
bool TValueDragger<T>::OnWheelDown(int /*x*/, int /*y*/, int /*modifiers*/) {
	if (!IsEnabled())
		return false;
	StepBy(-1);
	return true;
}

template class TValueDragger<int>;
