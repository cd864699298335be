// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/xml/XmlText.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>
#include <string_view>

namespace {

bool IsXmlUnit(int64_t code) {
	return code == 9 || code == 10 || code == 13 || (code >= 32 && code <= 55295) || (code >= 57344 && code <= 65533);
}

/// A number as a decimal integer reads: as much of the text as is one.
std::optional<int64_t> ReadDecimal(std::u16string_view text) {
	std::string digits;
	for (const char16_t unit : text)
		digits += unit < 128 ? static_cast<char>(unit) : '?';
	int64_t value = 0;
	const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
	const bool isWhole = result.ec == std::errc() && result.ptr == digits.data() + digits.size();
	return isWhole ? std::optional(value) : std::nullopt;
}

/// The unit that "&...;" stands for, if Encode has made it.
std::optional<char16_t> UnitBehind(std::u16string_view reference) {
	if (!reference.starts_with(u"&#"))
		return std::nullopt;
	const auto code = ReadDecimal(reference.substr(2, reference.size() - 3));
	if (!code || *code <= 0 || *code > 65535 || IsXmlUnit(*code))
		return std::nullopt;
	return static_cast<char16_t>(*code);
}

} // namespace

TString XmlText::Encode(const TString& text) {
	const std::u16string_view units = text.View();
	if (std::ranges::all_of(units, IsXmlUnit))
		return text;
	std::u16string encoded;
	for (const char16_t unit : units) {
		if (IsXmlUnit(unit)) {
			encoded += unit;
			continue;
		}
		encoded += u"&#";
		for (const char digit : std::to_string(static_cast<int>(unit)))
			encoded += static_cast<char16_t>(digit);
		encoded += u';';
	}
	return TString(encoded);
}

TString XmlText::Decode(const TString& text) {
	const std::u16string_view units = text.View();
	if (units.find(u'&') == std::u16string_view::npos)
		return text;
	std::u16string decoded;
	std::size_t done = 0;
	for (;;) {
		const std::size_t start = units.find(u'&', done);
		// A number holds no "&": looking no further keeps the work linear in hostile texts.
		const std::size_t end = start == std::u16string_view::npos ? start : units.find_first_of(u"&;", start + 1);
		if (end == std::u16string_view::npos)
			break;
		const auto unit =
		    units[end] == u';' ? UnitBehind(units.substr(start, end - start + 1)) : std::optional<char16_t>();
		decoded += units.substr(done, start - done);
		decoded += unit ? *unit : u'&';
		done = unit ? end + 1 : start + 1;
	}
	decoded += units.substr(done);
	return TString(decoded);
}
