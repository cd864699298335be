// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TReferenceCountable.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <typeinfo>
#include <utility>

/// Gives out objects of one size from blocks of many; one heap allocation serves a whole block. A slot is given out
/// once; a block comes back as a whole when its last object has gone. One thread at a time.
/// Whoever took objects gives them back before the allocator goes.
class TBlockAllocator : public TReferenceCountable {
public:
	/// Sizes in bytes, rounded up to a multiple of 4. Makes the first block; throws TOutOfMemoryException.
	TBlockAllocator(const char* tag, std::size_t objectSize, int32_t objectsPerBlock);
	~TBlockAllocator() override;
	TBlockAllocator(const TBlockAllocator&) = delete;
	TBlockAllocator& operator=(const TBlockAllocator&) = delete;

	void* AllocateObject();
	void FreeObject(void* object) noexcept;

private:
	struct TBlock {
		TBlock* mpPrevious;
		TBlock* mpNext;
		int64_t mLiveObjects;
	};

	static_assert(sizeof(TBlock) == 24);

	TBlock* NewBlock() const;
	static void Unlink(TBlock* block) noexcept;

	const char* mTag;
	std::size_t mObjectSize;
	int32_t mObjectsPerBlock;
	TBlock* mpCurrentBlock;
	int32_t mUsedInCurrentBlock = 0;
};

/// TBlockAllocator that also constructs and destroys.
template <class T>
class TBlockObjectAllocator final : public TBlockAllocator {
	static_assert(alignof(T) <= 8, "objects stand 8 bytes behind each other's end");

public:
	explicit TBlockObjectAllocator(int32_t objectsPerBlock) : TBlockAllocator(TypeTag(), sizeof(T), objectsPerBlock) {}

	template <class... TArguments>
	T* Create(TArguments&&... arguments) {
		void* memory = AllocateObject();
		try {
			return ::new (memory) T(std::forward<TArguments>(arguments)...);
		} catch (...) {
			FreeObject(memory);
			throw;
		}
	}

	/// Ignores null.
	void Destroy(T* object) noexcept {
		if (!object)
			return;
		object->~T();
		FreeObject(object);
	}

private:
	static const char* TypeTag() {
		static const char* sTag = typeid(T).name();
		return sTag;
	}
};
