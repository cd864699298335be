// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TVAEnvelopeFollower.h"

#include <gtest/gtest.h>

TEST(TVAEnvelopeFollowerTest, RisesAndFallsWithItsTwoTimes) {
	TVAEnvelopeFollower follower;
	follower.SetAttack(10.0, 1000.0);
	follower.SetRelease(50.0, 1000.0);
	const double attack = std::exp(-0.1);
	const double smooth = std::exp(-0.01);
	const double release = std::exp(-1.0 / 50.0);
	double envelope = 0.0;
	double output = 0.0;
	for (int i = 0; i < 30; ++i) {
		envelope = 1.0 - std::pow(attack, i + 1);
		output = envelope + smooth * (output - envelope);
		ASSERT_NEAR(follower.Process(i % 2 == 0 ? 1.0 : -1.0), output, 1e-12);
	}
	for (int i = 0; i < 30; ++i) {
		envelope *= release;
		output = envelope + smooth * (output - envelope);
		ASSERT_NEAR(follower.Process(0.0), output, 1e-12);
	}
}

TEST(TVAEnvelopeFollowerTest, HoldsJustBelowItsFloorInSilence) {
	TVAEnvelopeFollower follower;
	follower.SetAttack(0.5, 44100.0);
	follower.SetRelease(0.5, 44100.0);
	for (int i = 0; i < 1000; ++i)
		follower.Process(1.0);
	double settled = 0.0;
	for (int i = 0; i < 20000; ++i)
		settled = follower.Process(0.0);
	EXPECT_GT(settled, 9e-6);
	EXPECT_LT(settled, 1e-5);
	EXPECT_EQ(follower.Process(0.0), settled);
}
