// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObservableBaseType.h"
#include "framework/foundation/values/TFunctionPtr.h"
#include "framework/gui/dialogs/TDialog.h"

class TTextField;

/// Takes a path as text, for systems without a file dialog. Main thread.
class TPathDialog final : public TDialog {
public:
	/// done is called once, when the user has decided and the dialog has gone; see Path.
	TPathDialog(TWindow* parent, const TString& caption, const TString& path, const TFunctionPtr<void>& done);

	/// Empty when it was cancelled.
	TString Path() const;

	void OnClosing() override;

private:
	void OnOk();
	void OnCancel();
	TPtr<TView> MakeContent();

	TObservableBaseType<TString> mText;
	TPtr<TTextField> mField;
	TFunctionPtr<void> mDone;
	bool mIsAccepted = false;
};
