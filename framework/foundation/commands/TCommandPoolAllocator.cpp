// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/commands/TCommandPoolAllocator.h"

#include "framework/foundation/memory/Memory.h"
#include "framework/foundation/text/TReadableException.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

constexpr std::size_t kSmallestBlock = 4096;
constexpr std::size_t kPreallocated = 262144; // bytes per pool

} // namespace

constinit TCommandPoolAllocator::TNoneFreed TCommandPoolAllocator::sNone;

TCommandPoolAllocator::TMemoryBlock::TMemoryBlock(TCommandPoolAllocator* pool, std::size_t place, std::size_t size)
    : mpPool(pool),
      mPlace(static_cast<int32_t>(place)),
      mSize(static_cast<int32_t>(size)),
      mpMemory(static_cast<std::byte*>(Memory::Allocate("#CommandPoolAllocator", size))) {
	static_assert(kHeaderSize == kAlignment);
	WriteChunk(0, mSize - kHeaderSize);
}

TCommandPoolAllocator::TMemoryBlock::~TMemoryBlock() {
	Memory::Free(mpMemory);
}

void TCommandPoolAllocator::TMemoryBlock::WriteChunk(int32_t offset, int32_t size) noexcept {
	new (mpMemory + offset) TChunk{mpPool, size, mPlace};
}

/// 0 behind the last chunk.
int32_t TCommandPoolAllocator::TMemoryBlock::SizeAt(int32_t offset) const noexcept {
	if (offset >= mSize)
		return 0;
	const int32_t size = ChunkAt(offset).mSize;
	return std::abs(size) <= mSize - kHeaderSize ? size : 0;
}

void* TCommandPoolAllocator::TMemoryBlock::Allocate(int32_t size) noexcept {
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
				ChunkAt(offset).mSize = -size;
				return mpMemory + offset + kHeaderSize;
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
	ChunkAt(offset).mSize = merged;
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

void TCommandPoolAllocator::TMemoryBlock::Join(TChunk& chunk) noexcept {
	chunk.mSize = -chunk.mSize;
	mFirstFree = std::min(mFirstFree, static_cast<int32_t>(reinterpret_cast<std::byte*>(&chunk) - mpMemory));
	mLargestFree = -1;
}

TCommandPoolAllocator::TCommandPoolAllocator() : mBlockSize(std::max(kSmallestBlock, Memory::PageSize())) {
	const std::size_t count = std::max<std::size_t>(1, kPreallocated / mBlockSize);
	try {
		mBlocks.reserve(2 * count);
		for (std::size_t i = 0; i < count; ++i)
			AddBlock();
	} catch (const std::exception&) {
		throw TReadableException("Fatal Error. Failed to preallocate basic command queue memory!");
	}
}

TCommandPoolAllocator::~TCommandPoolAllocator() {
	if (OfThisThread() == this)
		TThreadState::OfThisThread().LeaveCommandPool();
}

void TCommandPoolAllocator::AddBlock() {
	mBlocks.emplace_back(new TMemoryBlock(this, mBlocks.size(), mBlockSize));
}

/// The release hands the payload's last contents over to the thread that takes the list.
void TCommandPoolAllocator::FreeElsewhere(void* memory) noexcept {
	auto* freed = new (memory) TFreed{mpFreedElsewhere.load(std::memory_order_relaxed)};
	while (!mpFreedElsewhere.compare_exchange_weak(
	    freed->mpNext, freed, std::memory_order_release, std::memory_order_relaxed)) {
	}
}

void* TCommandPoolAllocator::AllocateUnlikeFreed(std::size_t size) {
	if (size == 0 || size > MaximumSize())
		return nullptr;
	if (mpFreed == &sNone.mFreed) {
		mpFreed = mpFreedElsewhere.exchange(&sNone.mFreed, std::memory_order_acquire);
		if (void* memory = AllocateFreed(size))
			return memory;
	}
	JoinFreed();
	const auto rounded = static_cast<int32_t>(Rounded(size));
	for (const TPtr<TMemoryBlock>& block : mBlocks)
		if (void* memory = block->Allocate(rounded))
			return memory;
	return AllocateFromNewBlock(rounded);
}

void TCommandPoolAllocator::JoinFreed() noexcept {
	TFreed* const none = &sNone.mFreed;
	for (TFreed* list : {std::exchange(mpFreed, none), mpFreedElsewhere.exchange(none, std::memory_order_acquire)})
		for (; list != none; list = list->mpNext)
			mBlocks[static_cast<std::size_t>(ChunkOf(list).mBlock)]->Join(ChunkOf(list));
}

void* TCommandPoolAllocator::AllocateFromNewBlock(int32_t size) {
	try {
		TCriticalSection::TGuard guard(mLock);
		AddBlock();
		return mBlocks.back()->Allocate(size);
	} catch (const std::exception&) {
		return nullptr;
	}
}
