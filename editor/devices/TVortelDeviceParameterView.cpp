// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/devices/TVortelDeviceParameterView.h"

#include "document/TVortelDevice.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/graphics/skin/TSkinColors.h"
#include "framework/gui/controls/TLinkedViewValue.h"
#include "framework/gui/controls/TRotaryEncoder.h"
#include "framework/gui/text/TTextField.h"
#include "framework/gui/text/TTextView.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr float kWheelStep = 0.01f;
constexpr float kFineWheelStep = 0.001f;

/// Of a device whose times are read in different ways; null for the others.
TVortelDeviceParameter* TimeModeOf(const TVortelDeviceParameter& parameter) {
	const TVortelDevice* device = parameter.Device();
	for (int index = 0; device && index < device->NumberOfParameters(); ++index)
		if (device->Parameter(index)->Name() == "Mode")
			return device->Parameter(index);
	return nullptr;
}

} // namespace

TVortelDeviceParameterViewBase::TVortelDeviceParameterViewBase(
    const TPtr<TVortelDeviceParameter>& parameter, const TString& toolTip)
    : mpParameter(parameter) {
	TVortelDeviceParameter* target = parameter.Get();
	auto* value = new TLinkedViewValue<float>(
	    this, {target, &TVortelDeviceParameter::Value}, {target, &TVortelDeviceParameter::SetValueByUser});
	mpEncoder = MakePtr<TRotaryEncoder<float>>(value);
	mpEncoder->SetDrawMode(
	    parameter->IsBipolar() ? TRotaryEncoder<float>::kFromMiddle : TRotaryEncoder<float>::kFromMinimum);
	mpEncoder->SetDefault(parameter->Default());
	mpNameLabel = MakePtr<TTextView>(parameter->Name(), kBodyText, kAlignCenter);

	mpValueField = MakePtr<TTextField>(&mValueText, TSkin::kNoBackground);
	mpValueField->SetLabelTextAlignment(kAlignCenter);
	mpValueField->SetTextColor(TSkinColors::Instance()->MainColor(TSkinColors::kValueBoxFont));
	mpValueField->SetEditAction({this, &TVortelDeviceParameterViewBase::OnFieldEdit});
	SetToolTip(toolTip);
	mpEncoder->SetToolTip(toolTip);
	AddChild(mpEncoder);
	AddChild(mpNameLabel);
	AddChild(mpValueField);
	FollowParameter();
}

void TVortelDeviceParameterViewBase::SetTitle(const TString& text) {
	mpNameLabel->SetText(text);
}

/// The parameter's own changes and those of the mode by which its text is read.
void TVortelDeviceParameterViewBase::FollowParameter() {
	const TObserverCallback callback{this, &TVortelDeviceParameterViewBase::OnParameterChanged};
	mpParameter->ChangedBang().AddObserver(callback);
	mpParameter->UserChangedBang().AddObserver(callback);
	TVortelDeviceParameter* mode = TimeModeOf(*mpParameter);
	if (mode && mode != mpParameter.Get())
		mode->ChangedBang().AddObserver(callback);
	mValueText.AddObserver({this, &TVortelDeviceParameterViewBase::OnValueTextChanged});
}

void TVortelDeviceParameterViewBase::OnParameterChanged(TObservable*, int32_t reason) {
	if ((reason == kObserverAdded || reason == kDidChange) && !mpValueField->IsEditing())
		ShowValueText();
}

TString TVortelDeviceParameterViewBase::CurrentText() const {
	const TString& unit = mpParameter->Converter()->Unit();
	return unit.IsEmpty() ? mpParameter->ValueText() : mpParameter->ValueText() + " " + unit;
}

void TVortelDeviceParameterViewBase::ShowValueText() {
	const bool wasShowing = std::exchange(mIsShowingText, true);
	mValueText.Set(CurrentText());
	mIsShowingText = wasShowing;
}

