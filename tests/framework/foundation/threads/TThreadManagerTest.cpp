// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/threads/TThreadManager.h"
#include "tests/support/TFrameworkFixture.h"

#include <atomic>
#include <thread>
#include <vector>

namespace {

class TThreadManagerTest : public TFrameworkFixture {
protected:
	TThreadManager& Manager() { return *TThreadManager::Instance(); }
};

} // namespace

TEST_F(TThreadManagerTest, NestedScopesGiveRolesBackInOrder) {
	EXPECT_TRUE(Manager().IsCurrentThread(kMainThread));
	{
		TThreadManager::TScope none(kNoThread);
		EXPECT_FALSE(Manager().IsAttached(kMainThread));
		TThreadManager::TScope audio(kAudioThread);
		EXPECT_TRUE(Manager().IsCurrentThread(kAudioThread));
		TThreadManager::TScope again(kAudioThread);
		again.Release();
		EXPECT_TRUE(Manager().IsAttached(kAudioThread));
		audio.Release();
		EXPECT_FALSE(Manager().IsAttached(kAudioThread));
	}
	EXPECT_TRUE(Manager().IsAttached(kMainThread));
	TThreadManager::TScope worker(kAudioThread, 1);
	EXPECT_EQ(Manager().CurrentThread(), kNoThread) << "a worker does not play its owner's role";
	EXPECT_EQ(Manager().CurrentWorkerIndex(), 1);
	EXPECT_TRUE(Manager().IsWorkerOf(kAudioThread));
	EXPECT_FALSE(Manager().IsAttached(kAudioThread));
}

TEST_F(TThreadManagerTest, ScopeWaitsForWhoImpersonatesTheRole) {
	int written = 0;
	std::thread audio;
	std::atomic<bool> arrived = false;
	{
		TCriticalSection::TGuard guard(Manager().Lock(kAudioThread));
		audio = std::thread([&] {
			TGlobalStorageScope storage(StorageId());
			arrived = true;
			TThreadManager::TScope scope(kAudioThread);
			EXPECT_EQ(written, 1);
		});
		while (!arrived)
			std::this_thread::yield();
		EXPECT_FALSE(Manager().IsAttached(kAudioThread));
		written = 1;
	}
	audio.join();
}

TEST_F(TThreadManagerTest, MainRoleIsForOneThreadAtATimeAndKeptThroughOtherRoles) {
	std::atomic<bool> hasAsked = false;
	std::atomic<bool> isOver = false;
	std::thread other;
	{
		const TThreadManager::TScope outer(kMainThread);
		other = std::thread([&] {
			const TGlobalStorageScope storage(StorageId());
			const TThreadManager::TScope impatient(kMainThread, -1, TThreadManager::TPatience::kNone);
			EXPECT_FALSE(impatient.IsTaken());
			EXPECT_TRUE(Manager().IsCurrentThread(kNoThread));
			hasAsked = true;
			const TThreadManager::TScope scope(kMainThread);
			EXPECT_TRUE(isOver);
		});
		while (!hasAsked)
			std::this_thread::yield();
		{
			const TThreadManager::TScope none(kNoThread);
			const TThreadManager::TScope audio(kAudioThread); // waits for nobody
			const TThreadManager::TScope inner(kMainThread);
		}
		isOver = true;
	}
	other.join();
	EXPECT_TRUE(Manager().IsAttached(kMainThread)) << "the other's leaving is not this thread's";
}

TEST_F(TThreadManagerTest, ReleasedMainRoleIsTakenByOthersAndComesBackWhenTheyAreDone) {
	const TThreadManager::TScope outer(kMainThread);
	const TThreadManager::TScope inner(kMainThread);
	std::atomic<int> steps = 0;
	std::thread other([&] {
		const TGlobalStorageScope storage(StorageId());
		const TThreadManager::TScope scope(kMainThread);
		++steps;
		while (steps < 2)
			std::this_thread::yield();
		++steps;
	});
	{
		const TThreadManager::TReleasedScope released;
		EXPECT_TRUE(Manager().IsCurrentThread(kNoThread));
		while (steps < 1)
			std::this_thread::yield();
		++steps;
	}
	EXPECT_EQ(steps, 3);
	EXPECT_TRUE(Manager().IsCurrentThread(kMainThread));
	other.join();
	std::thread([&] {
		const TGlobalStorageScope storage(StorageId());
		EXPECT_FALSE(TThreadManager::TScope(kMainThread, -1, TThreadManager::TPatience::kNone).IsTaken());
	}).join();
}

TEST(TTurnLockTest, WhoHasWaitedLongerComesFirstAndWhoGivesUpIsNotServed) {
	TTurnLock lock;
	ASSERT_TRUE(lock.Take({}));
	std::thread([&] { EXPECT_FALSE(lock.Take(TTurnLock::TLimit(1))); }).join();
	std::atomic<bool> isAsking = false;
	std::atomic<bool> wasServed = false;
	std::thread waiter([&] {
		isAsking = true;
		EXPECT_TRUE(lock.Take(TThreadManager::kLongestWait));
		wasServed = true;
		lock.GiveBack();
	});
	while (!isAsking)
		std::this_thread::yield();
	while (!wasServed) { // however soon this thread comes back
		lock.GiveBack();
		ASSERT_TRUE(lock.Take(TThreadManager::kLongestWait));
	}
	waiter.join();
	lock.GiveBack();
}

TEST_F(TThreadManagerTest, HundredThreadsInManyInstancesKeepTheirRolesApart) {
	std::vector<int32_t> storages{StorageId()};
	while (storages.size() < 10)
		storages.push_back(TGlobalStorage::CreateStorage());
	const auto visitAll = [&storages](int32_t role) {
		for (int32_t id : storages) {
			TGlobalStorageScope storage(id);
			EXPECT_EQ(TThreadManager::Instance()->CurrentThread(), kNoThread);
			TThreadManager::TScope scope(role, 0);
			TGlobalStorageScope other(storages.front());
			EXPECT_EQ(TThreadManager::Instance()->CurrentOwnerThread(), id == storages.front() ? role : kNoThread);
		}
	};
	std::vector<std::thread> threads;
	for (int i = 0; i < 100; ++i)
		threads.emplace_back(visitAll, i % kNumberOfThreads);
	for (std::thread& thread : threads)
		thread.join();
	for (int32_t id : storages) {
		TGlobalStorageScope storage(id);
		EXPECT_TRUE(TThreadManager::Instance()->IsCurrentThread(kMainThread));
	}
	for (std::size_t i = 1; i < storages.size(); ++i)
		TGlobalStorage::DestroyStorage(storages[i]);
}
