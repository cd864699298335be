// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/headless/UsKeyboard.h"

#include "platform/KeyCodes.h"

#include <string_view>

namespace {

// From code 1 on, without and with Shift; a blank stands for a key that this keyboard lacks, and for the space bar.
constexpr std::u16string_view kPlain = u"0123456789abcdefghijklmnopqrstuvwxyz '`;,. /\\[]   - =0123456789-+*/=.";
constexpr std::u16string_view kShifted = u")!@#$%^&*(ABCDEFGHIJKLMNOPQRSTUVWXYZ \"~:<> ?|{}   _ +0123456789-+*/=.";
static_assert(kPlain.size() == kKeyNumpadComma && kShifted.size() == kPlain.size());

} // namespace

char16_t UsKeyboard::CharacterOf(int code, bool shift) noexcept {
	if (code < kKey0 || code > kKeyNumpadComma)
		return 0;
	const char16_t unit = (shift ? kShifted : kPlain)[static_cast<std::size_t>(code - 1)];
	return unit == u' ' && code != kKeySpace ? char16_t{0} : unit;
}

UsKeyboard::TStroke UsKeyboard::StrokeOf(char16_t character) noexcept {
	for (const bool shift : {false, true})
		for (int code = kKey0; code < kKeyNumpad0; ++code)
			if (character != 0 && CharacterOf(code, shift) == character)
				return {code, shift};
	return {};
}
