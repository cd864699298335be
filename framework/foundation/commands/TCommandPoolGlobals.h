// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/commands/TCommandPoolAllocator.h"
#include "framework/foundation/instance/TSingleton.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/threads/TCriticalSection.h"
#include "framework/foundation/threads/TThreadManager.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// The instance's command pools: one for the audio thread and one for each of its workers, which allocate without a
/// lock, and one that all other threads share. Lives shorter than the instance's TThreadManager.
class TCommandPoolGlobals final : public TSingleton<TCommandPoolGlobals> {
public:
	/// The program itself has no workers.
	explicit TCommandPoolGlobals(std::size_t numberOfWorkerPools = 0);
	~TCommandPoolGlobals() override = default;

	/// From the calling thread's pool; null if that cannot grow. TCommandPoolAllocator::Free takes it back.
	void* Allocate(std::size_t size);

private:
	/// The memory of commands that still wait is about to go.
	void OnBeforeDestruction() override;

	const TThreadManager& mThreads;
	TPtr<TCommandPoolAllocator> mAudioPool;
	std::vector<TPtr<TCommandPoolAllocator>> mWorkerPools;
	TPtr<TCommandPoolAllocator> mGeneralPool;
	TCriticalSection mLock; // of the general pool
};
