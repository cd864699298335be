// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/memory/TEmergencyPool.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>

namespace {

// Touching every byte makes the pages our own, so that the arena is there when the machine has none left.
constexpr unsigned char kFillByte = 0xFC;

} // namespace

TEmergencyPool::TEmergencyPool(TFirstUse firstUse) noexcept : mFirstUse(firstUse) {
	std::memset(mStore.mArena.data(), kFillByte, mStore.mArena.size());
	SetHeader(0, kArenaSize - kHeaderSize);
}

void* TEmergencyPool::Allocate(std::size_t size) noexcept {
	if (size == 0 || size > kArenaSize - kHeaderSize)
		return nullptr;
	const std::lock_guard guard(mLock);
	if (!mUsed) {
		mUsed = true;
		if (mFirstUse)
			mFirstUse();
	}
	const int32_t wanted = static_cast<int32_t>(size);
	const int32_t rounded = RoundedSize(wanted);
	for (int32_t offset = 0; offset < kArenaSize; offset += kHeaderSize + std::abs(Header(offset))) {
		if (Header(offset) < 0)
			continue;
		const int32_t freeSize = MergeFreeBlocksBehind(offset);
		if (freeSize >= wanted + kHeaderSize && freeSize >= rounded) {
			Take(offset, freeSize, rounded);
			return mStore.mArena.data() + offset + kHeaderSize;
		}
	}
	return nullptr;
}

void TEmergencyPool::Release(void* memory) noexcept {
	const std::lock_guard guard(mLock);
	const int32_t offset = HeaderOffset(memory);
	SetHeader(offset, std::abs(Header(offset)));
}

void* TEmergencyPool::Move(void* memory, std::size_t newSize) noexcept {
	const std::lock_guard guard(mLock);
	void* target = Allocate(newSize);
	if (!target)
		return nullptr;
	const std::size_t oldSize = static_cast<std::size_t>(-Header(HeaderOffset(memory)));
	std::memcpy(target, memory, std::min(oldSize, newSize));
	Release(memory);
	return target;
}

bool TEmergencyPool::Contains(const void* memory) const noexcept {
	const std::less<const void*> before;
	const std::byte* arena = mStore.mArena.data();
	return !before(memory, arena) && before(memory, arena + kArenaSize);
}

int32_t TEmergencyPool::Header(int32_t offset) const noexcept {
	int32_t value;
	std::memcpy(&value, mStore.mArena.data() + offset, sizeof value);
	return value;
}

void TEmergencyPool::SetHeader(int32_t offset, int32_t value) noexcept {
	std::memcpy(mStore.mArena.data() + offset, &value, sizeof value);
}

int32_t TEmergencyPool::RoundedSize(int32_t size) noexcept {
	constexpr int32_t kUnit = static_cast<int32_t>(kAlignment);
	return (size + kHeaderSize + kUnit - 1) / kUnit * kUnit - kHeaderSize;
}

int32_t TEmergencyPool::MergeFreeBlocksBehind(int32_t offset) noexcept {
	int32_t size = Header(offset);
	for (int32_t next = offset + kHeaderSize + size; next < kArenaSize && Header(next) >= 0;) {
		size += kHeaderSize + Header(next);
		next = offset + kHeaderSize + size;
	}
	SetHeader(offset, size);
	return size;
}

void TEmergencyPool::Take(int32_t offset, int32_t freeSize, int32_t size) noexcept {
	const int32_t rest = freeSize - size;
	if (rest <= kHeaderSize) {
		SetHeader(offset, -freeSize);
		return;
	}
	SetHeader(offset, -size);
	SetHeader(offset + kHeaderSize + size, rest - kHeaderSize);
}

int32_t TEmergencyPool::HeaderOffset(const void* memory) const noexcept {
	return static_cast<int32_t>(static_cast<const std::byte*>(memory) - mStore.mArena.data()) - kHeaderSize;
}
