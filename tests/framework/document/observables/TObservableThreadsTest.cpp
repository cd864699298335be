// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/observables/TObservableBang.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "framework/document/observables/TWeakPtr.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/threads/TThreadManager.h"
#include "tests/framework/document/observables/TActor.h"
#include "tests/support/TFrameworkFixture.h"
#include "tests/support/TRealTimeWatch.h"

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace {

class TObservableThreadsTest : public TFrameworkFixture {
protected:
	template <class TWork>
	void AsAudioThread(TWork work) {
		const TThreadManager::TScope none(kNoThread);
		const TThreadManager::TScope audio(kAudioThread);
		work();
	}

	/// A thread of its own inside this instance.
	template <class TWork>
	std::thread StartAudioThread(TWork work) {
		return std::thread([this, work] {
			const TGlobalStorageScope storage(StorageId());
			const TThreadManager::TScope scope(kAudioThread);
			work();
		});
	}

	static void Process() { TThreadCommunicator::Instance()->ProcessCommands(); }

	std::string mJournal;
};

/// For any number of threads at once.
class TCounter final : public TObserver {
public:
	explicit TCounter(int32_t thread) : TObserver(thread) {}

	TObserverCallback Callback() { return {this, &TCounter::OnChange}; }

private:
	void OnChange(TObservable*, int32_t) { ++mCalls; }

	std::atomic<int> mCalls{0};
};

class TCountedEvent final : public TObservableOneShotBang {
public:
	explicit TCountedEvent(int* alive) : mpAlive(alive) { ++*mpAlive; }

	~TCountedEvent() override { --*mpAlive; }

private:
	int* mpAlive;
};

} // namespace

TEST_F(TObservableThreadsTest, ChangeOnTheAudioThreadArrivesLaterOnTheMainThread) {
	TObservableBaseType<int> value{1};
	TActor actor("a", mJournal);
	actor.Watch(value);
	int32_t thread = kNoThread;
	actor.mAct = [&](auto*, int32_t) { thread = TThreadManager::Instance()->CurrentThread(); };
	AsAudioThread([&] { value.Set(2); });
	EXPECT_EQ(mJournal, "a0 ");
	Process();
	EXPECT_EQ(mJournal, "a0 a3 ");
	EXPECT_EQ(thread, kMainThread);
	EXPECT_EQ(actor.mSource, kAudioThread);
	EXPECT_EQ(TObserver::NotificationSourceThread(), TObserver::kNoNotification);
}

TEST_F(TObservableThreadsTest, ModesDecideWhereTheCallHappens) {
	TObservableBang bang;
	TActor direct("d", mJournal, kMainThread);
	TActor posted("p", mJournal, kMainThread);
	TActor nowhere("n", mJournal, kNoThread);
	direct.Watch(bang, kDeliverDirectly);
	posted.Watch(bang, kDeliverAlwaysPosted);
	nowhere.Watch(bang);
	mJournal.clear();
	bang.Bang();
	EXPECT_EQ(mJournal, "d3 ");
	Process();
	EXPECT_EQ(mJournal, "d3 p3 ");
	AsAudioThread([&] { bang.Bang(); });
	EXPECT_EQ(mJournal, "d3 p3 d3 ");
	EXPECT_EQ(direct.mSource, kAudioThread);
	Process();
	EXPECT_EQ(mJournal, "d3 p3 d3 p3 ");
}

TEST_F(TObservableThreadsTest, ObserverReleasedWithNotificationsUnderWayDiesUncalledWhenTheyAreGone) {
	struct TCase {
		int32_t mThread;
		std::function<void(TPtr<TActor>& actor)> mRelease;
		std::function<void()> mArrive;
	};

	const auto release = [](TPtr<TActor>& actor) { actor = nullptr; };
	const auto releaseOnAudioThread = [this](TPtr<TActor>& actor) {
		AsAudioThread([&] {
			actor = nullptr;
			Process(); // it arrives here, and the main thread deletes
		});
	};
	const auto drop = [] { TThreadCommunicator::Instance()->DropAllCommands(); };
	const TCase cases[] = {
	    {kMainThread, release, &Process}, {kMainThread, release, drop}, {kAudioThread, releaseOnAudioThread, &Process}};
	for (const TCase& c : cases) {
		TObservableBang bang;
		bool isDead = false;
		TPtr<TActor> actor = MakePtr<TActor>("a", mJournal, c.mThread);
		actor->mpDeathMark = &isDead;
		actor->Watch(bang, kDeliverAlwaysPosted);
		mJournal.clear();
		bang.Bang();
		bang.Bang();
		c.mRelease(actor);
		EXPECT_FALSE(isDead);
		EXPECT_FALSE(bang.HasObservers());
		c.mArrive();
		EXPECT_TRUE(isDead);
		EXPECT_EQ(mJournal, "");
	}
}

