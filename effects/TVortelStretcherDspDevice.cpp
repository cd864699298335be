// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelStretcherDspDevice.h"

#include "document/TVortelEffectDevices.h"
#include "framework/foundation/values/TRandom.h"

#include <algorithm>
#include <cmath>

using namespace VortelParameterIds::Stretcher;

namespace {

constexpr double kFullScale = 32767.0;
constexpr int kStretchInSeconds = 60 * 8 / 32;
constexpr double kShortestGrain = 1.0; // ms
constexpr double kLongestGrain = 100.0;
constexpr double kModulationInMilliseconds = 50.0;

} // namespace

TVortelStretcherDspDevice::TVortelStretcherDspDevice(TVortelStretcherDevice* device, THost* host, int32_t index)
    : TVortelDspDevice(device, host, index),
      mGrainSizeParameter(*device->mpGrainSize),
      mAttackParameter(*device->mpFMAttack),
      mReleaseParameter(*device->mpFMRelease) {
	FinishConstruction();
}

void TVortelStretcherDspDevice::SetFollower() {
	mFollower.SetAttack(mAttack, SampleRate());
	mFollower.SetRelease(mRelease, SampleRate());
}

void TVortelStretcherDspDevice::OnParametersChanged() {
	mSpeed = Scene()->ParameterValue(kSpeed);
	mSmoothing = Scene()->ParameterValue(kSmoothing);
	mGrainModulation = Scene()->ParameterValue(kFMAmount);
	mJitter = Scene()->ParameterValue(kJitter);
	mGrainSize = mGrainSizeParameter.Read(*Scene());
	mAttack = mAttackParameter.Read(*Scene());
	mRelease = mReleaseParameter.Read(*Scene());
	SetFollower();
}

void TVortelStretcherDspDevice::OnSampleRateChanged(int32_t rate) {
	mFollower.SetAttack(TVAEnvelopeFollower::kDefaultAttack, rate);
	mFollower.SetRelease(TVAEnvelopeFollower::kDefaultRelease, rate);
	const int room = 2 * static_cast<int>(rate * 0.001 * 100.0);
	mReadLimit = rate * kStretchInSeconds;
	mRecording.SetLengths(mReadLimit + room, FadeLength());
	OnStart();
}

void TVortelStretcherDspDevice::OnStart() {
	mRecording.Restart();
	mGrains.Restart();
	OnRetrigger();
}

void TVortelStretcherDspDevice::OnRetrigger() {
	mRecording.BeginSwitch();
	mNextGrains.Restart();
}

void TVortelStretcherDspDevice::OnStateLost() {
	mFollower.ClearState();
	OnStart();
}

void TVortelStretcherDspDevice::TGrain::Advance(int samples) {
	mPosition += samples;
	if (mPosition > mLength - 1) {
		mPreviousStart = mStart + mLength;
		mPosition = 0;
	}
}

void TVortelStretcherDspDevice::TGrainSet::Restart() {
	mReadPosition = 0.0;
	mLeft.Restart();
	mRight.Restart();
}

void TVortelStretcherDspDevice::TGrainSet::Advance(float speed, int limit, int samples) {
	for (int i = 0; i < samples && mReadPosition < limit; ++i)
		mReadPosition += speed; // sample by sample: the sum decides where grains start
	mLeft.Advance(samples);
	mRight.Advance(samples);
}

TVortelStretcherDspDevice::TSizeRange TVortelStretcherDspDevice::SizeRange(double envelope) const {
	const double modulation = (mGrainModulation - 0.5) * 2.0;
	const double size = mGrainSize + envelope * modulation * kModulationInMilliseconds;
	const double jitter = size * mJitter;
	const double low = std::max(kShortestGrain, size - jitter);
	return {low, std::min(kLongestGrain, size + jitter) - low};
}

/// One draw for every grain, whether or not there is a choice.
double TVortelStretcherDspDevice::DrawLength(const TSizeRange& range) const {
	return std::clamp(range.mLow + range.mRange * TRandom::Next(), kShortestGrain, kLongestGrain);
}

/// Left draws first. Without jitter, right grains of another length end where the left one ends, so that the sides
/// draw together again.
void TVortelStretcherDspDevice::UpdateGrains(TGrainSet& set, double envelope) const {
	if (set.mLeft.mPosition != 0 && set.mRight.mPosition != 0)
		return;
	const double ms = SampleRate() * 0.001;
	const TSizeRange range = SizeRange(envelope);
	if (set.mLeft.mPosition == 0)
		BeginGrain(set.mLeft, set.mReadPosition, static_cast<int>(ms * DrawLength(range)));
	if (set.mRight.mPosition == 0) {
		const bool drawsTogether = mJitter == 0.0f && set.mLeft.mLength != set.mRight.mLength;
		const int length =
		    drawsTogether ? set.mLeft.mLength - set.mLeft.mPosition : static_cast<int>(ms * DrawLength(range));
		BeginGrain(set.mRight, set.mReadPosition, length);
	}
}

