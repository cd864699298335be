// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TFunctionPtr.h"
#include "framework/gui/views/TViewWindow.h"

/// The editor in a window of its own. Space, while no text is edited, goes to the transport instead of the views.
class TOpenWindow final : public TViewWindow {
public:
	explicit TOpenWindow(const TFunctionPtr<void>& spaceAction);

	void HandleKeyboardEvent(const TKeyboardEvent& event) override;

private:
	const TFunctionPtr<void> mSpaceAction;
};
