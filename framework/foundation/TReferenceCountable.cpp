// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TReferenceCountable.h"

#include "framework/foundation/Framework.h"
#include "framework/foundation/Memory.h"
#include "framework/foundation/TDecRefCommand.h"
#include "framework/foundation/TReadableException.h"
#include "framework/foundation/TThreadCommunicator.h"
#include "framework/foundation/TThreadManager.h"

namespace {

/// False if the object is to be deleted here.
[[gnu::noinline]] bool PostDeletion(TReferenceCountable* object) {
	TThreadManager* manager = TThreadManager::Instance();
	TThreadCommunicator* communicator = TThreadCommunicator::Instance();
	if (!IsFrameworkRunning() || !manager || !communicator || manager->IsCurrentThread(kMainThread))
		return false;
	try {
		communicator->Post(kMainThread, new TDeleteCommand<TReferenceCountable>(object));
		return true;
	} catch (const TOutOfMemoryException&) {
		return false; // better deleted on the wrong thread than never
	}
}

} // namespace

bool TReferenceCountable::PrepareForDeletion() {
	return true;
}

void TReferenceCountable::OnLastReferenceGone() {
	mReferenceCount.store(-1, std::memory_order_seq_cst);
	if (PrepareForDeletion())
		DeleteOnItsThread();
}

void TReferenceCountable::DeleteOnItsThread() {
	if (!IsDeletedOnMainThread() || !PostDeletion(this))
		delete this;
}

void* TReferenceCountable::operator new(std::size_t size) {
	return Memory::Allocate("TReferenceCountable", size);
}

void* TReferenceCountable::operator new(std::size_t size, std::align_val_t alignment) {
	return Memory::AllocateAligned("TReferenceCountable", size, static_cast<std::size_t>(alignment));
}

void TReferenceCountable::operator delete(void* memory) noexcept {
	Memory::Free(memory);
}

void TReferenceCountable::operator delete(void* memory, std::align_val_t) noexcept {
	Memory::FreeAligned(memory);
}
