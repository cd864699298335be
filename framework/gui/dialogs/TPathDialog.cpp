// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/dialogs/TPathDialog.h"

#include "framework/gui/controls/TButton.h"
#include "framework/gui/text/TTextField.h"

#include <utility>

namespace {

constexpr int kMargin = 8;
constexpr int kFieldWidth = 420;
constexpr int kFieldHeight = 20;
constexpr int kButtonWidth = 80;
constexpr int kButtonHeight = 22;

} // namespace

TPathDialog::TPathDialog(TWindow* parent, const TString& caption, const TString& path, const TFunctionPtr<void>& done)
    : TDialog(parent, kModalDialogWindow, kCloseButton, true),
      mText(path),
      mDone(done) {
	SetContent(MakeContent(), caption);
	SetActions({this, &TPathDialog::OnOk}, {this, &TPathDialog::OnCancel});
	CenterInParent();
	mField->BeginEdit();
}

TPtr<TView> TPathDialog::MakeContent() {
	mField = MakePtr<TTextField>(&mText);
	mField->SetRect({kMargin, kMargin, kFieldWidth, kFieldHeight});
	const auto content = MakePtr<TView>();
	content->AddChild(mField);
	const int width = kFieldWidth + 2 * kMargin;
	const int top = kFieldHeight + 2 * kMargin;
	const auto add = [&](const char* label, void (TPathDialog::*action)(), int left) {
		const auto button = MakePtr<TButton>(label, kToolButton);
		button->SetRect({left, top, kButtonWidth, kButtonHeight});
		button->SetClickAction({this, action});
		content->AddChild(button);
	};
	add("OK", &TPathDialog::OnOk, width - kMargin - kButtonWidth);
	add("Cancel", &TPathDialog::OnCancel, width - 2 * (kMargin + kButtonWidth));
	content->SetSize(width, top + kButtonHeight + kMargin);
	return content;
}

TString TPathDialog::Path() const {
	return mIsAccepted ? mText.Get() : TString();
}

void TPathDialog::OnOk() {
	mField->EndEdit();
	mIsAccepted = true;
	Close();
}

void TPathDialog::OnCancel() {
	Close();
}

void TPathDialog::OnClosing() {
	TDialog::OnClosing();
	if (const TFunctionPtr<void> done = std::exchange(mDone, nullptr))
		done();
}
