// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/TVortelDspDevice.h"
#include "effects/blocks/TVortelTempoSync.h"

#include <array>

class TVortelGaterDevice;

/// Multiplies the signal by a looping list of up to sixteen levels of the scene. The length of a step follows the
/// tempo; the edge between two steps is smoothed over a share of that length, at least 1 ms.
class TVortelGaterDspDevice final : public TVortelDspDevice {
public:
	TVortelGaterDspDevice(TVortelGaterDevice* device, THost* host, int32_t index);

protected:
	void ProcessEffect(float* left, float* right, int count) override;
	void OnSampleRateChanged(int32_t rate) override;
	void OnTempoChanged(float tempo) override;
	void OnStart() override;
	void OnRetrigger() override;
	void OnParametersChanged() override;

private:
	static constexpr int kMaximumSteps = 16;

	void ComputeStepLength();
	int CurrentStep() const;

	bool IsFading() const { return mFadeCount < mFadeLength; }

	void BeginStep(int step);
	int ProcessFade(float* left, float* right, int count);
	int ProcessLevel(float* left, float* right, int count);

	TVortelConvertedParameter mTimeParameter;
	TVortelConvertedParameter mModeParameter;
	TVortelConvertedParameter mVolumeStepsParameter;
	std::array<float, kMaximumSteps> mStepLevels{};
	int mVolumeSteps = 8;
	int mStepLength = 11025;
	int mMinimumLength = 44;
	int mLastStep = -1;
	int64_t mCounter = 0; // samples since the block began
	EVortelTimeMode mMode = EVortelTimeMode::kEven;
	double mSamplesPerBeat = 22050.0;
	float mStepTime = 32.0f; // beat time
	bool mLengthDirty = true;
	float mSmoothing = 0.05f;
	float mFromLevel = 1.0f;
	float mToLevel = 1.0f;
	int mFadeLength = 0;
	int mFadeCount = 0;
	double mFadeStep = 0.0;
	TVortelDeClickEnvelope mFadeEnvelope{128};
};
