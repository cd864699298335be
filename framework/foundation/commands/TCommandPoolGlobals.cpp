// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/commands/TCommandPoolGlobals.h"

#include "framework/foundation/commands/TThreadCommunicator.h"

TCommandPoolGlobals::TCommandPoolGlobals(std::size_t numberOfWorkerPools)
    : mThreads(*TThreadManager::Instance()),
      mAudioPool(new TCommandPoolAllocator),
      mGeneralPool(new TCommandPoolAllocator) {
	for (std::size_t i = 0; i < numberOfWorkerPools; ++i)
		mWorkerPools.emplace_back(new TCommandPoolAllocator);
}

void TCommandPoolGlobals::OnBeforeDestruction() {
	if (TThreadCommunicator* communicator = TThreadCommunicator::Instance())
		communicator->DropAllCommands();
}

void* TCommandPoolGlobals::Allocate(std::size_t size) {
	if (mThreads.IsCurrentThread(kAudioThread)) {
		// The thread stays what it is until it says so, which it can only where it has entered the storage itself.
		if (this == Instance() && TGlobalStorage::CurrentId() >= 0)
			mAudioPool->SetAsOfThisThread();
		return mAudioPool->Allocate(size);
	}
	if (mThreads.IsWorkerOf(kAudioThread))
		if (const auto worker = static_cast<std::size_t>(mThreads.CurrentWorkerIndex()); worker < mWorkerPools.size())
			return mWorkerPools[worker]->Allocate(size);
	TCriticalSection::TGuard guard(mLock);
	return mGeneralPool->Allocate(size);
}
