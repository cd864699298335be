// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

/// Where Memory gets its memory from. Tests put a heap here that fails; nobody else has a reason to.
namespace Memory {

struct THeap {
	void* (*mAllocate)(std::size_t size);
	void* (*mReallocate)(void* memory, std::size_t size);
	void (*mFree)(void* memory);
	/// Zero-filled, page-aligned, a multiple of the page size; null on failure.
	void* (*mReservePages)(std::size_t size);
	/// Part of what was reserved, in whole pages. False on failure.
	bool (*mReleasePages)(void* pages, std::size_t size);
};

/// malloc and kin, mmap and munmap.
const THeap& SystemHeap() noexcept;

/// The heap in use from now on; must outlive its use. Returns the one before.
const THeap& ExchangeHeap(const THeap& heap) noexcept;

} // namespace Memory
