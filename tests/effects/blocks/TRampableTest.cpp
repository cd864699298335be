// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TRampable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <iterator>

TEST(TRampableTest, CoversTheSameShareOfWhatIsLeftAtEachStep) {
	TRampable<float> ramp(0.0f, 0.25f);
	ramp.SetTarget(16.0f);
	const float expected[] = {4.0f, 7.0f, 9.25f, 10.9375f};
	for (const float value : expected) {
		ramp.Step();
		EXPECT_EQ(ramp.Current(), value);
	}
}

TEST(TRampableTest, EndsByItselfShortOfTheTargetAndLandsOnItWithTheNextStepOrTarget) {
	TRampable<float> ramp(0.0f, 1.0f / 64.0f);
	ramp.SetTarget(1.0f);
	int steps = 0;
	while (ramp.IsRamping() && ++steps < 10000)
		ramp.Step();
	EXPECT_LT(steps, 2000);
	EXPECT_NE(ramp.Current(), 1.0f);
	EXPECT_NEAR(ramp.Current(), 1.0f, 1e-4f);
	TRampable<float> stepped = ramp;
	stepped.Step();
	EXPECT_EQ(stepped.Current(), 1.0f);
	ramp.SetTarget(1.0f);
	EXPECT_EQ(ramp.Current(), 1.0f);
}

TEST(TRampableTest, TakesTheSameTimeAtEverySampleRate) {
	const auto afterTenMilliseconds = [](int rate) {
		TRampable<float> ramp(0.0f, 1.0f / 64.0f);
		ramp.SetScale(44100.0f / static_cast<float>(rate));
		ramp.SetTarget(1.0f);
		for (int i = 0; i < rate / 100; ++i)
			ramp.Step();
		return ramp.Current();
	};
	const float expected = 1.0f - static_cast<float>(std::exp(-441.0 / 64.0));
	for (const int rate : {44100, 96000, 192000})
		EXPECT_NEAR(afterTenMilliseconds(rate), expected, 2e-4f) << rate;
}

TEST(TRampableTest, FinishAndJumpLeaveNothingToRamp) {
	TRampable<float> ramp(0.0f, 1.0f / 64.0f);
	ramp.SetTarget(0.7f);
	EXPECT_TRUE(ramp.IsRamping());
	ramp.Finish();
	EXPECT_EQ(ramp.Current(), 0.7f);
	EXPECT_FALSE(ramp.IsRamping());
	ramp.Jump(0.1f);
	EXPECT_EQ(ramp.Target(), 0.1f);
	EXPECT_FALSE(ramp.IsRamping());
}

namespace {

struct TGroupCase {
	float mFrom, mTo, mCoefficient;
};

} // namespace

/// Up and down, over zero and to it, far and by a few last places, which land at different samples.
TEST(TRampGroupTest, GivesTheValuesOfSeparateStepsAndEndsWithTheLastThatMoves) {
	const TGroupCase ways[] = {{0.0f, 0.3f, 1.0f / 64.0f},       {20.0f, 17000.0f, 1.0f / 32.0f},
	                           {1.0f, 0.001f, 1.0f / 256.0f},    {-0.5f, 0.25f, 1.0f / 64.0f},
	                           {0.7f, 0.70001f, 1.0f / 64.0f},   {0.7f, 0.7f, 1.0f / 64.0f},
	                           {1.0f, 1.0000001f, 1.0f / 32.0f}, {0.2f, 0.0f, 1.0f / 32.0f}};
	constexpr std::size_t kWays = std::size(ways);
	for (std::size_t way = 0; way < kWays; ++way) {
		for (const int rate : {8000, 44100, 192000}) {
			TRampable<float> apart[3];
			for (std::size_t i = 0; i < 3; ++i) {
				const auto& [from, to, coefficient] = ways[(way * (i + 1) + i) % kWays];
				apart[i] = {from, coefficient};
				apart[i].SetScale(44100.0f / static_cast<float>(rate));
				apart[i].SetTarget(to);
			}
			TRampable<float> together[] = {apart[0], apart[1], apart[2]};
			std::array<std::array<float, 304>, 3> values;
			const auto isRamping = [](const TRampable<float>& ramp) { return ramp.IsRamping(); };
			int at = 0;
			for (bool moves = true; moves && at < 100000;) {
				const int count = 1 + at % 301;
				moves = std::any_of(std::begin(apart), std::end(apart), isRamping);
				TRampGroup group(together[0], together[1], together[2]);
				ASSERT_EQ(group.IsMoving(), moves);
				group.Fill(count, values[0].data(), values[1].data(), values[2].data());
				for (std::size_t step = 0; step < static_cast<std::size_t>(count); ++step, ++at) {
					for (std::size_t i = 0; i < 3; ++i) {
						apart[i].Step();
						ASSERT_EQ(values[i][step], apart[i].Current()) << way << ' ' << rate << ' ' << i << ' ' << at;
					}
				}
			}
			for (std::size_t i = 0; i < 3; ++i)
				EXPECT_EQ(together[i].Current(), ways[(way * (i + 1) + i) % kWays].mTo);
		}
	}
}
