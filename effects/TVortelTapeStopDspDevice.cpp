// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelTapeStopDspDevice.h"

#include "document/TVortelEffectDevices.h"
#include "effects/TVACubicTables.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace {

enum TParameterId : int32_t { kSlowDown = 37, kSpeedUp = 38, kMode = 39, kPlayMode = 40 };

constexpr int kCapacityInSeconds = 60 * 8 / 32;
/// Below this speed the level fades with the speed.
constexpr double kFadeSpeed = 0.01;

/// Positions wrap rarely, and fmod is dear.
inline double Wrapped(double position, double length) {
	return position < length ? position : std::fmod(position, length);
}

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
	mMode = static_cast<EVortelTimeMode>(mModeParameter.ReadWhole(*Scene()));
	mSlowDown = mSlowDownParameter.Read(*Scene());
	mSpeedUp = mSpeedUpParameter.Read(*Scene());
	mPlayMode = mPlayModeParameter.ReadWhole(*Scene());
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
	const double t = voice.mCounter * (voice.mRising ? mStartStep : mStopStep);
	const double curve = mCurve.Interpolated(t); // clamps t to 0, 1
	const double speed = voice.mRising ? curve : 1.0 - curve;
	return {speed, speed < kFadeSpeed ? mCurve.Interpolated(speed * 100.0) : 1.0};
}

void TVortelTapeStopDspDevice::StepDirection(TVoice& voice) const {
	const int length = voice.mRising ? mStartLength : mStopLength;
	if (voice.mCounter < length) {
		++voice.mCounter;
	} else if (mPlayMode == kStopStart || mPlayMode == kStartStop) {
		voice.mCounter = 0;
		voice.mRising = !voice.mRising;
	}
}

/// A spline between one and two samples behind the position.
float TVortelTapeStopDspDevice::ReadAt(const float* samples, double position) {
	const int i = static_cast<int>(position);
	const int j = static_cast<int>((position - i) * (TVACubicTables::kSize - 1));
	return TVACubicTables::Interpolate(
	    j, samples[std::max(0, i - 3)], samples[std::max(0, i - 2)], samples[std::max(0, i - 1)], samples[i]);
}

void TVortelTapeStopDspDevice::ProcessEffect(float* left, float* right, int count) {
	const double wrap = mRecording.Capacity() - 1;
	for (int i = 0; i < count; ++i) {
		if (mRecording.IsSwitching()) {
			ProcessSwitchingSample(left[i], right[i]);
			continue;
		}
		mRecording.Record(left[i], right[i]);
		if (mVoice.mCounter == 0)
			ComputeLengths();
		const TMotion motion = MotionOf(mVoice);
		left[i] = static_cast<float>(ReadAt(mRecording.LoopLeft(), mVoice.mPosition) * motion.mGain);
		right[i] = static_cast<float>(ReadAt(mRecording.LoopRight(), mVoice.mPosition) * motion.mGain);
		mVoice.mPosition = Wrapped(mVoice.mPosition + motion.mSpeed, wrap);
		StepDirection(mVoice);
	}
}

void TVortelTapeStopDspDevice::ProcessSwitchingSample(float& left, float& right) {
	mRecording.Record(left, right);
	if (mVoice.mCounter == 0)
		ComputeLengths();
	const TMotion motion = MotionOf(mVoice);
	const double share = mRecording.RecordNext(left, right);
	const TMotion next = MotionOf(mNextVoice);
	const auto crossfade = [&](const float* loop, const float* recorded) {
		const double a = ReadAt(loop, mVoice.mPosition) * motion.mGain;
		const double b = ReadAt(recorded, mNextVoice.mPosition) * next.mGain;
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
