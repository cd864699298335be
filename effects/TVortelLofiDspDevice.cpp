// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelLofiDspDevice.h"

#include "document/TVortelEffectDevices.h"
#include "framework/foundation/values/TRandom.h"

#include <algorithm>
#include <cmath>

using namespace VortelParameterIds::Lofi;

namespace {

constexpr double kFullScale = 32767.0;
constexpr double kLowestFrequency = 1.0;
constexpr double kHighestFrequency = 22050.0;
constexpr float kOriginalDepth = 13.0f;
/// Beyond this a double has no fraction left to round away.
constexpr double kAllWhole = 4503599627370496.0;

/// Nearest whole number, halves away from zero; any finite value.
inline double Round(double x) {
	if (!(std::abs(x) < kAllWhole))
		return x;
	return static_cast<double>(static_cast<int64_t>(x + std::copysign(0.5, x)));
}

struct TNoQuantizer {
	float operator()(float held) const { return held; }
};

/// Levels on both sides of zero; their number need not be a power of two.
struct TSignedQuantizer {
	double mHalf;

	float operator()(float held) const {
		return static_cast<float>(Round(held / kFullScale * mHalf) / mHalf * kFullScale);
	}
};

/// The signal is lifted to a positive range and stands on a lattice of whole steps that is not centred.
struct TUnsignedQuantizer {
	int mStep;

	float operator()(float held) const {
		return static_cast<float>(Round((held + kFullScale) * 0.5 / mStep) * mStep * 2.0 - kFullScale);
	}
};

} // namespace

TVortelLofiDspDevice::TVortelLofiDspDevice(TVortelLofiDevice* device, THost* host, int32_t index)
    : TVortelDspDevice(device, host, index),
      mFrequencyParameter(*device->mpFrequency),
      mBitDepthParameter(*device->mpBitDepth),
      mTypeParameter(*device->mpType),
      mAttackParameter(*device->mpFMAttack),
      mReleaseParameter(*device->mpFMRelease) {
	FinishConstruction();
}

void TVortelLofiDspDevice::SetFollower() {
	mFollower.SetAttack(mAttack, SampleRate());
	mFollower.SetRelease(mRelease, SampleRate());
}

void TVortelLofiDspDevice::OnParametersChanged() {
	mFrequency = mFrequencyParameter.Read(*Scene());
	mBitDepth = mBitDepthParameter.Read(*Scene());
	mType = mTypeParameter.ReadChoice<EVortelBitDepthType>(*Scene());
	mFMAmount = Scene()->ParameterValue(kFMAmount);
	mAttack = mAttackParameter.Read(*Scene());
	mRelease = mReleaseParameter.Read(*Scene());
	SetFollower();
}

void TVortelLofiDspDevice::OnSampleRateChanged(int) {
	SetFollower();
}

void TVortelLofiDspDevice::OnStateLost() {
	mFollower.ClearState();
	mPhase = 0.0;
	mHoldLeft = mHoldRight = 0.0f;
}

void TVortelLofiDspDevice::ProcessEffect(float* left, float* right, int count) {
	if (mBitDepth >= kOriginalDepth)
		ProcessSamples(left, right, count, TNoQuantizer{});
	else if (mType == EVortelBitDepthType::kSigned)
		ProcessSamples(left, right, count, TSignedQuantizer{Round(std::exp2(static_cast<double>(mBitDepth)) / 2.0)});
	else
		ProcessSamples(left, right, count, TUnsignedQuantizer{32767 / ((1 << RoundHalfAway(mBitDepth)) - 1)});
}

template <class TQuantizer>
void TVortelLofiDspDevice::ProcessSamples(float* left, float* right, int count, const TQuantizer& quantizer) {
	const double depthInHertz = (mFMAmount - 0.5) * 2.0 * 10000.0;
	TVAEnvelopeFollower follower = mFollower;
	double phase = mPhase;
	float outLeft = quantizer(mHoldLeft);
	float outRight = quantizer(mHoldRight);
	for (int i = 0; i < count; ++i) {
		const double envelope = follower.Process((std::abs(left[i]) + std::abs(right[i])) / 2.0f / kFullScale);
		const double frequency = std::clamp(mFrequency + envelope * depthInHertz, kLowestFrequency, kHighestFrequency);
		const double step = 1.0 / std::max(1.0, SampleRate() / frequency);
		if (phase < step) {
			mHoldLeft = left[i];
			mHoldRight = right[i];
			outLeft = quantizer(mHoldLeft);
			outRight = quantizer(mHoldRight);
		}
		left[i] = outLeft;
		right[i] = outRight;
		phase += step;
		if (phase >= 1.0)
			phase -= 1.0; // a step is at most 1, so this is the remainder, exactly
	}
	mPhase = phase;
	mFollower = follower;
}
