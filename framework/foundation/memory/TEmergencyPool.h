// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>

/// The last memory of a process whose heap is exhausted: a static arena for small blocks that let the user save and
/// quit. Any thread. Memory has the only one that matters; it exists from load time, before any other code.
///
/// The arena is a chain of blocks, each a signed 32-bit header and its bytes: positive for a free block of that many
/// bytes, negative for one in use. Blocks are found by first fit; free neighbours are merged on the way. Requests are
/// rounded up so that every block is 16-byte aligned.
class TEmergencyPool {
public:
	static constexpr int32_t kArenaSize = 0x400000;

	/// Called once, at the first allocation, before it: the heap may get its reserve back here.
	using TFirstUse = void (*)();

	explicit TEmergencyPool(TFirstUse firstUse) noexcept;

	/// Null if no block is large enough.
	void* Allocate(std::size_t size) noexcept;
	/// The address must be one that Allocate gave.
	void Release(void* memory) noexcept;
	/// Moves to a new block; null, and the old block stays, if there is none.
	void* Move(void* memory, std::size_t newSize) noexcept;

	bool Contains(const void* memory) const noexcept;

private:
	static constexpr int32_t kHeaderSize = 4;
	static constexpr std::size_t kAlignment = 16;

	static int32_t RoundedSize(int32_t size) noexcept;
	int32_t Header(int32_t offset) const noexcept;
	void SetHeader(int32_t offset, int32_t value) noexcept;
	int32_t MergeFreeBlocksBehind(int32_t offset) noexcept;
	void Take(int32_t offset, int32_t freeSize, int32_t size) noexcept;
	int32_t HeaderOffset(const void* memory) const noexcept;

	std::recursive_mutex mLock; // the first use and a move allocate inside
	TFirstUse mFirstUse;
	bool mUsed = false;

	/// The first header ends on a multiple of the alignment.
	struct alignas(kAlignment) {
		std::array<std::byte, kAlignment - kHeaderSize> mPadding;
		std::array<std::byte, kArenaSize> mArena;
	} mStore;
};
