// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/MemoryHeap.h"

#include <cstddef>

/// While it exists, Memory takes its memory through this heap, which counts and fails on demand. One thread.
class TFailingHeap {
public:
	TFailingHeap() : mPrevious(Memory::ExchangeHeap(kHeap)) { sState = {}; }

	~TFailingHeap() { Memory::ExchangeHeap(mPrevious); }

	TFailingHeap(const TFailingHeap&) = delete;
	TFailingHeap& operator=(const TFailingHeap&) = delete;

	struct TState {
		bool mFails;
		bool mReportsFailedRelease; // the pages are released all the same
		int mAllocations;
		int mFrees;
		std::size_t mReservedBytes;
	};

	TState* operator->() { return &sState; }

private:
	static void* Allocate(std::size_t size) {
		++sState.mAllocations;
		return sState.mFails ? nullptr : Memory::SystemHeap().mAllocate(size);
	}

	static void* Reallocate(void* memory, std::size_t size) {
		return sState.mFails ? nullptr : Memory::SystemHeap().mReallocate(memory, size);
	}

	static void Free(void* memory) {
		if (memory)
			++sState.mFrees;
		Memory::SystemHeap().mFree(memory);
	}

	static void* ReservePages(std::size_t size) {
		if (sState.mFails)
			return nullptr;
		sState.mReservedBytes += size;
		return Memory::SystemHeap().mReservePages(size);
	}

	static bool ReleasePages(void* pages, std::size_t size) {
		sState.mReservedBytes -= size;
		return Memory::SystemHeap().mReleasePages(pages, size) && !sState.mReportsFailedRelease;
	}

	static constexpr Memory::THeap kHeap{&Allocate, &Reallocate, &Free, &ReservePages, &ReleasePages};
	static inline TState sState{};

	const Memory::THeap& mPrevious;
};
