// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/controls/TSwitchButton.h"

#include "framework/graphics/bitmaps/TRecolorableBitmap.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/graphics/skin/TSkinColors.h"
#include "framework/gui/text/TTextView.h"

#include <algorithm>

namespace {

struct TSwitchLook {
	int mOnStyle;
	int mOffStyle;
	TPointT<int> mSize;
};

/// By TSwitchButtonStyle.
constexpr TSwitchLook kLooks[]{
    {kLeftPieceButton, kRightPieceButton, {60, 18}}, {kTopPieceButton, kBottomPieceButton, {18, 60}},
    {kBitmapButton, kBitmapButton, {18, 18}},        {kPlainButton, kPlainButton, {18, 18}},
    {kRoundButton, kRoundButton, {18, 18}},          {kToolButton, kToolButton, {18, 18}}};

bool IsOnValue(bool value) {
	return value;
}

bool IsOnValue(float value) {
	return value > 0.5f;
}

} // namespace

template <class T>
TSwitchButton<T>::TSwitchButton(TValue<T>* value, int style)
    : mValue(value),
      mOnButton(MakePtr<TButton>()),
      mOffButton(MakePtr<TButton>()),
      mStyle(style) {
	const TSwitchLook& look = kLooks[std::clamp<int>(style, kOnOffRow, kToolSwitch)];
	mOnButton->SetStyle(look.mOnStyle);
	mOffButton->SetStyle(look.mOffStyle);
	SetSize(look.mSize.mX, look.mSize.mY);
	mOnButton->SetClickAction({this, &TSwitchButton::OnOnButton});
	mOnButton->SetSecondaryAction({this, &TSwitchButton::OnOnButtonSecondary});
	mOffButton->SetClickAction({this, &TSwitchButton::OnOffButton});
	mOffButton->SetSecondaryAction({this, &TSwitchButton::OnOffButtonSecondary});
	AddChild(mOnButton);
	AddChild(mOffButton);
	if (IsPair())
		SetLabels("On", "Off");
	else if (style == kBitmapSwitch)
		SetBitmaps(
		    MakePtr<TRecolorableBitmap>("Icons/SwitchOn.bmp"), MakePtr<TRecolorableBitmap>("Icons/SwitchOff.bmp"));
	if (value)
		value->AddObserver({this, &TSwitchButton::OnValueChanged});
}

template <class T>
bool TSwitchButton<T>::IsOn() const {
	return mValue ? IsOnValue(mValue->Get()) : mOnButton->IsVisible() && !IsPair();
}

template <class T>
void TSwitchButton<T>::SetBitmaps(const TPtr<TBitmap>& on, const TPtr<TBitmap>& off) {
	mOnButton->SetBitmaps(on, on, true);
	mOffButton->SetBitmaps(off, off, true);
}

template <class T>
void TSwitchButton<T>::SetLabels(const TString& on, const TString& off) {
	mOnButton->SetLabel(on);
	mOffButton->SetLabel(off);
}

template <class T>
void TSwitchButton<T>::OnValueChanged(TObservable* /*value*/, int32_t reason) {
	if (reason == kObserverAdded || reason == kDidChange)
		Refresh();
}

// Of a pair the active side shows pressed; of the others exactly one is there.
template <class T>
void TSwitchButton<T>::Refresh() {
	const bool on = IsOn();
	if (IsPair()) {
		mOnButton->SetRestState(on ? kButtonPressed : kButtonUp);
		mOffButton->SetRestState(on ? kButtonUp : kButtonPressed);
	} else {
		mOnButton->SetRestState(kButtonPressed);
		mOffButton->SetRestState(kButtonUp);
		mOnButton->SetVisible(on);
		mOffButton->SetVisible(!on);
	}
	if (mRefreshAction)
		mRefreshAction();
}

template <class T>
void TSwitchButton<T>::Toggle() {
	Clicked(!IsOn(), 0);
}

// The action may take the switch away. What it does with a value that has gone is not worth a call.
template <class T>
void TSwitchButton<T>::Clicked(bool on, int index) {
	if (!mValue)
		return;
	const TPtr<TSwitchButton> keepAlive(this);
	mValue->Set(static_cast<T>(on));
	if (mChangedAction)
		mChangedAction(index);
}

template <class T>
void TSwitchButton<T>::OnOnButton() {
	Clicked(IsPair() || !IsOn(), 0);
}

