// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/dialogs/TMessageDialog.h"

#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/skin/TSkinColors.h"
#include "framework/gui/controls/TBitmapView.h"
#include "framework/gui/controls/TButton.h"
#include "framework/gui/keyboard/TKeyboardKey.h"
#include "framework/gui/layout/TAlignerRack.h"
#include "framework/gui/layout/TextMetrics.h"
#include "framework/gui/text/TMultilineTextView.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr int kTextWidth = 400;
constexpr int kWidening = 20; // of a text that is too long for the screen
constexpr int kAroundText = 12;
constexpr int kSmallestWidth = 100;
constexpr int kMargin = 8;
constexpr int kIconColumn = 64;
constexpr int kButtonStrip = 38;
constexpr int kButtonHeight = 22;
constexpr int kSmallestButton = 80;
constexpr int kAroundButtonText = 20;
constexpr int kFont = 0;

/// Null when there is no such picture.
TPtr<TView> MakeIcon(bool isAlert, const TString& iconPath) {
	const TString standard = isAlert ? "Icons/Dialog_Alert" : "Icons/Dialog_Standard";
	const TString path = ResourceImagePath((iconPath.IsEmpty() ? standard : iconPath) + ".png");
	if (!ResourceImageExists(path))
		return nullptr;
	try {
		return MakePtr<TBitmapView>(MakePtr<TBitmap>(path)).Get();
	} catch (const TReadableException&) {
		return nullptr;
	}
}

} // namespace

struct TMessageDialog::TChoice {
	void Choose() { mpDialog->Choose(mIndex); }

	TMessageDialog* mpDialog;
	int32_t mIndex;
};

TMessageDialog::TMessageDialog(
    bool isAlert, TWindow* parent, const TString& title, const TString& text, const TList<TString>& buttons,
    const TString& iconPath)
    : TDialog(parent, kModalDialogWindow, kCloseButton, true),
      mButtons(buttons) {
	SetKeyHandler({this, &TMessageDialog::HandleMessageKey});
	SetContent(MakeContent(text, MakeIcon(isAlert, iconPath)), title);
}

TMessageDialog::~TMessageDialog() = default;

TPtr<TView> TMessageDialog::MakeContent(const TString& text, const TPtr<TView>& icon) {
	mText = MakePtr<TMultilineTextView>(text, kTextWidth);
	mText->SetColor(TSkinColors::Instance()->MainColor(TSkinColors::kBodyFont));
	LimitText();
	const int textLeft = icon ? kIconColumn + 2 * kMargin : kAroundText / 2;
	const int textColumn = std::max(mText->Width() + kAroundText, kSmallestWidth);
	const TPtr<TView> buttons = MakeButtons(icon ? textLeft + textColumn : textColumn);
	const int iconHeight = icon ? icon->Height() : 0;
	const int height = std::max(mText->Height(), iconHeight);

	const TPtr<TView> content = MakePtr<TView>();
	content->SetSize(buttons->Width(), height + 2 * kMargin + buttons->Height());
	if (icon) {
		icon->SetPosition(kMargin + (kIconColumn - icon->Width()) / 2, kMargin);
		content->AddChild(icon);
	}
	mText->SetPosition(textLeft, kMargin + std::max((iconHeight - mText->Height()) / 2, 0));
	content->AddChild(mText.Get());
	buttons->SetPosition(0, height + 2 * kMargin);
	content->AddChild(buttons);
	return content;
}

/// A text that would fill the screen gets a little more width, and no more than two thirds of the height.
void TMessageDialog::LimitText() const {
	const TWindow* parent = Parent();
	const TRectT<int> area = (parent ? parent : static_cast<const TWindow*>(this))->WorkArea();
	const int limit = Unscaled(TPointT<int>{area.mWidth, area.mHeight}, UiScale()).mY * 2 / 3;
	if (limit <= 0 || mText->Height() <= limit)
		return;
	mText->SetWrapWidth(kTextWidth + kWidening);
	mText->SetMaximumHeight(limit);
}

TPtr<TView> TMessageDialog::MakeButtons(int width) {
	const TPtr<THorizontalAligner> strip = MakePtr<THorizontalAligner>(kLayoutSpread);
	strip->SetMargins(kMargin);
	int needed = 2 * kMargin;
	for (int32_t index = 0; index < mButtons.Count(); ++index) {
		mChoices.Append(TOwnerPtr<TChoice>(new TChoice{this, index}));
		const TPtr<TButton> button = MakePtr<TButton>(mButtons[index], kPlainButton);
		const int textWidth = TextMetrics::Width(mButtons[index], kFont);
		button->SetSize(std::max(textWidth + kAroundButtonText, kSmallestButton), kButtonHeight);
		button->SetClickAction({mChoices[index].get(), &TChoice::Choose});
		strip->AddChild(button);
		needed += button->Width() + kMargin;
	}
	strip->SetSize(std::max(width, needed), kButtonStrip);
	return strip;
}

void TMessageDialog::Choose(int32_t index) {
	mPressedButton = mButtons[index];
	Close();
}

// Keys

bool TMessageDialog::HandleMessageKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) {
	if (isRelease || isRepeat)
		return false;
	if (HandleTextCommand(key))
		return true;
	const int32_t button = ButtonOfKey(key);
	if (button < 0)
		return false;
	Choose(button);
	return true;
}

bool TMessageDialog::HandleTextCommand(const TKeyboardKey& key) const {
	TString letter = TKeyboardKey(key.CharacterOf(true), 0).ToString();
	letter.ToLower();
	const bool copies = letter == "c";
	if ((key.Modifiers() & kCommandModifier) == 0 || (!copies && !(letter == "a")))
		return false;
	mText->SelectAll();
	if (copies)
		mText->Copy();
	return true;
}

/// -1 for none. A letter means the first button that begins with it.
int32_t TMessageDialog::ButtonOfKey(const TKeyboardKey& key) const {
	const int32_t count = mButtons.Count();
	const char16_t typed = key.TextCharacter();
	const TString letter(std::u16string_view(&typed, 1));
	for (int32_t index = 0; !letter.IsEmpty() && index < count; ++index)
		if (mButtons[index].StartsWithIgnoringCase(letter))
			return index;
	const bool accepts = key.Code() == kKeyReturn || key.Code() == kKeySpace;
	const bool cancels = key.Code() == kKeyEscape;
	if (count < 1 || count > 2 || (!accepts && !cancels))
		return -1;
	return cancels ? count - 1 : 0;
}

TString ShowMessageDialog(
    bool isAlert, TWindow* parent, const TString& title, const TString& text, const TList<TString>& buttons,
    const TString& iconPath) {
	const auto dialog = MakePtr<TMessageDialog>(isAlert, parent, title, text, buttons, iconPath);
	dialog->RunModal();
	return dialog->PressedButton();
}
