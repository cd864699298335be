// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/commands/TThreadCommunicator.h"

#include "framework/foundation/commands/TDecRefCommand.h"
#include "tests/support/TFrameworkFixture.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <functional>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using TMarks = std::vector<int>;

class TThreadCommunicatorTest : public TFrameworkFixture {
protected:
	TThreadCommunicator& Communicator() { return *TThreadCommunicator::Instance(); }

	int32_t Role() { return TThreadManager::Instance()->CurrentThread(); }

	void PostMark(int32_t receiver, int mark) {
		Communicator().Post(receiver, [this, mark] { mMarks.push_back(mark); });
	}

	void ProcessAs(int32_t role) {
		TThreadManager::TScope scope(role);
		Communicator().ProcessCommands();
	}

	TMarks mMarks;
};

/// Plays the host's audio thread until it is destroyed.
class TAudioHost {
public:
	explicit TAudioHost(int32_t storageId)
	    : mThread([this, storageId] {
		      while (!mStop) {
			      TGlobalStorageScope storage(storageId);
			      TThreadManager::TScope audio(kAudioThread);
			      TThreadCommunicator::Instance()->ProcessCommands();
		      }
	      }) {}

	~TAudioHost() {
		mStop = true;
		mThread.join();
	}

private:
	std::atomic<bool> mStop{false};
	std::thread mThread;
};

class TMortal : public TReferenceCountable {
public:
	explicit TMortal(int& deaths, bool onMainThread = true) : mDeaths(deaths), mOnMainThread(onMainThread) {}

	~TMortal() override { ++mDeaths; }

	bool IsDeletedOnMainThread() const override { return mOnMainThread; }

private:
	int& mDeaths;
	bool mOnMainThread;
};

} // namespace

TEST_F(TThreadCommunicatorTest, CommandsOfOneSenderInOrderAndThoseWithoutRoleLast) {
	std::thread([this] {
		TGlobalStorageScope storage(StorageId());
		PostMark(kAudioThread, 10);
	}).join();
	PostMark(kAudioThread, 1);
	PostMark(kAudioThread, 2);
	ProcessAs(0);
	EXPECT_TRUE(Communicator().HasCommandsFor(kAudioThread));
	ProcessAs(kAudioThread);
	EXPECT_EQ(mMarks, (TMarks{1, 2, 10}));
	EXPECT_FALSE(Communicator().HasCommandsFor(kAudioThread));
}

TEST_F(TThreadCommunicatorTest, CommandPostedDuringADrainRunsAtTheNextEvenAfterAThrow) {
	Communicator().Post(kMainThread, [this] {
		PostMark(kMainThread, 2);
		Communicator().ProcessCommands();
		throw std::runtime_error("swallowed");
	});
	PostMark(kMainThread, 1);
	Communicator().ProcessCommands();
	EXPECT_EQ(mMarks, (TMarks{1}));
	Communicator().ProcessCommands();
	EXPECT_EQ(mMarks, (TMarks{1, 2}));
}

TEST_F(TThreadCommunicatorTest, PostToNoThreadDoesNotTouchTheCommand) {
	TPtr<TCommand> command(new TInvokeFunctionCommand([] {}));
	Communicator().Post(kNoThread, command.Get());
	EXPECT_EQ(command->ReferenceCount(), 1);
	Communicator().Post(kAudioThread, command.Get());
	EXPECT_EQ(command->ReferenceCount(), 2);
}

TEST_F(TThreadCommunicatorTest, HeldQueueKeepsItsCommandsAndCountsAsDone) {
	{
		THoldCommands outer(kMainThread);
		{ THoldCommands inner(kMainThread); }
		PostMark(kAudioThread, 1);
		ProcessAs(kAudioThread);
		Communicator().WaitForThread(kAudioThread);
		Communicator().FlushAllCommands();
		EXPECT_TRUE(mMarks.empty());
	}
	ProcessAs(kAudioThread);
	EXPECT_EQ(mMarks, (TMarks{1}));
}

TEST_F(TThreadCommunicatorTest, WaitTakesTheRoleOfAnIdleReceiver) {
	for (const int32_t receiver : {0, kAudioThread}) {
		int32_t role = kNoThread;
		Communicator().Post(receiver, [&] { role = Role(); });
		Communicator().WaitForThread(receiver);
		EXPECT_EQ(role, receiver);
		EXPECT_FALSE(TThreadManager::Instance()->IsAttached(receiver));
		EXPECT_EQ(Role(), kMainThread);
	}
	EXPECT_TRUE(TThreadManager::Instance()->IsAttached(kMainThread));
}

