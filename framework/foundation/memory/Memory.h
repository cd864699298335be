// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

/// All memory of the framework goes through these functions. Any thread.
///
/// A tag is a literal that says what the memory is for; it is for diagnostics only and is not stored.
/// A request that cannot be met throws TOutOfMemoryException; requests below 1 MiB are first tried in the
/// emergency pool, a static 4 MiB arena that keeps the program going until the user has saved.
namespace Memory {

/// Size 0 gives null.
void* Allocate(const char* tag, std::size_t size);
/// Null takes fresh memory from the heap. A failure leaves the old memory as it was.
void* Reallocate(void* memory, std::size_t size);
/// Ignores null. Does nothing once the process's static objects have been torn down.
void Free(void* memory) noexcept;

/// Whole pages from the system, zero-filled and not resident before they are written. The alignment is raised to a
/// power of two of at least 16. Size 0 gives null.
void* AllocateAligned(const char* tag, std::size_t size, std::size_t alignment);
void FreeAligned(void* memory) noexcept;

void ZeroMemory(void* memory, std::size_t size) noexcept;
void CopyMemory(void* target, const void* source, std::size_t size) noexcept;
void MoveMemory(void* target, const void* source, std::size_t size) noexcept;
void SetMemory(void* memory, unsigned char value, std::size_t size) noexcept;

/// For those who compute a size that cannot be. Defined beside the exception, which this room does not know.
[[noreturn]] void ThrowOutOfMemory();

/// Called once in the process's life, when the heap is exhausted and the emergency pool is needed; it may allocate.
void SetLowMemoryListener(void (*listener)()) noexcept;

/// Asked of the system once.
std::size_t PageSize() noexcept;

} // namespace Memory
