// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/gui/dialogs/TDialog.h"

/// The product, its version and the preferences. Closing it with "OK" saves them. Main thread.
class TVortelAboutBox final : public TDialog {
public:
	explicit TVortelAboutBox(TWindow* parent);

private:
	void OnOk();
	void OnCancel();
};
