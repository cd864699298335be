// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/observables/TForwardingObserver.h"
#include "framework/document/observables/TObservableBang.h"
#include "framework/document/observables/TObservableBaseType.h"
#include "tests/framework/document/observables/TActor.h"
#include "tests/support/TFrameworkFixture.h"

#include <memory>
#include <stdexcept>

namespace {

// A bank holds tens of thousands of these.
static_assert(sizeof(TObservable) <= 24);
static_assert(sizeof(TObservableBaseType<int>) <= 32);

class TObservableTest : public TFrameworkFixture {
protected:
	void WatchAll(TObservable& observable) {
		for (TActor* actor : {&mA, &mB, &mC})
			actor->Watch(observable);
		Told();
	}

	/// What the actors were told since the last call.
	std::string Told() { return std::exchange(mJournal, {}); }

	std::string mJournal;
	TObservableBang mBang;
	TActor mA{"a", mJournal};
	TActor mB{"b", mJournal};
	TActor mC{"c", mJournal};
};

} // namespace

TEST_F(TObservableTest, TellsOfRegistrationsChangesAndRemovals) {
	mA.Watch(mBang);
	mA.Watch(mBang);
	mBang.BangBegin();
	mBang.Bang();
	EXPECT_EQ(Told(), "a0 a0 a2 a2 a3 a3 ") << "registered twice";
	mA.Leave(mBang);
	EXPECT_TRUE(mBang.IsObservedBy(mA.Callback()));
	mA.Leave(mBang);
	mA.Leave(mBang);
	EXPECT_FALSE(mBang.IsObservedBy(mA.Callback()));
	EXPECT_EQ(Told(), "a1 a1 ");
	WatchAll(mBang);
	mA.Watch(mBang);
	Told();
	mBang.RemoveObserverCompletely(&mA);
	mBang.Bang();
	EXPECT_EQ(Told(), "b3 c3 ") << "removed completely, and not told of it";
}

TEST_F(TObservableTest, ObserversComeAndGoInsideARound) {
	TActor newcomer("n", mJournal);

	struct TCase {
		TActor* mpActing;
		std::function<void(TObservableBang& bang)> mAct;
		const char* mTold;
	};

	const TCase cases[] = {
	    {&mA, [&](auto& bang) { mA.Leave(bang); }, "a3 a1 b3 c3 "},
	    {&mB, [&](auto& bang) { mA.Leave(bang); }, "a3 b3 a1 c3 "},
	    {&mA, [&](auto& bang) { mC.Leave(bang); }, "a3 c1 b3 "},
	    {&mA, [&](auto& bang) { newcomer.Watch(bang); }, "a3 n0 b3 c3 n3 "},
	    {&mB,
	     [&](auto& bang) { // an inner round with a removal of its own
		     mA.mAct = [&](auto*, int32_t) { mA.Leave(bang); };
		     bang.Bang();
	     },
	     "a3 b3 a3 a1 b3 c3 c3 "},
	};
	for (const TCase& c : cases) {
		TObservableBang bang;
		WatchAll(bang);
		c.mpActing->mAct = [&](auto*, int32_t) {
			c.mpActing->mAct = nullptr;
			c.mAct(bang);
		};
		bang.Bang();
		EXPECT_EQ(Told(), c.mTold);
		mA.mAct = nullptr;
	}
}

TEST_F(TObservableTest, DestroyedByItsObserverEndsTheRoundAndTellsTheLastFirst) {
	auto bang = std::make_unique<TObservableBang>();
	WatchAll(*bang);
	mA.mAct = [&](auto*, int32_t) { bang = nullptr; };
	bang->Bang();
	EXPECT_EQ(Told(), "a3 c1 b1 a1 ");
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
	mBang.Bang();
	EXPECT_EQ(Told(), "x3 b3 b3 ");
}

TEST_F(TObservableTest, ObserverThatDiesWhenToldOfTheObservablesEnd) {
	auto bang = std::make_unique<TObservableBang>();
	TPtr<TForwardingStdObserver> leaver = MakePtr<TForwardingStdObserver>(kMainThread, [&](auto*, int32_t reason) {
		if (reason == kObserverRemoved)
			leaver = nullptr;
	});
	leaver->Observe(bang.get());
	bang = nullptr; // the leak checker and the address sanitizer judge
	EXPECT_FALSE(leaver);
}

TEST_F(TObservableTest, ExceptionEndsTheRoundAndLeavesTheObservableUsable) {
	WatchAll(mBang);
	mB.mAct = [&](auto*, int32_t) { throw std::runtime_error("actor"); };
	EXPECT_THROW(mBang.Bang(), std::runtime_error);
	EXPECT_EQ(TObserver::NotificationSourceThread(), TObserver::kNoNotification);
	EXPECT_EQ(Told(), "a3 b3 ");
	mB.mAct = [&](auto*, int32_t) { mB.Leave(mBang); };
	mBang.Bang();
	EXPECT_EQ(Told(), "a3 b3 b1 c3 ");
}

TEST_F(TObservableTest, BorrowedAudienceHearsTheEventButNotOfTheLoan) {
	WatchAll(mBang);
	{
		TObservableBang event;
		event.CopyObserversFrom(mBang);
		event.Bang();
	}
	EXPECT_EQ(Told(), "a3 b3 c3 ");
	mBang.Bang();
	EXPECT_EQ(Told(), "a3 b3 c3 ");
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
