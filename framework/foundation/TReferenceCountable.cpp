// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TReferenceCountable.h"

#include "framework/foundation/Framework.h"
#include "framework/foundation/Memory.h"
#include "framework/foundation/TCommand.h"
#include "framework/foundation/TReadableException.h"
#include "framework/foundation/TThreadCommunicator.h"
#include "framework/foundation/TThreadManager.h"

TReferenceCountable::~TReferenceCountable() = default;

void TReferenceCountable::OnLastReferenceGone() {
	mReferenceCount.store(-1, std::memory_order_seq_cst);
	if (PrepareForDeletion())
		DeleteOnItsThread();
}

void TReferenceCountable::DeleteOnItsThread() {
	if (IsDeletedOnMainThread() && IsFrameworkRunning()) {
		TThreadManager* manager = TThreadManager::Instance();
		TThreadCommunicator* communicator = TThreadCommunicator::Instance();
		if (manager && communicator && !manager->IsCurrentThread(kMainThread)) {
			try {
				communicator->Post(kMainThread, new TDeleteCommand<TReferenceCountable>(this));
				return;
			} catch (const TOutOfMemoryException&) { // better deleted here than never
			}
		}
	}
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
