// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/controls/TValueConverter.h"

#include <algorithm>
#include <cmath>
#include <concepts>

namespace {

// A logarithmic scale spans two decades; no step is smaller than a thousandth of the largest.
constexpr float kLogarithmicSpan = 100.0f;
constexpr float kSmallestLogarithmicStep = 0.001f;

float PositionIn(TValueRange range, float value) {
	return range.Length() > 0.0f ? (value - range.mMinimum) / range.Length() : 0.0f;
}

float LogarithmicStep(float position) {
	const float step =
	    position > 0.0f ? (std::pow(10.0f, std::log10(kLogarithmicSpan) * position) - 1.0f) / (kLogarithmicSpan - 1.0f)
	                    : 0.0f;
	return std::max(step, kSmallestLogarithmicStep);
}

float Rescaled(float value, TValueRange from, TValueRange to) {
	if (from == to)
		return value;
	if (from.Length() == 0.0f)
		return to.mMinimum;
	return (value - from.mMinimum) / from.Length() * to.Length() + to.mMinimum;
}

} // namespace

template <class T>
TValueConverter<T>::TValueConverter(TValueRange displayRange, const TString& unit)
    : mRange(displayRange),
      mUnit(unit),
      mFormat(std::same_as<T, int> ? "%d" : "%g") {}

template <class T>
T TValueConverter<T>::DragAmountAt(TValueRange range, T value) const {
	if (mRange.Length() == 0.0f)
		return T{};
	if (mLogarithmic)
		return static_cast<T>(mScale * LogarithmicStep(PositionIn(range, static_cast<float>(value))));
	if (range.Length() == mRange.Length())
		return static_cast<T>(mScale);
	return static_cast<T>(mScale * (range.Length() / mRange.Length()));
}

template <class T>
T TValueConverter<T>::DragAmount(TValueRange range) const {
	return DragAmountAt(range, static_cast<T>(range.mMaximum));
}

template <class T>
T TValueConverter<T>::FineAmountAt(TValueRange range, T value) const {
	return DragAmountAt(range, value);
}

template <class T>
T TValueConverter<T>::FineAmount(TValueRange range) const {
	return DragAmount(range);
}

template <class T>
TString TValueConverter<T>::ToString(TValueRange range, T value) const {
	const T display = ToDisplay(range, value);
	const TString number = TString::ToString(display, mFormat);
	const TString unit = UnitFor(display);
	return unit.IsEmpty() ? number : number + " " + unit;
}

template <class T>
TString TValueConverter<T>::UnitFor(T display) const {
	const bool isOne = display == T{1};
	if (!isOne && !mPluralUnit.IsEmpty())
		return mPluralUnit;
	return isOne && mDropPluralS ? mUnit.SubString(0, std::max(mUnit.Length() - 1, 0)) : mUnit;
}

template <class T>
bool TValueConverter<T>::FromString(TValueRange range, const TString& text, T& value) const {
	T display{};
	if (!TString::FromString(text, display, mFormat))
		return false;
	if constexpr (std::same_as<T, float>)
		if (!std::isfinite(display))
			return false;
	value = FromDisplay(range, display);
	return true;
}

template <class T>
T TValueConverter<T>::ValueFromPosition(float position, float steps, TValueRange range) const {
	if (!(steps > 0.0f))
		return static_cast<T>(range.mMinimum);
	const float value = position / steps * range.Length() + range.mMinimum;
	return static_cast<T>(std::clamp(value, range.mMinimum, range.mMaximum));
}

template <class T>
float TValueConverter<T>::PositionFromValue(TValueRange range, float steps, T value) const {
	if (range.Length() == 0.0f)
		return 0.0f;
	const float position = (static_cast<float>(value) - range.mMinimum) * steps / range.Length();
	return std::clamp(position, 0.0f, std::max(steps, 0.0f));
}

template <class T>
T TValueConverter<T>::DeltaFromPixels(float pixels, float travel, TValueRange range) const {
	if (travel == 0.0f || range.Length() == 0.0f)
		return T{};
	return static_cast<T>(pixels / travel * range.Length());
}

// The equal ranges are told apart here, not in floats: those do not hold every whole number.
template <class T>
T TValueConverter<T>::ToDisplay(TValueRange range, T value) const {
	return range == mRange ? value : static_cast<T>(Rescaled(static_cast<float>(value), range, mRange));
}

template <class T>
T TValueConverter<T>::FromDisplay(TValueRange range, T display) const {
	return range == mRange ? display : static_cast<T>(Rescaled(static_cast<float>(display), mRange, range));
}

template class TValueConverter<float>;
template class TValueConverter<int>;
