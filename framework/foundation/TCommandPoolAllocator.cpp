// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TCommandPoolAllocator.h"

#include "framework/foundation/Memory.h"
#include "framework/foundation/TReadableException.h"

#include <algorithm>
#include <new>

namespace {

constexpr std::size_t kSmallestBlock = 4096;
constexpr std::size_t kPreallocated = 262144; // bytes per pool

} // namespace

TCommandPoolAllocator::TMemoryBlock::TMemoryBlock(int32_t size)
    : mpMemory(static_cast<std::byte*>(Memory::Allocate("#CommandPoolAllocator", static_cast<std::size_t>(size)))),
      mSize(size) {
	static_assert(kHeaderSize == kAlignment);
	WriteChunk(0, size - kHeaderSize);
}

TCommandPoolAllocator::TMemoryBlock::~TMemoryBlock() {
	Memory::Free(mpMemory);
}

void TCommandPoolAllocator::TMemoryBlock::WriteChunk(int32_t offset, int32_t size) noexcept {
	new (mpMemory + offset) TChunk{this, size, 0};
}

void* TCommandPoolAllocator::TMemoryBlock::AllocateByScan(int32_t size) noexcept {
	NoticeFrees();
	if (mLargestFree >= 0 && mLargestFree < size + kHeaderSize)
		return nullptr;
	int32_t largest = 0;
	int32_t firstFree = -1;
	int32_t offset = mFirstFree;
	while (int32_t chunkSize = SizeAt(offset)) {
		if (chunkSize > 0) {
			chunkSize = Absorb(offset, chunkSize);
			if (chunkSize >= size) {
				size = CutOff(offset, chunkSize, size);
				mFirstFree = firstFree < 0 ? End(offset, size) : firstFree;
				mLargestFree = -1;
				return MarkAllocated(offset, size);
			}
			if (firstFree < 0)
				firstFree = offset;
			largest = std::max(largest, chunkSize + kHeaderSize);
		}
		offset = End(offset, std::abs(chunkSize));
	}
	mFirstFree = firstFree < 0 ? offset : firstFree;
	mLargestFree = largest;
	return nullptr;
}

/// Merges the free chunks directly behind a free one into it; gives its new size.
int32_t TCommandPoolAllocator::TMemoryBlock::Absorb(int32_t offset, int32_t size) noexcept {
	int32_t merged = size;
	for (int32_t next; (next = SizeAt(End(offset, merged))) > 0;)
		merged += kHeaderSize + next;
	if (merged != size)
		ChunkAt(offset).mSize.store(merged, std::memory_order_relaxed);
	return merged;
}

/// Makes the rest of a free chunk a chunk of its own; gives the size really taken, since a rest without room for a
/// payload goes along.
int32_t TCommandPoolAllocator::TMemoryBlock::CutOff(int32_t offset, int32_t freeSize, int32_t size) noexcept {
	const int32_t rest = freeSize - size;
	if (rest <= kHeaderSize)
		return freeSize;
	WriteChunk(End(offset, size), rest - kHeaderSize);
	return size;
}

void TCommandPoolAllocator::TMemoryBlock::Free(void* memory) noexcept {
	TChunk& chunk = *reinterpret_cast<TChunk*>(static_cast<std::byte*>(memory) - kHeaderSize);
	TMemoryBlock& block = *chunk.mpBlock;
	// The releases hand the payload's last contents over to the scan that finds it free. In this order, else a scan
	// between the two would miss the chunk and not be told.
	chunk.mSize.store(-chunk.mSize.load(std::memory_order_relaxed), std::memory_order_release);
	block.mFrees.fetch_add(1, std::memory_order_release);
}

TCommandPoolAllocator::TCommandPoolAllocator() : mBlockSize(std::max(kSmallestBlock, Memory::PageSize())) {
	const std::size_t count = std::max<std::size_t>(1, kPreallocated / mBlockSize);
	try {
		mBlocks.reserve(2 * count);
		for (std::size_t i = 0; i < count; ++i)
			mBlocks.emplace_back(new TMemoryBlock(static_cast<int32_t>(mBlockSize)));
	} catch (const std::exception&) {
		throw TReadableException("Fatal Error. Failed to preallocate basic command queue memory!");
	}
	mpFirstBlock = mBlocks.front().Get();
}

TCommandPoolAllocator::~TCommandPoolAllocator() = default;

void* TCommandPoolAllocator::AllocateByScan(std::size_t size) {
	if (size == 0 || size > MaximumSize())
		return nullptr;
	const auto rounded = static_cast<int32_t>((size + kAlignment - 1) / kAlignment * kAlignment);
	for (const TPtr<TMemoryBlock>& block : mBlocks)
		if (void* memory = block->AllocateByScan(rounded))
			return memory;
	return AllocateFromNewBlock(rounded);
}

void* TCommandPoolAllocator::AllocateFromNewBlock(int32_t size) {
	try {
		TPtr<TMemoryBlock> block(new TMemoryBlock(static_cast<int32_t>(mBlockSize)));
		TCriticalSection::TGuard guard(mLock);
		mBlocks.push_back(block);
		return block->AllocateByScan(size);
	} catch (const std::exception&) {
		return nullptr;
	}
}

void TCommandPoolAllocator::Free(void* memory) noexcept {
	TMemoryBlock::Free(memory);
}
