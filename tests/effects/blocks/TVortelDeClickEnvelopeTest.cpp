// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TVortelDeClickEnvelope.h"

#include <gtest/gtest.h>

TEST(TVortelDeClickEnvelopeTest, RisesWithEqualPowerOnBothSides) {
	TVortelDeClickEnvelope envelope(44);
	EXPECT_EQ(envelope.Value(0), 0.0);
	EXPECT_NEAR(envelope.Value(22), 0.70710678118654752, 1e-15);
	for (int i = 1; i < 44; ++i) {
		EXPECT_GT(envelope.Value(i), envelope.Value(i - 1));
		EXPECT_NEAR(
		    envelope.Value(i) * envelope.Value(i) + envelope.Value(44 - i) * envelope.Value(44 - i), 1.0, 1e-14);
	}
	EXPECT_EQ(envelope.Value(1000), envelope.Value(43));
}

TEST(TVortelDeClickEnvelopeTest, InterpolatesBetweenEntriesAndHoldsItsEnds) {
	TVortelDeClickEnvelope envelope(5);
	EXPECT_EQ(envelope.Interpolated(-1.0), envelope.Value(0));
	EXPECT_EQ(envelope.Interpolated(7.0), envelope.Value(4));
	EXPECT_EQ(envelope.Interpolated(0.25), envelope.Value(1));
	EXPECT_NEAR(envelope.Interpolated(0.625), (envelope.Value(2) + envelope.Value(3)) / 2.0, 1e-15);
	envelope.Resize(9);
	EXPECT_EQ(envelope.Interpolated(1.0), envelope.Value(8));
}
