// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/observables/TDeferredMemory.h"

#include "framework/foundation/memory/Memory.h"
#include "framework/foundation/threads/TThreadManager.h"

#include <atomic>
#include <new>
#include <utility>

namespace {

struct TFreed {
	TFreed* mpNext;
};

constinit std::atomic<TFreed*> sFreed{nullptr};

bool IsAudioThread() noexcept {
	const TThreadManager* manager = TThreadManager::Instance();
	return manager && manager->IsCurrentThread(kAudioThread);
}

void Defer(void* memory) noexcept {
	auto* freed = new (memory) TFreed{sFreed.load(std::memory_order_relaxed)};
	while (!sFreed.compare_exchange_weak(freed->mpNext, freed, std::memory_order_release, std::memory_order_relaxed)) {
	}
}

void FreeDeferred() noexcept {
	if (!sFreed.load(std::memory_order_relaxed))
		return;
	for (TFreed* freed = sFreed.exchange(nullptr, std::memory_order_acquire); freed;)
		Memory::Free(std::exchange(freed, freed->mpNext));
}

} // namespace

void* TDeferredMemory::operator new(std::size_t size) {
	FreeDeferred();
	return Memory::Allocate("TDeferredMemory", size);
}

void TDeferredMemory::operator delete(void* memory) noexcept {
	if (IsAudioThread())
		return Defer(memory);
	FreeDeferred();
	Memory::Free(memory);
}
