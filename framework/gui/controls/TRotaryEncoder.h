// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/controls/TControl.h"
#include "framework/gui/controls/TValueConverter.h"

/// A ring that is turned by dragging up and down. T is float. Main thread.
template <class T>
class TRotaryEncoder : public TControl {
public:
	static constexpr int kDefaultSize = 36;

	enum TDrawMode : int32_t { kFromMinimum = 0, kFromMiddle = 1 };

	/// The value may go before the encoder.
	TRotaryEncoder(TValue<T>* value, TValueRange range = {});

	/// kFromMiddle also lets the value catch in the middle of the range.
	void SetDrawMode(int mode);
	/// Where a double click leads.
	void SetDefault(T value) { mDefault = value; }

	/// Lets the value catch there.
	void SetSnapToDefault(bool snap) { mSnapToDefault = snap; }

	void SetConverter(const TPtr<TValueConverter<T>>& converter);

	bool IsHighlighted() const noexcept { return mHighlighted; }

	/// Called when a gesture begins, with whether it is the right mouse button's.
	void SetGestureAction(const TFunctionPtr<void, bool>& action) { mGestureAction = action; }

	T Value() const;
	/// The value's text, as the converter has it.
	TString ValueText() const;

	void Draw(TSurface& port) override;
	void OnEnabledChanged() override;
	void OnMouseEnter(int x, int y, int modifiers) override;
	void OnMouseLeave(int x, int y, int modifiers) override;
	void OnMouseCaptureReleased(int x, int y, int modifiers) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnRightMouseDown(int x, int y, int modifiers) override;
	bool OnMouseDrag(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;
	bool OnLeftDoubleClick(int x, int y, int modifiers) override;

private:
	void OnValueChanged(TObservable* value, int32_t reason);
	bool BeginGesture(int x, int y, bool isRightButton);
	float PixelsForRange(bool fine) const;
	T CaughtAt(T value, float pixels) const;
	void SetValue(T value);
	/// Pixels since the last time; 0 while they are too few to count.
	int TakeWayUp(int x, int y);
	void KeepMouseInside(int x, int y);
	void SetHighlighted(bool highlighted);

	TWeakPtr<TValue<T>> mValue;
	T mLastValue{}; // what is shown when the value has gone
	int mDrawMode = kFromMinimum;
	TValueRange mRange;
	T mDefault{};
	T mValueAtPress{};
	bool mResetting = false;
	bool mDragged = false;
	int mSavedCursor = kInheritCursor;
	bool mCursorIsHidden = false;
	TPointT<int> mPressPoint;
	TPointT<int> mLastMousePoint;
	bool mHighlighted = false;
	bool mSnapToDefault = false;
	TPtr<TValueConverter<T>> mpConverter;
	TFunctionPtr<void, bool> mGestureAction;
};

extern template class TRotaryEncoder<float>;
