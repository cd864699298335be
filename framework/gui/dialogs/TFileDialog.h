// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakPtr.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/values/TFunctionPtr.h"
#include "framework/foundation/values/TOwnerPtr.h"
#include "framework/gui/events/TGuiObject.h"
#include "platform/TFileDialogImpl.h"

class TPathDialog;
class TView;

/// Asks the user for a file: by the system's dialog where there is one, else by one of our own that takes a path. Does
/// not wait. It is over when it has been answered or cancelled, when the window it was opened from closes, or when the
/// object goes. Main thread.
class TFileDialog final : public TGuiObject {
public:
	/// Called with an absolute path. When saving, the filter's extension has been added where it was missing, and the
	/// user has agreed to replace what is there.
	using TAccepted = TFunctionPtr<void, const TString&>;

	/// From a view in a window. The target of `accepted` must live as long as the dialog.
	TFileDialog(TView& owner, const TFileDialogSettings& settings, const TAccepted& accepted);
	~TFileDialog() override;

	/// Starts the dialog; an answer that is there at once is delivered before this returns.
	void Open();

	bool IsOpen() const noexcept { return mIsOpen; }

private:
	void OnTimer();
	void OpenPathDialog();
	void OnPathDecided();
	void Accept(TString path, bool hasAskedToOverwrite);
	void End();
	bool IsOwnerInWindow() const;
	/// Asks, where there is something to replace.
	bool MayReplace(const TString& path) const;

	TWeakPtr<TView> mOwner;
	const TFileDialogSettings mSettings;
	const TAccepted mAccepted;
	TOwnerPtr<TFileDialogImpl> mSystemDialog;
	TPtr<TPathDialog> mPathDialog;
	bool mIsOpen = false;
};
