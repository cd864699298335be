// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/commands/TCommandScheduler.h"
#include "framework/foundation/memory/TPtr.h"
#include "tests/support/TFrameworkFixture.h"

#include <algorithm>
#include <random>
#include <vector>

namespace {

class TMarkCommand final : public TCommand {
public:
	TMarkCommand(std::vector<int>& marks, int mark) : mMarks(marks), mMark(mark) {}

	void Execute() override { mMarks.push_back(mMark); }

	std::vector<int>& mMarks;
	int mMark;
};

class TOddMarks final : public TCommandMatch {
public:
	bool Matches(const TCommand* command) const override {
		return static_cast<const TMarkCommand*>(command)->mMark % 2 != 0;
	}
};

/// Comes again at each of its times, in order.
class TComingMark final : public TCommand {
public:
	TComingMark(TCommandScheduler& scheduler, std::vector<int>& marks, int mark, std::vector<int32_t> delays)
	    : mScheduler(scheduler),
	      mMarks(marks),
	      mMark(mark),
	      mDelays(std::move(delays)) {}

	void Execute() override {
		mMarks.push_back(mMark);
		if (++mAt < mDelays.size())
			mScheduler.ScheduleAgain(this, mDelays[mAt] - mDelays[mAt - 1]);
	}

	TCommandScheduler& mScheduler;
	std::vector<int>& mMarks;
	int mMark;
	std::vector<int32_t> mDelays;
	std::size_t mAt = 0;
};

class TNone final : public TCommandMatch {
public:
	bool Matches(const TCommand*) const override { return false; }
};

class TCommandSchedulerTest : public TFrameworkFixture {
protected:
	void ScheduleMark(int mark, int32_t delay) { mScheduler.Schedule(new TMarkCommand(mMarks, mark), delay); }

	std::vector<int> mMarks;
	TCommandScheduler mScheduler;
};

} // namespace

TEST_F(TCommandSchedulerTest, CommandScheduledByACommandIsHonouredInTheSameCall) {
	ScheduleMark(3, -5);
	EXPECT_EQ(mMarks, (std::vector<int>{3}));
	mScheduler.Schedule(
	    new TInvokeFunctionCommand([this] {
		    ScheduleMark(1, 10);
		    ScheduleMark(2, 0);
	    }),
	    20);
	EXPECT_EQ(mScheduler.Advance(64), 20);
	EXPECT_EQ(mScheduler.Advance(44), 10);
	EXPECT_EQ(mMarks, (std::vector<int>{3, 2}));
	EXPECT_EQ(mScheduler.Advance(34), 34);
	EXPECT_EQ(mMarks, (std::vector<int>{3, 2, 1}));
}

TEST_F(TCommandSchedulerTest, RemovedCommandsNoLongerCut) {
	for (int mark = 1; mark <= 5; ++mark)
		ScheduleMark(mark, 10 * ((mark + 1) / 2)); // 1 and 2 at 10, 3 and 4 at 20, 5 at 30
	mScheduler.RemoveMatching(TOddMarks());
	EXPECT_EQ(mScheduler.Advance(10), 10);
	EXPECT_EQ(mScheduler.Advance(90), 10);
	EXPECT_EQ(mScheduler.Advance(80), 80);
	EXPECT_EQ(mMarks, (std::vector<int>{2, 4}));
}

TEST_F(TCommandSchedulerTest, PendingCommandsAreReleasedWithTheScheduler) {
	TPtr<TMarkCommand> command = MakePtr<TMarkCommand>(mMarks, 1);
	{
		TCommandScheduler scheduler;
		scheduler.Schedule(command.Get(), 5);
		EXPECT_EQ(command->ReferenceCount(), 2);
	}
	EXPECT_EQ(command->ReferenceCount(), 1);
}

TEST_F(TCommandSchedulerTest, EveryCommandRunsAtItsSampleInOrderOfScheduling) {
	std::mt19937 random(7);
	std::vector<std::pair<int64_t, int>> expected, actual;
	int64_t now = 0;
	int number = 0;
	for (int block = 0; block < 500; ++block) {
		for (unsigned int count = random() % 8; count > 0; --count, ++number) {
			const auto delay = static_cast<int32_t>(1 + random() % (block % 2 ? 300 : 5));
			expected.emplace_back(now + delay, number);
			mScheduler.Schedule(new TInvokeFunctionCommand([&, n = number] { actual.emplace_back(now, n); }), delay);
		}
		for (auto left = static_cast<int32_t>(1 + random() % 256); left > 0;) {
			const int32_t done = mScheduler.Advance(left);
			ASSERT_GT(done, 0);
			now += done;
			left -= done;
		}
	}
	for (int i = 0; i < 300; ++i, ++now)
		mScheduler.Advance(1);
	EXPECT_FALSE(mScheduler.HasPendingCommand());
	std::ranges::stable_sort(expected, {}, &std::pair<int64_t, int>::first);
	EXPECT_EQ(actual, expected);
}

TEST_F(TCommandSchedulerTest, WhatComesAgainRunsAsIfAllHadBeenScheduledAtOnce) {
	std::mt19937 random(11);
	std::vector<int> expected;
	TCommandScheduler model;
	const auto scheduleInBoth = [&](int mark, int32_t delay) {
		ScheduleMark(mark, delay);
		model.Schedule(new TMarkCommand(expected, mark), delay);
	};
	// One that schedules others while the rest come again.
	const auto scheduleNested = [&](TCommandScheduler& scheduler, std::vector<int>& marks, int32_t delay) {
		scheduler.Schedule(
		    new TInvokeFunctionCommand([&, delay] { scheduler.Schedule(new TMarkCommand(marks, -2), 1 + delay % 3); }),
		    delay);
	};
	for (int block = 0; block < 300; ++block) {
		for (int i = 0; i < 5; ++i)
			scheduleInBoth(1000 + block * 10 + i, static_cast<int32_t>(1 + random() % 60));
		for (int coming = 0; coming < 6; ++coming) {
			std::vector<int32_t> delays;
			for (int32_t delay = 1; delay < 32; delay += static_cast<int32_t>(1 + random() % static_cast<unsigned>(1 + coming)))
				delays.push_back(delay);
			for (const int32_t delay : delays)
				model.Schedule(new TMarkCommand(expected, coming), delay);
			mScheduler.ScheduleFirst(new TComingMark(mScheduler, mMarks, coming, delays), delays[0]);
		}
		const auto delay = static_cast<int32_t>(1 + random() % 20);
		scheduleNested(mScheduler, mMarks, delay);
		scheduleNested(model, expected, delay);
		for (int i = 0; i < 5; ++i)
			scheduleInBoth(-1, static_cast<int32_t>(1 + random() % 31));
		if (block % 7 == 0) {
			mScheduler.RemoveMatching(TNone());
			model.RemoveMatching(TNone());
		}
		for (int32_t i = 0; i < 32; ++i) {
			mScheduler.Advance(1);
			model.Advance(1);
		}
		ASSERT_EQ(mMarks, expected) << block;
	}
	// Nothing is left for the end of the fixture, when the pool of commands has gone.
	for (int32_t i = 0; i < 100; ++i) {
		mScheduler.Advance(1);
		model.Advance(1);
	}
	EXPECT_EQ(mMarks, expected);
}