/// What the field writes is a text of the user's; what does not parse is dropped.
void TVortelDeviceParameterViewBase::OnValueTextChanged(TObservable*, int32_t reason) {
	if (reason != kDidChange || mIsShowingText)
		return;
	float value = 0.0f;
	if (mpParameter->ParseValueText(mValueText.Get(), &value))
		mpParameter->SetValueByUser(value);
	ShowValueText();
}

void TVortelDeviceParameterViewBase::OnFieldEdit() {
	if (!mpValueField->IsEditing())
		ShowValueText();
	OnEditChanged();
}

bool TVortelDeviceParameterViewBase::OnWheelUp(int, int, int modifiers) {
	return StepByWheel(1, modifiers);
}

bool TVortelDeviceParameterViewBase::OnWheelDown(int, int, int modifiers) {
	return StepByWheel(-1, modifiers);
}

/// One step of a stepped value, else a hundredth of the range; with the Command key a tenth of that.
bool TVortelDeviceParameterViewBase::StepByWheel(int direction, int modifiers) {
	if ((modifiers & kMouseAutoRepeat) || mpValueField->IsEditing())
		return false;
	const TVortelValueConverter& converter = *mpParameter->Converter();
	const float value = mpParameter->Value();
	float next = value + static_cast<float>(direction) * (modifiers & kMouseCommand ? kFineWheelStep : kWheelStep);
	if (converter.IsStepped())
		next = converter.SteppedNeighbour(value, direction);
	next = std::clamp(next, 0.0f, 1.0f);
	if (next != value)
		mpParameter->SetValueByUser(next);
	return true;
}

// Large

TVortelDeviceParameterViewRotary::TVortelDeviceParameterViewRotary(
    const TPtr<TVortelDeviceParameter>& parameter, const TString& toolTip, int width, int height)
    : TVortelDeviceParameterViewBase(parameter, toolTip) {
	SetSize(width, height);
}

void TVortelDeviceParameterViewRotary::OnResized() {
	constexpr int kTextHeight = 34; // of both texts with what is free around them
	const int diameter = std::min(Width(), Height() - kTextHeight);
	mpNameLabel->SetRect({0, -2, Width(), kLabelHeight});
	mpEncoder->SetRect({(Width() - diameter) / 2, (Height() - diameter) / 2, diameter, diameter});
	mpValueField->SetRect({0, Height() - kLabelHeight, Width(), kLabelHeight});
}

// Compact

TVortelDeviceParameterViewCompactRotary::TVortelDeviceParameterViewCompactRotary(
    const TPtr<TVortelDeviceParameter>& parameter, const TString& toolTip, int width, int height)
    : TVortelDeviceParameterViewBase(parameter, toolTip) {
	SetSize(width, height);
	ShowValueOrName();
}

void TVortelDeviceParameterViewCompactRotary::OnResized() {
	constexpr int kTextHeight = 17;
	const int diameter = std::min(Width(), Height() - kTextHeight);
	mpEncoder->SetRect({(Width() - diameter) / 2, 0, diameter, diameter});
	const TRectT<int> text{0, Height() - kLabelHeight, Width(), kLabelHeight};
	mpNameLabel->SetRect(text);
	mpValueField->SetRect(text);
}

void TVortelDeviceParameterViewCompactRotary::OnMouseEnter(int, int, int modifiers) {
	mMouseInside = !(modifiers & (kMouseLeftHeld | kMouseRightHeld | kMouseMiddleHeld));
	ShowValueOrName();
}

void TVortelDeviceParameterViewCompactRotary::OnMouseLeave(int, int, int) {
	mMouseInside = false;
	ShowValueOrName();
}

void TVortelDeviceParameterViewCompactRotary::OnEditChanged() {
	ShowValueOrName();
}

void TVortelDeviceParameterViewCompactRotary::ShowValueOrName() {
	const bool showValue = mMouseInside || mpValueField->IsEditing();
	mpNameLabel->SetVisible(!showValue);
	mpValueField->SetVisible(showValue);
}
