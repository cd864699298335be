// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/memory/TBlockAllocator.h"

#include "framework/foundation/memory/Memory.h"

#include <cstring>

TBlockAllocator::TBlockAllocator(const char* tag, std::size_t objectSize, int32_t objectsPerBlock)
    : mTag(tag),
      mObjectSize((objectSize + 3) / 4 * 4),
      mObjectsPerBlock(objectsPerBlock),
      mpCurrentBlock(NewBlock()) {}

TBlockAllocator::~TBlockAllocator() {
	Memory::Free(mpCurrentBlock);
}

void* TBlockAllocator::AllocateObject() {
	if (mUsedInCurrentBlock == mObjectsPerBlock) {
		TBlock* block = NewBlock();
		block->mpPrevious = mpCurrentBlock;
		mpCurrentBlock->mpNext = block;
		mpCurrentBlock = block;
		mUsedInCurrentBlock = 0;
	}
	std::byte* slot = reinterpret_cast<std::byte*>(mpCurrentBlock + 1) +
	                  static_cast<std::size_t>(mUsedInCurrentBlock) * (sizeof(TBlock*) + mObjectSize);
	// Copied, since an object's size need not be a multiple of the pointer's.
	std::memcpy(slot, &mpCurrentBlock, sizeof mpCurrentBlock);
	++mpCurrentBlock->mLiveObjects;
	++mUsedInCurrentBlock;
	return slot + sizeof(TBlock*);
}

void TBlockAllocator::FreeObject(void* object) noexcept {
	TBlock* block;
	std::memcpy(&block, static_cast<std::byte*>(object) - sizeof block, sizeof block);
	if (--block->mLiveObjects > 0)
		return;
	if (block == mpCurrentBlock) {
		mUsedInCurrentBlock = 0;
		return;
	}
	Unlink(block);
	Memory::Free(block);
}

TBlockAllocator::TBlock* TBlockAllocator::NewBlock() const {
	const std::size_t slots = static_cast<std::size_t>(mObjectsPerBlock) * (mObjectSize + sizeof(TBlock*));
	return ::new (Memory::Allocate(mTag, sizeof(TBlock) + slots)) TBlock{nullptr, nullptr, 0};
}

void TBlockAllocator::Unlink(TBlock* block) noexcept {
	if (block->mpPrevious)
		block->mpPrevious->mpNext = block->mpNext;
	if (block->mpNext)
		block->mpNext->mpPrevious = block->mpPrevious;
}
