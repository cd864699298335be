// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/MixRamped.h"

#include "effects/blocks/TRampable.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

struct TRamps {
	TRampable<float> mMix{0.1f, 1.0f / 64.0f};
	TRampable<float> mPan{0.9f, 1.0f / 64.0f};
	TRampable<float> mVolume{0.5f, 1.0f / 64.0f};

	TRamps() {
		mMix.SetTarget(1.0f);
		mPan.SetTarget(0.2f);
		mVolume.SetTarget(0.75f);
		for (TRampable<float>* ramp : {&mMix, &mPan, &mVolume})
			ramp->SetScale(44100.0f / 96000.0f);
	}
};

} // namespace

TEST(MixRampedTest, AnyLengthGivesWhatSingleSamplesGive) {
	for (int count = 1; count <= 40; ++count) {
		SCOPED_TRACE(count);
		const auto size = static_cast<std::size_t>(count);
		std::vector<float> dryLeft(size), dryRight(size), left(size), right(size), expectedLeft(size),
		    expectedRight(size);
		TRamps ramps, single;
		for (std::size_t i = 0; i < size; ++i) {
			const auto t = static_cast<float>(i);
			dryLeft[i] = 20000.0f * std::sin(t);
			dryRight[i] = 300.0f * t - 5000.0f;
			left[i] = 0.001f * t * t;
			right[i] = 32768.0f / (t + 1.0f);
			single.mMix.Step();
			single.mPan.Step();
			single.mVolume.Step();
			const float mix = single.mMix.Current();
			const float pan = single.mPan.Current();
			const float scale = single.mVolume.Current() * (2.0f / kCenterGain);
			expectedLeft[i] = (dryLeft[i] * (1.0f - mix) + left[i] * mix) * std::sqrt(1.0f - pan) * scale;
			expectedRight[i] = (dryRight[i] * (1.0f - mix) + right[i] * mix) * std::sqrt(pan) * scale;
		}
		{
			TRampGroup group(ramps.mMix, ramps.mPan, ramps.mVolume);
			MixRamped(group, dryLeft.data(), dryRight.data(), left.data(), right.data(), count);
		}
		EXPECT_EQ(left, expectedLeft);
		EXPECT_EQ(right, expectedRight);
		EXPECT_EQ(ramps.mPan.Current(), single.mPan.Current());
	}
}
