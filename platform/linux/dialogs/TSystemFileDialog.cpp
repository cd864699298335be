// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/dialogs/TSystemFileDialog.h"

#include "platform/linux/dialogs/TPortalDialog.h"
#include "platform/linux/dialogs/TProgramDialog.h"

TSystemFileDialog::TSystemFileDialog(const TFileDialogSettings& settings, uint32_t parentWindow)
    : mSettings(settings),
      mParentWindow(parentWindow) {
	StartNext();
}

void TSystemFileDialog::StartNext() {
	mpDialog = nullptr;
	switch (mTried++) {
	case 0:
		mpDialog = std::make_unique<TPortalDialog>(mSettings, mParentWindow);
		break;
	case 1:
		mpDialog = std::make_unique<TProgramDialog>(mSettings, mParentWindow);
		break;
	default:
		break;
	}
}

TFileDialogImpl::TState TSystemFileDialog::Poll() {
	while (mpDialog) {
		const TState state = mpDialog->Poll();
		if (state != TState::kUnavailable)
			return state;
		StartNext();
	}
	return TState::kUnavailable;
}

TList<TString> TSystemFileDialog::PatternsOf(const TString& filter) {
	TList<TString> patterns;
	for (TString pattern : filter.Split(u';')) {
		pattern.Trim();
		if (!pattern.IsEmpty())
			patterns.Append(pattern);
	}
	return patterns;
}
