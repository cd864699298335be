// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TVALadderFilter.h"
#include "tests/effects/TestSignals.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>

namespace {

using TestSignals::TSignal;

/// One channel, one sample at a time, written down stage by stage.
class TSlowLadder {
public:
	double Process(int mode, double frequency, double sampleRate, double q, double input) {
		const double f = std::clamp(frequency, 20.0, 0.49875311720698257 * sampleRate) * 1.84 / sampleRate;
		const double t = 1.0 - f;
		const double p = f * static_cast<double>(0.8f) * t + f;
		const double k = 2.0 * p - 1.0;
		const double r = std::exp(t * t * 1.258) * q;
		const double old[4] = {mStages[0], mStages[1], mStages[2], mStages[3]};
		const double u = input / 524288.0 - r * old[3];
		mStages[0] = (u + mInput) * p - old[0] * k;
		for (int i = 1; i < 4; ++i)
			mStages[i] = (mStages[i - 1] + old[i - 1]) * p - old[i] * k;
		mStages[3] -= std::pow(mStages[3], 3.0) / 6.0;
		mStages[3] = std::clamp(mStages[3], -6.249809265136719, 6.249809265136719);
		mInput = u;
		const double band = (mStages[2] - mStages[3]) * 3.1 * 524288.0;
		const double outputs[] = {
		    mStages[3] * (r + 1.0) * 524288.0, (u + mStages[2] - mStages[1] - mStages[3]) * 524288.0, band,
		    input - band};
		return outputs[mode];
	}

private:
	double mInput = 0.0;
	double mStages[4] = {};
};

struct TSettings {
	int mMode;
	double mFrequency, mRate, mQ;
	float mLevel;
};

std::vector<TSettings> AllSettings() {
	std::vector<TSettings> all;
	for (int mode = 0; mode < 4; ++mode)
		for (const double rate : {8000.0, 44100.0, 192000.0})
			for (const double frequency : {0.0, 150.0, 1836.0, 9000.0, 200000.0})
				for (const double q : {0.0, 0.2, 1.0})
					for (const float level : {300.0f, 32768.0f})
						all.push_back({mode, frequency, rate, q, level});
	return all;
}

} // namespace

TEST(TVALadderFilterTest, EveryModeFollowsTheStageByStageFormula) {
	for (const TSettings& s : AllSettings()) {
		TVALadderFilter filter;
		TSlowLadder slow[2];
		const TSignal input[] = {TestSignals::Noise(600, s.mLevel, 1), TestSignals::Noise(600, s.mLevel, 2)};
		TSignal left = input[0], right = input[1];
		filter.SetCoefficients(s.mMode, s.mFrequency, s.mRate, s.mQ);
		for (int i = 0; i < 600; i += 100) // in pieces: the state carries on
			filter.ProcessBlock(&left[static_cast<std::size_t>(i)], &right[static_cast<std::size_t>(i)], 100);
		for (std::size_t i = 0; i < left.size(); ++i) {
			const double a = slow[0].Process(s.mMode, s.mFrequency, s.mRate, s.mQ, input[0][i]);
			const double b = slow[1].Process(s.mMode, s.mFrequency, s.mRate, s.mQ, input[1][i]);
			ASSERT_NEAR(left[i], a, 0.02)
			    << s.mMode << ' ' << s.mFrequency << ' ' << s.mRate << ' ' << s.mQ << ' ' << i;
			ASSERT_NEAR(right[i], b, 0.02);
		}
	}
}

TEST(TVALadderFilterTest, SingleSamplesAndBlocksShareOneState) {
	TVALadderFilter blocks, singles;
	blocks.SetCoefficients(TVALadderFilter::kBandstop, 700.0, 44100.0, 0.8);
	singles.SetCoefficients(TVALadderFilter::kBandstop, 700.0, 44100.0, 0.8);
	TSignal left = TestSignals::Noise(200, 20000.0f, 3), right = TestSignals::Noise(200, 20000.0f, 4);
	TSignal singleLeft = left, singleRight = right;
	blocks.ProcessBlock(left.data(), right.data(), 200);
	singles.ProcessBlock(singleLeft.data(), singleRight.data(), 100);
	for (std::size_t i = 100; i < 200; ++i) {
		singleLeft[i] = static_cast<float>(singles.ProcessSampleLeft(singleLeft[i]));
		singleRight[i] = static_cast<float>(singles.ProcessSampleRight(singleRight[i]));
	}
	EXPECT_EQ(left, singleLeft);
	EXPECT_EQ(right, singleRight);
}

