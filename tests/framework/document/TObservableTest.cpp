// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/TForwardingObserver.h"
#include "framework/document/TObservableBang.h"
#include "framework/document/TObservableBaseType.h"
#include "tests/framework/document/TActor.h"
#include "tests/support/TFrameworkFixture.h"

#include <memory>
#include <stdexcept>

namespace {

// A bank holds tens of thousands of these.
static_assert(sizeof(TObservable) <= 24);
static_assert(sizeof(TObservableBaseType<int>) <= 32);

class TObservableTest : public TFrameworkFixture {
protected:
	/// What the actors were told since the last call.
	std::string Told() { return std::exchange(mJournal, {}); }

	std::string mJournal;
	TObservableBang mBang;
	TActor mA{"a", mJournal};
	TActor mB{"b", mJournal};
	TActor mC{"c", mJournal};

	void WatchAll() {
		for (TActor* actor : {&mA, &mB, &mC})
			actor->Watch(mBang);
		Told();
	}
};

} // namespace

TEST_F(TObservableTest, TellsOfRegistrationChangeAndRemoval) {
	mA.Watch(mBang);
	mBang.BangBegin();
	mBang.Bang();
	mA.Leave(mBang);
	mBang.Bang();
	EXPECT_EQ(Told(), "a0 a2 a3 a1 ");
}

TEST_F(TObservableTest, RegisteredTwiceIsCalledTwiceUntilRemovedTwice) {
	mA.Watch(mBang);
	mA.Watch(mBang);
	Told();
	mBang.Bang();
	EXPECT_EQ(Told(), "a3 a3 ");
	mA.Leave(mBang);
	EXPECT_TRUE(mBang.IsObservedBy(mA.Callback()));
	mA.Leave(mBang);
	mA.Leave(mBang);
	EXPECT_FALSE(mBang.IsObservedBy(mA.Callback()));
	EXPECT_EQ(Told(), "a1 a1 ");
}

TEST_F(TObservableTest, ObserverThatRemovesItselfDoesNotHideTheNext) {
	WatchAll();
	mA.mAct = [&](auto*, int32_t) { mA.Leave(mBang); };
	mBang.Bang();
	EXPECT_EQ(Told(), "a3 a1 b3 c3 ");
	mBang.Bang();
	EXPECT_EQ(Told(), "b3 c3 ");
}

TEST_F(TObservableTest, ObserverThatRemovesAnEarlierOneDoesNotHideTheNext) {
	WatchAll();
	mB.mAct = [&](auto*, int32_t) { mA.Leave(mBang); };
	mBang.Bang();
	EXPECT_EQ(Told(), "a3 b3 a1 c3 ");
}

TEST_F(TObservableTest, ObserverRemovedBeforeItsTurnIsNotCalled) {
	WatchAll();
	mA.mAct = [&](auto*, int32_t) { mC.Leave(mBang); };
	mBang.Bang();
	EXPECT_EQ(Told(), "a3 c1 b3 ");
}

TEST_F(TObservableTest, ObserverAddedDuringARoundIsServedLast) {
	mA.Watch(mBang);
	mB.Watch(mBang);
	Told();
	mA.mAct = [&](auto*, int32_t) {
		mA.mAct = nullptr;
		mC.Watch(mBang);
	};
	mBang.Bang();
	EXPECT_EQ(Told(), "a3 c0 b3 c3 ");
}

TEST_F(TObservableTest, InnerRoundIsCompleteAndItsRemovalsDoNotDisturbTheOuterOne) {
	WatchAll();
	mB.mAct = [&](auto*, int32_t) {
		mB.mAct = nullptr;
		mA.mAct = [&](auto*, int32_t) { mA.Leave(mBang); };
		mBang.Bang();
	};
	mBang.Bang();
	EXPECT_EQ(Told(), "a3 b3 a3 a1 b3 c3 c3 ");
}

TEST_F(TObservableTest, DestroyedByItsObserverEndsTheRound) {
	auto bang = std::make_unique<TObservableBang>();
	mA.Watch(*bang);
	mB.Watch(*bang);
	Told();
	mA.mAct = [&](auto*, int32_t) { bang = nullptr; };
	bang->Bang();
	EXPECT_EQ(Told(), "a3 b1 a1 ");
}

