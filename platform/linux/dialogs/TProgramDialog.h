// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TOwnerPtr.h"
#include "platform/TFileDialogImpl.h"
#include "platform/linux/dialogs/TChildProcess.h"

/// A file dialog shown by a program of the desktop, kdialog or zenity, which writes the chosen path. GUI thread.
class TProgramDialog final : public TFileDialogImpl {
public:
	TProgramDialog(const TFileDialogSettings& settings, uint32_t parentWindow);

	TState Poll() override;

	TString Path() const override { return mPath; }

	bool HasAskedToOverwrite() const override { return true; }

private:
	TOwnerPtr<TChildProcess> mpProgram;
	TState mState = TState::kUnavailable;
	TString mPath;
};
