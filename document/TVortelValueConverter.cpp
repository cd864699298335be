// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelValueConverter.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr const char* kWholeFormat = "%.0f";
constexpr const char* kTwoDigitsFormat = "%.2f";
constexpr const char* kOriginal = "Original";
constexpr const char* kCenter = "Center";

// Not-a-number fails both comparisons of a plain clamp; here it gives the minimum.
float Clamp(float value, float minimum, float maximum) noexcept {
	return value >= minimum ? std::min(value, maximum) : minimum;
}

float ClampNormalized(float value) noexcept {
	return Clamp(value, 0.0f, 1.0f);
}

float RoundIf(bool condition, float value) noexcept {
	return condition ? std::round(value) : value;
}

float Log2(float value) noexcept {
	return static_cast<float>(std::log2(static_cast<double>(value)));
}

float Exp2(float exponent) noexcept {
	return static_cast<float>(std::exp2(static_cast<double>(exponent)));
}

bool Contains(const TString& text, const char* part) {
	return text.FindIgnoringCase(part) >= 0;
}

const char* OrdinalEnding(int value) noexcept {
	if (value % 100 - value % 10 == 10)
		return "th";
	switch (value % 10) {
	case 1:
		return "st";
	case 2:
		return "nd";
	case 3:
		return "rd";
	default:
		return "th";
	}
}

} // namespace

TVortelValueConverter::TVortelValueConverter(
    TRange range, const TString& format, const TString& unit, const TString& prefix, bool stepped)
    : mRange(range),
      mFormat(format),
      mScanFormat("%f"),
      mUnit(unit),
      mPrefix(prefix),
      mStepped(stepped) {}

TString TVortelValueConverter::TextFromNormalized(float normalized) const {
	return TextFromReal(RealFromNormalized(normalized), IsStepped() ? TString(kWholeFormat) : mFormat);
}

bool TVortelValueConverter::NormalizedFromText(float* result, const TString& text) const {
	float real = 0.0f;
	if (!ScanReal(text, real))
		return false;
	*result = NormalizedFromReal(ClampToRange(real));
	return true;
}

float TVortelValueConverter::RealFromNormalized(float normalized) const noexcept {
	return ClampToRange(RoundIf(IsStepped(), mRange.mFirst + normalized * (mRange.mSecond - mRange.mFirst)));
}

float TVortelValueConverter::NormalizedFromReal(float real) const noexcept {
	return ClampNormalized((RoundIf(IsStepped(), real) - mRange.mFirst) / (mRange.mSecond - mRange.mFirst));
}

float TVortelValueConverter::SteppedNeighbour(float normalized, int32_t direction) const noexcept {
	const float step = NormalizedStep();
	return (std::round(normalized / step) + static_cast<float>(direction)) * step;
}

TString TVortelValueConverter::TextFromReal(float real, const TString& format) const {
	return mPrefix + TString::ToString(real, format);
}

bool TVortelValueConverter::ScanReal(const TString& text, float& real) const {
	TString number = text;
	number.ReplaceFirst(mPrefix, TString());
	float scanned = 0.0f;
	if (!TString::FromString(number, scanned, mScanFormat) || std::isnan(scanned))
		return false;
	real = scanned;
	return true;
}

float TVortelValueConverter::ClampToRange(float real) const noexcept {
	return Clamp(real, mRange.mFirst, mRange.mSecond);
}

TVortelPowerOfTwoValueConverter::TVortelPowerOfTwoValueConverter(
    TRange range, const TString& format, const TString& unit, const TString& prefix, bool stepped)
    : TVortelValueConverter(range, format, unit, prefix, stepped),
      mLog2Minimum(Log2(range.mFirst)),
      mLog2Maximum(Log2(range.mSecond)) {}

TString TVortelPowerOfTwoValueConverter::TextFromNormalized(float normalized) const {
	return TextFromReal(RealFromNormalized(normalized), IsStepped() ? kWholeFormat : kTwoDigitsFormat);
}

// The curve enters through the virtual NormalizedFromReal.
bool TVortelPowerOfTwoValueConverter::NormalizedFromText(float* result, const TString& text) const {
	return TVortelValueConverter::NormalizedFromText(result, text);
}

float TVortelPowerOfTwoValueConverter::RealFromNormalized(float normalized) const noexcept {
	return ClampToRange(Exp2(RoundIf(IsStepped(), mLog2Minimum + normalized * (mLog2Maximum - mLog2Minimum))));
}

float TVortelPowerOfTwoValueConverter::NormalizedFromReal(float real) const noexcept {
	const float exponent = RoundIf(IsStepped(), Log2(ClampToRange(real)));
	return ClampNormalized((exponent - mLog2Minimum) / (mLog2Maximum - mLog2Minimum));
}

