// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/KeyCodes.h"

/// The keyboard as the system has it at this moment, whatever has been delivered. GUI thread.
class TKeyboardImpl {
public:
	virtual ~TKeyboardImpl() = default;

	virtual TKeyFlags HeldKeys() const = 0;

	int Modifiers() const { return ModifiersOf(HeldKeys()); }

	/// What the key gives in the current layout without modifiers; 0 if nothing. With Command: the letter by which
	/// commands are known, of the Latin letters on the keyboard where the layout itself has none.
	virtual char16_t CharacterOf(int code, bool withCommand) const = 0;
	/// What typing the key writes with these bits of TKeyModifier and the locks and third-character keys of this
	/// moment; 0 for nothing.
	virtual char16_t TextCharacterOf(int code, int modifiers) const = 0;
	/// Whether the language of the layout is written from right to left.
	virtual bool IsRightToLeft() const = 0;
};
