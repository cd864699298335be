// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// The layout of a US keyboard by logical keys (TKeyCode).
namespace UsKeyboard {

/// 0 for a key that writes nothing.
char16_t CharacterOf(int code, bool shift) noexcept;

struct TStroke {
	int mCode = -1; // -1 where the keyboard does not have the character
	bool mShift = false;
};

TStroke StrokeOf(char16_t character) noexcept;

} // namespace UsKeyboard
