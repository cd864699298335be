// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TVADelayLine.h"
#include "tests/effects/TestSignals.h"

#include <gtest/gtest.h>

TEST(TVADelayLineTest, RepeatsAnImpulseWithFeedback) {
	TVADelayLine line;
	line.SetLength(100);
	for (int i = 0; i < 300; ++i) {
		const float output = line.Process(i == 0 ? 1000.0f : 0.0f, 0.5f, 70.0);
		const bool isEcho = i > 0 && i % 70 == 0;
		EXPECT_EQ(output, isEcho ? 1000.0f * std::pow(0.5f, static_cast<float>(i / 70 - 1)) : 0.0f) << i;
	}
}

TEST(TVADelayLineTest, ReadsBetweenSamplesOnTheCurve) {
	TVADelayLine line;
	line.SetLength(64);
	float output = 0.0f;
	for (int i = 0; i <= 50; ++i)
		output = line.Process(static_cast<float>(i * i), 0.0f, 10.25);
	EXPECT_NEAR(output, 39.75f * 39.75f, 1e-3f);
}

TEST(TVADelayLineTest, DelayOfZeroReadsTheSlotAboutToBeWritten) {
	TVADelayLine line;
	line.SetLength(8);
	for (int i = 0; i < 8; ++i)
		EXPECT_EQ(line.Process(static_cast<float>(i + 1), 0.0f, 0.0), 0.0f);
	EXPECT_EQ(line.Process(0.0f, 0.0f, 0.0), 1.0f);
}

TEST(TVADelayLineTest, ClearSilencesWhatWasWrittenAcrossTheWrap) {
	TVADelayLine line;
	line.SetLength(64);
	for (const int written : {10, 50, 200}) {
		for (int i = 0; i < written; ++i)
			line.Process(1.0f, 0.0f, 5.0);
		line.Clear();
		for (int i = 0; i < 64; ++i)
			ASSERT_EQ(line.Process(0.0f, 0.0f, 63.0), 0.0f) << written;
	}
}

TEST(TVADelayLineTest, KeepsItsContentWhileTheSamePowerOfTwoHoldsTheLength) {
	TVADelayLine line;
	line.SetLength(40);
	line.Process(7.0f, 0.0f, 1.0);
	line.SetLength(60);
	EXPECT_EQ(line.Process(0.0f, 0.0f, 1.0), 7.0f);
	line.SetLength(65);
	EXPECT_EQ(line.Process(0.0f, 0.0f, 2.0), 0.0f);
}
