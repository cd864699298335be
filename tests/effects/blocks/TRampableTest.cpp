// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TRampable.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>

TEST(TRampableTest, CoversTheSameShareOfWhatIsLeftAtEachStep) {
	TRampable<float> ramp(0.0f, 0.25f);
	ramp.SetTarget(16.0f);
	const float expected[] = {4.0f, 7.0f, 9.25f, 10.9375f};
	for (const float value : expected) {
		ramp.Step();
		EXPECT_EQ(ramp.Current(), value);
	}
}

TEST(TRampableTest, EndsByItselfAndThenTheNextTargetLandsAtOnce) {
	TRampable<float> ramp(0.0f, 1.0f / 64.0f);
	ramp.SetTarget(1.0f);
	int steps = 0;
	while (ramp.IsRamping() && ++steps < 10000)
		ramp.Step();
	EXPECT_LT(steps, 2000);
	EXPECT_NEAR(ramp.Current(), 1.0f, 1e-4f);
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

TEST(TRampGroupTest, GivesTheValuesOfSeparateSteps) {
	TRampable<float> together[] = {{0.0f, 1.0f / 64.0f}, {20.0f, 1.0f / 32.0f}, {1.0f, 1.0f / 256.0f}};
	for (auto& ramp : together)
		ramp.SetScale(44100.0f / 96000.0f);
	together[0].SetTarget(0.3f);
	together[1].SetTarget(17000.0f);
	together[2].SetTarget(0.001f);
	TRampable<float> apart[] = {together[0], together[1], together[2]};

	{
		TRampGroup group(together[0], together[1], together[2]);
		for (int step = 0; step < 501; ++step) {
			std::array<float, 4> values;
			_mm_storeu_ps(values.data(), group.Step());
			for (std::size_t i = 0; i < 3; ++i) {
				apart[i].Step();
				ASSERT_EQ(values[i], apart[i].Current());
			}
		}
	}
	for (std::size_t i = 0; i < 3; ++i)
		EXPECT_EQ(together[i].Current(), apart[i].Current());
}
