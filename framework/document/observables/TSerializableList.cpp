// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/observables/TSerializableList.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <system_error>

namespace {

constexpr char16_t kSeparator = u' ';
constexpr char16_t kEscape = u'\\';

std::size_t EndOfElement(std::u16string_view text) {
	std::size_t end = 0;
	while (end < text.size() && !(text[end] == kSeparator && (end == 0 || text[end - 1] != kEscape)))
		++end;
	return end;
}

bool IsNumberUnit(char16_t unit) {
	return (unit >= u'0' && unit <= u'9') || unit == u'.' || unit == u'-' || unit == u'e';
}

// Files hold hundreds of thousands of plain numbers: those take no text of their own.
template <class T>
bool ParsePlainNumber(std::u16string_view text, T& value) {
	std::array<char, 32> bytes{};
	if (text.size() > bytes.size())
		return false;
	for (std::size_t i = 0; i < text.size(); ++i) {
		if (!IsNumberUnit(text[i]))
			return false;
		bytes[i] = static_cast<char>(text[i]);
	}
	const char* end = bytes.data() + text.size();
	const auto [stop, error] = std::from_chars(bytes.data(), end, value);
	return error == std::errc() && stop == end;
}

template <class T>
void AppendNumber(std::string& line, T value) {
	TString::TNumberBuffer buffer;
	if (!line.empty())
		line += ' ';
	line += TString::NumberText(value, buffer);
}

template <class T>
T ParseNumber(std::u16string_view text) {
	T value{};
	if (ParsePlainNumber(text, value))
		return value;
	TString element(text);
	element.ReplaceAll("\\ ", " ");
	return TString::FromStringOrZero<T>(element);
}

} // namespace

int32_t TSerializableListBase::CountElements(std::u16string_view text) {
	if (text.empty())
		return 0;
	int32_t count = 1;
	for (std::size_t end = EndOfElement(text); end < text.size(); end = EndOfElement(text)) {
		text.remove_prefix(end + 1);
		++count;
	}
	return count;
}

std::u16string_view TSerializableListBase::TakeElement(std::u16string_view& text) {
	const std::size_t end = EndOfElement(text);
	const std::u16string_view element = text.substr(0, end);
	text.remove_prefix(end < text.size() ? end + 1 : end);
	return element;
}

template <>
void TSerializableListBase::AppendElement<int>(std::string& line, int value) {
	AppendNumber(line, value);
}

template <>
void TSerializableListBase::AppendElement<float>(std::string& line, float value) {
	AppendNumber(line, value);
}

template <>
int TSerializableListBase::ParseElement<int>(std::u16string_view text) {
	return ParseNumber<int>(text);
}

template <>
float TSerializableListBase::ParseElement<float>(std::u16string_view text) {
	return ParseNumber<float>(text);
}
