// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelTapeStopDspDevice.h"

#include "document/TVortelEffectDevices.h"
#include "effects/blocks/TVACubicTables.h"

#include <algorithm>
#include <bit>
#include <cmath>

using namespace VortelParameterIds::TapeStop;

namespace {

constexpr int kCapacityInSeconds = 60 * 8 / 32;
/// Below this speed the level fades with the speed.
constexpr double kFadeSpeed = 0.01;

/// Positions wrap rarely, and fmod is dear.
inline double Wrapped(double position, double length) {
	return position < length ? position : std::fmod(position, length);
}

/// Between one and two samples behind a position, on a spline through four.
class TPlace {
public:
	explicit TPlace(double position)
	    : mIndex(static_cast<int>(position)),
	      mFraction(static_cast<int>((position - mIndex) * (TVACubicTables::kSize - 1))) {}

	float Read(const float* samples) const {
		if (mIndex >= 3)
			return TVACubicTables::Interpolate(
			    mFraction, samples[mIndex - 3], samples[mIndex - 2], samples[mIndex - 1], samples[mIndex]);
		const auto at = [&](int index) { return samples[std::max(0, index)]; };
		return TVACubicTables::Interpolate(mFraction, at(mIndex - 3), at(mIndex - 2), at(mIndex - 1), at(mIndex));
	}

private:
	int mIndex, mFraction;
};

} // namespace

TVortelTapeStopDspDevice::TVortelTapeStopDspDevice(TVortelTapeStopDevice* device, THost* host, int32_t index)
    : TVortelDspDevice(device, host, index),
      mSlowDownParameter(*device->mpSlowDown),
      mSpeedUpParameter(*device->mpSpeedUp),
      mModeParameter(*device->mpTimeMode),
      mPlayModeParameter(*device->mpPlayMode) {
	FinishConstruction();
}

void TVortelTapeStopDspDevice::ComputeLengths() {
	const double bar = VortelTempoSync::BarLength(mSamplesPerBeat, mMode);
	const auto length = [&](float time) {
		return std::max({1, mMinimumLength, VortelTempoSync::WholeSamples(bar / time, VortelTempoSync::kLongest)});
	};
	mStopLength = length(mSlowDown);
	mStartLength = length(mSpeedUp);
	mStopStep = 1.0 / mStopLength;
	mStartStep = 1.0 / mStartLength;
}

/// Lengths follow at the next start of a ramp.
void TVortelTapeStopDspDevice::OnParametersChanged() {
	mMode = mModeParameter.ReadChoice<EVortelTimeMode>(*Scene());
	mSlowDown = mSlowDownParameter.Read(*Scene());
	mSpeedUp = mSpeedUpParameter.Read(*Scene());
	mPlayMode = mPlayModeParameter.ReadChoice<EVortelPlayMode>(*Scene());
}

void TVortelTapeStopDspDevice::OnTempoChanged(float tempo) {
	mSamplesPerBeat = VortelTempoSync::SamplesPerBeat(SampleRate(), tempo);
}

void TVortelTapeStopDspDevice::OnSampleRateChanged(int32_t rate) {
	mRecording.SetLengths(rate * kCapacityInSeconds, FadeLength());
	mMinimumLength = FadeLength();
	const int points = std::max(1, static_cast<int>(rate / 44100.0 * 256.0));
	mCurve.Resize(static_cast<int>(std::bit_ceil(static_cast<unsigned>(points))));
	OnTempoChanged(Tempo());
	OnStart();
}

void TVortelTapeStopDspDevice::OnStart() {
	mRecording.Restart();
	mVoice = {0.0, BeginsRising(), 0};
	OnRetrigger();
}

void TVortelTapeStopDspDevice::OnRetrigger() {
	mRecording.BeginSwitch();
	mNextVoice = {0.0, BeginsRising(), 0};
	ComputeLengths();
}

TVortelTapeStopDspDevice::TMotion TVortelTapeStopDspDevice::MotionOf(const TVoice& voice) const {
	const double last = mCurve.LastIndex();
	const double t = voice.mCounter * (voice.mRising ? mStartStep : mStopStep);
	const double curve = mCurve.Between(t < 1.0 ? t * last : last);
	const double speed = voice.mRising ? curve : 1.0 - curve;
	return {speed, speed < kFadeSpeed ? mCurve.Interpolated(speed * 100.0) : 1.0};
}

bool TVortelTapeStopDspDevice::StepDirection(TVoice& voice) const {
	const int length = voice.mRising ? mStartLength : mStopLength;
	if (voice.mCounter < length) {
		++voice.mCounter;
		return true;
	}
	if (mPlayMode != EVortelPlayMode::kStopStart && mPlayMode != EVortelPlayMode::kStartStop)
		return false;
	voice.mCounter = 0;
	voice.mRising = !voice.mRising;
	return true;
}

void TVortelTapeStopDspDevice::ProcessEffect(float* left, float* right, int count) {
	int i = 0;
	for (; i < count && mRecording.IsSwitching(); ++i)
		ProcessSwitchingSample(left[i], right[i]);
	if (i == count)
		return;
	// Reading never passes the recording, so all of it can be recorded first.
	mRecording.Record(left + i, right + i, count - i);
	const double wrap = mRecording.Capacity() - 1;
	const float* loopLeft = mRecording.LoopLeft();
	const float* loopRight = mRecording.LoopRight();
	TVoice voice = mVoice;
	TMotion motion{};
	for (bool moves = true; i < count; ++i) {
		if (voice.mCounter == 0)
			ComputeLengths();
		if (moves)
			motion = MotionOf(voice);
		const TPlace place(voice.mPosition);
		left[i] = static_cast<float>(place.Read(loopLeft) * motion.mGain);
		right[i] = static_cast<float>(place.Read(loopRight) * motion.mGain);
		voice.mPosition = Wrapped(voice.mPosition + motion.mSpeed, wrap);
		moves = StepDirection(voice);
	}
	mVoice = voice;
}

void TVortelTapeStopDspDevice::ProcessSwitchingSample(float& left, float& right) {
	mRecording.Record(left, right);
	if (mVoice.mCounter == 0)
		ComputeLengths();
	const TMotion motion = MotionOf(mVoice);
	const double share = mRecording.RecordNext(left, right);
	const TMotion next = MotionOf(mNextVoice);
	const auto crossfade = [&](const float* loop, const float* recorded) {
		const double a = TPlace(mVoice.mPosition).Read(loop) * motion.mGain;
		const double b = TPlace(mNextVoice.mPosition).Read(recorded) * next.mGain;
		return static_cast<float>(a * (1.0 - share) + b * share);
	};
	left = crossfade(mRecording.LoopLeft(), mRecording.NextLeft());
	right = crossfade(mRecording.LoopRight(), mRecording.NextRight());
	if (!mRecording.IsSwitching()) {
		mRecording.TakeOver();
		mVoice = mNextVoice;
	}
	// A rate so low that 1 ms is one sample leaves nothing to walk along.
	const double wrap = std::max(1, mRecording.SwitchLength() - 1);
	mNextVoice.mPosition = Wrapped(mNextVoice.mPosition + next.mSpeed, wrap);
	StepDirection(mNextVoice);
	mVoice.mPosition = Wrapped(mVoice.mPosition + motion.mSpeed, mRecording.Capacity() - 1);
	StepDirection(mVoice);
}