void TVortelStretcherDspDevice::BeginGrain(TGrain& grain, double readPosition, int length) const {
	const int shortestFade = static_cast<int>(SampleRate() * 0.001);
	grain.mLength = length;
	grain.mStart = static_cast<int>(readPosition);
	const int fade = static_cast<int>(static_cast<float>(length) * mSmoothing);
	grain.mFadeLength = std::min(std::max(fade, shortestFade), length);
	grain.mFadeScale = 1.0 / std::max(1, grain.mFadeLength);
}

/// Grains that reach past the end hold its last sample.
float TVortelStretcherDspDevice::ReadGrain(const TGrain& grain, const float* samples, int size) const {
	const float now = samples[std::min(grain.mStart + grain.mPosition, size - 1)];
	if (grain.mPosition >= grain.mFadeLength)
		return now;
	const float before = samples[std::min(grain.mPreviousStart + grain.mPosition, size - 1)];
	const double share = mGrainFade.Interpolated(grain.mPosition * grain.mFadeScale);
	return static_cast<float>(before * (1.0 - share) + now * share);
}

/// A stretch within which the fade is either on or over.
void TVortelStretcherDspDevice::ReadGrain(
    const TGrain& grain, const float* samples, int size, float* target, int count) const {
	const int start = grain.mStart + grain.mPosition;
	const int before = grain.mPreviousStart + grain.mPosition;
	if (std::max(start, before) + count > size) {
		TGrain single = grain;
		for (int i = 0; i < count; ++i, ++single.mPosition)
			target[i] = ReadGrain(single, samples, size);
		return;
	}
	if (grain.mPosition >= grain.mFadeLength) {
		std::copy_n(samples + start, count, target);
		return;
	}
	for (int i = 0; i < count; ++i) {
		const double share = mGrainFade.Interpolated((grain.mPosition + i) * grain.mFadeScale);
		target[i] = static_cast<float>(samples[before + i] * (1.0 - share) + samples[start + i] * share);
	}
}

/// The level after the last of the samples.
double TVortelStretcherDspDevice::Follow(const float* left, const float* right, int count) {
	double envelope = 0.0;
	for (int i = 0; i < count; ++i)
		envelope = mFollower.Process((std::abs(left[i]) + std::abs(right[i])) / 2.0f / kFullScale);
	return envelope;
}

void TVortelStretcherDspDevice::ProcessEffect(float* left, float* right, int count) {
	for (int i = 0; i < count;) {
		if (mRecording.IsSwitching()) {
			ProcessSwitchingSample(left[i], right[i]);
			++i;
		} else {
			i += ProcessRun(left + i, right + i, count - i);
		}
	}
}

/// Up to where a grain or its fade ends. Grains never read what is not recorded yet, so all of it is recorded first.
int TVortelStretcherDspDevice::ProcessRun(float* left, float* right, int count) {
	UpdateGrains(mGrains, Follow(left, right, 1));
	const int run = std::max(1, std::min({count, mGrains.mLeft.Remaining(), mGrains.mRight.Remaining()}));
	Follow(left + 1, right + 1, run - 1);
	mRecording.Record(left, right, run);
	ReadGrain(mGrains.mLeft, mRecording.LoopLeft(), mRecording.Capacity(), left, run);
	ReadGrain(mGrains.mRight, mRecording.LoopRight(), mRecording.Capacity(), right, run);
	mGrains.Advance(mSpeed, mReadLimit, run);
	return run;
}

void TVortelStretcherDspDevice::ProcessSwitchingSample(float& left, float& right) {
	const double envelope = Follow(&left, &right, 1);
	mRecording.Record(left, right);
	UpdateGrains(mGrains, envelope);
	const float oldLeft = ReadGrain(mGrains.mLeft, mRecording.LoopLeft(), mRecording.Capacity());
	const float oldRight = ReadGrain(mGrains.mRight, mRecording.LoopRight(), mRecording.Capacity());
	const double share = mRecording.RecordNext(left, right);
	UpdateGrains(mNextGrains, envelope);
	const int size = mRecording.SwitchLength();
	const float newLeft = ReadGrain(mNextGrains.mLeft, mRecording.NextLeft(), size);
	const float newRight = ReadGrain(mNextGrains.mRight, mRecording.NextRight(), size);
	left = static_cast<float>(newLeft * share + oldLeft * (1.0 - share));
	right = static_cast<float>(newRight * share + oldRight * (1.0 - share));
	if (!mRecording.IsSwitching()) {
		mRecording.TakeOver();
		mGrains = mNextGrains;
	}
	mNextGrains.Advance(mSpeed, mReadLimit, 1);
	mGrains.Advance(mSpeed, mReadLimit, 1);
}