TEST_F(TThreadCommunicatorTest, WaitLeavesCommandsToARunningReceiver) {
	TAudioHost host(StorageId());
	for (int i = 0; i < 20; ++i) {
		bool finished = false;
		Communicator().Post(kAudioThread, [&] {
			std::this_thread::yield();
			finished = true; // the wait is over only after the whole command
		});
		Communicator().WaitForThread(kAudioThread);
		EXPECT_TRUE(finished);
	}
}

TEST_F(TThreadCommunicatorTest, WaitForAllRunsWhatIdleReceiversHave) {
	for (int32_t receiver = 0; receiver < kNumberOfThreads; ++receiver)
		PostMark(receiver, receiver);
	Communicator().WaitForAllThreads(kMainThread);
	EXPECT_EQ(mMarks, (TMarks{0, 1, 2, 4, 5, 6})); // not those to itself
	{
		TThreadManager::TScope audio(kAudioThread);
		PostMark(kMainThread, 7);
	}
	Communicator().WaitForAllThreads(kAudioThread);
	EXPECT_EQ(mMarks.back(), 7);
	Communicator().WaitForAllThreads(kNoThread);
}

TEST_F(TThreadCommunicatorTest, FlushRunsCascadesForFivePasses) {
	int runs = 0;
	std::function<void()> again = [&] {
		++runs;
		Communicator().Post(Role(), [&again] { again(); });
	};
	Communicator().Post(0, [&again] { again(); });
	Communicator().FlushAllCommands();
	EXPECT_EQ(runs, 5);
	EXPECT_EQ(Role(), kMainThread);
	EXPECT_TRUE(Communicator().HasCommandsFor(0));
	Communicator().DropAllCommands();
	EXPECT_FALSE(Communicator().HasCommandsFor(0));
}

TEST_F(TThreadCommunicatorTest, ManySendersLoseNothingAndKeepTheirOrder) {
	constexpr int kCommands = 5000;
	std::array<TMarks, 4> received;
	std::vector<std::thread> senders;
	std::size_t echoes = 0;
	TAudioHost host(StorageId());
	for (TMarks& mine : received)
		senders.emplace_back([&] {
			TGlobalStorageScope storage(StorageId());
			for (int i = 0; i < kCommands; ++i)
				Communicator().Post(kAudioThread, [&, i] {
					mine.push_back(i);
					Communicator().Post(kMainThread, [&echoes] { ++echoes; });
				});
		});
	for (std::thread& sender : senders)
		sender.join();
	while (echoes < received.size() * kCommands)
		Communicator().ProcessCommands();
	for (const TMarks& mine : received)
		EXPECT_TRUE(mine.size() == kCommands && std::is_sorted(mine.begin(), mine.end()));
}

TEST_F(TThreadCommunicatorTest, LastReferenceOnTheAudioThreadDeletesOnTheMainThread) {
	int deaths = 0;
	TPtr<TMortal> object = MakePtr<TMortal>(deaths);
	TPtr<TMortal> anywhere = MakePtr<TMortal>(deaths, false);
	{
		TThreadManager::TScope audio(kAudioThread);
		anywhere = nullptr;
		EXPECT_EQ(deaths, 1);
		TReferenceCountable* dying = object.Get();
		object = nullptr;
		EXPECT_EQ(deaths, 1);
		EXPECT_TRUE(dying->IsBeingDestroyed());
	}
	Communicator().ProcessCommands();
	EXPECT_EQ(deaths, 2);
}

TEST_F(TThreadCommunicatorTest, HandedOverReferencesGoWithTheCommandEvenUnrun) {
	int deaths = 0;
	const auto post = [&] {
		auto* object = new TMortal(deaths);
		object->Retain();
		Communicator().Post(kAudioThread, new TDecRefCommand(object));
		Communicator().Post(kAudioThread, new TDeleteCommand<TReferenceCountable>(new TMortal(deaths)));
	};
	post();
	Communicator().WaitForThread(kAudioThread);
	EXPECT_EQ(deaths, 1); // the released one is on its way to the main thread
	Communicator().ProcessCommands();
	EXPECT_EQ(deaths, 2);
	post();
	Communicator().DropAllCommands();
	EXPECT_EQ(deaths, 4);
}
