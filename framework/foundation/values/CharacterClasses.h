// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cwctype>

/// Classes and case of single UTF-16 units. ASCII is the same in every locale, so that what files and paths are made of
/// does not change with the host's; everything else is as the current locale has it.
namespace CharacterClasses {

constexpr bool IsAscii(char16_t unit) noexcept {
	return unit < 128;
}

constexpr bool IsBetween(char16_t unit, char16_t first, char16_t last) noexcept {
	return first <= unit && unit <= last;
}

inline char16_t ToLower(char16_t unit) noexcept {
	if (IsAscii(unit))
		return IsBetween(unit, u'A', u'Z') ? static_cast<char16_t>(unit + 32) : unit;
	return static_cast<char16_t>(std::towlower(unit));
}

inline char16_t ToUpper(char16_t unit) noexcept {
	if (IsAscii(unit))
		return IsBetween(unit, u'a', u'z') ? static_cast<char16_t>(unit - 32) : unit;
	return static_cast<char16_t>(std::towupper(unit));
}

inline bool IsWhiteSpace(char16_t unit) noexcept {
	return IsAscii(unit) ? unit == u' ' || IsBetween(unit, 9, 13) : std::iswspace(unit) != 0;
}

inline bool IsAlphanumeric(char16_t unit) noexcept {
	if (IsAscii(unit))
		return IsBetween(unit, u'0', u'9') || IsBetween(ToLower(unit), u'a', u'z');
	return std::iswalnum(unit) != 0;
}

inline bool IsPunctuation(char16_t unit) noexcept {
	return IsAscii(unit) ? IsBetween(unit, 33, 126) && !IsAlphanumeric(unit) : std::iswpunct(unit) != 0;
}

} // namespace CharacterClasses
