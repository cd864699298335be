// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TVACubicTables.h"

#include <gtest/gtest.h>

TEST(TVACubicTablesTest, StartsExactlyAtTheSecondSample) {
	EXPECT_EQ(TVACubicTables::Interpolate(0, 123.0f, -4567.25f, 891.0f, 2.0f), -4567.25f);
}

TEST(TVACubicTablesTest, FollowsAParabola) {
	const auto parabola = [](double x) { return static_cast<float>(3.0 * x * x - 2.0 * x + 5.0); };
	for (int i = 0; i < TVACubicTables::kSize; i += 7) {
		const double t = i / 4096.0;
		EXPECT_NEAR(
		    TVACubicTables::Interpolate(i, parabola(-1.0), parabola(0.0), parabola(1.0), parabola(2.0)), parabola(t),
		    1e-5)
		    << i;
	}
}

TEST(TVACubicTablesTest, OvershootsAStepAsCatmullRomDoes) {
	EXPECT_NEAR(TVACubicTables::Interpolate(2048, 0.0f, 0.0f, 0.0f, 16.0f), -1.0f, 1e-6f);
	EXPECT_NEAR(TVACubicTables::Interpolate(2048, 0.0f, 16.0f, 0.0f, 0.0f), 9.0f, 1e-6f);
}
