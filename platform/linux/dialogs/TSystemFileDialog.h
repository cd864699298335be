// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TList.h"
#include "framework/foundation/values/TOwnerPtr.h"
#include "platform/TFileDialogImpl.h"

#include <cstdint>

/// The desktop's file dialog: that of its portal, else of a helper program, whichever answers first. When one turns out
/// to be missing the next is tried. GUI thread.
class TSystemFileDialog final : public TFileDialogImpl {
public:
	/// parentWindow is the X window that the dialog stands over; 0 for none.
	TSystemFileDialog(const TFileDialogSettings& settings, uint32_t parentWindow);

	TState Poll() override;

	TString Path() const override { return mpDialog ? mpDialog->Path() : TString(); }

	bool HasAskedToOverwrite() const override { return mpDialog && mpDialog->HasAskedToOverwrite(); }

	/// The patterns of a filter such as "*.a;*.b"; empty for all files.
	static TList<TString> PatternsOf(const TString& filter);

private:
	void StartNext();

	const TFileDialogSettings mSettings;
	const uint32_t mParentWindow;
	int mTried = 0;
	TOwnerPtr<TFileDialogImpl> mpDialog;
};
