// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/controls/TIncDecButtonPair.h"
#include "framework/gui/controls/TValueConverter.h"

class TTextField;
class TTextView;

/// A number to type, with steppers for coarse steps on the left and fine ones on the right, and a title where there is
/// room. The wheel steps, too. T is int. Main thread.
template <class T>
class TValueBox : public TControl {
public:
	using TGetter = TFunctionPtr<T>;
	using TSetter = TFunctionPtr<void, T>;

	/// The getter is polled.
	TValueBox(const TGetter& getter, const TSetter& setter, T minimum, T maximum);
	~TValueBox() override;

	void SetTitle(const TString& title);
	void SetConverter(const TPtr<TValueConverter<T>>& converter);
	/// Off for numbers that are typed or drawn, not stepped to.
	void SetShowSteppers(bool show);
	void SetFont(int font);

	T Value() const { return mValue ? mValue->Get() : T{}; }

	TTextField& Field() const noexcept { return *mField; }

	void Draw(TSurface& port) override;
	void OnResized() override;
	void OnEnabledChanged() override;
	void ApplyColors() override;
	void OnMouseEnter(int x, int y, int modifiers) override;
	void OnMouseLeave(int x, int y, int modifiers) override;
	bool OnWheelUp(int x, int y, int modifiers) override;
	bool OnWheelDown(int x, int y, int modifiers) override;

private:
	class TText;

	void OnValueChanged(TObservable* value, int32_t reason);
	void SetFromText(const TString& text);
	void StepBy(int64_t step);
	void CoarseUp(int mouseButton);
	void CoarseDown(int mouseButton);
	void FineUp(int mouseButton);
	void FineDown(int mouseButton);
	TValueRange Range() const;
	void OnEdit();
	void ShowHovered(bool hovered);
	void Layout();
	/// In coordinates of the view.
	TRectT<int> BoxRect() const;

	TWeakPtr<TLinkedViewValue<T>> mValue;
	const T mMinimum;
	const T mMaximum;
	TPtr<TValueConverter<T>> mpConverter;
	bool mShowSteppers = true;
	TOwnerPtr<TText> mText;
	TPtr<TTextField> mField;
	TPtr<TTextView> mTitle;
	TPtr<TIncDecButtonPair> mCoarse;
	TPtr<TIncDecButtonPair> mFine;
};

extern template class TValueBox<int>;