template <class T>
void TSwitchButton<T>::OnOffButton() {
	Clicked(!IsPair() && !IsOn(), 0);
}

template <class T>
void TSwitchButton<T>::OnOnButtonSecondary() {
	Clicked(IsPair() || !IsOn(), 1);
}

template <class T>
void TSwitchButton<T>::OnOffButtonSecondary() {
	Clicked(!IsPair() && !IsOn(), 1);
}

template <class T>
void TSwitchButton<T>::OnEnabledChanged() {
	mOnButton->SetEnabled(IsEnabled());
	mOffButton->SetEnabled(IsEnabled());
}

// Neighbours share the line between them.
template <class T>
void TSwitchButton<T>::OnResized() {
	TControl::OnResized();
	if (mStyle == kOnOffRow) {
		mOnButton->SetRect({0, 0, Width() / 2, Height()});
		mOffButton->SetRect({Width() / 2 - 1, 0, Width() - Width() / 2 + 1, Height()});
	} else if (mStyle == kOnOffColumn) {
		mOnButton->SetRect({0, 0, Width(), Height() / 2});
		mOffButton->SetRect({0, Height() / 2 - 1, Width(), Height() - Height() / 2 + 1});
	} else {
		mOnButton->SetRect({0, 0, Width(), Height()});
		mOffButton->SetRect({0, 0, Width(), Height()});
	}
}

template class TSwitchButton<bool>;
template class TSwitchButton<float>;

template <class T>
TSwitchButtonViewPair<T>::TSwitchButtonViewPair(TValue<T>* value, const TString& label)
    : mLabel(MakePtr<TTextView>(label)),
      mSwitch(MakePtr<TSwitchButton<T>>(value, kBitmapSwitch)) {
	Assemble(mSwitch, mLabel);
	TSwitchButtonViewPair::ApplyColors();
}

template <class T>
TSwitchButtonViewPair<T>::TSwitchButtonViewPair(const TPtr<TSwitchButton<T>>& switchButton, const TPtr<TView>& view)
    : mSwitch(switchButton) {
	Assemble(switchButton, view);
}

template <class T>
void TSwitchButtonViewPair<T>::Assemble(const TPtr<TView>& left, const TPtr<TView>& right) {
	mLeft = left;
	mRight = right;
	AddChild(left);
	AddChild(right);
	Layout();
}

template <class T>
void TSwitchButtonViewPair<T>::Layout() {
	if (mIsLayingOut || !mLeft || !mRight)
		return;
	mIsLayingOut = true;
	mLeft->SetPosition(0, 0);
	mRight->SetPosition(mLeft->Width(), 0);
	SetSize(mLeft->Width() + mRight->Width(), std::max(mLeft->Height(), mRight->Height()));
	mIsLayingOut = false;
}

template <class T>
void TSwitchButtonViewPair<T>::OnChildResized(TView& /*child*/) {
	Layout();
}

template <class T>
bool TSwitchButtonViewPair<T>::WantsMouseCapture(int x, int y, int /*modifiers*/) {
	return IsEnabled() && mSwitch->IsEnabled() && mLeft && mLeft->ContainsPoint(x, y);
}

template <class T>
bool TSwitchButtonViewPair<T>::OnLeftMouseDown(int /*x*/, int /*y*/, int /*modifiers*/) {
	return IsCapturing(this);
}

template <class T>
bool TSwitchButtonViewPair<T>::OnLeftMouseUp(int x, int y, int modifiers) {
	if (!IsCapturing(this) || (modifiers & kMouseAutoRepeat) || !mLeft || !mLeft->ContainsPoint(x, y))
		return false;
	mSwitch->Toggle();
	return true;
}

template <class T>
void TSwitchButtonViewPair<T>::OnEnabledChanged() {
	mSwitch->SetEnabled(IsEnabled());
	ApplyColors();
}

template <class T>
void TSwitchButtonViewPair<T>::ApplyColors() {
	const TSkinColors* colors = TSkinColors::Instance();
	if (!mLabel || !colors)
		return;
	const TColor color = colors->MainColor(TSkinColors::kBodyFont);
	const TColor back = colors->MainColor(TSkinColors::kBodyBack);
	mLabel->SetColor(IsEnabled() ? color : TSkin::Instance()->DisabledTextColor(color, back));
}

template class TSwitchButtonViewPair<bool>;
