// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TSingleton.h"
#include "framework/foundation/text/TString.h"
#include "framework/gui/events/TApplicationEventListener.h"
#include "platform/KeyCodes.h"

#include <array>
#include <cstdint>
#include <string_view>

/// The names of keys. Letters are named after what the keyboard in use has on them. Main thread.
class TKeyboardTranslator final : public TApplicationEventListener, public TSingleton<TKeyboardTranslator> {
public:
	/// Empty for an unknown code.
	TString NameOfCode(int32_t code) const;
	/// kNoKey for an unknown name. Some keys have a second name.
	int32_t CodeOfName(const TString& name) const;
	/// The same by the names of the key table alone, whatever keyboard is in use. Any thread.
	static int32_t CodeOfFixedName(std::string_view name);
	/// TKeyModifier, each followed by " + ".
	TString ModifierText(int32_t modifiers) const;
	int32_t ModifiersOfText(const TString& text) const;

	bool HandleEvent(TApplicationEvent* event) override;

	static void CreateService();

private:
	using TNames = std::array<TString, kKeyCodeCount>;

	const TNames& Names() const;

	mutable TNames mNames;
	mutable bool mNamesAreMade = false;
	const TString mShiftText{"Shift + "};
	const TString mOptionText{"Option + "};
	const TString mCommandText{"Command + "};
	const TString mControlText{"Control + "};
};