TString TVortelBeatTimeValueConverter::TextFromNormalized(float normalized) const {
	const bool stepped = IsStepped();
	const TString format = stepped ? kWholeFormat : kTwoDigitsFormat;
	const float real = RealFromNormalized(normalized);
	if (real <= 4.0f) {
		const float beats = 4.0f / real;
		return TString::ToString(beats, format) + (beats == 1.0f ? " beat" : " beats");
	}
	const TString text = TString("1 / ") + TString::ToString(real, format);
	return stepped ? text + OrdinalEnding(static_cast<int>(real)) : text;
}

bool TVortelBeatTimeValueConverter::NormalizedFromText(float* result, const TString& text) const {
	float real = 0.0f;
	if (Contains(text, "beat")) {
		TString number = text;
		number.RemoveAllIgnoringCase("beats");
		number.RemoveAllIgnoringCase("beat");
		float beats = 0.0f;
		if (!ScanReal(number, beats) || beats <= 0.0f)
			return false;
		real = 4.0f / beats;
	} else if (Contains(text, "/")) {
		const auto parts = text.Split('/');
		if (parts.Count() != 2 || !ScanReal(parts[1], real))
			return false;
	} else if (!ScanReal(text, real)) {
		return false;
	}
	*result = NormalizedFromReal(ClampToRange(real));
	return true;
}

TVortelEnumValueConverter::TVortelEnumValueConverter(std::span<const char* const> names, const TString& prefix)
    : TVortelValueConverter(
          {0.0f, static_cast<float>(std::max<std::size_t>(names.size(), 1) - 1)}, kWholeFormat, TString(), prefix),
      mNames(names.begin(), names.end()) {}

TString TVortelEnumValueConverter::TextFromNormalized(float normalized) const {
	if (mNames.empty())
		return mPrefix;
	return mPrefix + mNames[static_cast<std::size_t>(RealFromNormalized(normalized))];
}

bool TVortelEnumValueConverter::NormalizedFromText(float* result, const TString& text) const {
	for (std::size_t i = 0; i < mNames.size(); ++i) {
		if (text == mPrefix + mNames[i]) {
			*result = NormalizedFromReal(static_cast<float>(i));
			return true;
		}
	}
	return false;
}

float TVortelEnumValueConverter::RealFromNormalized(float normalized) const noexcept {
	return ClampToRange(std::round(mRange.mSecond * normalized));
}

float TVortelEnumValueConverter::NormalizedFromReal(float real) const noexcept {
	return mNames.size() < 2 ? 0.0f : ClampNormalized(real / mRange.mSecond);
}

float TVortelFrequencyValueConverter::RealFromNormalized(float normalized) const noexcept {
	if (!(normalized > 0.0f))
		return mRange.mFirst;
	const double part = (std::pow(100.0, normalized) - 1.0) / 99.0;
	return ClampToRange(static_cast<float>(mRange.mFirst + (mRange.mSecond - mRange.mFirst) * part));
}

float TVortelFrequencyValueConverter::NormalizedFromReal(float real) const noexcept {
	const float part = (real - mRange.mFirst) / (mRange.mSecond - mRange.mFirst);
	if (!(part > 0.0f))
		return 0.0f;
	return ClampNormalized(static_cast<float>(std::log10(99.0 * part + 1.0) / 2.0));
}

TVortelPanningValueConverter::TVortelPanningValueConverter() : TVortelValueConverter({0.0f, 1.0f}, kTwoDigitsFormat) {}

TString TVortelPanningValueConverter::TextFromNormalized(float normalized) const {
	const float offset = (ClampNormalized(normalized) - 0.5f) * 100.0f;
	const auto percent = static_cast<int>(std::abs(offset) + 0.5f);
	if (offset == 0.0f)
		return kCenter;
	return TString::ToString(percent) + (offset > 0.0f ? " R" : " L");
}

bool TVortelPanningValueConverter::NormalizedFromText(float* result, const TString& text) const {
	TString trimmed = text;
	trimmed.Trim();
	if (Contains(text, kCenter) || trimmed == "0") {
		*result = 0.5f;
		return true;
	}
	const bool right = Contains(text, "r");
	int percent = 0;
	if ((!right && !Contains(text, "l")) || !TString::FromString(text, percent))
		return false;
	const float offset = static_cast<float>(percent) / 100.0f;
	*result = ClampNormalized(right ? 0.5f + offset : 0.5f - offset);
	return true;
}

TString TVortelLofiBitDepthConverter::TextFromNormalized(float normalized) const {
	if (RealFromNormalized(normalized) >= mRange.mSecond)
		return kOriginal;
	return TVortelValueConverter::TextFromNormalized(normalized);
}

bool TVortelLofiBitDepthConverter::NormalizedFromText(float* result, const TString& text) const {
	if (text != kOriginal)
		return TVortelValueConverter::NormalizedFromText(result, text);
	*result = 1.0f;
	return true;
}
