// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TCommand.h"

#include "framework/foundation/TCommandPoolGlobals.h"
#include "framework/foundation/TReadableException.h"

void* TCommand::operator new(std::size_t size) {
	TCommandPoolGlobals* pools = TCommandPoolGlobals::Instance();
	void* memory = pools ? pools->Allocate(size) : nullptr;
	if (!memory)
		throw TOutOfMemoryException();
	return memory;
}

void TCommand::operator delete(void* memory) noexcept {
	TCommandPoolAllocator::Free(memory);
}

void TDecRefCommand::Execute() {
	if (TReferenceCountable* object = std::exchange(mpObject, nullptr))
		object->Release();
}
