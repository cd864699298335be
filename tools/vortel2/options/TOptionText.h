// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What stands behind an option on the command line, and the strict reading of it: the whole text must be of the form
/// asked for, numbers must be finite and in range. Everything throws a TUsageError that names the option.
class TOptionText {
public:
	TOptionText(std::string option, std::string text) : mOption(std::move(option)), mText(std::move(text)) {}

	const std::string& Option() const noexcept { return mOption; }

	const std::string& Text() const noexcept { return mText; }

	/// Both bounds included. No locale.
	double Number(double minimum, double maximum) const;
	int32_t Integer(int32_t minimum, int32_t maximum) const;
	/// What the general generator's state may be set to.
	uint32_t RandomSeed() const;
	bool IsNumber() const;
	/// A time on the sound's own axis, which begins at 0.
	double Seconds() const;
	/// Normalised, 0 to 1.
	float Fraction() const;
	bool OnOff() const;
	/// The index of the text among the choices.
	int32_t Choice(std::span<const std::string_view> choices) const;
	/// A device index 0 to 10, given as such or as the prefix that hosts show.
	int32_t Device() const;

	/// The parts between commas; at least one.
	std::vector<TOptionText> List() const;
	/// Before and behind the first separator; form says in words what was expected.
	std::pair<TOptionText, TOptionText> SplitAt(char separator, std::string_view form) const;
	/// The same where the second half may be missing.
	std::pair<TOptionText, std::optional<TOptionText>> SplitIf(std::string_view separator) const;
	/// A number at the front, and what stands behind it.
	std::pair<double, std::string> LeadingSeconds() const;

	[[noreturn]] void Fail(const std::string& reason) const;
	[[noreturn]] void FailEmpty() const;

private:
	TOptionText Part(std::string text) const { return {mOption, std::move(text)}; }

	int64_t WholeNumber(int64_t minimum, int64_t maximum) const;
	[[noreturn]] void FailRange(const std::string& minimum, const std::string& maximum) const;

	std::string mOption;
	std::string mText;
};
