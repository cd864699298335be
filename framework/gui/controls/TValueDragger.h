// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/controls/TControl.h"

/// A whole number in a box, changed by a vertical drag or by the wheel. T is int. Main thread.
template <class T>
class TValueDragger : public TControl {
public:
	using TGetter = TFunctionPtr<T>;
	using TSetter = TFunctionPtr<void, T>;

	/// Which mouse buttons act with their press, beside dragging: by the action, else a step up by the left one and a
	/// step down by the right one.
	enum TClickMode : int32_t { kNoClick = 0, kLeftClick = 1, kRightClick = 2, kBothClicks = 3 };

	/// The getter is polled.
	TValueDragger(const TGetter& getter, const TSetter& setter, T minimum, T maximum);

	void SetStep(T step) { mStep = step; }

	/// Instead of the number; empty for the number.
	void SetDisplayText(const TString& text);
	void SetClickMode(int mode) { mClickMode = mode; }

	/// Called with whether it is the right mouse button.
	void SetClickAction(const TFunctionPtr<void, bool>& action) { mClickAction = action; }

	T Value() const { return mValue ? mValue->Get() : T{}; }

	TString DisplayedText() const;

	void Draw(TSurface& port) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnRightMouseDown(int x, int y, int modifiers) override;
	bool OnMouseDrag(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;
	void OnMouseCaptureReleased(int x, int y, int modifiers) override;
	bool OnWheelUp(int x, int y, int modifiers) override;
	bool OnWheelDown(int x, int y, int modifiers) override;

private:
	void OnValueChanged(TObservable* value, int32_t reason);
	bool Press(int y, bool isRightButton);
	void StepBy(int64_t steps);

	TWeakPtr<TLinkedViewValue<T>> mValue;
	T mMinimum;
	T mMaximum;
	T mStep{1};
	TString mDisplayText;
	int mClickMode = kNoClick;
	TFunctionPtr<void, bool> mClickAction;
	bool mDragging = false;
	int mLastY = 0;
};

extern template class TValueDragger<int>;
