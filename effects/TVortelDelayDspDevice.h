// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/TVortelDspDevice.h"
#include "effects/blocks/TVADelayLine.h"
#include "effects/blocks/TVortelTempoSync.h"

class TVortelDelayDevice;

/// Tempo-synced stereo delay with feedback. A changed time glides, so that it sounds like a change of tape speed.
/// Spread lengthens one side by up to half the time. There is no feedback between the sides.
class TVortelDelayDspDevice final : public TVortelDspDevice {
public:
	TVortelDelayDspDevice(TVortelDelayDevice* device, THost* host, int32_t index);

protected:
	void ProcessEffect(float* left, float* right, int count) override;
	void OnSampleRateChanged(int32_t rate) override;
	void OnTempoChanged(float tempo) override;
	void OnStart() override;

	/// A block that follows at once goes on with the echoes.
	void OnRetrigger() override {}

	void OnParametersChanged() override;
	bool AreRampsSettled() const override;

private:
	void ComputeDelays();
	void ComputeGlide();
	bool IsGliding() const;
	/// Both return the samples done: all, or those until nothing moves that they follow.
	int ProcessRamped(float* left, float* right, int count);
	int ProcessGliding(float* left, float* right, int count);

	TVortelConvertedParameter mTimeParameter;
	TVortelConvertedParameter mModeParameter;
	EVortelTimeMode mMode = EVortelTimeMode::kEven;
	double mSamplesPerBeat = 22050.0;
	float mTime = 16.0f; // beat time
	TVADelayLine mLineLeft, mLineRight;
	float mFeedback = 0.5f;
	TRampable<float> mSendRamp{0.5f, 1.0f / 64.0f};
	TRampable<float> mReturnRamp{1.0f, 1.0f / 64.0f};
	float mSpread = 0.0f; // normalised
	float mSlew = 0.5f;
	double mTargetLeft = 22050.0, mCurrentLeft = 22050.0; // delays in samples
	double mTargetRight = 22050.0, mCurrentRight = 22050.0;
	double mGlide = 1e-5;
	double mGlideKeep = 1.0 - 1e-5;
	int mMinimumDelay = 44;
	int mMaximumDelay = 44100;
};
