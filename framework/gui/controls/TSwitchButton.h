// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/controls/TButton.h"

class TTextView;

enum TSwitchButtonStyle : int32_t {
	kOnOffRow = 0, // two buttons, "On" and "Off"
	kOnOffColumn = 1,
	kBitmapSwitch = 2, // one button, that looks the other way when the value does
	kPlainSwitch = 3,
	kRoundSwitch = 4,
	kToolSwitch = 5
};

/// Switches a value on and off. T is bool, or float: above one half is on. Main thread.
template <class T>
class TSwitchButton : public TControl {
public:
	/// TSwitchButtonStyle. The value may go before the switch.
	TSwitchButton(TValue<T>* value, int style);

	bool IsOn() const;
	/// As a click does.
	void Toggle();
	/// Called with 0 for the left mouse button, 1 for the right one, behind the change.
	void SetChangedAction(const TFunctionPtr<void, int>& action) { mChangedAction = action; }

	/// Called when what is shown has been brought in line with the value.
	void SetRefreshAction(const TFunctionPtr<void>& action) { mRefreshAction = action; }

	/// Of the single button, while on and while off.
	void SetBitmaps(const TPtr<TBitmap>& on, const TPtr<TBitmap>& off);
	void SetLabels(const TString& on, const TString& off);
	/// Of a pair the one for on, else the one shown while on.
	TButton& OnButton() const noexcept { return *mOnButton; }

	TButton& OffButton() const noexcept { return *mOffButton; }

	void OnEnabledChanged() override;
	void OnResized() override;

private:
	bool IsPair() const noexcept { return mStyle == kOnOffRow || mStyle == kOnOffColumn; }

	void OnValueChanged(TObservable* value, int32_t reason);
	void Refresh();
	void OnOnButton();
	void OnOffButton();
	void OnOnButtonSecondary();
	void OnOffButtonSecondary();
	void Clicked(bool on, int index);

	TWeakPtr<TValue<T>> mValue;
	TPtr<TButton> mOnButton;
	TPtr<TButton> mOffButton;
	TFunctionPtr<void, int> mChangedAction;
	TFunctionPtr<void> mRefreshAction;
	const int mStyle;
};

extern template class TSwitchButton<bool>;
extern template class TSwitchButton<float>;

/// A switch and what it is for beside it, as one control. Takes the size of both. Main thread.
template <class T>
class TSwitchButtonViewPair : public TControl {
public:
	/// A tick box with its label.
	TSwitchButtonViewPair(TValue<T>* value, const TString& label);
	TSwitchButtonViewPair(const TPtr<TSwitchButton<T>>& switchButton, const TPtr<TView>& view);

	TSwitchButton<T>& Switch() const noexcept { return *mSwitch; }

	bool WantsMouseCapture(int x, int y, int modifiers) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;
	void OnEnabledChanged() override;
	void ApplyColors() override;
	void OnChildResized(TView& child) override;

private:
	void Assemble(const TPtr<TView>& left, const TPtr<TView>& right);
	void Layout();

	TWeakPtr<TView> mLeft;
	TWeakPtr<TView> mRight;
	bool mIsLayingOut = false;
	TPtr<TTextView> mLabel;
	TPtr<TSwitchButton<T>> mSwitch;
};

extern template class TSwitchButtonViewPair<bool>;
