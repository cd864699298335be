// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/Memory.h"

#include <cstddef>
#include <typeinfo>

/// Base of objects that are made with new and are not counted: their memory comes from the framework, under the name
/// of T.
template <class T>
struct TFrameworkMemory {
	static void* operator new(std::size_t size) { return Memory::Allocate(typeid(T).name(), size); }

	static void operator delete(void* memory) noexcept { Memory::Free(memory); }
};
