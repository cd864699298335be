// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/documents/ParameterText.h"

#include "tools/vortel2/options/Nearest.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string_view>

namespace {

/// What fills the ids that a device leaves over: no name to choose one of them by.
constexpr std::string_view kPlaceholder = "Unused";
/// Numbers are shown with few digits, and a range's ends are floats.
constexpr double kTolerance = 1e-5;

std::string_view Trimmed(std::string_view text) {
	const std::size_t first = text.find_first_not_of(" \t");
	return first == std::string_view::npos ? std::string_view()
	                                       : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> words) {
	const std::string lower = LowerCase(text);
	return std::find(words.begin(), words.end(), lower) != words.end();
}

/// Takes a number and the blanks behind it from the front. False leaves the text alone.
bool TakeNumber(std::string_view& text, double& number) {
	const std::string_view digits = text.starts_with('+') ? text.substr(1) : text;
	const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
	if (error != std::errc() || !std::isfinite(number))
		return false;
	text = Trimmed(text.substr(static_cast<std::size_t>(end - text.data())));
	return true;
}

/// What a strict reader makes of a text: the real value, and what it cannot explain.
struct TReading {
	bool mIsNumber = false;
	double mReal = 0.0;
	std::string_view mLeftOver{};
};

TReading ReadNumberWithUnit(std::string_view text, const TVortelValueConverter& converter) {
	const std::string prefix(Trimmed(converter.Prefix().CString()));
	if (!prefix.empty() && text.starts_with(prefix))
		text = Trimmed(text.substr(prefix.size()));
	TReading reading;
	reading.mIsNumber = TakeNumber(text, reading.mReal);
	const std::string unit = LowerCase(converter.Unit().CString());
	const std::string one = unit.ends_with('s') && unit.size() > 2 ? unit.substr(0, unit.size() - 1) : unit;
	if (!IsOneOf(text, {"", unit, one, one + "s"}))
		reading.mLeftOver = text;
	return reading;
}

/// Parts of a bar of four beats: "4 beats", "1 / 16th", "16".
TReading ReadBeatTime(std::string_view text) {
	TReading reading;
	reading.mIsNumber = TakeNumber(text, reading.mReal);
	if (IsOneOf(text, {"beat", "beats"})) {
		reading.mReal = 4.0 / reading.mReal;
		text = {};
	} else if (reading.mReal == 1.0 && text.starts_with('/')) {
		text = Trimmed(text.substr(1));
		reading.mIsNumber = TakeNumber(text, reading.mReal);
	}
	if (!IsOneOf(text, {"", "st", "nd", "rd", "th"}))
		reading.mLeftOver = text;
	return reading;
}

/// Percent from the middle.
TReading ReadPanning(std::string_view text) {
	if (IsOneOf(text, {"center", "0"}))
		return {true, 0.5, {}};
	TReading reading;
	double percent = 0.0;
	reading.mIsNumber = TakeNumber(text, percent);
	const bool isRight = IsOneOf(text, {"r", "right"});
	if (percent != std::round(percent) || (!isRight && !IsOneOf(text, {"l", "left"})))
		reading.mLeftOver = text;
	// Beyond the other side is beyond the range, too.
	reading.mReal = percent < 0.0 ? -1.0 : 0.5 + (isRight ? percent : -percent) / 100.0;
	return reading;
}

TReading ReadStrictly(std::string_view text, EVortelCurve curve, const TVortelValueConverter& converter) {
	switch (curve) {
	case EVortelCurve::kEnum:
		return {true, 0.0, {}}; // the whole text is a name, or it does not parse
	case EVortelCurve::kBeatTime:
		return ReadBeatTime(text);
	case EVortelCurve::kPanning:
		return ReadPanning(text);
	case EVortelCurve::kBitDepth:
		if (text == "Original")
			return {true, static_cast<double>(converter.Range().mSecond), {}};
		break;
	case EVortelCurve::kLinear:
	case EVortelCurve::kFrequency:
		break;
	}
	return ReadNumberWithUnit(text, converter);
}

bool IsBetweenSteps(double real, EVortelCurve curve, const TVortelValueConverter& converter) {
	if (!converter.IsStepped() || curve == EVortelCurve::kEnum)
		return false;
	const double position = curve == EVortelCurve::kBeatTime ? std::log2(real) : real;
	return std::abs(position - std::round(position)) > kTolerance;
}

std::string Quoted(const std::string& text) {
	return "\"" + text + "\"";
}

/// "1 beat, 1 / 8th or 1 / 16th"
std::string StepsInWords(TVortelDocument& document, int32_t id) {
	const float step = document.Parameter(id)->Converter()->NormalizedStep();
	std::vector<std::string> texts;
	for (int32_t i = 0; static_cast<float>(i) * step < 1.0f + step / 2.0f; ++i)
		texts.emplace_back(document.ParameterValueText(id, static_cast<float>(i) * step).CString());
	return Listed(texts);
}

std::string PossibleValues(TVortelDocument& document, int32_t id) {
	const std::string unit = document.Parameter(id)->Converter()->Unit().CString();
	return RangeOf(document, id).InWords() + (unit.empty() ? "" : " " + unit);
}

/// Empty, and the value, if the parameter takes the text as it is meant; else why not.
std::string Read(TVortelDocument& document, int32_t id, const std::string& text, float& value) {
	const std::string name = TVortelParameterTable::HostName(id).CString();
	const TVortelValueConverter& converter = *document.Parameter(id)->Converter();
	const EVortelCurve curve = TVortelParameterTable::Declaration(id).mCurve;
	const std::string takes = "; " + name + " takes " + PossibleValues(document, id);
	float parsed = 0.0f;
	if (!ParseParameterText(document, id, text, parsed))
		return "is not a value of " + name + takes;
	const std::string unit = converter.Unit().CString();
	const std::string understood =
	    std::string(document.ParameterValueText(id, parsed).CString()) + (unit.empty() ? "" : " " + unit);
	const TReading reading = ReadStrictly(Trimmed(text), curve, converter);
	if (!reading.mIsNumber || !reading.mLeftOver.empty())
		return "would be read as " + Quoted(understood) + ", with " +
		       Quoted(std::string(reading.mIsNumber ? reading.mLeftOver : std::string_view(text))) + " left over" +
		       takes;
	const double slack = kTolerance * std::max(1.0, std::abs(reading.mReal));
	if (curve != EVortelCurve::kEnum && (reading.mReal < static_cast<double>(converter.Range().mFirst) - slack ||
	                                     reading.mReal > static_cast<double>(converter.Range().mSecond) + slack))
		return "is beyond the range and would be read as " + Quoted(understood) + takes;
	if (IsBetweenSteps(reading.mReal, curve, converter))
		return "would be read as " + Quoted(understood) + "; " + name + " takes " + StepsInWords(document, id) +
		       (curve == EVortelCurve::kBeatTime ? ", and what lies between where Mode is Free" : "");
	value = parsed;
	return {};
}

std::vector<std::string> AllNames() {
	std::vector<std::string> names;
	for (int32_t id = 0; id < TVortelDocument::kNumberOfParameters; ++id)
		if (!IsUnusedParameter(id))
			names.emplace_back(TVortelParameterTable::HostName(id).CString());
	return names;
}

/// The names, once each, of which the typed text is the beginning, or that part which stands behind the device.
std::vector<std::string> NamesWith(std::string_view beginning, bool behindDevice) {
	const std::string typed = LowerCase(beginning);
	std::vector<std::string> found;
	for (const std::string& name : AllNames()) {
		const std::string lower = LowerCase(name);
		const bool isMeant = (behindDevice ? lower.substr(lower.find(':') + 1) : lower).starts_with(typed);
		if (isMeant && std::find(found.begin(), found.end(), name) == found.end())
			found.push_back(name);
	}
	return found;
}

std::vector<int32_t> IdsOf(std::string_view name) {
	std::vector<int32_t> ids;
	for (int32_t id = 0; id < TVortelDocument::kNumberOfParameters; ++id)
		if (!IsUnusedParameter(id) && LowerCase(TVortelParameterTable::HostName(id).CString()) == LowerCase(name))
			ids.push_back(id);
	return ids;
}

} // namespace

