// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/TVortelDspDevice.h"
#include "effects/blocks/TAlignedBuffer.h"
#include "effects/blocks/TVortelConvertedParameter.h"
#include "effects/blocks/TVortelDeClickEnvelope.h"
#include "effects/blocks/TVortelTempoSync.h"

class TVortelRetriggerDevice;

/// Records from the first sample of a block and repeats the beginning of that recording. The loop's length glides from
/// a first to a second tempo-synced length; the loops may fade to silence.
///
/// A block that begins while the device runs starts a second voice: it records beside the old loop, is crossfaded with
/// it for 1 ms and then takes its place. The crossfade runs at a first start too, where both voices hold the same.
class TVortelRetriggerDspDevice final : public TVortelDspDevice {
public:
	TVortelRetriggerDspDevice(TVortelRetriggerDevice* device, THost* host, int32_t index);

protected:
	void ProcessEffect(float* left, float* right, int count) override;
	void OnSampleRateChanged(int32_t sampleRate) override;
	void OnTempoChanged(float tempo) override;
	void OnStart() override;
	void OnRetrigger() override;
	void OnParametersChanged() override;

private:
	struct TSamples {
		TAlignedBuffer mLeft, mRight;

		void ResizeZeroed(int size);
		/// Stores up to the end of the buffers; returns how many.
		int Store(int position, const float* left, const float* right, int count);
	};

	struct TFrame {
		double mLeft, mRight;
	};

	/// A loop that is being played. The tail is where the last round would have gone on; it sounds under the first
	/// millisecond of the next.
	struct TVoice {
		int mTail = 0;
		int mPosition = 0;
		double mGain = 1.0;
		int mFadeCount = 0;
		int mLoopLength = 11025; // one less than the samples of a round
	};

	void ComputeLengths();
	void ComputeDecayStep();
	void BeginLoop();
	void ProcessSample(float& left, float& right);
	TFrame ProcessSwitch(TFrame loop, float left, float right);
	TFrame PlayVoice(TVoice& voice, const TSamples& samples, int lastTail) const;
	void TakeOver();
	int RunLength() const;
	void ProcessPieces(float* left, float* right, int count);
	void ProcessRun(float* left, float* right, int count);
	void AdvanceGlide(int count);

	TVortelConvertedParameter mModeParameter;
	TVortelConvertedParameter mInitialSpeedParameter;
	TVortelConvertedParameter mFinalSpeedParameter;
	TVortelConvertedParameter mTransitionParameter;
	float mDecay = 0.0f;
	double mDecayStep = 0.0; // gain lost per sample
	TVortelDeClickEnvelope mLoopFade{64};
	EVortelTimeMode mMode = EVortelTimeMode::kEven;
	double mSamplesPerBeat = 22050.0;
	float mInitialSpeed = 64.0f; // beat times
	float mFinalSpeed = 64.0f;
	float mTransition = 4.0f;
	bool mLengthsDirty = true;
	double mGlideStep = 1.0 / 11025.0; // per sample
	double mGlide = 0.0;               // 0 to 1 between the two lengths
	TVortelDeClickEnvelope mSwitchFade{64};
	TSamples mNext;
	TVoice mNextVoice;
	int mSwitchLength = 64;
	int mSwitchCount = 0;
	TSamples mLoop;
	TVoice mVoice;
	int mCapacity = 0;
	int mRecorded = 0;
	int mFadeSamples = 64;
	int mInitialLength = 11025;
	int mFinalLength = 11025;
	int mTransitionLength = 11025;
};
