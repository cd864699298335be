// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/open/TOpenWindow.h"

#include "framework/gui/windows/TKeyboardEvent.h"

TOpenWindow::TOpenWindow(const TFunctionPtr<void>& spaceAction)
    : TViewWindow(nullptr, kTopLevelWindow),
      mSpaceAction(spaceAction) {
	SetTitle("Vortel 2");
}

void TOpenWindow::HandleKeyboardEvent(const TKeyboardEvent& event) {
	const bool isSpace = event.Key().Code() == kKeySpace && event.Key().Modifiers() == 0;
	if (!isSpace || !AcceptsTextInput())
		TViewWindow::HandleKeyboardEvent(event);
	else if (!event.IsRelease() && !event.IsRepeat())
		mSpaceAction();
}
