// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TFunctionPtr.h"

#include <initializer_list>

class TView;

/// An entry of a menu of commands.
struct TVortelMenuCommand {
	enum TPlace { kNext, kBelowSeparator };

	const char* mText;
	TFunctionPtr<void> mAction;
	TPlace mPlace = kNext;
};

/// Opens a menu of these commands at the bottom left corner of a button.
void OpenVortelMenu(TView& button, std::initializer_list<TVortelMenuCommand> commands);