TEST_F(TObservableThreadsTest, OneShotLivesUntilTheLastObserverIsServed) {
	TObservableBang prototype;
	TActor audio("a", mJournal, kAudioThread);
	TActor posted("p", mJournal, kMainThread);
	int alive = 0;
	FireEvent<TCountedEvent>(prototype, kDidChange, &alive);
	audio.Watch(prototype);
	posted.Watch(prototype, kDeliverAlwaysPosted);
	mJournal.clear();
	FireEvent<TCountedEvent>(prototype, kDidChange, &alive);
	AsAudioThread([] { Process(); });
	EXPECT_EQ(alive, 1);
	Process();
	EXPECT_EQ(alive, 0);
	EXPECT_EQ(mJournal, "a3 p3 ");
}

TEST_F(TObservableThreadsTest, FlushRunsWhatIsUnderWayToIdleThreads) {
	auto bang = std::make_unique<TObservableBang>();
	TActor audio("a", mJournal, kAudioThread);
	audio.Watch(*bang);
	bang->Bang();
	bang->FlushObserverThreads();
	EXPECT_EQ(mJournal, "a0 a3 ");
}

TEST_F(TObservableThreadsTest, AudioThreadSetsAValueWhoseObserverIsBusyOnTheMainThread) {
	TObservableBaseType<int> value{0};
	TActor actor("a", mJournal);
	actor.Watch(value);
	actor.mAct = [&](auto*, int32_t) {
		if (value.Get() == 1)
			StartAudioThread([&] { value.Set(2); }).join(); // would never end if it waited for this callback
	};
	value.Set(1);
	EXPECT_EQ(mJournal, "a0 a2 a3 ");
	Process();
	EXPECT_EQ(mJournal, "a0 a2 a3 a3 ");
}

TEST_F(TObservableThreadsTest, FloodFromTheAudioThreadNeedsNothingAndArrivesAsItsLastValue) {
	TObservableBaseType<float> observed{0.0f};
	TObservableBaseType<float> unobserved{0.0f};
	TActor actor("a", mJournal);
	actor.Watch(observed);
	float seen = 0.0f;
	actor.mAct = [&](auto*, int32_t) { seen = observed.Get(); };
	AsAudioThread([&] {
		const std::size_t before = TRealTimeWatch::NumberOfOffences();
		{
			const TRealTimeWatch watch;
			for (int i = 1; i <= 5000; ++i) {
				observed.Set(static_cast<float>(i));
				unobserved.Set(static_cast<float>(i));
			}
		}
		EXPECT_EQ(TRealTimeWatch::NumberOfOffences(), before) << TRealTimeWatch::FirstOffence();
	});
	Process();
	EXPECT_EQ(mJournal, "a0 a3 ");
	EXPECT_EQ(seen, 5000.0f);
}

TEST_F(TObservableThreadsTest, NotificationsUnderWayAreJoinedAndKnowTheMainThread) {
	TObservableBang bang;
	TActor actor("a", mJournal, kAudioThread);
	actor.Watch(bang);
	const auto arrive = [&] {
		mJournal.clear();
		AsAudioThread([] { Process(); });
		return mJournal;
	};
	bang.BangBegin();
	EXPECT_EQ(arrive(), "a2 ") << "it is still about to change";
	bang.BangBegin();
	bang.Bang();
	bang.BangBegin();
	std::thread([&] {
		const TGlobalStorageScope storage(StorageId());
		bang.Bang();
	}).join();
	EXPECT_EQ(arrive(), "a3 ");
	EXPECT_EQ(actor.mSource, kMainThread);
	bang.Bang();
	TThreadCommunicator::Instance()->DropAllCommands();
	bang.Bang();
	EXPECT_EQ(arrive(), "a3 ");
	bang.Bang();
	actor.Leave(bang);
	EXPECT_EQ(arrive(), "") << "it has left before";
}

TEST_F(TObservableThreadsTest, NobodyIsToldOfWhatIsGone) {
	TActor actor("a", mJournal, kAudioThread);
	{
		TObservableBang bang;
		actor.Watch(bang);
		bang.Bang();
	}
	mJournal.clear();
	AsAudioThread([] { Process(); });
	EXPECT_EQ(mJournal, "");
}

