// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelDspDevice.h"

#include "document/TVortelDevice.h"
#include "document/TVortelProgram.h"
#include "effects/blocks/MixRamped.h"
#include "effects/blocks/TVortelBuffers.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace {

constexpr float kRampCoefficient = 1.0f / 64.0f;
constexpr float kSaneInput = 1e12f; // 150 dB above full scale

TRampable<float> MakeRamp(float value) {
	return {value, kRampCoefficient};
}

float LeftGain(float pan) {
	return std::sqrt(1.0f - pan) / kCenterGain;
}

float RightGain(float pan) {
	return std::sqrt(pan) / kCenterGain;
}

/// One channel with gains that hold for the whole stretch.
void MixSteady(float* wet, const float* dry, int count, float mix, float gain, float volume) {
	const bool isUnity = gain == 1.0f && volume == 1.0f;
	// The two ends of the mix are made by what they leave out: that is exact, and cheap for what is at rest.
	if (mix == 0.0f)
		VortelBuffers::Copy(wet, dry, count);
	if (mix != 0.0f && mix != 1.0f)
		VortelBuffers::Mix(wet, dry, count, 1.0f - mix, mix, gain, volume);
	else if (!isUnity)
		VortelBuffers::Scale(wet, count, gain, volume);
}

} // namespace

TVortelDspDevice::TVortelDspDevice(TVortelDevice* device, THost* host, int32_t index)
    : mMixRamp(MakeRamp(device->mpMixerMix->Default())),
      mPanRamp(MakeRamp(device->mpMixerPanning->Default())),
      mVolumeRamp(MakeRamp(device->mpMixerVolume->Default())),
      mFilterTypeParameter(*device->mpFilterType),
      mFilterFrequencyParameter(*device->mpFilterFrequency),
      mpFadeEnvelope(MakePtr<TVortelDeClickEnvelope>(mFadeLength)),
      mpDevice(device),
      mpEngine(host),
      mDeviceIndex(index),
      mFirstParameterId(device->FirstParameterId()) {
	mFilterType = static_cast<EVortelFilterType>(mFilterTypeParameter.Real(device->mpFilterType->Default()));
	mFilterFrequencyRamp = MakeRamp(mFilterFrequencyParameter.Real(device->mpFilterFrequency->Default()));
	mFilterQRamp = MakeRamp(device->mpFilterQ->Default());
}

void TVortelDspDevice::FinishConstruction() {
	SetSampleRate(mpEngine ? mpEngine->SampleRate() : kDefaultSampleRate);
	SetBlockSize(mpEngine ? mpEngine->BlockSize() : kDefaultBlockSize);
	SetTempo(mpEngine ? mpEngine->Tempo() : kDefaultTempo);
	if (mpEngine)
		mpEngine->RegisterDevice(mDeviceIndex, this);
}

void TVortelDspDevice::SetSampleRate(int32_t sampleRate) {
	if (sampleRate == mSampleRate)
		return;
	Unsettle();
	mSampleRate = sampleRate;
	mFadePosition = 0;
	mFadeLength = static_cast<int>(std::round(sampleRate * 0.001));
	mpFadeEnvelope->Resize(mFadeLength);
	for (TRampable<float>* ramp : {&mMixRamp, &mPanRamp, &mVolumeRamp, &mFilterFrequencyRamp, &mFilterQRamp})
		ramp->SetScale(RampScale());
	OnSampleRateChanged(sampleRate);
}

void TVortelDspDevice::SetBlockSize(int32_t blockSize) {
	if (blockSize == mBlockSize)
		return;
	mBlockSize = blockSize;
	mDryLeft.ResizeZeroed(blockSize);
	mDryRight.ResizeZeroed(blockSize);
	OnBlockSizeChanged(blockSize);
}

void TVortelDspDevice::SetTempo(float tempo) {
	Unsettle();
	mTempo = tempo;
	OnTempoChanged(tempo);
}

void TVortelDspDevice::SetProgram(TVortelProgram* program) {
	mpProgram = program;
}

