// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/memory/Memory.h"

#include "framework/foundation/memory/MemoryHeap.h"
#include "framework/foundation/memory/TEmergencyPool.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace Memory {

namespace {

constexpr std::size_t kTooLargeForPool = 0x100000;
constexpr std::size_t kReserveSize = 0x400000;
constexpr std::size_t kSmallestAlignment = 16;

void* ReservePages(std::size_t size) {
	void* pages = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
	return pages == MAP_FAILED ? nullptr : pages;
}

bool ReleasePages(void* pages, std::size_t size) {
	return munmap(pages, size) == 0;
}

constexpr THeap kSystemHeap{&std::malloc, &std::realloc, &std::free, &ReservePages, &ReleasePages};

constinit std::atomic<const THeap*> sHeap{&kSystemHeap};
constinit std::atomic<bool> sTornDown{false};
constinit std::atomic<void (*)()> sLowMemoryListener{nullptr};

const THeap& Heap() noexcept {
	return *sHeap.load(std::memory_order_acquire);
}

void GiveBackReserve();

struct TProcessPool {
	TEmergencyPool mPool{[] {
		GiveBackReserve();
		if (void (*listener)() = sLowMemoryListener.load())
			listener();
	}};
	void* mpReserve = std::malloc(kReserveSize);

	~TProcessPool() {
		GiveBackReserve();
		sTornDown.store(true, std::memory_order_relaxed);
	}
};

// The first object to be made and the last to go: other objects' initialisers may already need it.
[[gnu::init_priority(101)]] TProcessPool sProcess;

void GiveBackReserve() {
	Heap().mFree(std::exchange(sProcess.mpReserve, nullptr));
}

void* AllocateFromPool(std::size_t size) {
	void* memory = size < kTooLargeForPool ? sProcess.mPool.Allocate(size) : nullptr;
	if (!memory)
		ThrowOutOfMemory();
	return memory;
}

/// Stands right before an aligned block of pages.
struct TPageHeader {
	std::byte* mpPages;
	std::size_t mLength;
};

static_assert(sizeof(TPageHeader) == kSmallestAlignment);

std::byte* AlignUp(std::byte* address, std::size_t alignment) noexcept {
	const std::size_t excess = std::bit_cast<std::uintptr_t>(address) & (alignment - 1);
	return excess ? address + (alignment - excess) : address;
}

std::byte* AlignDown(std::byte* address, std::size_t alignment) noexcept {
	return address - (std::bit_cast<std::uintptr_t>(address) & (alignment - 1));
}

void GiveBack(std::byte* begin, const std::byte* end, const char* failure, std::size_t alignment, std::size_t size) {
	if (begin == end)
		return;
	if (!Heap().mReleasePages(begin, static_cast<std::size_t>(end - begin)))
		std::fprintf(stderr, "memalign(%zx, %zx) failed to deallocate extra %s space.\n", alignment, size, failure);
}

void* PlaceInPages(std::byte* region, std::size_t regionSize, std::size_t size, std::size_t alignment) {
	const std::size_t pageSize = PageSize();
	std::byte* block = AlignUp(region + sizeof(TPageHeader), alignment);
	std::byte* first = AlignDown(block - sizeof(TPageHeader), pageSize);
	std::byte* end = AlignUp(block + size, pageSize);
	GiveBack(region, first, "header", alignment, size);
	GiveBack(end, region + regionSize, "footer", alignment, size);
	const TPageHeader header{first, static_cast<std::size_t>(end - first)};
	std::memcpy(block - sizeof header, &header, sizeof header);
	return block;
}

void* AllocateAlignedFromPool(std::size_t size, std::size_t alignment) {
	using TDistance = int32_t;
	if (size >= kTooLargeForPool || alignment >= kTooLargeForPool)
		ThrowOutOfMemory();
	std::byte* start = static_cast<std::byte*>(sProcess.mPool.Allocate(size + alignment + sizeof(TDistance)));
	if (!start)
		ThrowOutOfMemory();
	std::byte* block = AlignUp(start + sizeof(TDistance), alignment);
	const TDistance distance = static_cast<TDistance>(block - start);
	std::memcpy(block - sizeof distance, &distance, sizeof distance);
	return block;
}

void FreeAlignedInPool(std::byte* block) noexcept {
	int32_t distance;
	std::memcpy(&distance, block - sizeof distance, sizeof distance);
	sProcess.mPool.Release(block - distance);
}

} // namespace

const THeap& SystemHeap() noexcept {
	return kSystemHeap;
}

const THeap& ExchangeHeap(const THeap& heap) noexcept {
	return *sHeap.exchange(&heap, std::memory_order_acq_rel);
}

void SetLowMemoryListener(void (*listener)()) noexcept {
	sLowMemoryListener.store(listener);
}

void* Allocate(const char*, std::size_t size) {
	if (size == 0)
		return nullptr;
	if (void* memory = Heap().mAllocate(size))
		return memory;
	return AllocateFromPool(size);
}

void* Reallocate(void* memory, std::size_t size) {
	if (size == 0) {
		Free(memory);
		return nullptr;
	}
	TEmergencyPool& pool = sProcess.mPool;
	void* moved = pool.Contains(memory) ? pool.Move(memory, size) : Heap().mReallocate(memory, size);
	if (!moved)
		ThrowOutOfMemory();
	return moved;
}

void Free(void* memory) noexcept {
	if (!memory || sTornDown.load(std::memory_order_relaxed))
		return;
	if (sProcess.mPool.Contains(memory))
		sProcess.mPool.Release(memory);
	else
		Heap().mFree(memory);
}

void* AllocateAligned(const char*, std::size_t size, std::size_t alignment) {
	constexpr std::size_t kLargest = SIZE_MAX / 4;
	if (size == 0)
		return nullptr;
	if (size > kLargest || alignment > kLargest)
		ThrowOutOfMemory();
	const std::size_t raised = std::bit_ceil(std::max(alignment, kSmallestAlignment));
	const std::size_t pageSize = PageSize();
	const std::size_t regionSize = (size + raised + pageSize - 1) / pageSize * pageSize;
	if (void* region = Heap().mReservePages(regionSize))
		return PlaceInPages(static_cast<std::byte*>(region), regionSize, size, raised);
	return AllocateAlignedFromPool(size, raised);
}

void FreeAligned(void* memory) noexcept {
	if (!memory || sTornDown.load(std::memory_order_relaxed))
		return;
	std::byte* block = static_cast<std::byte*>(memory);
	if (sProcess.mPool.Contains(block))
		return FreeAlignedInPool(block);
	TPageHeader header;
	std::memcpy(&header, block - sizeof header, sizeof header);
	if (!Heap().mReleasePages(header.mpPages, header.mLength))
		std::fprintf(stderr, "free_memalign(%p) failed!\n", memory);
}

void ZeroMemory(void* memory, std::size_t size) noexcept {
	std::memset(memory, 0, size);
}

void CopyMemory(void* target, const void* source, std::size_t size) noexcept {
	std::memcpy(target, source, size);
}

void MoveMemory(void* target, const void* source, std::size_t size) noexcept {
	std::memmove(target, source, size);
}

void SetMemory(void* memory, unsigned char value, std::size_t size) noexcept {
	std::memset(memory, value, size);
}

std::size_t PageSize() noexcept {
	static const std::size_t sPageSize = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
	return sPageSize;
}

} // namespace Memory
