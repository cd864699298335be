// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/commands/TCommand.h"

#include "framework/foundation/commands/TCommandPoolGlobals.h"
#include "framework/foundation/text/TReadableException.h"

void* TCommand::AllocateElsewhere(std::size_t size) {
	TCommandPoolGlobals* pools = TCommandPoolGlobals::Instance();
	void* memory = pools ? pools->Allocate(size) : nullptr;
	if (!memory)
		throw TOutOfMemoryException();
	return memory;
}

void TCommand::ReleaseShared() {
	Release();
}
