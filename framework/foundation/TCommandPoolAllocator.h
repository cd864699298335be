// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/TCriticalSection.h"
#include "framework/foundation/TPtr.h"
#include "framework/foundation/TReferenceCountable.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// First-fit memory for commands, 256 KiB of it made at construction, so that the audio thread stays off the heap.
/// One thread at a time allocates; any thread may free at the same moment.
class TCommandPoolAllocator final : public TReferenceCountable {
public:
	/// Throws TReadableException when the basic memory is not to be had.
	TCommandPoolAllocator();
	~TCommandPoolAllocator() override;

	/// Null for size 0, for a size above MaximumSize() and when no further block is to be had. Aligned to 16 bytes.
	void* Allocate(std::size_t size);
	/// Gives back what any pool has allocated.
	static void Free(void* memory) noexcept;

	std::size_t MaximumSize() const noexcept;

	bool IsDeletedOnMainThread() const override { return false; }

private:
	class TMemoryBlock;
	struct TChunk;

	TMemoryBlock* AddBlock();

	TCriticalSection mLock; // guards the growth of mBlocks
	std::vector<TPtr<TMemoryBlock>> mBlocks;
	std::size_t mBlockSize; // bytes
};
