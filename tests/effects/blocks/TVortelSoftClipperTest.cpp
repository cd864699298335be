// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TVortelSoftClipper.h"
#include "tests/effects/TestSignals.h"

#include <gtest/gtest.h>

namespace {

constexpr double kCeiling = 32767.0;
constexpr double kKnee = kCeiling * 0.85f;

} // namespace

TEST(TVortelSoftClipperTest, PassesWhatIsBelowTheKneeAndNeverTheCeiling) {
	const TVortelSoftClipper clipper(kCeiling, 0.85f);
	for (const double x : {0.0, 1.0, 32767.0 * 0.85, kKnee}) {
		EXPECT_EQ(clipper.Process(x), x);
		EXPECT_EQ(clipper.Process(-x), -x);
	}
	double previous = kKnee;
	for (double x = kKnee + 1.0; x < 1e6; x *= 1.01) {
		const double y = clipper.Process(x);
		EXPECT_GT(y, previous);
		EXPECT_LT(y, kCeiling);
		EXPECT_EQ(clipper.Process(-x), -y);
		previous = y;
	}
	EXPECT_LE(clipper.Process(1e30), kCeiling);
}

TEST(TVortelSoftClipperTest, LeavesTheLineWithSlopeOne) {
	const TVortelSoftClipper clipper(kCeiling, 0.85f);
	EXPECT_NEAR(clipper.Process(kKnee + 1.0) - kKnee, 1.0, 1e-3);
	// One room above the knee the curve has covered half of the way to the ceiling.
	const double room = kCeiling - kKnee;
	EXPECT_NEAR(clipper.Process(kKnee + room), kKnee + room / 2.0, 1e-9);
}

TEST(TVortelSoftClipperTest, BlockGivesTheSamplesOfSingleCalls) {
	const TVortelSoftClipper clipper(kCeiling, 0.85f);
	auto block = TestSignals::Noise(1003, 60000.0f);
	for (std::size_t i = 400; i < 800; ++i)
		block[i] *= 0.1f;
	const auto input = block;
	clipper.ProcessBlock(block.data(), static_cast<int>(block.size()));
	for (std::size_t i = 0; i < block.size(); ++i)
		ASSERT_EQ(block[i], static_cast<float>(clipper.Process(input[i]))) << i;
}
