// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/controls/TButton.h"

/// A row or a column of buttons of equal size. Main thread.
class TButtonField : public TControl {
public:
	enum TOrientation : int32_t { kRow = 0, kColumn = 1 };

	TButtonField(int count, int orientation);

	int NumberOfButtons() const noexcept { return mButtons.Count(); }

	TButton& Button(int index) const noexcept { return *mButtons[index]; }

	void SetButtonName(int index, const TString& text);
	void SetButtonToolTip(int index, const TString& text);
	/// A picture instead of the name.
	void SetButtonBitmap(int index, const TPtr<TBitmap>& bitmap);
	void SetFont(int font);
	/// 2 lets neighbours touch.
	void SetButtonGap(int gap);
	/// Takes the length that the widest button needs, for all of them.
	void FitToText();

	/// Called with the index of the button that was used.
	void SetClickedAction(const TFunctionPtr<void, int>& action) { mClickedAction = action; }

	void OnResized() override;
	void OnEnabledChanged() override;

protected:
	virtual void OnButtonClicked(int index);

private:
	void OnClicked();
	TButtonLook::TGroupPosition PositionOf(int index, int count) const;
	int LengthNeededBy(const TButton& button) const;
	void Layout();

	int Gap() const noexcept { return mButtonGap - 2; }

	const int mOrientation;
	TList<TPtr<TButton>> mButtons;
	int mButtonGap = 2;
	TFunctionPtr<void, int> mClickedAction;
};

/// A field of which one button is pressed: that of the value. T is int. Main thread.
template <class T>
class TSwitchButtonField : public TButtonField {
public:
	using TGetter = TFunctionPtr<T>;
	using TSetter = TFunctionPtr<void, T>;

	/// The getter is polled. columns: 1 for a column, as many as buttons for a row.
	TSwitchButtonField(const TGetter& getter, const TSetter& setter, int count, int columns);
	/// The value may go before the field.
	TSwitchButtonField(TValue<T>* value, int count, int columns);

	/// The value that a button stands for, where that is not its index.
	void SetButtonValue(int index, T value);

	/// Of the pressed button; -1 when the value has none.
	int PressedIndex() const;

protected:
	void OnButtonClicked(int index) override;

private:
	void Bind(TValue<T>* value);
	void OnValueChanged(TObservable* value, int32_t reason);
	void Refresh();

	TWeakPtr<TValue<T>> mValue;
	TList<T> mButtonValues;
};

extern template class TSwitchButtonField<int>;