TEST(TVALadderFilterTest, RampedBlockIsCoefficientsBeforeEverySample) {
	for (const int count : {1, 2, 63, 64}) {
		for (int mode = 0; mode < 4; ++mode) {
			TVALadderFilter ramped, stepped;
			TRampable<float> frequency(10.0f, 1.0f / 32.0f), q(1.0f, 1.0f / 64.0f);
			frequency.SetTarget(30000.0f);
			q.SetTarget(0.0f);
			TRampable<float> steppedFrequency = frequency, steppedQ = q;
			const auto rest = static_cast<std::size_t>(count);
			TSignal left = TestSignals::Noise(count + 50, 30000.0f, 5),
			        right = TestSignals::Noise(count + 50, 30000.0f, 6);
			TSignal steppedLeft = left, steppedRight = right;
			{
				TRampGroup ramps(frequency, q);
				ramped.ProcessRamped(mode, 44100.0, ramps, left.data(), right.data(), count);
			}
			ramped.ProcessBlock(&left[rest], &right[rest], 50);
			for (std::size_t i = 0; i < rest; ++i) {
				steppedFrequency.Step();
				steppedQ.Step();
				stepped.SetCoefficients(mode, steppedFrequency.Current(), 44100.0, steppedQ.Current());
				steppedLeft[i] = static_cast<float>(stepped.ProcessSampleLeft(steppedLeft[i]));
				steppedRight[i] = static_cast<float>(stepped.ProcessSampleRight(steppedRight[i]));
			}
			stepped.ProcessBlock(&steppedLeft[rest], &steppedRight[rest], 50);
			for (std::size_t i = 0; i < left.size(); ++i) {
				ASSERT_NEAR(left[i], steppedLeft[i], 0.01) << mode << ' ' << i;
				ASSERT_NEAR(right[i], steppedRight[i], 0.01) << mode << ' ' << i;
			}
		}
	}
}

TEST(TVALadderFilterTest, LowpassWithoutFeedbackHasUnityGainAtDc) {
	TVALadderFilter filter;
	filter.SetCoefficients(TVALadderFilter::kLowpass, 1000.0, 44100.0, 0.0);
	TSignal left(4000, 1000.0f), right(4000, -500.0f);
	filter.ProcessBlock(left.data(), right.data(), 4000);
	EXPECT_NEAR(left.back(), 1000.0f, 0.1f);
	EXPECT_NEAR(right.back(), -500.0f, 0.1f);
}

TEST(TVALadderFilterTest, ChannelsStayApart) {
	TVALadderFilter filter;
	filter.SetCoefficients(TVALadderFilter::kHighpass, 500.0, 44100.0, 1.0);
	TSignal left = TestSignals::Noise(500, 32768.0f), right(500, 0.0f);
	filter.ProcessBlock(left.data(), right.data(), 500);
	EXPECT_EQ(TestSignals::Peak(right), 0.0);
}

TEST(TVALadderFilterTest, RecoversWithinASecondFromAnyNumber) {
	for (const float bad : {1e6f, 1e30f, -1e30f}) {
		for (int mode = 0; mode < 4; ++mode) {
			for (const double frequency : {300.0, 1000.0, 20000.0}) {
				TVALadderFilter hit, clean;
				hit.SetCoefficients(mode, frequency, 44100.0, 0.7);
				clean.SetCoefficients(mode, frequency, 44100.0, 0.7);
				TSignal left = TestSignals::Noise(60 * 1024, 10000.0f), right = left;
				TSignal cleanLeft = left, cleanRight = right;
				std::fill_n(left.begin() + 10, 20, bad);
				for (std::size_t i = 0; i < left.size(); i += 256) {
					hit.ProcessBlock(&left[i], &right[i], 256);
					clean.ProcessBlock(&cleanLeft[i], &cleanRight[i], 256);
				}
				for (std::size_t i = 44200; i < left.size(); ++i)
					ASSERT_NEAR(left[i], cleanLeft[i], 0.01) << bad << ' ' << mode << ' ' << frequency << ' ' << i;
				ASSERT_EQ(right, cleanRight);
			}
		}
	}
}
