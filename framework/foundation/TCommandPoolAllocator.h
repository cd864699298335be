// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/TCriticalSection.h"
#include "framework/foundation/TPtr.h"
#include "framework/foundation/TReferenceCountable.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

/// First-fit memory for commands, 256 KiB of it made at construction, so that the audio thread stays off the heap.
/// One thread at a time allocates; any thread may free at the same moment, without a lock.
class TCommandPoolAllocator final : public TReferenceCountable {
public:
	/// Throws TReadableException when the basic memory is not to be had.
	TCommandPoolAllocator();
	~TCommandPoolAllocator() override;

	/// Null for size 0, for a size above MaximumSize() and when no further block is to be had. Aligned to 16 bytes.
	void* Allocate(std::size_t size) {
		void* memory = mpFirstBlock->AllocateExact((size + kAlignment - 1) & ~(kAlignment - 1));
		return memory ? memory : AllocateByScan(size);
	}

	/// Gives back what any pool has allocated.
	static void Free(void* memory) noexcept;

	std::size_t MaximumSize() const noexcept { return mBlockSize - sizeof(TChunk); }

	bool IsDeletedOnMainThread() const override { return false; }

private:
	static constexpr std::size_t kAlignment = 16;

	class TMemoryBlock;

	/// Stands before each payload. Whoever frees a payload flips the sign and touches the chunk no more.
	struct TChunk {
		TMemoryBlock* mpBlock;
		std::atomic<int32_t> mSize; // bytes of payload, a multiple of 16; positive when free, negative when allocated
		int32_t mPadding;
	};

	/// Only the allocating thread scans; what it found out holds until somebody frees.
	class TMemoryBlock final : public TReferenceCountable {
	public:
		explicit TMemoryBlock(int32_t size);
		~TMemoryBlock() override;

		/// Null unless the first free chunk has the very size, as it mostly has where commands of one kind come and go.
		void* AllocateExact(std::size_t size) noexcept {
			NoticeFrees();
			int32_t offset = mFirstFree;
			int32_t chunkSize;
			while ((chunkSize = SizeAt(offset)) < 0)
				offset = End(offset, -chunkSize);
			if (chunkSize <= 0 || static_cast<std::size_t>(chunkSize) != size)
				return nullptr;
			mFirstFree = End(offset, chunkSize);
			mLargestFree = -1;
			return MarkAllocated(offset, chunkSize);
		}

		void* AllocateByScan(int32_t size) noexcept;
		static void Free(void* memory) noexcept;

		bool IsDeletedOnMainThread() const override { return false; }

	private:
		static constexpr int32_t kHeaderSize = sizeof(TChunk);

		static constexpr int32_t End(int32_t offset, int32_t size) noexcept { return offset + kHeaderSize + size; }

		TChunk& ChunkAt(int32_t offset) const noexcept { return *reinterpret_cast<TChunk*>(mpMemory + offset); }

		/// 0 behind the last chunk.
		int32_t SizeAt(int32_t offset) const noexcept {
			if (offset >= mSize)
				return 0;
			const int32_t size = ChunkAt(offset).mSize.load(std::memory_order_acquire);
			return std::abs(size) <= mSize - kHeaderSize ? size : 0;
		}

		void NoticeFrees() noexcept {
			const uint32_t frees = mFrees.load(std::memory_order_acquire);
			if (frees == mSeenFrees)
				return;
			mSeenFrees = frees;
			mFirstFree = 0;
			mLargestFree = -1;
		}

		void* MarkAllocated(int32_t offset, int32_t size) noexcept {
			ChunkAt(offset).mSize.store(-size, std::memory_order_relaxed);
			return mpMemory + offset + kHeaderSize;
		}

		void WriteChunk(int32_t offset, int32_t size) noexcept;
		int32_t Absorb(int32_t offset, int32_t size) noexcept;
		int32_t CutOff(int32_t offset, int32_t freeSize, int32_t size) noexcept;

		std::atomic<uint32_t> mFrees{0};
		uint32_t mSeenFrees = 0;
		int32_t mFirstFree = 0;    // offset before which all chunks are allocated
		int64_t mLargestFree = -1; // of the block, with its header; -1 when unknown
		std::byte* mpMemory;
		int32_t mSize;
	};

	void* AllocateByScan(std::size_t size);
	void* AllocateFromNewBlock(int32_t size);

	TMemoryBlock* mpFirstBlock = nullptr;
	TCriticalSection mLock; // guards the growth of mBlocks
	std::vector<TPtr<TMemoryBlock>> mBlocks;
	std::size_t mBlockSize; // bytes
};
