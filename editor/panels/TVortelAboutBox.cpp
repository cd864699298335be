// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/panels/TVortelAboutBox.h"

#include "document/TVortelPrefs.h"
#include "editor/panels/TVortelAboutBoxView.h"

TVortelAboutBox::TVortelAboutBox(TWindow* parent) : TDialog(parent, kModalDialogWindow, kCloseButton, true) {
	SetContent(
	    MakePtr<TVortelAboutBoxView>(TFunctionPtr<void>(this, &TVortelAboutBox::OnOk)),
	    TString::Format("About $MProductString"));
	SetActions({this, &TVortelAboutBox::OnOk}, {this, &TVortelAboutBox::OnCancel});
	SetClosesOnClickOutside(true);
	CenterInParent();
}

/// Saved at once, so that a crash of the host loses nothing.
void TVortelAboutBox::OnOk() {
	if (TVortelPrefs* preferences = TVortelPrefs::Instance())
		preferences->SaveConfirmed();
	Close();
}

void TVortelAboutBox::OnCancel() {
	Close();
}
