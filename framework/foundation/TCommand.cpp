// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TCommand.h"

#include "framework/foundation/TCommandPoolGlobals.h"
#include "framework/foundation/TReadableException.h"

void* TCommand::AllocateElsewhere(std::size_t size) {
	TCommandPoolGlobals* pools = TCommandPoolGlobals::Instance();
	void* memory = pools ? pools->Allocate(size) : nullptr;
	if (!memory)
		throw TOutOfMemoryException();
	return memory;
}
