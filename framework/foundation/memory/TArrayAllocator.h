// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/Memory.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <typeinfo>
#include <utility>

/// Raw memory for the elements of TList and TArray, under the name of T. Throws TOutOfMemoryException.
template <class T>
struct TDefaultArrayAllocator {
	static constexpr bool kGivesZeroes = false;

	static T* Allocate(std::size_t count) {
		return static_cast<T*>(Memory::Allocate(typeid(T).name(), count * sizeof(T)));
	}

	static void Free(T* items) noexcept { Memory::Free(items); }
};

/// Whole pages for samples and pixels, zero-filled and not resident before they are written. What vector code asks
/// for as 16 bytes is aligned to 32 as well.
template <class T, std::size_t alignment>
struct TAlignedAllocator {
	static_assert(alignment == 16 || alignment == 32);
	static constexpr bool kGivesZeroes = true;

	static T* Allocate(std::size_t count) {
		return static_cast<T*>(
		    Memory::AllocateAligned(typeid(T).name(), count * sizeof(T), std::max<std::size_t>(alignment, 32)));
	}

	static void Free(T* items) noexcept { Memory::FreeAligned(items); }
};

/// Holds raw memory while elements are made in it, which may throw.
template <class T, class TAllocator>
class TRawArray {
public:
	explicit TRawArray(int32_t count) : mpItems(TAllocator::Allocate(static_cast<std::size_t>(count))) {}

	TRawArray(const TRawArray&) = delete;
	TRawArray& operator=(const TRawArray&) = delete;

	~TRawArray() { TAllocator::Free(mpItems); }

	T* Items() const noexcept { return mpItems; }

	T* Release() noexcept { return std::exchange(mpItems, nullptr); }

private:
	T* mpItems;
};