void TVortelDspDevice::SetScene(TVortelScene* scene) {
	Unsettle();
	mpScene = scene;
	if (mFollowsParameters)
		PullParameters();
}

void TVortelDspDevice::Start() {
	Unsettle();
	if (!mFollowsParameters) {
		mFollowsParameters = true;
		PullParameters();
	}
	if (mRunning) {
		OnRetrigger();
		return;
	}
	mRunning = true;
	mFadeState = kFadingIn;
	mFadePosition = 0;
	for (TRampable<float>* ramp : {&mMixRamp, &mPanRamp, &mVolumeRamp, &mFilterFrequencyRamp, &mFilterQRamp})
		ramp->Finish();
	OnStart();
}

void TVortelDspDevice::Stop() {
	mFollowsParameters = false;
	if (!mRunning || mFadeState == kFadingOut)
		return;
	mFadeState = kFadingOut;
	mFadePosition = 0;
}

/// Nothing is pulled again until it can make a difference. The number of changes is read before the values: what is
/// written in between is pulled now, or makes the number differ the next time.
inline void TVortelDspDevice::FollowParameters() {
	if (!mpScene)
		return;
	const uint32_t changes = mpScene->Changes() + TVortelValueConverter::Changes();
	if (!mIsSettled || changes != mSeenChanges)
		PullChanges(changes);
}

void TVortelDspDevice::PullChanges(uint32_t changes) {
	mSeenChanges = changes;
	PullParameters();
	const bool isMixSettled = mMixRamp.IsSettled() && mPanRamp.IsSettled() && mVolumeRamp.IsSettled();
	// Those of a filter that is off stand still on their way.
	const bool isFilterSettled =
	    mFilterType == EVortelFilterType::kOff || (mFilterFrequencyRamp.IsSettled() && mFilterQRamp.IsSettled());
	mIsSettled = isMixSettled && isFilterSettled && AreRampsSettled();
	mIsMixNeutral = isMixSettled && IsMixNeutral();
}

void TVortelDspDevice::Unsettle() {
	mIsSettled = mIsMixNeutral = false;
}

bool TVortelDspDevice::IsMixNeutral() const {
	return mMixRamp.Target() == 1.0f && mPanRamp.Target() == 0.5f && mVolumeRamp.Target() == 0.5f;
}

void TVortelDspDevice::PullParameters() {
	if (!mpScene)
		return;
	const TVortelScene& scene = *mpScene;
	const auto normalized = [&](VortelParameterIds::ECommon parameter) {
		return scene.ParameterValue(mFirstParameterId + parameter);
	};
	mMixRamp.SetTarget(normalized(VortelParameterIds::kMix));
	mPanRamp.SetTarget(normalized(VortelParameterIds::kPanning));
	mVolumeRamp.SetTarget(normalized(VortelParameterIds::kVolume));
	mFilterType = mFilterTypeParameter.ReadChoice<EVortelFilterType>(scene);
	mFilterFrequencyRamp.SetTarget(mFilterFrequencyParameter.Read(scene));
	mFilterQRamp.SetTarget(normalized(VortelParameterIds::kFilterQ));
	OnParametersChanged();
}

void TVortelDspDevice::CaptureDry(float* left, float* right, int count) {
	assert(count <= mBlockSize);
	mIsInputSane = VortelBuffers::CopyWithin(mDryLeft.Data(), mDryRight.Data(), left, right, count, kSaneInput);
	OnDryCaptured(mDryLeft.Data(), mDryRight.Data(), count);
}

void TVortelDspDevice::KeepDry(const float* left, const float* right, int count) {
	VortelBuffers::Copy(mDryLeft.Data(), left, count);
	VortelBuffers::Copy(mDryRight.Data(), right, count);
}

void TVortelDspDevice::Process(float* left, float* right, int count) {
	if (mFadeState == kOn) [[likely]]
		ProcessStages(left, right, count);
	else
		ProcessEdge(left, right, count);
}

