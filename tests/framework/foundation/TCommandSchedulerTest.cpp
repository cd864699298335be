// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TCommandScheduler.h"
#include "framework/foundation/TPtr.h"
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
			const auto delay = static_cast<int32_t>(1 + random() % 300);
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
