// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/text/Utf8Text.h"

#include <cstdint>

namespace {

constexpr char32_t kReplacement = 0xFFFD;

void Put(char32_t character, std::u16string& units) {
	if (character < 0x10000) {
		units += static_cast<char16_t>(character);
		return;
	}
	character -= 0x10000;
	units += static_cast<char16_t>(0xD800 + (character >> 10));
	units += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
}

/// The character at the beginning and its length; one byte of no sense is a replacement.
std::pair<char32_t, std::size_t> First(std::string_view bytes) {
	const auto byte = [&](std::size_t i) { return static_cast<uint8_t>(bytes[i]); };
	const uint8_t lead = byte(0);
	if (lead < 0x80)
		return {lead, 1};
	const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
	constexpr char32_t kSmallest[]{0, 0, 0x80, 0x800, 0x10000};
	if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length)
		return {kReplacement, 1};
	char32_t character = lead & (0x7Fu >> length);
	for (std::size_t i = 1; i < length; ++i) {
		if ((byte(i) & 0xC0) != 0x80)
			return {kReplacement, 1};
		character = character << 6 | (byte(i) & 0x3F);
	}
	const bool isSurrogate = character >= 0xD800 && character < 0xE000;
	if (character < kSmallest[length] || character > 0x10FFFF || isSurrogate)
		return {kReplacement, 1};
	return {character, length};
}

} // namespace

TString TextOfUtf8(std::string_view bytes) {
	std::u16string units;
	units.reserve(bytes.size());
	while (!bytes.empty()) {
		const auto [character, length] = First(bytes);
		if (character != 0) // a zero would end the text
			Put(character, units);
		bytes.remove_prefix(length);
	}
	return TString(std::u16string_view(units));
}

std::string Utf8Of(const TString& text) {
	std::string bytes;
	text.ToBytes(bytes, kUtf8Encoding);
	return bytes;
}

TString TextOfLatin1(std::string_view bytes) {
	std::u16string units;
	for (const char byte : bytes)
		if (byte != 0)
			units += static_cast<uint8_t>(byte);
	return TString(std::u16string_view(units));
}