TEST_F(TObservableTest, DyingObservableTellsTheLastObserverFirst) {
	{
		TObservableBang bang;
		for (TActor* actor : {&mA, &mB, &mC})
			actor->Watch(bang);
		Told();
	}
	EXPECT_EQ(Told(), "c1 b1 a1 ");
}

TEST_F(TObservableTest, ObserverThatDiesInItsOwnCallLeavesTheRest) {
	TPtr<TActor> actor = MakePtr<TActor>("x", mJournal);
	bool isDead = false;
	actor->mpDeathMark = &isDead;
	actor->Watch(mBang);
	mB.Watch(mBang);
	Told();
	actor->mAct = [&](auto*, int32_t) { actor = nullptr; };
	mBang.Bang();
	EXPECT_TRUE(isDead);
	EXPECT_EQ(Told(), "x3 b3 ");
	mBang.Bang();
	EXPECT_EQ(Told(), "b3 ");
}

TEST_F(TObservableTest, ObserverThatDiesWhenToldOfTheObservablesEnd) {
	class TLeaver final : public TObserver {
	public:
		void OnChange(TObservable*, int32_t reason) {
			if (reason == kObserverRemoved)
				mpSelf = nullptr;
		}

		TPtr<TLeaver> mpSelf{this};
	};

	auto* leaver = new TLeaver;
	auto bang = std::make_unique<TObservableBang>();
	bang->AddObserver({leaver, &TLeaver::OnChange});
	bang = nullptr; // the leak checker and the address sanitizer judge
}

TEST_F(TObservableTest, ExceptionEndsTheRoundAndLeavesTheObservableUsable) {
	WatchAll();
	mB.mAct = [&](auto*, int32_t) { throw std::runtime_error("actor"); };
	EXPECT_THROW(mBang.Bang(), std::runtime_error);
	EXPECT_EQ(TObserver::NotificationSourceThread(), TObserver::kNoNotification);
	EXPECT_EQ(Told(), "a3 b3 ");
	mB.mAct = [&](auto*, int32_t) { mB.Leave(mBang); };
	mBang.Bang();
	EXPECT_EQ(Told(), "a3 b3 b1 c3 ");
}

TEST_F(TObservableTest, BorrowedAudienceHearsTheEventButNotOfTheLoan) {
	mA.Watch(mBang);
	mB.Watch(mBang);
	Told();
	{
		TObservableBang event;
		event.CopyObserversFrom(mBang);
		event.Bang();
	}
	EXPECT_EQ(Told(), "a3 b3 ");
	mBang.Bang();
	EXPECT_EQ(Told(), "a3 b3 ");
}

TEST_F(TObservableTest, RemovedCompletelyIsToldNothing) {
	WatchAll();
	mA.Watch(mBang);
	Told();
	mBang.RemoveObserverCompletely(&mA);
	mBang.Bang();
	EXPECT_EQ(Told(), "b3 c3 ");
}

TEST_F(TObservableTest, EqualValueIsNoChangeUnlessForced) {
	TObservableBaseType<float> value{0.5f};
	mA.Watch(value);
	Told();
	value.Set(0.5f);
	EXPECT_EQ(Told(), "");
	value.ForceSet(0.5f);
	EXPECT_EQ(Told(), "a2 a3 ");
	float seen = 0.0f;
	mA.mAct = [&](auto*, int32_t) { seen = value.Get(); };
	value.Set(0.75f);
	EXPECT_EQ(seen, 0.75f);
}

TEST_F(TObservableTest, ForwardingObserversOutliveNothing) {
	std::string heard;
	{
		const auto forwarder = MakePtr<TForwardingStdObserver>(
		    kMainThread, [&](TObservable*, int32_t reason) { heard += std::to_string(reason); });
		forwarder->Observe(&mBang);
		mBang.Bang();
		forwarder->StopObserving(&mBang);
		mBang.Bang();
		forwarder->Observe(&mBang);
	}
	mBang.Bang();
	EXPECT_EQ(heard, "0310");
	EXPECT_FALSE(mBang.HasObservers());
}
