// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/events/TTimerDispatcher.h"

#include "framework/foundation/commands/TThreadCommunicator.h"
#include "tests/support/TGuiFixture.h"

namespace {

class TTimerDispatcherTest : public TGuiFixture {
protected:
	struct TTarget {
		void OnTimer() {
			++mCalls;
			if (mOnCall)
				mOnCall();
		}

		TTimerDispatcher::TCallback Callback() { return {this, &TTarget::OnTimer}; }

		int mCalls = 0;
		std::function<void()> mOnCall;
	};

	void SetUp() override {
		TGuiFixture::SetUp();
		OpenEditor();
	}

	static TTimerDispatcher& Timers() { return *TTimerDispatcher::Instance(); }

	/// Frames that are 17 ms apart.
	void Frames(int count) {
		for (int frame = 0; frame < count; ++frame) {
			mClock.Advance(std::chrono::milliseconds(17));
			Tick();
		}
	}
};

TEST_F(TTimerDispatcherTest, AMillisecondTimerKeepsItsPhaseAndDropsWhatItMissed) {
	TTarget target;
	Timers().AddTimer(target.Callback(), 100);
	Timers().AddTimer(target.Callback(), 1); // listed already
	Frames(5);
	EXPECT_EQ(target.mCalls, 0);
	Frames(1); // 102 ms
	EXPECT_EQ(target.mCalls, 1);
	Frames(5); // 187 ms
	EXPECT_EQ(target.mCalls, 1);
	Frames(1); // 204 ms: the phase is that of 100 ms
	EXPECT_EQ(target.mCalls, 2);
	mClock.Advance(std::chrono::milliseconds(950));
	Tick();
	Tick();
	EXPECT_EQ(target.mCalls, 3);
	Timers().RemoveTimer(target.Callback());
	EXPECT_FALSE(Timers().HasTimer(target.Callback()));
}

TEST_F(TTimerDispatcherTest, ATimerThatEndsItselfUpsetsNoOther) {
	TTarget first;
	TTarget second;
	TTarget third;
	Timers().AddFrameTimer(first.Callback(), 1);
	Timers().AddFrameTimer(second.Callback(), 1);
	Timers().AddFrameTimer(third.Callback(), 2);
	second.mOnCall = [&] {
		Timers().RemoveTimer(first.Callback());
		Timers().RemoveTimer(second.Callback());
	};
	Tick();
	Tick();
	EXPECT_EQ(first.mCalls, 1);
	EXPECT_EQ(second.mCalls, 1);
	EXPECT_EQ(third.mCalls, 1);
	Timers().RemoveTimer(third.Callback());
}

TEST_F(TTimerDispatcherTest, HeldCommandsOfTheMainThreadHoldItsTimers) {
	TTarget target;
	Timers().AddFrameTimer(target.Callback(), 1);
	{
		const THoldCommands hold(kMainThread);
		Tick();
	}
	EXPECT_EQ(target.mCalls, 0);
	Tick();
	EXPECT_EQ(target.mCalls, 1);
	Timers().RemoveTimer(target.Callback());
}

} // namespace
