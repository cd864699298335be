// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TCommandPoolAllocator.h"

#include "framework/foundation/Memory.h"
#include "framework/foundation/TReadableException.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t kSmallestBlock = 4096;
constexpr std::size_t kPreallocated = 262144; // bytes per pool
constexpr std::size_t kAlignment = 16;

} // namespace

/// Stands before each payload. Whoever frees a payload flips the sign and touches the chunk no more.
struct TCommandPoolAllocator::TChunk {
	TMemoryBlock* mpBlock;
	std::atomic<int32_t> mSize; // bytes of payload; positive when free, negative when allocated
	int32_t mPadding;
};

class TCommandPoolAllocator::TMemoryBlock final : public TReferenceCountable {
public:
	explicit TMemoryBlock(int32_t size)
	    : mpMemory(static_cast<std::byte*>(Memory::Allocate("#CommandPoolAllocator", static_cast<std::size_t>(size)))),
	      mSize(size) {
		WriteChunk(0, size - kHeaderSize);
	}

	~TMemoryBlock() override { Memory::Free(mpMemory); }

	bool IsDeletedOnMainThread() const override { return false; }

	void* Allocate(int32_t size) noexcept;
	static void Free(void* memory) noexcept;

private:
	static constexpr int32_t kHeaderSize = sizeof(TChunk);
	static_assert(kHeaderSize == kAlignment);

	TChunk& ChunkAt(int32_t offset) const noexcept { return *reinterpret_cast<TChunk*>(mpMemory + offset); }

	void WriteChunk(int32_t offset, int32_t size) noexcept { new (mpMemory + offset) TChunk{this, size, 0}; }

	int32_t SizeAt(int32_t offset) const noexcept;
	int32_t Absorb(int32_t offset, int32_t size) noexcept;
	void* Take(int32_t offset, int32_t freeSize, int32_t size) noexcept;

	// Counts the header. Negative when unknown: each free makes it another negative number, so that a scan that ran
	// meanwhile does not take its result for the truth.
	std::atomic<int64_t> mLargestFree{-1};
	std::byte* mpMemory;
	int32_t mSize;
};

void* TCommandPoolAllocator::TMemoryBlock::Allocate(int32_t size) noexcept {
	int64_t known = mLargestFree.load(std::memory_order_acquire);
	const int32_t needed = size + kHeaderSize;
	if (known >= 0 && known < needed)
		return nullptr;
	int32_t largest = 0;
	int32_t offset = 0;
	while (int32_t chunkSize = SizeAt(offset)) {
		if (chunkSize > 0) {
			chunkSize = Absorb(offset, chunkSize);
			if (chunkSize >= size)
				return Take(offset, chunkSize, size);
			largest = std::max(largest, chunkSize + kHeaderSize);
		}
		offset += kHeaderSize + std::abs(chunkSize);
	}
	mLargestFree.compare_exchange_strong(known, largest);
	return nullptr;
}

/// 0 behind the last chunk.
int32_t TCommandPoolAllocator::TMemoryBlock::SizeAt(int32_t offset) const noexcept {
	if (offset + kHeaderSize > mSize)
		return 0;
	const int32_t size = ChunkAt(offset).mSize.load(std::memory_order_acquire);
	return std::abs(size) <= mSize - kHeaderSize ? size : 0;
}

int32_t TCommandPoolAllocator::TMemoryBlock::Absorb(int32_t offset, int32_t size) noexcept {
	int32_t merged = size;
	for (int32_t next; (next = SizeAt(offset + kHeaderSize + merged)) > 0;)
		merged += kHeaderSize + next;
	if (merged != size)
		ChunkAt(offset).mSize.store(merged, std::memory_order_relaxed);
	return merged;
}

void* TCommandPoolAllocator::TMemoryBlock::Take(int32_t offset, int32_t freeSize, int32_t size) noexcept {
	const int32_t rest = freeSize - size;
	if (rest > kHeaderSize)
		WriteChunk(offset + kHeaderSize + size, rest - kHeaderSize);
	else
		size = freeSize;
	ChunkAt(offset).mSize.store(-size, std::memory_order_relaxed);
	mLargestFree.store(-1, std::memory_order_relaxed);
	return mpMemory + offset + kHeaderSize;
}

void TCommandPoolAllocator::TMemoryBlock::Free(void* memory) noexcept {
	TChunk& chunk = *reinterpret_cast<TChunk*>(static_cast<std::byte*>(memory) - kHeaderSize);
	TMemoryBlock& block = *chunk.mpBlock;
	// In this order, else a scan between the two could miss the chunk and still find its largest size accepted. The
	// release hands the payload's last contents over to the scan that finds it free.
	chunk.mSize.store(-chunk.mSize.load(std::memory_order_relaxed), std::memory_order_release);
	const int64_t known = block.mLargestFree.load(std::memory_order_relaxed);
	block.mLargestFree.store(known < 0 ? known - 1 : -1, std::memory_order_release);
}

TCommandPoolAllocator::TCommandPoolAllocator() : mBlockSize(std::max(kSmallestBlock, Memory::PageSize())) {
	const std::size_t count = kPreallocated / mBlockSize;
	try {
		mBlocks.reserve(2 * count);
		for (std::size_t i = 0; i < count; ++i)
			mBlocks.emplace_back(new TMemoryBlock(static_cast<int32_t>(mBlockSize)));
	} catch (const std::exception&) {
		throw TReadableException("Fatal Error. Failed to preallocate basic command queue memory!");
	}
}

TCommandPoolAllocator::~TCommandPoolAllocator() = default;

std::size_t TCommandPoolAllocator::MaximumSize() const noexcept {
	return mBlockSize - sizeof(TChunk);
}

void* TCommandPoolAllocator::Allocate(std::size_t size) {
	if (size == 0 || size > MaximumSize())
		return nullptr;
	const auto rounded = static_cast<int32_t>((size + kAlignment - 1) / kAlignment * kAlignment);
	for (const TPtr<TMemoryBlock>& block : mBlocks)
		if (void* memory = block->Allocate(rounded))
			return memory;
	TMemoryBlock* block = AddBlock();
	return block ? block->Allocate(rounded) : nullptr;
}

TCommandPoolAllocator::TMemoryBlock* TCommandPoolAllocator::AddBlock() {
	try {
		TPtr<TMemoryBlock> block(new TMemoryBlock(static_cast<int32_t>(mBlockSize)));
		TCriticalSection::TGuard guard(mLock);
		return mBlocks.emplace_back(block).Get();
	} catch (const std::exception&) {
		return nullptr;
	}
}

void TCommandPoolAllocator::Free(void* memory) noexcept {
	TMemoryBlock::Free(memory);
}
