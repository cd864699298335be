// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelGaterDspDevice.h"

#include "document/TVortelGaterDevice.h"
#include "framework/foundation/values/TRandom.h"

#include <algorithm>
#include <bit>

using namespace VortelParameterIds::Gater;

TVortelGaterDspDevice::TVortelGaterDspDevice(TVortelGaterDevice* device, THost* host, int32_t index)
    : TVortelDspDevice(device, host, index),
      mTimeParameter(*device->mpTime),
      mModeParameter(*device->mpTimeMode),
      mVolumeStepsParameter(*device->mpNumVolumeSteps) {
	for (std::size_t step = 0; step < mStepLevels.size(); ++step)
		mStepLevels[step] = TVortelScene::DefaultGaterStep(static_cast<int32_t>(step));
	FinishConstruction();
}

void TVortelGaterDspDevice::ComputeStepLength() {
	const double bar = VortelTempoSync::BarLength(mSamplesPerBeat, mMode);
	mStepLength =
	    std::max({1, mMinimumLength, VortelTempoSync::WholeSamples(bar / mStepTime, VortelTempoSync::kLongest)});
}

void TVortelGaterDspDevice::OnParametersChanged() {
	mSmoothing = Scene()->ParameterValue(kSmoothing);
	const auto mode = mModeParameter.ReadChoice<EVortelTimeMode>(*Scene());
	const float time = mTimeParameter.Read(*Scene());
	if (mode != mMode || time != mStepTime) {
		mMode = mode;
		mStepTime = time;
		mLengthDirty = true;
	}
	mVolumeSteps = std::clamp(mVolumeStepsParameter.ReadWhole(*Scene()), 1, kMaximumSteps);
	for (std::size_t step = 0; step < mStepLevels.size(); ++step)
		mStepLevels[step] = Scene()->GaterStep(static_cast<int32_t>(step));
}

void TVortelGaterDspDevice::OnSampleRateChanged(int32_t rate) {
	const int points = std::max(1, RoundHalfAway(rate / 44100.0 * 128.0));
	mFadeEnvelope.Resize(static_cast<int>(std::bit_ceil(static_cast<unsigned>(points))));
	mMinimumLength = FadeLength();
	OnTempoChanged(Tempo());
}

void TVortelGaterDspDevice::OnTempoChanged(float tempo) {
	mSamplesPerBeat = VortelTempoSync::SamplesPerBeat(SampleRate(), tempo);
	ComputeStepLength();
}

/// The gate fades from open to the first step.
void TVortelGaterDspDevice::OnStart() {
	mLastStep = -1;
	mFromLevel = 1.0f;
	mToLevel = mStepLevels[0];
	mFadeCount = 0;
	OnRetrigger();
}

/// The pattern restarts; the levels stay and fade as at any other step.
void TVortelGaterDspDevice::OnRetrigger() {
	mCounter = 0;
}

int TVortelGaterDspDevice::CurrentStep() const {
	return static_cast<int>(mCounter / mStepLength % mVolumeSteps);
}

void TVortelGaterDspDevice::BeginStep(int step) {
	mLastStep = step;
	if (mLengthDirty)
		ComputeStepLength();
	mFadeLength = std::max(mMinimumLength, RoundHalfAway(static_cast<float>(mStepLength) * mSmoothing));
	mFadeCount = 0;
	mFadeStep = 1.0 / mFadeLength;
	mFromLevel = mToLevel;
	mToLevel = mStepLevels[static_cast<std::size_t>(step)];
}

void TVortelGaterDspDevice::ProcessEffect(float* left, float* right, int count) {
	for (int i = 0; i < count;) {
		// A step whose turn comes during a fade waits until the fade has ended.
		if (mFadeCount == 0 || !IsFading())
			if (const int step = CurrentStep(); step != mLastStep)
				BeginStep(step);
		i += IsFading() ? ProcessFade(left + i, right + i, count - i) : ProcessLevel(left + i, right + i, count - i);
	}
}

/// Up to the end of the fade.
int TVortelGaterDspDevice::ProcessFade(float* left, float* right, int count) {
	const int n = std::min(count, mFadeLength - mFadeCount);
	for (int i = 0; i < n; ++i) {
		const double share = mFadeEnvelope.Interpolated((mFadeCount + i) * mFadeStep);
		const double gain = mFromLevel * (1.0 - share) + mToLevel * share;
		left[i] = static_cast<float>(left[i] * gain);
		right[i] = static_cast<float>(right[i] * gain);
	}
	mFadeCount += n;
	mCounter += n;
	return n;
}

/// Up to the next step.
int TVortelGaterDspDevice::ProcessLevel(float* left, float* right, int count) {
	const int toNextStep = mStepLength - static_cast<int>(mCounter % mStepLength);
	const int n = std::min(count, toNextStep);
	const float gain = mToLevel;
	for (int i = 0; i < n; ++i)
		left[i] *= gain;
	for (int i = 0; i < n; ++i)
		right[i] *= gain;
	mCounter += n;
	return n;
}
