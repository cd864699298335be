// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/TVortelDspDevice.h"
#include "effects/blocks/TVortelRecording.h"
#include "effects/blocks/TVortelTempoSync.h"

class TVortelTapeStopDevice;

/// Plays its recording with a speed that falls to standstill, rises from it, or does one after the other. Speed follows
/// an S-curve; close to standstill the level fades too.
class TVortelTapeStopDspDevice final : public TVortelDspDevice {
public:
	TVortelTapeStopDspDevice(TVortelTapeStopDevice* device, THost* host, int32_t index);

protected:
	void ProcessEffect(float* left, float* right, int count) override;
	void OnSampleRateChanged(int32_t rate) override;
	void OnTempoChanged(float tempo) override;
	void OnStart() override;
	void OnRetrigger() override;
	void OnParametersChanged() override;

private:
	/// A place in the recording, and where its speed stands on the curve.
	struct TVoice {
		double mPosition = 0.0;
		bool mRising = false;
		int mCounter = 0; // samples in the running ramp
	};

	struct TMotion {
		double mSpeed;
		double mGain;
	};

	bool BeginsRising() const {
		return mPlayMode == EVortelPlayMode::kStartStop || mPlayMode == EVortelPlayMode::kStart;
	}

	void ComputeLengths();
	TMotion MotionOf(const TVoice& voice) const;
	/// False: the ramp has come to rest.
	bool StepDirection(TVoice& voice) const;
	void ProcessSwitchingSample(float& left, float& right);

	TVortelConvertedParameter mSlowDownParameter;
	TVortelConvertedParameter mSpeedUpParameter;
	TVortelConvertedParameter mModeParameter;
	TVortelConvertedParameter mPlayModeParameter;
	TVortelRecording mRecording;
	TVoice mVoice;
	TVoice mNextVoice;
	EVortelTimeMode mMode = EVortelTimeMode::kEven;
	EVortelPlayMode mPlayMode = EVortelPlayMode::kStop;
	double mSamplesPerBeat = 11025.0;
	float mSlowDown = 4.0f; // beat times
	float mSpeedUp = 1.0f;
	int mMinimumLength = 44;
	int mStopLength = 11025;
	int mStartLength = 11025;
	double mStopStep = 1.0 / 11025.0;
	double mStartStep = 1.0 / 11025.0;
	TVortelDeClickEnvelope mCurve{128};
};
