// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelRetriggerDspDevice.h"

#include "document/TVortelEffectDevices.h"
#include "effects/blocks/TVortelBuffers.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kBeatsToSilence = 0.25; // at full decay

} // namespace

TVortelRetriggerDspDevice::TVortelRetriggerDspDevice(TVortelRetriggerDevice* device, THost* host, int32_t index)
    : TVortelDspDevice(device, host, index),
      mModeParameter(*device->mpTimeMode),
      mInitialSpeedParameter(*device->mpTimeA),
      mFinalSpeedParameter(*device->mpTimeB),
      mTransitionParameter(*device->mpABTime) {
	FinishConstruction();
}

void TVortelRetriggerDspDevice::OnSampleRateChanged(int32_t sampleRate) {
	mSwitchLength = mFadeSamples = FadeLength();
	mLoopFade.Resize(mFadeSamples);
	mSwitchFade.Resize(mSwitchLength);
	mNext.ResizeZeroed(mSwitchLength);
	mCapacity = static_cast<int>(sampleRate * 60.0 / 32.0 * 1.5);
	mLoop.ResizeZeroed(mCapacity);
	OnTempoChanged(Tempo());
	OnStart();
}

void TVortelRetriggerDspDevice::OnTempoChanged(float tempo) {
	mSamplesPerBeat = VortelTempoSync::SamplesPerBeat(SampleRate(), tempo);
	ComputeLengths();
	ComputeDecayStep();
}

void TVortelRetriggerDspDevice::OnParametersChanged() {
	const TVortelScene& scene = *Scene();
	const auto mode = mModeParameter.ReadChoice<EVortelTimeMode>(scene);
	const float initialSpeed = mInitialSpeedParameter.Read(scene);
	const float finalSpeed = mFinalSpeedParameter.Read(scene);
	const float transition = mTransitionParameter.Read(scene);
	if (mode != mMode || initialSpeed != mInitialSpeed || finalSpeed != mFinalSpeed || transition != mTransition) {
		mMode = mode;
		mInitialSpeed = initialSpeed;
		mFinalSpeed = finalSpeed;
		mTransition = transition;
		mLengthsDirty = true;
	}
	const float decay = scene.ParameterValue(VortelParameterIds::Retrigger::kDecay);
	if (decay != mDecay) {
		mDecay = decay;
		ComputeDecayStep();
	}
}

void TVortelRetriggerDspDevice::ComputeLengths() {
	const double bar = VortelTempoSync::BarLength(mSamplesPerBeat, mMode);
	const auto length = [&](float beatTime) { return VortelTempoSync::WholeSamples(bar / beatTime, mCapacity - 1); };
	mInitialLength = length(mInitialSpeed);
	mFinalLength = length(mFinalSpeed);
	mTransitionLength = length(mTransition);
	mGlideStep = 1.0 / mTransitionLength;
	mLengthsDirty = false;
}

void TVortelRetriggerDspDevice::ComputeDecayStep() {
	mDecayStep = 1.0 / (mSamplesPerBeat * kBeatsToSilence) * mDecay;
}

void TVortelRetriggerDspDevice::OnStart() {
	mVoice.mTail = mVoice.mPosition = mRecorded = 0;
	mVoice.mGain = 1.0;
	mVoice.mFadeCount = 0;
	OnRetrigger();
}

void TVortelRetriggerDspDevice::OnRetrigger() {
	mNextVoice.mTail = mNextVoice.mPosition = mSwitchCount = 0;
	mNextVoice.mGain = 1.0;
	mNextVoice.mFadeCount = 0;
	mGlide = 0.0;
	ComputeLengths();
}

/// Only a few samples of a loop need a close look; what lies between them runs straight.
void TVortelRetriggerDspDevice::ProcessEffect(float* left, float* right, int count) {
	if (RunLength() >= count)
		ProcessRun(left, right, count);
	else
		ProcessPieces(left, right, count);
}

void TVortelRetriggerDspDevice::ProcessPieces(float* left, float* right, int count) {
	for (int done = 0; done < count;) {
		const int length = std::min(RunLength(), count - done);
		if (length > 0)
			ProcessRun(left + done, right + done, length);
		else
			ProcessSample(left[done], right[done]);
		done += std::max(length, 1);
	}
}

/// Samples up to the end of the loop when nothing is being faded, else 0.
int TVortelRetriggerDspDevice::RunLength() const {
	if (mSwitchCount < mSwitchLength || mVoice.mPosition == 0 || mVoice.mFadeCount < mFadeSamples)
		return 0;
	return std::max(mVoice.mLoopLength - mVoice.mPosition, 0) + 1;
}

