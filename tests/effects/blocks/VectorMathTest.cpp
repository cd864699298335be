// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/VectorMath.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace {

std::array<double, 2> Lanes(__m128d x) {
	std::array<double, 2> lanes;
	_mm_storeu_pd(lanes.data(), x);
	return lanes;
}

TEST(VectorMathTest, SineStaysWithinABillionth) {
	for (double x = -400.0; x < 400.0; x += 0.0137) {
		const auto lanes = Lanes(VectorMath::Sine(_mm_set_pd(x + 0.5, x)));
		ASSERT_NEAR(lanes[0], std::sin(x), 1e-9) << x;
		ASSERT_NEAR(lanes[1], std::sin(x + 0.5), 1e-9) << x;
	}
}

TEST(VectorMathTest, LogarithmAndPowerOverTheWholeRangeOfSamples) {
	for (double x = 1e-30; x < 1e38; x *= 1.0173) {
		const auto log = Lanes(VectorMath::Log2(_mm_set_pd(x * 1.3, x)));
		ASSERT_NEAR(log[0], std::log2(x), 2e-9) << x;
		ASSERT_NEAR(log[1], std::log2(x * 1.3), 2e-9) << x;
	}
	for (double x = -900.0; x < 900.0; x += 0.0931) {
		const auto power = Lanes(VectorMath::Exp2(_mm_set_pd(-x, x)));
		ASSERT_NEAR(power[0] / std::exp2(x), 1.0, 1e-8) << x;
		ASSERT_NEAR(power[1] / std::exp2(-x), 1.0, 1e-8) << x;
	}
	EXPECT_EQ(Lanes(VectorMath::Exp2(_mm_set1_pd(3.0)))[0], 8.0);
	EXPECT_EQ(Lanes(VectorMath::Log2(_mm_set1_pd(1.0)))[0], 0.0);
}

TEST(VectorMathTest, FifthRootFarBeyondAFloat) {
	for (float x = 1e-30f; x < 1e30f; x *= 1.0173f) {
		const auto root = VectorMath::FifthRoot(_mm_set_ps(x * 1.7f, x * 1.5f, x * 1.3f, x));
		ASSERT_NEAR(Lanes(root.mLow)[0] / std::pow(static_cast<double>(x), 0.2), 1.0, 1e-12) << x;
		ASSERT_NEAR(Lanes(root.mHigh)[1] / std::pow(static_cast<double>(x * 1.7f), 0.2), 1.0, 1e-12) << x;
	}
}

} // namespace
