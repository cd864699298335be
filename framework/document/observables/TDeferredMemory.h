// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

/// Base of small parts that the audio thread may be the last to hold. What it frees waits, without a lock, for another
/// thread that makes or frees such a part.
class TDeferredMemory {
public:
	static void* operator new(std::size_t size);
	static void operator delete(void* memory) noexcept;
};
