// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ScaleSamples.h"

#include <gtest/gtest.h>

#include <vector>

TEST(ScaleSamplesTest, ThereAndBackLosesNothingAtAnyLengthAndPlace) {
	for (std::size_t length = 0; length < 70; ++length) {
		for (std::size_t start : {0u, 1u, 3u}) {
			std::vector<float> samples;
			for (std::size_t i = 0; i < start + length + 1; ++i)
				samples.push_back(static_cast<float>(i) * 0.37f - 5.0f);
			const std::vector<float> original = samples;
			std::vector<float> scaled = samples;
			ScaleSamples(samples.data() + start, scaled.data() + start, static_cast<int32_t>(length), kEngineScale);
			for (std::size_t i = 0; i < samples.size(); ++i) {
				const bool isInside = i >= start && i < start + length;
				ASSERT_EQ(scaled[i], isInside ? original[i] * 32768.0f : original[i]);
			}
			ScaleSamples(scaled.data() + start, scaled.data() + start, static_cast<int32_t>(length), kHostScale);
			ASSERT_EQ(scaled, original);
		}
	}
}

TEST(ScaleSamplesTest, SilenceIsZeroInEverySample) {
	for (int32_t length = 0; length < 140; ++length) {
		std::vector<float> samples(static_cast<std::size_t>(length) + 1, 0.0f);
		samples.back() = 1.0f;
		EXPECT_TRUE(IsSilence(samples.data(), length));
		for (std::size_t i = 0; i + 1 < samples.size(); ++i) {
			samples[i] = i % 2 == 0 ? -0.0f : 1e-40f;
			ASSERT_FALSE(IsSilence(samples.data(), length));
			samples[i] = 0.0f;
		}
	}
}
