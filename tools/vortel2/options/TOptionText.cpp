// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/options/TOptionText.h"

#include "document/TVortelParameterTable.h"
#include "tools/vortel2/files/ToolErrors.h"
#include "tools/vortel2/options/Nearest.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace {

/// More than a day's work for any sound file, and far from the end of what a sample count can hold.
constexpr double kLongestTime = 1e6;

std::string_view WithoutPlus(std::string_view text) {
	const bool hasPlus = text.size() > 1 && text[0] == '+' && text[1] != '-';
	return hasPlus ? text.substr(1) : text;
}

/// The number of characters read, 0 if the text does not begin with a finite number.
template <class T>
std::size_t ReadNumber(std::string_view text, T& value) {
	const std::string_view digits = WithoutPlus(text);
	const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
	if (error != std::errc() || !std::isfinite(static_cast<double>(value)))
		return 0;
	return static_cast<std::size_t>(end - text.data());
}

std::string InWords(double value) {
	char buffer[32];
	const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
	return {buffer, end};
}

/// In a row's place device 0 is the randomizer; its other prefix is that of the master's parameters.
std::string_view DevicePrefix(int32_t device) {
	return device == 0 ? "RND" : TVortelParameterTable::Device(device).mPrefix;
}

} // namespace

double TOptionText::Number(double minimum, double maximum) const {
	double value = 0.0;
	if (mText.empty() || ReadNumber(mText, value) != mText.size())
		Fail("is not a number");
	if (value < minimum || value > maximum)
		FailRange(InWords(minimum), InWords(maximum));
	return value;
}

int32_t TOptionText::Integer(int32_t minimum, int32_t maximum) const {
	return static_cast<int32_t>(WholeNumber(minimum, maximum));
}

uint32_t TOptionText::RandomSeed() const {
	return static_cast<uint32_t>(WholeNumber(0, std::numeric_limits<uint32_t>::max()));
}

bool TOptionText::IsNumber() const {
	double value = 0.0;
	return !mText.empty() && ReadNumber(mText, value) == mText.size();
}

int64_t TOptionText::WholeNumber(int64_t minimum, int64_t maximum) const {
	int64_t value = 0;
	if (mText.empty() || ReadNumber(mText, value) != mText.size())
		Fail("is not a whole number");
	if (value < minimum || value > maximum)
		FailRange(std::to_string(minimum), std::to_string(maximum));
	return value;
}

double TOptionText::Seconds() const {
	return Number(0.0, kLongestTime);
}

float TOptionText::Fraction() const {
	return static_cast<float>(Number(0.0, 1.0));
}

bool TOptionText::OnOff() const {
	static constexpr std::string_view kWords[] = {"off", "on"};
	return Choice(kWords) == 1;
}

int32_t TOptionText::Choice(std::span<const std::string_view> choices) const {
	std::string list;
	for (std::size_t i = 0; i < choices.size(); ++i) {
		if (mText == choices[i])
			return static_cast<int32_t>(i);
		list += (i == 0 ? "" : i + 1 == choices.size() ? " or " : ", ") + std::string(choices[i]);
	}
	Fail("is not " + list);
}

int32_t TOptionText::Device() const {
	std::vector<std::string> prefixes;
	for (int32_t device = 0; device < TVortelParameterTable::kNumberOfDevices; ++device) {
		prefixes.emplace_back(DevicePrefix(device));
		if (LowerCase(mText) == LowerCase(prefixes.back()) || mText == std::to_string(device))
			return device;
	}
	Fail("is not a device: 0 to 10, " + Listed(prefixes));
}

std::vector<TOptionText> TOptionText::List() const {
	std::vector<TOptionText> parts;
	std::size_t start = 0;
	for (std::size_t comma; (comma = mText.find(',', start)) != std::string::npos; start = comma + 1)
		parts.push_back(Part(mText.substr(start, comma - start)));
	parts.push_back(Part(mText.substr(start)));
	return parts;
}

std::pair<TOptionText, TOptionText> TOptionText::SplitAt(char separator, std::string_view form) const {
	const auto [before, behind] = SplitIf(std::string_view(&separator, 1));
	if (!behind)
		Fail("is not of the form " + std::string(form));
	return {before, *behind};
}

std::pair<TOptionText, std::optional<TOptionText>> TOptionText::SplitIf(std::string_view separator) const {
	const std::size_t position = mText.find(separator);
	if (position == std::string::npos)
		return {*this, std::nullopt};
	return {Part(mText.substr(0, position)), Part(mText.substr(position + separator.size()))};
}

std::pair<double, std::string> TOptionText::LeadingSeconds() const {
	double value = 0.0;
	const std::size_t length = ReadNumber(mText, value);
	if (length == 0)
		Fail("is not a number");
	return {Part(mText.substr(0, length)).Seconds(), mText.substr(length)};
}

void TOptionText::Fail(const std::string& reason) const {
	throw TUsageError(mOption + ": \"" + mText + "\" " + reason);
}

void TOptionText::FailEmpty() const {
	throw TUsageError(mOption + ": is empty; a variable that is not set?");
}

void TOptionText::FailRange(const std::string& minimum, const std::string& maximum) const {
	Fail("is not between " + minimum + " and " + maximum);
}
