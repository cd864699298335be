// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/keyboard/TKeyboardKey.h"

#include "framework/gui/keyboard/TKeyStateTable.h"
#include "framework/gui/keyboard/TKeyboardTranslator.h"
#include "platform/TPlatform.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace {

using namespace std::string_view_literals;

constexpr int kNumericCodes[] = {kKeyDivide,       kKeyMultiply,    kKeySubtract,   kKeyAdd,
                                 kKeyPeriod,       kKeyNumpadMinus, kKeyNumpadPlus, kKeyNumpadMultiply,
                                 kKeyNumpadDivide, kKeyNumpadComma};

/// Beginnings of a key's text that name its modifiers, also in the words of other systems.
constexpr const char* kModifierPrefixes[] = {"Shift + ",   "Alt + ",    "Option + ", "Control + ",
                                             "Command + ", "WinKey + ", "Meta + "};

struct TReplacement {
	const char* mName;
	const char* mShort;
};

/// In this order: a name that holds another one comes first.
constexpr TReplacement kShortNames[] = {
    {"Escape", "Esc"},   {"Minus", "-"},     {"Add", "+"},        {"Equals", "="},   {"Subtract", "-"},
    {"Backslash", "\\"}, {"Slash", "/"},     {"LBracket", "["},   {"RBracket", "]"}, {"Insert", "Ins"},
    {"Delete", "Del"},   {"Divide", "Div"},  {"Multiply", "Mul"}, {"Grave", "^"},    {"PeakedBracket", "<>"},
    {"Semicolon", ";"},  {"Apostrophe", "'"}};

constexpr const char* kNumpadNames[] = {"Numpad -", "Numpad +", "Numpad *",    "Numpad /",
                                        "Numpad =", "Numpad ,", "Numpad Lock", "Numpad Enter"};

TString NameOf(int code) {
	const TKeyboardTranslator* translator = TKeyboardTranslator::Instance();
	return translator ? translator->NameOfCode(code) : TString{};
}

TString ModifierTextOf(int modifiers) {
	const TKeyboardTranslator* translator = TKeyboardTranslator::Instance();
	return translator ? translator->ModifierText(modifiers) : TString{};
}

TString OneCharacter(char16_t character) {
	return TString(std::u16string_view(&character, 1));
}

TString DisplayOf(char16_t character) {
	switch (character) {
	case u' ':
		return "Space";
	case u'\n':
		return "Return";
	case u'\t':
		return "Tab";
	case u'.':
		return "Period";
	case u',':
		return "Comma";
	default:
		TString text = OneCharacter(character);
		text.ToUpper();
		return text;
	}
}

bool IsBetween(int code, int first, int last) {
	return code >= first && code <= last;
}

} // namespace

TKeyboardKey& TKeyboardKey::operator=(const TKeyboardKey& other) {
	const bool isChange = !(*this == other);
	if (isChange)
		NotifyObservers(kWillChange);
	mKey = other.mKey;
	mModifiers = other.mModifiers;
	mChar = other.mChar;
	if (isChange)
		NotifyObservers(kDidChange);
	return *this;
}

bool TKeyboardKey::HasCharacter() const noexcept {
	return IsBetween(mKey, kCharacterKey, kKeyNumpadComma);
}

char16_t TKeyboardKey::CharacterOf(bool withCommandModifier) const {
	if (mKey == kCharacterKey)
		return static_cast<char16_t>(mChar);
	TPlatform* platform = TPlatform::Instance();
	return platform && IsKey() ? platform->Keyboard().CharacterOf(mKey, withCommandModifier) : u'\0';
}

char16_t TKeyboardKey::TextCharacter() const {
	if (mChar != 0)
		return static_cast<char16_t>(mChar);
	TPlatform* platform = TPlatform::Instance();
	return platform && IsKey() ? platform->Keyboard().TextCharacterOf(mKey, platform->Keyboard().Modifiers()) : u'\0';
}

bool TKeyboardKey::IsModifierKey() const {
	return IsBetween(mKey, kKeyLeftShift, AreRightSideModifiersInUse() ? kKeyRightControl : kKeyLeftControl);
}

bool TKeyboardKey::IsNavigationKey() const noexcept {
	return IsBetween(mKey, kKeyTab, kKeyEnd);
}

bool TKeyboardKey::IsSelectionMoveKey() const noexcept {
	return (mModifiers == kShiftModifier || mModifiers == (kShiftModifier | kOptionModifier)) &&
	       IsBetween(mKey, kKeyUp, kKeyEnd);
}

bool TKeyboardKey::IsNumericKey() const noexcept {
	if (mKey == kCharacterKey)
		return u"0123456789-+*/,."sv.find(static_cast<char16_t>(mChar)) != std::u16string_view::npos;
	return IsBetween(mKey, kKey0, kKey0 + 9) || IsBetween(mKey, kKeyNumpad0, kKeyNumpad0 + 9) ||
	       std::ranges::find(kNumericCodes, mKey) != std::end(kNumericCodes);
}

TString TKeyboardKey::ToDisplayString(bool withModifiers) const {
	const char16_t character = HasCharacter() ? CharacterOf() : u'\0';
	TString text = character != 0 ? DisplayOf(character) : NameOf(mKey);
	if (IsBetween(mKey, kKeyNumpad0, kKeyNumpad0 + 9))
		text = TString("Numpad ") + TString::ToString(mKey - kKeyNumpad0);
	else if (IsBetween(mKey, kKeyNumpadMinus, kKeyNumpadEnter))
		text = kNumpadNames[mKey - kKeyNumpadMinus];
	if (withModifiers)
		text = ModifierTextOf(mModifiers) + text;
	for (const TReplacement& replacement : kShortNames)
		text.ReplaceAll(replacement.mName, replacement.mShort);
	return text;
}

TString TKeyboardKey::ToString() const {
	if (IsBetween(mKey, kKeyLeftShift, kKeyLeftControl))
		return NameOf(mKey);
	return ModifierTextOf(mModifiers) + (mKey == kCharacterKey ? OneCharacter(Character()) : NameOf(mKey));
}

void TKeyboardKey::FromString(const TString& text) {
	const TKeyboardTranslator* translator = TKeyboardTranslator::Instance();
	if (!translator)
		return;
	TString name = text;
	for (const char* prefix : kModifierPrefixes) {
		const int32_t place = name.Find(prefix);
		if (place >= 0)
			name.Remove(place, place + TString(prefix).Length());
	}
	*this = TKeyboardKey(translator->CodeOfName(name), translator->ModifiersOfText(text));
}
