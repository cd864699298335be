// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelReverserDspDevice.h"

#include "document/TVortelEffectDevices.h"

#include <algorithm>

using namespace VortelParameterIds::Reverser;

namespace {

constexpr double kCapacityInSeconds = 60.0 * 4.0 / 32.0 * 1.5;

} // namespace

TVortelReverserDspDevice::TVortelReverserDspDevice(TVortelReverserDevice* device, THost* host, int32_t index)
    : TVortelDspDevice(device, host, index),
      mTimeParameter(*device->mpTime),
      mModeParameter(*device->mpTimeMode) {
	FinishConstruction();
}

void TVortelReverserDspDevice::ComputeLoopLength() {
	const double bar = VortelTempoSync::BarLength(mSamplesPerBeat, mMode);
	mLoopLength = VortelTempoSync::WholeSamples(bar / mTime, mRecording.Capacity() - 1);
	ComputeBounds();
}

void TVortelReverserDspDevice::ComputeBounds() {
	const int a = static_cast<int>(static_cast<float>(mLoopLength) * mPointA);
	const int b = static_cast<int>(static_cast<float>(mLoopLength) * mPointB);
	mLeftBound = mPointA < mPointB ? a : b;
	mRightBound = mPointA < mPointB ? b : a;
}

void TVortelReverserDspDevice::OnParametersChanged() {
	const auto mode = mModeParameter.ReadChoice<EVortelTimeMode>(*Scene());
	const float time = mTimeParameter.Read(*Scene());
	if (mode != mMode || time != mTime) {
		mMode = mode;
		mTime = time;
		ComputeLoopLength();
	}
	const float pointA = Scene()->ParameterValue(kPointA);
	const float pointB = Scene()->ParameterValue(kPointB);
	if (pointA != mPointA || pointB != mPointB) {
		mPointA = pointA;
		mPointB = pointB;
		ComputeBounds();
	}
}

void TVortelReverserDspDevice::OnTempoChanged(float tempo) {
	mSamplesPerBeat = VortelTempoSync::SamplesPerBeat(SampleRate(), tempo);
	ComputeLoopLength();
}

void TVortelReverserDspDevice::OnSampleRateChanged(int32_t rate) {
	mRecording.SetLengths(static_cast<int>(rate * kCapacityInSeconds), FadeLength());
	OnTempoChanged(Tempo());
	OnStart();
}

void TVortelReverserDspDevice::OnStart() {
	mRecording.Restart();
	mWalk = {};
	OnRetrigger();
}

void TVortelReverserDspDevice::OnRetrigger() {
	mRecording.BeginSwitch();
	mNextWalk = {};
}

/// At a bound the direction turns and the position rests for that sample.
void TVortelReverserDspDevice::Step(TWalk& walk) const {
	if (SamplesToTurn(walk) <= 0)
		walk.mBackwards = !walk.mBackwards;
	else
		walk.mPosition += walk.mBackwards ? -1 : 1;
}

int TVortelReverserDspDevice::SamplesToTurn(const TWalk& walk) const {
	return walk.mBackwards ? walk.mPosition - mLeftBound : mRightBound - walk.mPosition;
}

void TVortelReverserDspDevice::ProcessEffect(float* left, float* right, int count) {
	for (int i = 0; i < count;) {
		if (mRecording.IsSwitching()) {
			ProcessSwitchingSample(left[i], right[i]);
			++i;
		} else {
			i += ProcessRun(left + i, right + i, count - i);
		}
	}
}

void TVortelReverserDspDevice::ProcessSwitchingSample(float& left, float& right) {
	mRecording.Record(left, right);
	const double share = mRecording.RecordNext(left, right);
	const int position = mWalk.mPosition;
	const int next = std::min(mNextWalk.mPosition, mRecording.SwitchLength() - 1);
	left = static_cast<float>(mRecording.LoopLeft()[position] * (1.0 - share) + mRecording.NextLeft()[next] * share);
	right = static_cast<float>(mRecording.LoopRight()[position] * (1.0 - share) + mRecording.NextRight()[next] * share);
	if (!mRecording.IsSwitching()) {
		mRecording.TakeOver();
		mWalk = mNextWalk;
	}
	Step(mNextWalk);
	Step(mWalk);
}

/// Up to the next turn, as one copy. Recording the run first changes nothing: the walk never passes the recording.
int TVortelReverserDspDevice::ProcessRun(float* left, float* right, int count) {
	const int toTurn = SamplesToTurn(mWalk);
	const int n = std::clamp(toTurn, 1, count);
	mRecording.Record(left, right, n);
	const float* fromLeft = mRecording.LoopLeft() + mWalk.mPosition;
	const float* fromRight = mRecording.LoopRight() + mWalk.mPosition;
	if (toTurn <= 0) {
		*left = *fromLeft;
		*right = *fromRight;
		mWalk.mBackwards = !mWalk.mBackwards;
	} else if (mWalk.mBackwards) {
		for (int i = 0; i < n; ++i) {
			left[i] = fromLeft[-i];
			right[i] = fromRight[-i];
		}
		mWalk.mPosition -= n;
	} else {
		std::copy_n(fromLeft, n, left);
		std::copy_n(fromRight, n, right);
		mWalk.mPosition += n;
	}
	return n;
}
