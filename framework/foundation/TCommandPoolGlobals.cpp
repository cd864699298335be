// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TCommandPoolGlobals.h"

#include "framework/foundation/TThreadCommunicator.h"
#include "framework/foundation/TThreadManager.h"

TCommandPoolGlobals::TCommandPoolGlobals(std::size_t numberOfWorkerPools)
    : mAudioPool(new TCommandPoolAllocator),
      mGeneralPool(new TCommandPoolAllocator) {
	for (std::size_t i = 0; i < numberOfWorkerPools; ++i)
		mWorkerPools.emplace_back(new TCommandPoolAllocator);
}

void TCommandPoolGlobals::OnBeforeDestruction() {
	if (TThreadCommunicator* communicator = TThreadCommunicator::Instance())
		communicator->DropAllCommands();
}

void* TCommandPoolGlobals::Allocate(std::size_t size) {
	const TThreadManager::TLocalThreadInfo thread = TThreadManager::Instance()->LocalInfo();
	if (thread.mThreadIndex == kAudioThread) {
		if (thread.mWorkerIndex == -1)
			return mAudioPool->Allocate(size);
		if (const auto worker = static_cast<std::size_t>(thread.mWorkerIndex); worker < mWorkerPools.size())
			return mWorkerPools[worker]->Allocate(size);
	}
	TCriticalSection::TGuard guard(mLock);
	return mGeneralPool->Allocate(size);
}

void TCommandPoolGlobals::Free(void* memory) noexcept {
	TCriticalSection::TGuard guard(mLock);
	TCommandPoolAllocator::Free(memory);
}