bool IsUnusedParameter(int32_t id) {
	return TVortelParameterTable::Declaration(id).mName == kPlaceholder;
}

std::vector<int32_t> ParametersNamed(const TOptionText& name) {
	static constexpr std::size_t kMostCandidates = 8;
	if (std::vector<int32_t> ids = IdsOf(name.Text()); !ids.empty())
		return ids;
	std::vector<std::string> candidates =
	    name.Text().empty() ? std::vector<std::string>() : NamesWith(name.Text(), false);
	if (candidates.size() == 1)
		return IdsOf(candidates.front());
	if (candidates.size() > kMostCandidates) {
		candidates.resize(kMostCandidates - 1);
		candidates.emplace_back("others");
	}
	if (!candidates.empty())
		name.Fail("is the beginning of " + Listed(candidates, " and "));
	const std::vector<std::string> ofDevices =
	    name.Text().empty() ? std::vector<std::string>() : NamesWith(name.Text(), true);
	const bool isPart = !ofDevices.empty() && ofDevices.size() <= kMostCandidates;
	name.Fail(
	    "is not the name of a parameter" +
	    (isPart ? "; did you mean " + Listed(ofDevices) + "?" : DidYouMean(name.Text(), AllNames())));
}

TParameterSetting
ReadParameterText(TVortelDocument& document, const std::vector<int32_t>& ids, const TOptionText& text) {
	std::vector<std::string> reasons;
	std::vector<std::string> possible;
	for (const int32_t id : ids) {
		float value = 0.0f;
		reasons.push_back(Read(document, id, text.Text(), value));
		if (reasons.back().empty())
			return {id, value};
		possible.push_back(PossibleValues(document, id));
	}
	if (ids.size() == 1)
		text.Fail(reasons.front());
	const std::string name = TVortelParameterTable::HostName(ids.front()).CString();
	text.Fail("is not a value of " + name + ", which takes " + Listed(possible, ", and as the other of this name "));
}

TParameterSetting ReadParameter(TVortelDocument& document, const TOptionText& parameter, const TOptionText& value) {
	if (parameter.IsNumber())
		return {parameter.Integer(0, TVortelDocument::kNumberOfParameters - 1), value.Fraction()};
	return ReadParameterText(document, ParametersNamed(parameter), value);
}

std::string TParameterRange::InWords() const {
	return mNames.empty() ? mFirst + " to " + mLast : Listed(mNames);
}

TParameterRange RangeOf(TVortelDocument& document, int32_t id) {
	TParameterRange range;
	for (const char* name : TVortelParameterTable::Declaration(id).mNames)
		range.mNames.emplace_back(name);
	if (range.mNames.empty()) {
		range.mFirst = document.ParameterValueText(id, 0.0f).CString();
		range.mLast = document.ParameterValueText(id, 1.0f).CString();
	}
	return range;
}

bool ParseParameterText(TVortelDocument& document, int32_t id, const std::string& text, float& value) {
	// A parameter would take "inf" into its range.
	const double number = std::strtod(text.c_str(), nullptr);
	float parsed = 0.0f;
	if (!std::isfinite(number) || !document.ParameterValueFromText(id, TString(text.c_str(), kUtf8Encoding), parsed) ||
	    !std::isfinite(parsed))
		return false;
	value = parsed;
	return true;
}
