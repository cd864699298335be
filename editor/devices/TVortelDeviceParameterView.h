// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDeviceParameter.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/gui/views/TView.h"

template <class T>
class TRotaryEncoder;
class TTextField;
class TTextView;

/// A rotary control for a parameter, with its name and with its value as a text that can be typed. The wheel turns it,
/// too. Main thread.
class TVortelDeviceParameterViewBase : public TView {
public:
	/// Instead of the parameter's name.
	void SetTitle(const TString& text);

	TVortelDeviceParameter& Parameter() const noexcept { return *mpParameter; }

	bool OnWheelUp(int x, int y, int modifiers) override;
	bool OnWheelDown(int x, int y, int modifiers) override;

protected:
	/// An empty tool tip leaves none.
	TVortelDeviceParameterViewBase(const TPtr<TVortelDeviceParameter>& parameter, const TString& toolTip);

	/// The field has begun or ended an edit.
	virtual void OnEditChanged() {}

	static constexpr int kLabelHeight = 15;

	const TPtr<TVortelDeviceParameter> mpParameter;
	TPtr<TRotaryEncoder<float>> mpEncoder;
	TPtr<TTextView> mpNameLabel;
	TPtr<TTextField> mpValueField;
	TObservableBaseType<TString> mValueText;

private:
	void FollowParameter();
	void OnParameterChanged(TObservable* observable, int32_t reason);
	void OnValueTextChanged(TObservable* observable, int32_t reason);
	void OnFieldEdit();
	void ShowValueText();
	TString CurrentText() const;
	bool StepByWheel(int direction, int modifiers);

	bool mIsShowingText = false;
};

/// The name above the encoder, the value below it.
class TVortelDeviceParameterViewRotary final : public TVortelDeviceParameterViewBase {
public:
	TVortelDeviceParameterViewRotary(
	    const TPtr<TVortelDeviceParameter>& parameter, const TString& toolTip, int width, int height);

	void OnResized() override;
};

/// The name below the encoder. It makes room for the value while the mouse is here.
class TVortelDeviceParameterViewCompactRotary final : public TVortelDeviceParameterViewBase {
public:
	TVortelDeviceParameterViewCompactRotary(
	    const TPtr<TVortelDeviceParameter>& parameter, const TString& toolTip, int width, int height);

	void OnResized() override;
	void OnMouseEnter(int x, int y, int modifiers) override;
	void OnMouseLeave(int x, int y, int modifiers) override;

private:
	void OnEditChanged() override;
	void ShowValueOrName();

	bool mMouseInside = false;
};
