// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelModulatorDspDevice.h"

#include "document/TVortelEffectDevices.h"
#include "effects/blocks/VectorMath.h"

#include <algorithm>
#include <cmath>
#include <numbers>

using namespace VortelParameterIds::Modulator;

namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi;
constexpr double kQuarterTurn = 1.5707963705062866; // pi / 2 as a float
constexpr double kFullScale = 32767.0;
constexpr double kLowestFrequency = 1.0;
constexpr double kHighestFrequency = 5000.0;

} // namespace

TVortelModulatorDspDevice::TVortelModulatorDspDevice(TVortelModulatorDevice* device, THost* host, int32_t index)
    : TVortelDspDevice(device, host, index),
      mFrequencyParameter(*device->mpFrequency),
      mAttackParameter(*device->mpFMAttack),
      mReleaseParameter(*device->mpFMRelease) {
	FinishConstruction();
}

std::array<TRampable<float>*, 5> TVortelModulatorDspDevice::Ramps() {
	return {&mFrequencyRamp, &mDepthRamp, &mOscRamp, &mFMRamp, &mSpreadRamp};
}

void TVortelModulatorDspDevice::SetFollower() {
	mFollower.SetAttack(mAttack, SampleRate());
	mFollower.SetRelease(mRelease, SampleRate());
}

void TVortelModulatorDspDevice::OnParametersChanged() {
	mFrequencyRamp.SetTarget(mFrequencyParameter.Read(*Scene()));
	mDepthRamp.SetTarget(Scene()->ParameterValue(kAmount));
	mOscRamp.SetTarget(Scene()->ParameterValue(kOscVolume));
	mFMRamp.SetTarget(Scene()->ParameterValue(kFMAmount));
	mSpreadRamp.SetTarget(Scene()->ParameterValue(kSpread));
	mAttack = mAttackParameter.Read(*Scene());
	mRelease = mReleaseParameter.Read(*Scene());
	SetFollower();
}

bool TVortelModulatorDspDevice::AreRampsSettled() const {
	return mFrequencyRamp.IsSettled() && mDepthRamp.IsSettled() && mOscRamp.IsSettled() && mFMRamp.IsSettled() &&
	       mSpreadRamp.IsSettled();
}

void TVortelModulatorDspDevice::OnSampleRateChanged(int) {
	for (TRampable<float>* ramp : Ramps())
		ramp->SetScale(RampScale());
	SetFollower();
}

/// The oscillator begins at its peak, so the ring modulator begins at full level.
void TVortelModulatorDspDevice::OnStart() {
	mPhase = std::numbers::pi / 2.0;
	for (TRampable<float>* ramp : Ramps())
		ramp->Finish();
}

void TVortelModulatorDspDevice::OnStateLost() {
	mFollower.ClearState();
	OnStart();
}

/// The ramps' values, sample by sample.
struct TVortelModulatorDspDevice::TMovingValues {
	static constexpr bool kMoves = true;
	const std::array<std::array<float, kPiece>, 5>& mValues;

	TValues At(int i) const {
		const auto at = static_cast<std::size_t>(i);
		return {mValues[0][at], mValues[1][at], mValues[2][at], mValues[3][at], mValues[4][at]};
	}
};

struct TVortelModulatorDspDevice::TRestingValues {
	static constexpr bool kMoves = false;
	TValues mValues;

	TValues At(int) const { return mValues; }
};

void TVortelModulatorDspDevice::ProcessEffect(float* left, float* right, int count) {
	int done = 0;
	if (const auto ramps = Ramps();
	    std::any_of(ramps.begin(), ramps.end(), [](const TRampable<float>* ramp) { return ramp->IsRamping(); }))
		done = ProcessRamped(left, right, count);
	const TRestingValues values{
	    {mFrequencyRamp.Target(), mDepthRamp.Target(), mOscRamp.Target(), mFMRamp.Target(), mSpreadRamp.Target()}};
	ProcessSamples(left + done, right + done, count - done, values);
}

int TVortelModulatorDspDevice::ProcessRamped(float* left, float* right, int count) {
	std::array<std::array<float, kPiece>, 5> values;
	TRampGroup tone(mFrequencyRamp, mDepthRamp, mOscRamp);
	TRampGroup modulation(mFMRamp, mSpreadRamp);
	int done = 0;
	while (done < count && (tone.IsMoving() || modulation.IsMoving())) {
		const int length = std::min(kPiece, count - done);
		tone.Fill(length, values[0].data(), values[1].data(), values[2].data());
		modulation.Fill(length, values[3].data(), values[4].data());
		ProcessSamples(left + done, right + done, length, TMovingValues{values});
		done += length;
	}
	return done;
}

template <class TSource>
void TVortelModulatorDspDevice::ProcessSamples(float* left, float* right, int count, TSource values) {
	const double radiansPerHertz = kTwoPi / SampleRate();
	TVAEnvelopeFollower follower = mFollower;
	double phase = mPhase;
	TValues now = values.At(0);
	for (int i = 0; i < count; ++i) {
		if constexpr (TSource::kMoves)
			now = values.At(i);
		const auto [frequency, depth, osc, fm, spread] = now;
		const double envelope = follower.Process((std::abs(left[i]) + std::abs(right[i])) / 2.0f / kFullScale);
		const double hertz =
		    std::clamp(frequency + envelope * (fm - 0.5) * 2.0 * 5000.0, kLowestFrequency, kHighestFrequency);
		const double offset = (spread * 2.0 - 1.0) * kQuarterTurn;
		const __m128d sine = VectorMath::Sine(_mm_set_pd(phase + offset, phase - offset));
		phase += hertz * radiansPerHertz;
		if (phase >= kTwoPi)
			phase = std::fmod(phase, kTwoPi);
		const __m128d in = _mm_set_pd(right[i], left[i]);
		const __m128d ring = _mm_mul_pd(in, _mm_add_pd(_mm_mul_pd(sine, _mm_set1_pd(depth)), _mm_set1_pd(1.0 - depth)));
		const __m128d out = _mm_add_pd(ring, _mm_mul_pd(sine, _mm_set1_pd(osc * kFullScale)));
		const __m128 samples = _mm_cvtpd_ps(out);
		_mm_store_ss(left + i, samples);
		_mm_store_ss(right + i, _mm_shuffle_ps(samples, samples, 1));
	}
	mPhase = phase;
	mFollower = follower;
}
