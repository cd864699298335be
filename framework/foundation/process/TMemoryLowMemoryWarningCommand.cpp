// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/process/TMemoryLowMemoryWarningCommand.h"

#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/foundation/text/TString.h"

void TMemoryLowMemoryWarningCommand::Post() {
	TThreadCommunicator* communicator = TThreadCommunicator::Instance();
	if (!communicator)
		return;
	try {
		const TPtr<TCommand> warning(new TMemoryLowMemoryWarningCommand);
		communicator->Post(kMainThread, warning.Get());
	} catch (const TOutOfMemoryException&) { // the request that led here matters more than the warning
	}
}

void TMemoryLowMemoryWarningCommand::Execute() {
	if (TSystemGlobals* globals = TSystemGlobals::Instance())
		globals->ShowMessage(
		    TString::ExpandMacros("Memory is getting low! Please free up some memory, save the current document under "
		                          "a new name and !restart! $MProductString.\n\nThis message is only shown once..."),
		    kWarningMessage);
}
