// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/keyboard/TKeyboardTranslator.h"

#include "framework/gui/events/ApplicationEvents.h"
#include "platform/TPlatform.h"

#include <algorithm>
#include <string_view>

namespace {

/// Of the codes from 1 on.
constexpr std::string_view kFixedNames =
    "0 1 2 3 4 5 6 7 8 9 A B C D E F G H I J K L M N O P Q R S T U V W X Y Z "
    "Space Apostrophe Grave Semicolon Comma Period PeakedBracket Slash Backslash LBracket RBracket "
    "Divide Multiply Subtract Minus Add Equals "
    "Numpad0 Numpad1 Numpad2 Numpad3 Numpad4 Numpad5 Numpad6 Numpad7 Numpad8 Numpad9 "
    "NumpadMinus NumpadPlus NumpadMultiply NumpadDivide NumpadEqual NumpadComma NumpadLock NumpadEnter "
    "F1 F2 F3 F4 F5 F6 F7 F8 F9 F10 F11 F12 F13 F14 F15 F16 F17 F18 F19 "
    "Escape Tab Up Down Left Right Prior Next Home End Insert Delete Back Return "
    "LShift LControl LMenu LMeta RShift RControl RMenu RMeta Apps Capital Scroll Numlock "
    "MyComputer Mail Calculator PlayPause Stop Pause Mute NextTrack PrevTrack VolumeDown VolumeUp MediaStop "
    "MediaSelect "
    "WebHome WebSearch WebFavorites WebRefresh WebStop WebForward WebBack ";

static_assert(std::count(kFixedNames.begin(), kFixedNames.end(), ' ') == kKeyCodeCount - 1);

struct TAlias {
	const char* mName;
	int mCode;
};

constexpr TAlias kAliases[] = {{"HelpKey(Insert)", kKeyInsert}, {"LAlt", kKeyLeftOption}, {"RAlt", kKeyRightOption}};

/// Empty where the keyboard has no letter there.
TString LetterOf(int code) {
	TPlatform* platform = TPlatform::Instance();
	const char16_t character = platform ? platform->Keyboard().CharacterOf(code, true) : u'\0';
	TString letter(std::u16string_view(&character, 1));
	letter.ToUpper();
	return letter;
}

} // namespace

const TKeyboardTranslator::TNames& TKeyboardTranslator::Names() const {
	if (mNamesAreMade)
		return mNames;
	std::string_view rest = kFixedNames;
	for (int code = 1; code < kKeyCodeCount; ++code) {
		const std::size_t end = rest.find(' ');
		const TString letter = code >= kKeyA && code < kKeySpace ? LetterOf(code) : TString();
		mNames[static_cast<std::size_t>(code)] =
		    letter.IsEmpty() ? TString(rest.substr(0, end), kAsciiEncoding) : letter;
		rest.remove_prefix(end + 1);
	}
	mNamesAreMade = true;
	return mNames;
}

TString TKeyboardTranslator::NameOfCode(int32_t code) const {
	return code > 0 && code < kKeyCodeCount ? Names()[static_cast<std::size_t>(code)] : TString{};
}

int32_t TKeyboardTranslator::CodeOfName(const TString& name) const {
	if (name.IsEmpty())
		return kNoKey;
	// From the last: of two keys with one name on a keyboard, the later one has it.
	for (int code = kKeyCodeCount - 1; code > 0; --code)
		if (Names()[static_cast<std::size_t>(code)] == name)
			return code;
	for (const TAlias& alias : kAliases)
		if (name == alias.mName)
			return alias.mCode;
	return kNoKey;
}

int32_t TKeyboardTranslator::CodeOfFixedName(std::string_view name) {
	std::string_view rest = kFixedNames;
	for (int code = 1; code < kKeyCodeCount; ++code) {
		const std::size_t end = rest.find(' ');
		if (rest.substr(0, end) == name)
			return code;
		rest.remove_prefix(end + 1);
	}
	const auto* alias = std::ranges::find(kAliases, name, &TAlias::mName);
	return alias == std::end(kAliases) ? int32_t{kNoKey} : alias->mCode;
}

TString TKeyboardTranslator::ModifierText(int32_t modifiers) const {
	TString text;
	if (modifiers & kShiftModifier)
		text += mShiftText;
	if (modifiers & kOptionModifier)
		text += mOptionText;
	if (modifiers & kCommandModifier)
		text += mCommandText;
	if (modifiers & kControlModifier)
		text += mControlText;
	return text;
}

int32_t TKeyboardTranslator::ModifiersOfText(const TString& text) const {
	const auto bit = [&](const TString& name, int modifier) { return text.Find(name) >= 0 ? modifier : 0; };
	return bit(mShiftText, kShiftModifier) | bit(mOptionText, kOptionModifier) | bit(mCommandText, kCommandModifier) |
	       bit(mControlText, kControlModifier);
}

bool TKeyboardTranslator::HandleEvent(TApplicationEvent* event) {
	if (IsApplicationEvent(event, TApplicationEventType::kKeyboardLanguageChanged))
		mNamesAreMade = false;
	return true;
}

void TKeyboardTranslator::CreateService() {
	Create(
	    []() {
		    auto* translator = new TKeyboardTranslator;
		    translator->Retain(); // events go only to listeners that somebody holds
		    return translator;
	    },
	    [](TKeyboardTranslator* translator) { translator->Release(); });
}
