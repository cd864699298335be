// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/render/THostTransport.h"

#include <gtest/gtest.h>

namespace {

using EChange = THostTransport::EChange;

TEST(THostTransportTest, PositionRunsOnWithTheSamplesWhilePlaying) {
	THostTransport transport(48000, {120.0f, -1.0, true}, {{EChange::kStop, 1.0}, {EChange::kPlay, 2.0}});
	EXPECT_EQ(transport.AtBlock(0, 24000).mBeatPosition, -1.0);
	EXPECT_EQ(transport.AtBlock(24000, 24000).mBeatPosition, 0.0);
	const TTransportInfo stopped = transport.AtBlock(48000, 48000);
	EXPECT_FALSE(stopped.mIsPlaying);
	EXPECT_EQ(stopped.mBeatPosition, 1.0);
	const TTransportInfo again = transport.AtBlock(96000, 24000);
	EXPECT_TRUE(again.mIsPlaying);
	EXPECT_EQ(again.mBeatPosition, 1.0);
	EXPECT_EQ(transport.AtBlock(120000, 1).mBeatPosition, 2.0);
}

TEST(THostTransportTest, NewTempoGoesOnFromWhereTheOldOneCame) {
	THostTransport transport(48000, {120.0f, 0.0, true}, {{EChange::kTempo, 0.5, 60.0f}});
	EXPECT_EQ(transport.AtBlock(0, 48000).mTempo, 120.0f);
	// The change was due inside the first block, so it waits for the second.
	const TTransportInfo& second = transport.AtBlock(48000, 48000);
	EXPECT_EQ(second.mTempo, 60.0f);
	EXPECT_EQ(second.mBeatPosition, 2.0);
	EXPECT_EQ(transport.AtBlock(96000, 1).mBeatPosition, 3.0);
}

TEST(THostTransportTest, ChangeTakesTheBlockThatBeginsAtItsSample) {
	// 0.3 * 8000 is a little more than 2400 for a computer, 0.29 * 8000 a little less than 2320.
	for (const auto& [seconds, sample] : {std::pair(0.3, 2400), std::pair(0.29, 2320), std::pair(0.30001, 2401)}) {
		THostTransport transport(8000, {120.0f, 0.0, false}, {{EChange::kPlay, seconds}});
		EXPECT_FALSE(transport.AtBlock(sample - 1, 1).mIsPlaying) << seconds;
		EXPECT_TRUE(transport.AtBlock(sample, 1).mIsPlaying) << seconds;
	}
}

TEST(THostTransportTest, PositionDoesNotDependOnTheBlocks) {
	THostTransport coarse(44100, {123.4f, 0.25, true}, {{EChange::kTempo, 10.0, 97.3f}});
	THostTransport fine(44100, {123.4f, 0.25, true}, {{EChange::kTempo, 10.0, 97.3f}});
	for (int64_t sample = 0; sample < 2000000; ++sample) {
		const double position = fine.AtBlock(sample, 1).mBeatPosition;
		if (sample % 441000 == 0) {
			ASSERT_EQ(coarse.AtBlock(sample, 441000).mBeatPosition, position) << sample;
		}
	}
}

} // namespace