/// The write position is never behind the read position, so the whole run can be recorded before it is played.
void TVortelRetriggerDspDevice::ProcessRun(float* left, float* right, int count) {
	mRecorded += mLoop.Store(mRecorded, left, right, std::min(count, mCapacity - mRecorded));
	const float* loopLeft = mLoop.mLeft.Data() + mVoice.mPosition;
	const float* loopRight = mLoop.mRight.Data() + mVoice.mPosition;
	if (mVoice.mGain == 1.0 && !(mDecayStep > 0.0)) {
		VortelBuffers::CopyBoth(left, right, loopLeft, loopRight, count);
	} else {
		const __m128d step = _mm_set1_pd(mDecayStep > 0.0 ? mDecayStep : 0.0);
		__m128d gain = _mm_set1_pd(mVoice.mGain);
		for (int i = 0; i < count; ++i) {
			const __m128d frame = VortelBuffers::LoadFrame(loopLeft + i, loopRight + i);
			VortelBuffers::StoreFrame(left + i, right + i, _mm_mul_pd(frame, gain));
			gain = _mm_max_pd(_mm_sub_pd(gain, step), _mm_setzero_pd());
		}
		mVoice.mGain = _mm_cvtsd_f64(gain);
	}
	if (mGlide < 1.0)
		AdvanceGlide(count);
	mVoice.mPosition += count;
	if (mVoice.mPosition > mVoice.mLoopLength) {
		mVoice.mTail = mVoice.mPosition - 1;
		mVoice.mPosition = 0;
	}
}

void TVortelRetriggerDspDevice::ProcessSample(float& left, float& right) {
	mRecorded += mLoop.Store(mRecorded, &left, &right, std::min(1, mCapacity - mRecorded));
	if (mVoice.mPosition == 0)
		BeginLoop();
	TFrame output = PlayVoice(mVoice, mLoop, mCapacity - 1);
	if (mGlide < 1.0)
		AdvanceGlide(1);
	if (mSwitchCount < mSwitchLength)
		output = ProcessSwitch(output, left, right);
	left = static_cast<float>(output.mLeft);
	right = static_cast<float>(output.mRight);
}

void TVortelRetriggerDspDevice::BeginLoop() {
	if (mLengthsDirty)
		ComputeLengths();
	mVoice.mLoopLength = static_cast<int>(std::round(mInitialLength * (1.0 - mGlide) + mFinalLength * mGlide));
	mVoice.mFadeCount = 0;
}

/// One sample of a voice. Both voices take their tail from the loop that has been playing.
TVortelRetriggerDspDevice::TFrame
TVortelRetriggerDspDevice::PlayVoice(TVoice& voice, const TSamples& samples, int lastTail) const {
	TFrame frame = {samples.mLeft[voice.mPosition], samples.mRight[voice.mPosition]};
	if (voice.mFadeCount < mFadeSamples) {
		const double e = mLoopFade.Value(voice.mFadeCount++);
		frame.mLeft = frame.mLeft * e + mLoop.mLeft[voice.mTail] * (1.0 - e);
		frame.mRight = frame.mRight * e + mLoop.mRight[voice.mTail] * (1.0 - e);
		if (voice.mTail < lastTail)
			++voice.mTail;
	}
	frame.mLeft *= voice.mGain;
	frame.mRight *= voice.mGain;
	if (voice.mPosition >= voice.mLoopLength) {
		voice.mTail = voice.mPosition;
		voice.mPosition = 0;
	} else {
		++voice.mPosition;
	}
	if (voice.mGain > 0.0 && mDecayStep > 0.0)
		voice.mGain = std::clamp(voice.mGain - mDecayStep, 0.0, 1.0);
	return frame;
}

TVortelRetriggerDspDevice::TFrame TVortelRetriggerDspDevice::ProcessSwitch(TFrame loop, float left, float right) {
	mNext.Store(mSwitchCount, &left, &right, 1);
	const double s = mSwitchFade.Value(mSwitchCount++);
	if (mNextVoice.mPosition == 0) {
		mNextVoice.mLoopLength = mInitialLength;
		mNextVoice.mFadeCount = 0;
	}
	const TFrame next = PlayVoice(mNextVoice, mNext, mSwitchLength);
	if (mSwitchCount == mSwitchLength)
		TakeOver();
	return {loop.mLeft * (1.0 - s) + next.mLeft * s, loop.mRight * (1.0 - s) + next.mRight * s};
}

void TVortelRetriggerDspDevice::TakeOver() {
	mVoice = mNextVoice;
	mRecorded = mLoop.Store(0, mNext.mLeft.Data(), mNext.mRight.Data(), mSwitchLength);
}

void TVortelRetriggerDspDevice::AdvanceGlide(int count) {
	double glide = mGlide;
	for (int i = 0; i < count; ++i)
		glide += mGlideStep; // added up sample by sample, because the sum decides about lengths
	mGlide = std::clamp(glide, 0.0, 1.0);
}

void TVortelRetriggerDspDevice::TSamples::ResizeZeroed(int size) {
	mLeft.ResizeZeroed(size);
	mRight.ResizeZeroed(size);
}

int TVortelRetriggerDspDevice::TSamples::Store(int position, const float* left, const float* right, int count) {
	VortelBuffers::CopyBoth(mLeft.Data() + position, mRight.Data() + position, left, right, count);
	return count;
}
