// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/memory/TBlockAllocator.h"

#include "framework/foundation/memory/TPtr.h"
#include "tests/support/TFailingHeap.h"

#include <cstring>
#include <gtest/gtest.h>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

struct TBlockAllocatorTest : testing::Test {
	TFailingHeap mHeap;
	TPtr<TBlockAllocator> mpAllocator = MakePtr<TBlockAllocator>("test", std::size_t{10}, 4);

	std::vector<void*> Take(int count) {
		std::vector<void*> objects;
		for (int i = 0; i < count; ++i) {
			objects.push_back(mpAllocator->AllocateObject());
			std::memset(objects.back(), i, 10);
		}
		return objects;
	}

	void GiveBack(std::span<void*> objects) {
		for (void* object : objects)
			mpAllocator->FreeObject(object);
	}
};

struct TThrowing {
	explicit TThrowing(bool throws) {
		if (throws)
			throw std::runtime_error("refused");
	}

	std::string mText = "a text that is too long to stand inside the string";
};

} // namespace

TEST_F(TBlockAllocatorTest, OneHeapBlockServesAllItsSlots) {
	const int allocations = mHeap->mAllocations;
	std::vector<void*> objects = Take(9);
	EXPECT_EQ(mHeap->mAllocations, allocations + 2) << "the first block was made by the constructor";
	for (std::size_t i = 0; i < objects.size(); ++i)
		EXPECT_EQ(*static_cast<char*>(objects[i]), static_cast<char>(i));
	GiveBack(objects);
}

TEST_F(TBlockAllocatorTest, SlotsAreGivenOutAgainOnceTheirBlockIsEmpty) {
	std::vector<void*> objects = Take(2);
	mpAllocator->FreeObject(objects[1]);
	objects[1] = mpAllocator->AllocateObject();
	EXPECT_EQ(objects[1], static_cast<char*>(objects[0]) + 2 * (12 + sizeof(void*)));
	const int frees = mHeap->mFrees;
	GiveBack(objects);
	EXPECT_EQ(mHeap->mFrees, frees);
	EXPECT_EQ(mpAllocator->AllocateObject(), objects[0]);
}

TEST_F(TBlockAllocatorTest, EmptyBlockBehindTheCurrentOneIsFreed) {
	std::vector<void*> objects = Take(12); // three blocks
	const int frees = mHeap->mFrees;
	const std::span<void*> all = objects;
	GiveBack(all.subspan(4, 3));
	EXPECT_EQ(mHeap->mFrees, frees);
	GiveBack(all.subspan(7, 1)); // the middle one goes first, then its neighbour
	EXPECT_EQ(mHeap->mFrees, frees + 1);
	GiveBack(all.subspan(0, 4));
	EXPECT_EQ(mHeap->mFrees, frees + 2);
	GiveBack(all.subspan(8, 4));
	EXPECT_EQ(mHeap->mFrees, frees + 2);
	mpAllocator = nullptr;
	EXPECT_EQ(mHeap->mFrees, frees + 4) << "the current block and the allocator itself";
}

TEST_F(TBlockAllocatorTest, ObjectThatThrowsInItsConstructorLeavesNothingBehind) {
	const auto allocator = MakePtr<TBlockObjectAllocator<TThrowing>>(2);
	EXPECT_THROW(allocator->Create(true), std::runtime_error);
	TThrowing* objects[] = {allocator->Create(false), allocator->Create(false)};
	const int allocations = mHeap->mAllocations;
	EXPECT_THROW(allocator->Create(true), std::runtime_error);
	EXPECT_EQ(mHeap->mAllocations, allocations + 1) << "both slots of the first block were free for use";
	for (TThrowing* object : {objects[0], objects[1], static_cast<TThrowing*>(nullptr)})
		allocator->Destroy(object);
}
