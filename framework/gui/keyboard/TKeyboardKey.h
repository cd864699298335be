// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TSerializable.h"
#include "platform/KeyCodes.h"

#include <cstdint>

/// A key of the key table with its modifiers; observable, and stored in a document by its text. Main thread.
class TKeyboardKey final : public TSerializable {
public:
	TKeyboardKey() noexcept = default;

	/// TKeyCode, TKeyModifiers.
	TKeyboardKey(int32_t code, int32_t modifiers) noexcept : mKey(code), mModifiers(modifiers) {}

	/// A real press, with what it writes; 0 if that is not known.
	TKeyboardKey(int32_t code, int32_t modifiers, char16_t typed) noexcept
	    : mKey(code),
	      mModifiers(modifiers),
	      mChar(typed) {}

	/// A key that only has a character.
	TKeyboardKey(char16_t unit, int32_t modifiers) noexcept : mKey(kCharacterKey), mModifiers(modifiers), mChar(unit) {}

	/// Observers stay with the original.
	TKeyboardKey(const TKeyboardKey& other) noexcept
	    : TSerializable(),
	      mKey(other.mKey),
	      mModifiers(other.mModifiers),
	      mChar(other.mChar) {}

	/// Notifies around a change.
	TKeyboardKey& operator=(const TKeyboardKey& other);

	int32_t Code() const noexcept { return mKey; }

	int32_t Modifiers() const noexcept { return mModifiers; }

	/// Only for kCharacterKey, else 0.
	char16_t Character() const noexcept { return mKey == kCharacterKey ? static_cast<char16_t>(mChar) : u'\0'; }

	bool IsKey() const noexcept { return mKey != kNoKey; }

	bool HasCharacter() const noexcept;
	/// What the key gives in the current layout; 0 if nothing.
	char16_t CharacterOf(bool withCommandModifier = false) const;
	/// What typing the key inserts: what the press itself wrote, else by the modifiers that are held now.
	char16_t TextCharacter() const;

	bool IsModifierKey() const;
	bool IsNavigationKey() const noexcept;
	bool IsSelectionMoveKey() const noexcept;
	bool IsNumericKey() const noexcept;

	/// The short form for the user.
	TString ToDisplayString(bool withModifiers) const;

	bool IsPlainText() const override { return true; }

	TString ToString() const override;
	/// An unknown name gives no key.
	void FromString(const TString& text) override;

	/// The character takes no part.
	friend bool operator==(const TKeyboardKey& a, const TKeyboardKey& b) noexcept {
		return a.mKey == b.mKey && a.mModifiers == b.mModifiers;
	}

private:
	int32_t mKey = kNoKey;
	int32_t mModifiers = 0;
	int32_t mChar = 0; // a UTF-16 unit
};
