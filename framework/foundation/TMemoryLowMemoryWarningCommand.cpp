// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TMemoryLowMemoryWarningCommand.h"

#include "framework/foundation/TString.h"
#include "framework/foundation/TSystemGlobals.h"

void TMemoryLowMemoryWarningCommand::Execute() {
	if (TSystemGlobals* globals = TSystemGlobals::Instance())
		globals->ShowMessage(
		    TString::ExpandMacros("Memory is getting low! Please free up some memory, save the current document under "
		                          "a new name and !restart! $MProductString.\n\nThis message is only shown once..."),
		    kWarningMessage);
}
