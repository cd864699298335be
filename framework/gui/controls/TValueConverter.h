// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TReferenceCountable.h"
#include "framework/foundation/text/TString.h"

/// Two ends that values lie between.
struct TValueRange {
	float mMinimum = 0.0f;
	float mMaximum = 1.0f;

	constexpr float Length() const { return mMaximum - mMinimum; }

	friend constexpr bool operator==(const TValueRange&, const TValueRange&) = default;
};

/// How a control shows its value and what a gesture does to it. The control keeps its value in a range of its own
/// (`range` below); the converter has the range that the user reads, in a unit. T is float or int. Main thread.
template <class T>
class TValueConverter : public TReferenceCountable {
public:
	/// The format is one of printf for one number, for the type T.
	explicit TValueConverter(TValueRange displayRange, const TString& unit = TString());

	/// What a step of the control is, at a value; on a logarithmic scale smaller towards the minimum.
	virtual T DragAmountAt(TValueRange range, T value) const;
	/// Where no value is at hand: the step at the far end, which is the largest.
	virtual T DragAmount(TValueRange range) const;
	/// With the modifier for fine work.
	virtual T FineAmountAt(TValueRange range, T value) const;
	virtual T FineAmount(TValueRange range) const;
	/// With the unit.
	virtual TString ToString(TValueRange range, T value) const;
	/// False when the text does not parse; the result is then left alone.
	virtual bool FromString(TValueRange range, const TString& text, T& value) const;
	/// A position from 0 to `steps`, as of a slider.
	virtual T ValueFromPosition(float position, float steps, TValueRange range) const;
	virtual float PositionFromValue(TValueRange range, float steps, T value) const;
	/// What `pixels` of a way of `travel` pixels change.
	virtual T DeltaFromPixels(float pixels, float travel, TValueRange range) const;
	virtual T ToDisplay(TValueRange range, T value) const;
	virtual T FromDisplay(TValueRange range, T display) const;

	const TValueRange& DisplayRange() const noexcept { return mRange; }

	const TString& Unit() const noexcept { return mUnit; }

	/// What the value is, for those who show it with its name.
	const TString& Label() const noexcept { return mLabel; }

	void SetLabel(const TString& label) { mLabel = label; }

	/// For every value but 1.
	void SetPluralUnit(const TString& unit) { mPluralUnit = unit; }

	/// The unit is a plural whose last letter goes when the value is 1.
	void SetDropPluralS(bool drop) { mDropPluralS = drop; }

	void SetFormat(const TString& format) { mFormat = format; }

	/// The step in the unit of the display range.
	void SetScale(float scale) { mScale = scale; }

	void SetLogarithmic(bool logarithmic) { mLogarithmic = logarithmic; }

private:
	TString UnitFor(T display) const;

	TValueRange mRange;
	TString mUnit;
	TString mPluralUnit;
	bool mDropPluralS = false;
	TString mLabel;
	TString mFormat;
	float mScale = 1.0f;
	bool mLogarithmic = false;
};

extern template class TValueConverter<float>;
extern template class TValueConverter<int>;
