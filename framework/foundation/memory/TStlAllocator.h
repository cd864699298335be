// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/Memory.h"

#include <cstddef>
#include <limits>
#include <typeinfo>

/// Gives the standard containers the memory functions of the framework. Stateless: all are equal.
template <class T>
class TStlAllocator {
	static_assert(alignof(T) <= alignof(std::max_align_t));

public:
	using value_type = T;

	TStlAllocator() noexcept = default;

	template <class U>
	TStlAllocator(const TStlAllocator<U>&) noexcept {}

	T* allocate(std::size_t count) {
		if (count > std::numeric_limits<std::size_t>::max() / sizeof(T))
			Memory::ThrowOutOfMemory();
		return static_cast<T*>(Memory::Allocate(typeid(T).name(), count * sizeof(T)));
	}

	void deallocate(T* memory, std::size_t) noexcept { Memory::Free(memory); }

	template <class U>
	friend bool operator==(const TStlAllocator&, const TStlAllocator<U>&) noexcept {
		return true;
	}
};
