// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelShufflerDspDevice.h"

#include "document/TVortelEffectDevices.h"
#include "framework/foundation/values/TRandom.h"

#include <algorithm>
#include <cmath>

using namespace VortelParameterIds::Shuffler;

namespace {

constexpr double kCapacityInSeconds = 60.0 / 32.0 * 4.0;
constexpr double kShortestFade = 0.25; // ms
constexpr double kLongestFade = 2.0;

} // namespace

TVortelShufflerDspDevice::TVortelShufflerDspDevice(TVortelShufflerDevice* device, THost* host, int32_t index)
    : TVortelDspDevice(device, host, index),
      mModeParameter(*device->mpTimeMode),
      mTimeParameter(*device->mpMinTime),
      mRangeParameter(*device->mpRange) {
	FinishConstruction();
}

void TVortelShufflerDspDevice::OnParametersChanged() {
	mMode = mModeParameter.ReadChoice<EVortelTimeMode>(*Scene());
	mMinTime = Scene()->ParameterValue(kMinTime);
	mMaxTime = Scene()->ParameterValue(kMaxTime);
	mRangeBeats = mRangeParameter.ReadWhole(*Scene());
	mShuffleThreshold = 1.0f - Scene()->ParameterValue(kShuffleChance);
	mRepeatThreshold = 1.0f - Scene()->ParameterValue(kRepeatChance);
	mForwardThreshold = 1.0f - Scene()->ParameterValue(kReverseChance);
}

void TVortelShufflerDspDevice::OnSampleRateChanged(int32_t rate) {
	const double ms = rate * 0.001;
	for (TVortelSliceBuffer* buffer : {&mLeft, &mRight}) {
		buffer->SetFades(RoundHalfAway(ms * kShortestFade), RoundHalfAway(ms * kLongestFade));
		buffer->SetCapacity(static_cast<int>(rate * kCapacityInSeconds));
	}
	OnTempoChanged(Tempo());
	OnStart();
}

/// Slice lengths follow at the next choice.
void TVortelShufflerDspDevice::OnTempoChanged(float tempo) {
	mSamplesPerBeat = VortelTempoSync::SamplesPerBeat(SampleRate(), tempo);
}

void TVortelShufflerDspDevice::OnStart() {
	mLeft.Reset();
	mRight.Reset();
	OnRetrigger();
}

void TVortelShufflerDspDevice::OnRetrigger() {
	mCounter = 0;
	for (TVortelSliceBuffer* buffer : {&mLeft, &mRight}) {
		buffer->RestartRecording(0);
		buffer->Jump(0, 1);
	}
	ChooseSlice();
}

/// Starts lie on a grid of slice lengths counted back from the write head.
void TVortelShufflerDspDevice::ChooseSlice() {
	const auto [low, high] = std::minmax(mMinTime, mMaxTime);
	const double normalized = low + mRandom.NextDouble() * (high - low);
	const double time = mTimeParameter.Real(static_cast<float>(normalized));
	const double shortest = RoundHalfAway(2.0 * SampleRate() * 0.001);
	const double bar = VortelTempoSync::BarLength(mSamplesPerBeat, mMode);
	const double length = std::clamp(bar / time, shortest, static_cast<double>(VortelTempoSync::kLongest));
	mSliceLength = RoundHalfAway(length);
	const int write = mLeft.WritePosition();
	const double reach = std::min(mSamplesPerBeat * mRangeBeats, static_cast<double>(write));
	const int fitting = static_cast<int>(reach / length);
	const int back = RoundHalfAway(mRandom.NextDouble() * fitting);
	mSliceStart = write - static_cast<int>(length * back);
}

/// The order of the draws is part of what a seed means.
void TVortelShufflerDspDevice::Decide() {
	if (mRandom.NextDouble() > mRepeatThreshold) {
		if (mSliceStart > mLeft.WritePosition())
			mSliceStart = 0;
	} else if (mRandom.NextDouble() > mShuffleThreshold) {
		ChooseSlice();
	} else {
		mSliceStart = mLeft.WritePosition();
	}
	const int direction = mRandom.NextDouble() > mForwardThreshold ? -1 : 1;
	mLeft.Jump(mSliceStart, direction);
	mRight.Jump(mSliceStart, direction);
}

void TVortelShufflerDspDevice::ProcessEffect(float* left, float* right, int count) {
	for (int i = 0; i < count;) {
		if (mCounter == 0) {
			mLeft.WriteAhead(left[i]);
			mRight.WriteAhead(right[i]);
			Decide();
		}
		const int run = std::min(count - i, mSliceLength - mCounter);
		mLeft.Process(left + i, run);
		mRight.Process(right + i, run);
		i += run;
		mCounter += run;
		if (mCounter == mSliceLength)
			mCounter = 0;
	}
}