/// A device hears nothing beyond the end of its fade-out, as if the slice ended there: what it remembers for the next
/// block must not depend on how far the host's buffer goes on. The samples left are the dry ones already.
void TVortelDspDevice::ProcessEdge(float* left, float* right, int count) {
	const int toEnd = std::max(0, mFadeLength - mFadePosition);
	if (mFadeState == kFadingOut && toEnd < count) {
		count = toEnd;
		if (!mIsInputSane)
			CaptureDry(left, right, count);
	}
	ProcessStages(left, right, count);
	if (mFadeState != kIdle)
		ProcessFade(left, right, count);
}

inline void TVortelDspDevice::ProcessStages(float* left, float* right, int count) {
	if (mFollowsParameters)
		FollowParameters();
	if (mStateIsSuspect || !mIsInputSane)
		GuardState(left, right, count);
	ProcessEffect(left, right, count);
	if (mFilterType != EVortelFilterType::kOff)
		ProcessFilter(left, right, count);
	if (!mIsMixNeutral)
		ProcessMix(left, right, count);
}

/// Samples that are no numbers, or far beyond any scale, would stay for good in recordings, delay lines and followers.
/// The former become 0; after either, the first sane slice finds a fresh state. Other samples are never touched.
void TVortelDspDevice::GuardState(float* left, float* right, int count) {
	if (mIsInputSane) {
		mStateIsSuspect = false;
		mFilter.ClearState();
		Unsettle();
		OnStateLost();
		return;
	}
	mStateIsSuspect = true;
	VortelBuffers::ReplaceNonFinite(left, count);
	VortelBuffers::ReplaceNonFinite(right, count);
}

/// The stretch before the ramps come to rest, then the one after.
void TVortelDspDevice::ProcessFilter(float* left, float* right, int count) {
	int done = 0;
	if (mFilterFrequencyRamp.IsRamping() || mFilterQRamp.IsRamping()) {
		TRampGroup ramps(mFilterFrequencyRamp, mFilterQRamp);
		done = mFilter.ProcessRamped(FilterMode(), mSampleRate, ramps, left, right, count);
	}
	if (done == count)
		return;
	mFilter.SetCoefficients(FilterMode(), mFilterFrequencyRamp.Target(), mSampleRate, mFilterQRamp.Target());
	mFilter.ProcessBlock(left + done, right + done, count - done);
}

void TVortelDspDevice::ProcessMix(float* left, float* right, int count) {
	int done = 0;
	if (mMixRamp.IsRamping() || mPanRamp.IsRamping() || mVolumeRamp.IsRamping()) {
		TRampGroup ramps(mMixRamp, mPanRamp, mVolumeRamp);
		done = MixRamped(ramps, mDryLeft.Data(), mDryRight.Data(), left, right, count);
	}
	if (done == count || IsMixNeutral())
		return;
	const float mix = mMixRamp.Target();
	const float pan = mPanRamp.Target();
	const float volume = 2.0f * mVolumeRamp.Target();
	MixSteady(left + done, mDryLeft.Data() + done, count - done, mix, LeftGain(pan), volume);
	MixSteady(right + done, mDryRight.Data() + done, count - done, mix, RightGain(pan), volume);
}

void TVortelDspDevice::ProcessFade(float* left, float* right, int count) {
	const int length = std::clamp(mFadeLength - mFadePosition, 0, count);
	for (int i = 0; i < length; ++i) {
		const double e = mpFadeEnvelope->Value(mFadePosition + i);
		const double wet = mFadeState == kFadingIn ? e : 1.0 - e;
		const double dry = 1.0 - wet;
		left[i] = static_cast<float>(mDryLeft[i] * dry + left[i] * wet);
		right[i] = static_cast<float>(mDryRight[i] * dry + right[i] * wet);
	}
	mFadePosition += length;
	if (mFadePosition >= mFadeLength)
		FinishFade();
}

void TVortelDspDevice::FinishFade() {
	if (mFadeState == kFadingIn) {
		mFadeState = kOn;
		return;
	}
	mFadeState = kIdle;
	mRunning = false;
}