TEST_F(TObservableThreadsTest, WhoLeavesWaitsForTheCallbackOnAnotherThread) {
	TObservableBang bang;
	TActor actor("a", mJournal);
	actor.Watch(bang, kDeliverDirectly);
	std::atomic<bool> isInside{false};
	std::atomic<bool> mayEnd{false};
	std::atomic<bool> hasEnded{false};
	actor.mAct = [&](auto*, int32_t) {
		isInside = true;
		while (!mayEnd)
			std::this_thread::yield();
		hasEnded = true;
	};
	std::thread audio = StartAudioThread([&] { bang.Bang(); });
	while (!isInside)
		std::this_thread::yield();
	std::thread host([&] {
		for (int i = 0; i < 100; ++i)
			std::this_thread::yield();
		mayEnd = true;
	});
	bang.RemoveObserverCompletely(&actor);
	EXPECT_TRUE(hasEnded);
	host.join();
	audio.join();
}

TEST_F(TObservableThreadsTest, MainThreadInACallbackLendsItsRoleToWhoEndsTheObservable) {
	const TThreadManager::TScope role(kMainThread);
	auto bang = std::make_unique<TObservableBang>();
	TActor actor("a", mJournal);
	actor.Watch(*bang);
	actor.mAct = [&](auto*, int32_t) {
		const TThreadManager::TReleasedScope released;
		std::thread([&] {
			const TGlobalStorageScope storage(StorageId());
			const TThreadManager::TScope other(kMainThread);
			bang = nullptr; // must not wait for the callback, which waits for this
		}).join();
	};
	bang->Bang();
	EXPECT_EQ(mJournal, "a0 a3 a1 ");
}

TEST_F(TObservableThreadsTest, ValueIsReadAndWatchedWhileAnotherThreadWrites) {
	TObservableBaseType<int> value{0};
	TObservableBang bang;
	TCounter direct(kNoThread);
	bang.AddObserver(direct.Callback(), kDeliverDirectly);
	std::atomic<bool> isDone{false};
	std::thread writer = StartAudioThread([&] {
		for (int i = 1; !isDone; ++i) {
			value.Set(i);
			bang.Bang();
			Process();
		}
	});
	int lastSeen = 0;
	bool isOrdered = true;
	for (int round = 0; round < 3000; ++round) {
		TPtr<TActor> actor = MakePtr<TActor>("a", mJournal);
		actor->Watch(value);
		actor->Watch(bang);
		actor->mAct = [&](TObservable* observable, int32_t) {
			const int now = value.Get();
			isOrdered = isOrdered && now >= lastSeen;
			lastSeen = now;
			if (observable == &bang && round % 4 == 0)
				actor->Leave(bang);
		};
		const TPtr<TCounter> audio = MakePtr<TCounter>(kAudioThread);
		bang.AddObserver(audio->Callback());
		bang.Bang();
		Process();
		if (round % 3 == 0)
			actor->Leave(value);
	}
	isDone = true;
	writer.join();
	Process();
	EXPECT_TRUE(isOrdered);
	EXPECT_FALSE(value.HasObservers());
	bang.RemoveObserver(direct.Callback());
	EXPECT_FALSE(bang.HasObservers());
}

TEST_F(TObservableThreadsTest, ObserversAndObservablesMayDieAtTheSameTime) {
	constexpr int kRounds = 500;
	std::atomic<int> roundOfMain{0};
	std::atomic<int> roundOfAudio{0};
	std::atomic<TObservableBang*> pBang{nullptr};
	std::thread audio = StartAudioThread([&] {
		for (int round = 1; round <= kRounds; ++round) {
			while (roundOfMain.load() < round)
				std::this_thread::yield();
			const std::unique_ptr<TObservableBang> bang(pBang.load());
			bang->Bang();
			roundOfAudio = round;
		}
	});
	std::string journal;
	for (int round = 1; round <= kRounds; ++round) {
		auto* bang = new TObservableBang;
		TPtr<TActor> actor = MakePtr<TActor>("a", journal, kNoThread);
		actor->Watch(*bang);
		pBang = bang;
		roundOfMain = round;
		actor = nullptr;
		while (roundOfAudio.load() < round)
			std::this_thread::yield();
	}
	audio.join();
}

TEST_F(TObservableThreadsTest, WeakPointerOnAnotherThreadSeesTheEnd) {
	for (int round = 0; round < 500; ++round) {
		auto bang = std::make_unique<TObservableBang>();
		TWeakPtr<TObservableBang> weak(bang.get());
		std::thread reader([&] {
			while (weak) {
				const TWeakPtr<TObservableBang> copy(weak); // comes and goes while the object does
			}
		});
		bang = nullptr;
		EXPECT_FALSE(weak);
		reader.join();
	}
}
