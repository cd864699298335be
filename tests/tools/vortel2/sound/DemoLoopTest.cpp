// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/sound/DemoLoop.h"

#include "tools/vortel2/sound/TLevels.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

/// Root mean square of a stretch of the left side.
double Loudness(const TStereoSound& sound, double beat, double seconds) {
	const auto start = static_cast<std::size_t>(beat * 22050.0);
	const auto length = static_cast<std::size_t>(seconds * 44100.0);
	double sum = 0.0;
	for (std::size_t i = start; i < start + length; ++i)
		sum += static_cast<double>(sound.mLeft[i]) * static_cast<double>(sound.mLeft[i]);
	return std::sqrt(sum / static_cast<double>(length));
}

TEST(DemoLoopTest, FourBarsOfDrumsBelowFullScale) {
	TMemorySource source(MakeDemoLoop());
	const TLevels levels = TLevels::Measure(source);
	EXPECT_EQ(levels.mSampleRate, 44100);
	EXPECT_EQ(levels.mFrames, 4 * 4 * 22050);
	EXPECT_LT(levels.mPeak, 0.9);
	EXPECT_GT(levels.mPeak, 0.7);
	EXPECT_GT(levels.Rms(), 0.05);
}

TEST(DemoLoopTest, SameSamplesEachTimeAndADrumOnEveryBeat) {
	const TStereoSound loop = MakeDemoLoop();
	const TStereoSound again = MakeDemoLoop();
	EXPECT_EQ(loop.mLeft, again.mLeft);
	EXPECT_EQ(loop.mRight, again.mRight);
	EXPECT_NE(loop.mLeft, loop.mRight);
	for (const int beat : {1, 3, 4, 5, 7, 8, 9, 11, 12, 13})
		EXPECT_GT(Loudness(loop, beat, 0.02), 2.0 * Loudness(loop, beat - 0.05, 0.02)) << beat;
}

} // namespace
