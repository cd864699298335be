// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TList.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TOwnerPtr.h"
#include "framework/gui/dialogs/TDialog.h"

class TMultilineTextView;

/// Says something and offers answers. Main thread.
class TMessageDialog final : public TDialog {
public:
	/// iconPath: a picture of the skin, without its extension; empty for that of alerts or plain messages. Opens the
	/// window; throws TReadableException without a display.
	TMessageDialog(
	    bool isAlert, TWindow* parent, const TString& title, const TString& text, const TList<TString>& buttons,
	    const TString& iconPath);
	~TMessageDialog() override;

	/// The text of the button that closed the dialog; "Cancel" when none did.
	const TString& PressedButton() const noexcept { return mPressedButton; }

private:
	struct TChoice;

	TPtr<TView> MakeContent(const TString& text, const TPtr<TView>& icon);
	TPtr<TView> MakeButtons(int width);
	void LimitText() const;
	void Choose(int32_t index);
	bool HandleMessageKey(const TKeyboardKey& key, bool isRelease, bool isRepeat);
	bool HandleTextCommand(const TKeyboardKey& key) const;
	int32_t ButtonOfKey(const TKeyboardKey& key) const;

	TString mPressedButton{"Cancel"};
	const TList<TString> mButtons;
	TPtr<TMultilineTextView> mText;
	TList<TOwnerPtr<TChoice>> mChoices; // targets of the buttons' actions
};

/// Runs one modally. A null parent: see TDialog. Throws TReadableException without a display.
TString ShowMessageDialog(
    bool isAlert, TWindow* parent, const TString& title, const TString& text, const TList<TString>& buttons,
    const TString& iconPath = {});
