// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/memory/TEmergencyPool.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <vector>

namespace {

constexpr std::size_t kWholeArena = TEmergencyPool::kArenaSize - 2 * 4; // the first header, and what a fit leaves over

struct TEmergencyPoolTest : testing::Test {
	static inline int sFirstUses = 0;

	TEmergencyPoolTest() { sFirstUses = 0; }

	std::unique_ptr<TEmergencyPool> mpPool = std::make_unique<TEmergencyPool>([] { ++sFirstUses; });
};

bool IsFilledWith(const void* memory, std::size_t size, int value) {
	const auto* bytes = static_cast<const unsigned char*>(memory);
	return std::all_of(bytes, bytes + size, [=](int byte) { return byte == value; });
}

} // namespace

TEST_F(TEmergencyPoolTest, FreedNeighboursServeTheirSumByFirstFit) {
	EXPECT_EQ(mpPool->Allocate(0), nullptr);
	EXPECT_EQ(sFirstUses, 0);
	for (const std::size_t size : {12u, 100u, 108u, 1000u}) {
		void* first = mpPool->Allocate(size);
		void* second = mpPool->Allocate(size);
		void* fence = mpPool->Allocate(1);
		mpPool->Release(first);
		mpPool->Release(second);
		void* both = mpPool->Allocate(2 * size);
		EXPECT_EQ(both, first) << size;
		mpPool->Release(both);
		mpPool->Release(fence);
	}
	EXPECT_EQ(sFirstUses, 1);
}

TEST_F(TEmergencyPoolTest, TooLargeAndExhaustedGiveNull) {
	EXPECT_EQ(mpPool->Allocate(kWholeArena + 1), nullptr);
	EXPECT_EQ(mpPool->Allocate(SIZE_MAX), nullptr);
	void* all = mpPool->Allocate(kWholeArena);
	ASSERT_NE(all, nullptr);
	EXPECT_EQ(mpPool->Allocate(1), nullptr);
	EXPECT_EQ(mpPool->Move(all, kWholeArena), nullptr) << "there is no second place";
}

TEST_F(TEmergencyPoolTest, MovedBlockKeepsItsBytes) {
	void* small = mpPool->Allocate(100);
	std::memset(small, 7, 100);
	void* large = mpPool->Move(small, 5000);
	EXPECT_TRUE(IsFilledWith(large, 100, 7));
	std::memset(large, 8, 5000);
	void* smallAgain = mpPool->Move(large, 100);
	EXPECT_EQ(smallAgain, small);
	EXPECT_TRUE(IsFilledWith(smallAgain, 100, 8));
}

TEST_F(TEmergencyPoolTest, ManyBlocksOfAllSizesNeverOverlapAndAllComeBack) {
	struct TBlock {
		void* mpMemory;
		std::size_t mSize;
		int mFill;
	};

	std::mt19937 random(1);
	std::vector<TBlock> blocks;
	const auto releaseLast = [&] {
		ASSERT_TRUE(IsFilledWith(blocks.back().mpMemory, blocks.back().mSize, blocks.back().mFill));
		mpPool->Release(blocks.back().mpMemory);
		blocks.pop_back();
	};
	for (int round = 0; round < 3000; ++round) {
		const std::size_t size = random() % 5000 + 1;
		if (void* memory = mpPool->Allocate(size)) {
			ASSERT_TRUE(mpPool->Contains(memory));
			ASSERT_EQ(reinterpret_cast<std::uintptr_t>(memory) % 16, 0u);
			blocks.push_back({memory, size, round % 251});
			std::memset(memory, round % 251, size);
		}
		if (blocks.size() > 700 || random() % 3 == 0) {
			std::swap(blocks[random() % blocks.size()], blocks.back());
			releaseLast();
		}
	}
	while (!blocks.empty())
		releaseLast();
	EXPECT_NE(mpPool->Allocate(kWholeArena), nullptr);
}
