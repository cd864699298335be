// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelDelayDspDevice.h"

#include "document/TVortelEffectDevices.h"

#include <algorithm>
#include <array>
#include <cmath>

using namespace VortelParameterIds::Delay;

namespace {

constexpr double kMaximumDelayInSeconds = 60.0 / 32.0 * 1.5;
constexpr double kSlowestGlide = 1e-5;
constexpr double kFastestGlide = 0.002;
/// A glide nearer to its end than this many samples is not heard: 1e-9 of the steepest step between two samples.
constexpr double kArrived = 1e-9;

} // namespace

TVortelDelayDspDevice::TVortelDelayDspDevice(TVortelDelayDevice* device, THost* host, int32_t index)
    : TVortelDspDevice(device, host, index),
      mTimeParameter(*device->mpTime),
      mModeParameter(*device->mpTimeMode) {
	FinishConstruction();
}

void TVortelDelayDspDevice::ComputeDelays() {
	const double time = VortelTempoSync::BarLength(mSamplesPerBeat, mMode) / mTime;
	const float spread = mSpread * 2.0f - 1.0f;
	mTargetLeft = mTargetRight = time;
	if (spread > 0.0f)
		mTargetRight += spread * time * 0.5;
	if (spread < 0.0f)
		mTargetLeft += spread * time * -0.5;
	for (double* target : {&mTargetLeft, &mTargetRight})
		*target = std::clamp(*target, static_cast<double>(mMinimumDelay), static_cast<double>(mMaximumDelay - 1));
}

void TVortelDelayDspDevice::ComputeGlide() {
	const double slew = mSlew;
	mGlide = std::clamp(slew * slew * 0.002 * 44100.0 / SampleRate(), kSlowestGlide, kFastestGlide);
	mGlideKeep = 1.0 - mGlide;
}

void TVortelDelayDspDevice::OnParametersChanged() {
	const auto mode = mModeParameter.ReadChoice<EVortelTimeMode>(*Scene());
	const float time = mTimeParameter.Read(*Scene());
	const float spread = Scene()->ParameterValue(kSpread);
	if (mode != mMode || time != mTime || spread != mSpread) {
		mMode = mode;
		mTime = time;
		mSpread = spread;
		ComputeDelays();
	}
	mFeedback = Scene()->ParameterValue(kFeedback);
	if (const float slew = Scene()->ParameterValue(kSlew); slew != mSlew) {
		mSlew = slew;
		ComputeGlide();
	}
	mSendRamp.SetTarget(Scene()->ParameterValue(kSend));
	mReturnRamp.SetTarget(Scene()->ParameterValue(kReturn));
}

bool TVortelDelayDspDevice::AreRampsSettled() const {
	return mSendRamp.IsSettled() && mReturnRamp.IsSettled();
}

void TVortelDelayDspDevice::OnSampleRateChanged(int32_t rate) {
	mSendRamp.SetScale(RampScale());
	mReturnRamp.SetScale(RampScale());
	mMinimumDelay = static_cast<int>(rate * 0.001);
	mMaximumDelay = static_cast<int>(rate * kMaximumDelayInSeconds);
	mLineLeft.SetLength(mMaximumDelay);
	mLineRight.SetLength(mMaximumDelay);
	OnTempoChanged(Tempo());
	ComputeGlide();
}

void TVortelDelayDspDevice::OnTempoChanged(float tempo) {
	mSamplesPerBeat = VortelTempoSync::SamplesPerBeat(SampleRate(), tempo);
	ComputeDelays();
}

void TVortelDelayDspDevice::OnStart() {
	mLineLeft.Clear();
	mLineRight.Clear();
	mCurrentLeft = mTargetLeft;
	mCurrentRight = mTargetRight;
}

bool TVortelDelayDspDevice::IsGliding() const {
	return std::abs(mTargetLeft - mCurrentLeft) > kArrived || std::abs(mTargetRight - mCurrentRight) > kArrived;
}

/// First the stretch in which the time glides, then the one in which only the gains do, then the rest.
void TVortelDelayDspDevice::ProcessEffect(float* left, float* right, int count) {
	int done = 0;
	if (IsGliding())
		done = ProcessGliding(left, right, count);
	if (done < count && (mSendRamp.IsRamping() || mReturnRamp.IsRamping()))
		done += ProcessRamped(left + done, right + done, count - done);
	if (done == count)
		return;
	const float send = mSendRamp.Target();
	const float returned = mReturnRamp.Target();
	mLineLeft.ProcessSteady(left + done, count - done, send, mFeedback, mTargetLeft, returned);
	mLineRight.ProcessSteady(right + done, count - done, send, mFeedback, mTargetRight, returned);
}

int TVortelDelayDspDevice::ProcessRamped(float* left, float* right, int count) {
	constexpr int kPiece = 64;
	std::array<float, kPiece> send, returned;
	TRampGroup ramps(mSendRamp, mReturnRamp);
	int done = 0;
	while (done < count && ramps.IsMoving()) {
		const int length = std::min(kPiece, count - done);
		ramps.Fill(length, send.data(), returned.data());
		mLineLeft.ProcessSteady(left + done, length, send.data(), mFeedback, mTargetLeft, returned.data());
		mLineRight.ProcessSteady(right + done, length, send.data(), mFeedback, mTargetRight, returned.data());
		done += length;
	}
	return done;
}

int TVortelDelayDspDevice::ProcessGliding(float* left, float* right, int count) {
	const double towardsLeft = mGlide * mTargetLeft;
	const double towardsRight = mGlide * mTargetRight;
	for (int i = 0; i < count; ++i) {
		if (!IsGliding())
			return i;
		mSendRamp.Step();
		mReturnRamp.Step();
		const float send = mSendRamp.Current();
		const float returned = mReturnRamp.Current();
		mCurrentLeft = towardsLeft + mCurrentLeft * mGlideKeep;
		mCurrentRight = towardsRight + mCurrentRight * mGlideKeep;
		left[i] += returned * mLineLeft.Process(send * left[i], mFeedback, mCurrentLeft);
		right[i] += returned * mLineRight.Process(send * right[i], mFeedback, mCurrentRight);
	}
	return count;
}
