// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <bitset>
#include <cstdint>

/// The logical keys, named after their places on a US keyboard. What a key writes is the layout's matter; where it lies
/// is not. A digit's or letter's code is that of the first plus its distance; the names are those that a reader of code
/// needs, not all.
enum TKeyCode : int {
	kNoKey = -1,
	kCharacterKey = 0, // has a character and no place of its own
	kKey0 = 1,         // to 10, "0" to "9"
	kKeyA = 11,        // to 36, "A" to "Z"
	kKeySpace = 37,
	kKeyApostrophe = 38,
	kKeyGrave = 39,
	kKeySemicolon = 40,
	kKeyComma = 41,
	kKeyPeriod = 42,
	kKeyPeakedBracket = 43,
	kKeySlash = 44,
	kKeyBackslash = 45,
	kKeyLeftBracket = 46,
	kKeyRightBracket = 47,
	kKeyDivide = 48,
	kKeyMultiply = 49,
	kKeySubtract = 50,
	kKeyMinus = 51,
	kKeyAdd = 52,
	kKeyEquals = 53,
	kKeyNumpad0 = 54, // to 63
	kKeyNumpadMinus = 64,
	kKeyNumpadPlus = 65,
	kKeyNumpadMultiply = 66,
	kKeyNumpadDivide = 67,
	kKeyNumpadEqual = 68,
	kKeyNumpadComma = 69, // the decimal key
	kKeyNumpadLock = 70,
	kKeyNumpadEnter = 71,
	kKeyF1 = 72, // to 90, "F1" to "F19"
	kKeyEscape = 91,
	kKeyTab = 92,
	kKeyUp = 93,
	kKeyDown = 94,
	kKeyLeft = 95,
	kKeyRight = 96,
	kKeyPrior = 97,
	kKeyNext = 98,
	kKeyHome = 99,
	kKeyEnd = 100,
	kKeyInsert = 101,
	kKeyDelete = 102,
	kKeyBack = 103,
	kKeyReturn = 104,
	kKeyLeftShift = 105,
	kKeyLeftCommand = 106, // Control on a PC's keyboard
	kKeyLeftOption = 107,  // Alt
	kKeyLeftControl = 108, // the logo key
	kKeyRightShift = 109,
	kKeyRightCommand = 110,
	kKeyRightOption = 111, // AltGr
	kKeyRightControl = 112,
	kKeyApps = 113,
	kKeyCapital = 114,
	kKeyScroll = 115,
	kKeyNumlock = 116,
	kKeyMyComputer = 117, // then mail and calculator
	kKeyPlayPause = 120,
	kKeyStop = 121,
	kKeyPause = 122,
	kKeyMute = 123,    // to 129: next, previous, volume down and up, stop, media
	kKeyWebHome = 130, // to 136: search, favourites, refresh, stop, forward, back
	kKeyWebBack = 136,
	kKeyCodeCount = 137
};

enum TKeyModifier : int { kShiftModifier = 1, kCommandModifier = 2, kOptionModifier = 4, kControlModifier = 8 };

/// A set bit is a key that is down.
using TKeyFlags = std::bitset<kKeyCodeCount>;

/// The bits of TKeyModifier. The key at the right of Option is also the one that chooses a third character, on
/// keyboards of other systems together with the left Command; with it down Command does not count.
inline int ModifiersOf(const TKeyFlags& down, bool rightSideToo = true) {
	const auto held = [&](int left, int right) {
		return down[static_cast<std::size_t>(left)] || (rightSideToo && down[static_cast<std::size_t>(right)]);
	};
	int modifiers = held(kKeyLeftShift, kKeyRightShift) ? kShiftModifier : 0;
	modifiers |= held(kKeyLeftOption, kKeyRightOption) ? kOptionModifier : 0;
	modifiers |= held(kKeyLeftControl, kKeyRightControl) ? kControlModifier : 0;
	if (held(kKeyLeftCommand, kKeyRightCommand) && !down[kKeyRightOption])
		modifiers |= kCommandModifier;
	return modifiers;
}
