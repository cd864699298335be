// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/blocks/TAlignedBuffer.h"
#include "effects/blocks/TRampable.h"
#include "effects/blocks/TVALadderFilter.h"
#include "effects/blocks/TVortelConvertedParameter.h"
#include "effects/blocks/TVortelDeClickEnvelope.h"
#include "framework/foundation/memory/TPtr.h"
#include "shell/TAudioObject.h"

class TVortelDevice;
class TVortelProgram;

/// The sound side of a TVortelDevice, and the frame that all effects share: a copy of the dry input, parameters pulled
/// from the scene into ramps, the effect itself, the common filter, mix with pan and volume, and a fade of 1 ms at both
/// ends of a block of the sequencer.
///
/// Everything runs on the audio thread. Samples are two arrays of float, full scale 32768. The host cuts its buffers
/// where something happens; for each slice of 1 to the block size samples it calls CaptureDry and then Process on the
/// same samples, while the device is running and not otherwise. Only a change of sample rate or block size allocates.
///
/// An effect overrides the hooks, ends its constructor with FinishConstruction(), and keeps its own state.
class TVortelDspDevice : public TAudioObject {
public:
	/// What a device needs to know of the engine, which keeps the devices.
	class THost {
	public:
		virtual int32_t SampleRate() const = 0;
		virtual int32_t BlockSize() const = 0;
		virtual float Tempo() const = 0;
		/// Called at the end of the device's constructor. The host takes a reference.
		virtual void RegisterDevice(int32_t index, TVortelDspDevice* device) = 0;

	protected:
		~THost() = default;
	};

	static constexpr int32_t kDefaultSampleRate = 44100;
	static constexpr int32_t kDefaultBlockSize = 256;
	static constexpr float kDefaultTempo = 120.0f;

	/// Same values again do nothing.
	void SetSampleRate(int32_t sampleRate);
	void SetBlockSize(int32_t blockSize);
	/// Beats per minute. The effect hears every call, running or not.
	void SetTempo(float tempo);
	void SetProgram(TVortelProgram* program);
	void SetScene(TVortelScene* scene);

	/// A block of the sequencer begins with the next sample: begins the device, or retriggers it when it runs. A
	/// fade-out that has begun goes on to its end.
	void Start();
	/// Begins the fade-out; the device runs until it has ended.
	void Stop();

	bool IsRunning() const { return mRunning; }

	virtual void CaptureDry(float* left, float* right, int count);
	virtual void Process(float* left, float* right, int count);

	/// The sequencer starts: draws that must repeat begin again from here.
	virtual void OnReseed(uint32_t /*seed*/) {}

protected:
	/// The host may be null: then rate, block size and tempo are the defaults.
	TVortelDspDevice(TVortelDevice* device, THost* host, int32_t index);

	/// Hands rate, block size and tempo to the hooks, which the frame's own constructor cannot reach, and registers
	/// with the host.
	void FinishConstruction();

	virtual void OnDryCaptured(const float* /*left*/, const float* /*right*/, int /*count*/) {}

	/// In place. The input is finite, whatever the host sent.
	virtual void ProcessEffect(float* /*left*/, float* /*right*/, int /*count*/) {}

	/// Samples that sound on after the end; none do.
	virtual int TailLength() const { return 0; }

	virtual void OnSampleRateChanged(int32_t /*sampleRate*/) {}

	virtual void OnTempoChanged(float /*tempo*/) {}

	virtual void OnBlockSizeChanged(int32_t /*blockSize*/) {}

	/// The next sample is the first of a first block.
	virtual void OnStart() {}

	/// The next sample is the first of a block that begins while the device runs.
	virtual void OnRetrigger() { OnStart(); }

	/// The input is sane again after samples that no state survives: a fresh start, and followers and the like cleared.
	virtual void OnStateLost() { OnStart(); }

	/// Before the slice, or OnStart, whenever something may have changed or a ramp is on its way: the place to read
	/// the scene. What it does must follow from the parameters alone.
	virtual void OnParametersChanged() {}

	/// Whether all ramps of the effect's own are settled.
	virtual bool AreRampsSettled() const { return true; }

	/// Copies the input to the dry buffers.
	void KeepDry(const float* left, const float* right, int count);

	/// The mix stage of the frame, in place against the captured dry signal.
	void ProcessMix(float* left, float* right, int count);

	TVortelDevice* Device() const { return mpDevice.Get(); }

	TVortelProgram* Program() const { return mpProgram.Get(); }

	/// Never null while parameters are pulled.
	const TVortelScene* Scene() const { return mpScene.Get(); }

	int32_t SampleRate() const { return mSampleRate; }

	int32_t BlockSize() const { return mBlockSize; }

	float Tempo() const { return mTempo; }

	/// Samples in 1 ms, rounded: the length of fades.
	int FadeLength() const { return mFadeLength; }

	/// Every ramp of a device gets this in OnSampleRateChanged.
	float RampScale() const { return static_cast<float>(kDefaultSampleRate) / static_cast<float>(mSampleRate); }

	TRampable<float> mMixRamp;
	TRampable<float> mPanRamp;
	TRampable<float> mVolumeRamp;

private:
	enum TFadeState : int { kIdle = 0, kFadingIn = 1, kOn = 2, kFadingOut = 3 };

	void FollowParameters();
	void PullChanges(uint32_t changes);
	void PullParameters();
	void Unsettle();
	bool IsMixNeutral() const;

	TVALadderFilter::TMode FilterMode() const {
		return static_cast<TVALadderFilter::TMode>(static_cast<int>(mFilterType) - 1);
	}

	void ProcessEdge(float* left, float* right, int count);
	void ProcessStages(float* left, float* right, int count);
	void GuardState(float* left, float* right, int count);
	void ProcessFilter(float* left, float* right, int count);
	void ProcessFade(float* left, float* right, int count);
	void FinishFade();

	TAlignedBuffer mDryLeft, mDryRight;
	TPtr<TVortelProgram> mpProgram;
	TPtr<TVortelScene> mpScene;
	TFadeState mFadeState = kIdle;
	EVortelFilterType mFilterType = EVortelFilterType::kOff;
	TRampable<float> mFilterFrequencyRamp; // hertz
	TRampable<float> mFilterQRamp;         // normalised
	TVortelConvertedParameter mFilterTypeParameter;
	TVortelConvertedParameter mFilterFrequencyParameter;
	bool mFollowsParameters = false;
	bool mIsSettled = false;    // the parameters are those of mSeenChanges, and all ramps have arrived
	bool mIsMixNeutral = false; // settled where the mix stage leaves the samples as they are
	uint32_t mSeenChanges = 0;
	bool mIsInputSane = true;
	int mFadeLength = 64;
	int mFadePosition = 0;
	TPtr<TVortelDeClickEnvelope> mpFadeEnvelope;
	bool mRunning = false;
	bool mStateIsSuspect = false; // the input was insane, and what the device remembers with it
	int32_t mSampleRate = -1;
	int32_t mBlockSize = -1;
	float mTempo = kDefaultTempo;
	TPtr<TVortelDevice> mpDevice;
	THost* mpEngine;
	int32_t mDeviceIndex;
	int32_t mFirstParameterId;
	TVALadderFilter mFilter;
};
