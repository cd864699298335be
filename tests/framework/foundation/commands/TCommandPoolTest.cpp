// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/commands/TCommand.h"
#include "framework/foundation/commands/TCommandPoolAllocator.h"
#include "framework/foundation/commands/TCommandPoolGlobals.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/text/TReadableException.h"
#include "tests/support/TFrameworkFixture.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <random>
#include <set>
#include <thread>
#include <vector>

namespace {

struct TCommandPoolTest : TFrameworkFixture {
	TCommandPoolAllocator mPool;
};

} // namespace

TEST_F(TCommandPoolTest, WholeBlockIsServedAndNotAByteMore) {
	void* memory = mPool.Allocate(mPool.MaximumSize());
	ASSERT_NE(memory, nullptr);
	std::memset(memory, 0xAA, mPool.MaximumSize());
	EXPECT_EQ(mPool.Allocate(mPool.MaximumSize() + 1), nullptr);
	EXPECT_EQ(mPool.Allocate(0), nullptr);
	EXPECT_THROW(TCommand::operator new(100000), TOutOfMemoryException);
	TCommandPoolAllocator::Free(memory);
	EXPECT_EQ(mPool.Allocate(mPool.MaximumSize()), memory);
}

TEST_F(TCommandPoolTest, FreedNeighboursServeALargerRequestAtTheSamePlace) {
	void* first = mPool.Allocate(48);
	void* second = mPool.Allocate(48);
	void* third = mPool.Allocate(48);
	TCommandPoolAllocator::Free(second);
	EXPECT_EQ(mPool.Allocate(48), second);
	TCommandPoolAllocator::Free(second);
	TCommandPoolAllocator::Free(first);
	EXPECT_NE(mPool.Allocate(128), first); // one header more than the two make together
	EXPECT_EQ(mPool.Allocate(112), first);
	TCommandPoolAllocator::Free(third);
}

TEST_F(TCommandPoolTest, GrowsBeyondThePreallocatedMemoryAndFindsFreedChunksInFullBlocks) {
	std::set<void*> all;
	const std::size_t size = mPool.MaximumSize() / 4;
	for (int i = 0; i < 1000; ++i)
		ASSERT_TRUE(all.insert(mPool.Allocate(size)).second);
	void* freed = *all.begin();
	TCommandPoolAllocator::Free(freed);
	EXPECT_EQ(mPool.Allocate(size), freed);
}

TEST_F(TCommandPoolTest, ContentsSurviveWhileOthersComeAndGo) {
	struct TEntry {
		unsigned char* mpMemory;
		std::size_t mSize;
		unsigned char mFill;
	};

	std::mt19937 random(3);
	std::vector<TEntry> live;
	for (int i = 0; i < 20000; ++i) {
		if (live.size() < 200 && random() % 2 != 0) {
			const std::size_t size = 1 + random() % 300;
			const auto fill = static_cast<unsigned char>(random());
			live.push_back({static_cast<unsigned char*>(mPool.Allocate(size)), size, fill});
			ASSERT_EQ(reinterpret_cast<std::uintptr_t>(live.back().mpMemory) % 16, 0u);
			std::memset(live.back().mpMemory, fill, size);
		} else if (!live.empty()) {
			std::swap(live[random() % live.size()], live.back());
			const TEntry& entry = live.back();
			ASSERT_EQ(std::count(entry.mpMemory, entry.mpMemory + entry.mSize, entry.mFill), entry.mSize);
			TCommandPoolAllocator::Free(entry.mpMemory);
			live.pop_back();
		}
	}
}

TEST_F(TCommandPoolTest, EachRoleAllocatesFromItsOwnPool) {
	TCommandPoolGlobals pools(2);
	const auto allocateAs = [&pools](int32_t role, int32_t worker) {
		TThreadManager::TScope scope(role, worker);
		return static_cast<std::byte*>(pools.Allocate(32));
	};
	std::set<void*> first;
	for (const auto& [role, worker] :
	     {std::pair{kMainThread, -1}, {kAudioThread, -1}, {kAudioThread, 0}, {kAudioThread, 1}}) {
		void* memory = allocateAs(role, worker);
		TCommandPoolAllocator::Free(memory);
		first.insert(memory);
	}
	EXPECT_EQ(first.size(), 4u);
	EXPECT_TRUE(first.contains(allocateAs(kAudioThread, 2))); // no pool of its own: the general one
}

TEST_F(TCommandPoolTest, CommandsOfTheAudioThreadDieOnAnyThreadWhileOthersAreMade) {
	constexpr int kRounds = 20000;
	std::array<std::atomic<uint64_t*>, 8> handedOver{};
	std::atomic<bool> isDone{false};
	const auto freeWith = [](uint64_t* memory) {
		EXPECT_EQ(memory[1], memory[0] * 3);
		TCommandPoolAllocator::Free(memory);
	};
	std::thread other([&] {
		while (!isDone.load())
			for (auto& slot : handedOver)
				if (uint64_t* memory = slot.exchange(nullptr))
					freeWith(memory);
	});
	{
		TGlobalStorageScope storage(TGlobalStorage::Current()->Id());
		TThreadManager::TScope role(kAudioThread);
		for (uint64_t i = 0; i < kRounds; ++i) {
			auto* memory = static_cast<uint64_t*>(TCommand::operator new(i % 5 == 0 ? 48 : 32));
			memory[0] = i;
			memory[1] = i * 3;
			if (i % 3 != 0)
				memory = handedOver[i % handedOver.size()].exchange(memory);
			if (memory)
				freeWith(memory);
		}
		EXPECT_NE(TCommandPoolAllocator::OfThisThread(), nullptr);
	}
	EXPECT_EQ(TCommandPoolAllocator::OfThisThread(), nullptr); // it plays the role no more
	isDone = true;
	other.join();
	for (auto& slot : handedOver)
		if (uint64_t* memory = slot.exchange(nullptr))
			freeWith(memory);
}
