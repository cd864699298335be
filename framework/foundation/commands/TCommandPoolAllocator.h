// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TThreadState.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/memory/TReferenceCountable.h"
#include "framework/foundation/threads/TCriticalSection.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <vector>

/// First-fit memory for commands, 256 KiB of it made at construction, so that the audio thread stays off the heap.
/// One thread at a time allocates; any thread may free at the same moment, without a lock. What was freed last serves
/// the next request as it is, if it fits that; if not, all that was freed joins the free memory first.
class TCommandPoolAllocator final : public TReferenceCountable {
public:
	/// Throws TReadableException when the basic memory is not to be had.
	TCommandPoolAllocator();
	~TCommandPoolAllocator() override;

	/// Null for size 0, for a size above MaximumSize() and when no further block is to be had. Aligned to 16 bytes.
	void* Allocate(std::size_t size) {
		void* memory = AllocateFreed(size);
		return memory ? memory : AllocateUnlikeFreed(size);
	}

	/// What was freed last on this thread, null if that does not fit: mostly it does, where commands of one kind come
	/// and go.
	void* AllocateFreed(std::size_t size) noexcept {
		TFreed* freed = mpFreed;
		if (!IsAllocatedFor(size, ChunkOf(freed)))
			return nullptr;
		mpFreed = freed->mpNext;
		return freed;
	}

	/// Gives back what any pool has allocated.
	static void Free(void* memory) noexcept {
		TCommandPoolAllocator& pool = *ChunkOf(memory).mpPool;
		if (pool.mpThread.load(std::memory_order_relaxed) == __builtin_thread_pointer())
			pool.mpFreed = new (memory) TFreed{pool.mpFreed};
		else
			pool.FreeElsewhere(memory);
	}

	std::size_t MaximumSize() const noexcept { return mBlockSize - sizeof(TChunk); }

	bool IsDeletedOnMainThread() const override { return false; }

	/// The pool that the calling thread, and no other at the same time, allocates from; null when that is not known.
	static TCommandPoolAllocator* OfThisThread() noexcept { return TThreadState::OfThisThread().mpCommandPool; }

	/// Makes this the calling thread's pool, until that leaves it (TThreadState) or the pool goes.
	void SetAsOfThisThread() noexcept {
		TThreadState& thread = TThreadState::OfThisThread();
		thread.LeaveCommandPool();
		thread.mpCommandPool = this;
		thread.mpPoolOwner = &mpThread;
		mpThread.store(__builtin_thread_pointer(), std::memory_order_relaxed);
	}

private:
	static constexpr std::size_t kAlignment = 16;

	class TMemoryBlock;

	/// Stands before each payload.
	struct TChunk {
		TCommandPoolAllocator* mpPool;
		int32_t mSize;  // bytes of payload, a multiple of 16; positive when free, negative when allocated
		int32_t mBlock; // its place in mBlocks
	};

	/// What a payload holds that was freed, while its chunk still counts as allocated.
	struct TFreed {
		TFreed* mpNext;
	};

	/// The end of every list of freed ones: a chunk that fits no request.
	struct TNoneFreed {
		TChunk mChunk{nullptr, std::numeric_limits<int32_t>::max(), 0};
		TFreed mFreed{nullptr};
	};

	/// Only the allocating thread comes here; what it found out holds until freed chunks join.
	class TMemoryBlock final : public TReferenceCountable {
	public:
		TMemoryBlock(TCommandPoolAllocator* pool, std::size_t place, std::size_t size);
		~TMemoryBlock() override;

		void* Allocate(int32_t size) noexcept;
		void Join(TChunk& chunk) noexcept;

		bool IsDeletedOnMainThread() const override { return false; }

	private:
		static constexpr int32_t kHeaderSize = sizeof(TChunk);

		static constexpr int32_t End(int32_t offset, int32_t size) noexcept { return offset + kHeaderSize + size; }

		TChunk& ChunkAt(int32_t offset) const noexcept { return *reinterpret_cast<TChunk*>(mpMemory + offset); }

		int32_t SizeAt(int32_t offset) const noexcept;
		void WriteChunk(int32_t offset, int32_t size) noexcept;
		int32_t Absorb(int32_t offset, int32_t size) noexcept;
		int32_t CutOff(int32_t offset, int32_t freeSize, int32_t size) noexcept;

		TCommandPoolAllocator* const mpPool;
		const int32_t mPlace;
		int32_t mFirstFree = 0;    // offset before which all chunks are allocated
		int64_t mLargestFree = -1; // of the block, with its header; -1 when unknown
		int32_t mSize;
		std::byte* mpMemory;
	};

	static constexpr std::size_t Rounded(std::size_t size) noexcept {
		return (size + kAlignment - 1) & ~(kAlignment - 1);
	}

	/// Whether a chunk might have been allocated for the size: at most the rest that goes along is beyond it.
	static bool IsAllocatedFor(std::size_t size, const TChunk& chunk) noexcept {
		return static_cast<std::size_t>(int64_t{chunk.mSize}) + Rounded(size) + sizeof(TChunk) <= sizeof(TChunk);
	}

	static TChunk& ChunkOf(void* payload) noexcept {
		return *reinterpret_cast<TChunk*>(static_cast<std::byte*>(payload) - sizeof(TChunk));
	}

	void FreeElsewhere(void* memory) noexcept;
	void* AllocateUnlikeFreed(std::size_t size);
	void AddBlock();
	void JoinFreed() noexcept;
	void* AllocateFromNewBlock(int32_t size);

	static constinit TNoneFreed sNone;

	std::atomic<void*> mpThread{nullptr};                 // that has this as its pool
	TFreed* mpFreed = &sNone.mFreed;                      // by that thread
	std::atomic<TFreed*> mpFreedElsewhere{&sNone.mFreed}; // by all others
	TCriticalSection mLock;                               // guards the growth of mBlocks
	std::vector<TPtr<TMemoryBlock>> mBlocks;
	std::size_t mBlockSize; // bytes
};
