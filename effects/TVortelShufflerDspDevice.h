// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/TVortelDspDevice.h"
#include "effects/blocks/TVortelSliceBuffer.h"
#include "effects/blocks/TVortelTempoSync.h"
#include "framework/foundation/values/TParkMillerPRNG.h"

class TVortelShufflerDevice;

/// Cuts time into slices of random tempo-synced length and decides at each boundary: go on with the live signal, jump
/// to an earlier place, or repeat the last; and forwards or backwards. The draws come from a generator that is seeded
/// when the sequencer starts, so the same start gives the same decisions.
class TVortelShufflerDspDevice final : public TVortelDspDevice {
public:
	TVortelShufflerDspDevice(TVortelShufflerDevice* device, THost* host, int32_t index);

	void OnReseed(uint32_t seed) override { SetSeed(seed); }

	void SetSeed(uint32_t seed) { mRandom.SetSeed(seed); }

protected:
	void ProcessEffect(float* left, float* right, int count) override;
	void OnSampleRateChanged(int32_t rate) override;
	void OnTempoChanged(float tempo) override;
	void OnStart() override;
	void OnRetrigger() override;
	void OnParametersChanged() override;

private:
	void ChooseSlice();
	void Decide();

	TVortelConvertedParameter mModeParameter;
	TVortelConvertedParameter mTimeParameter; // serves both times
	TVortelConvertedParameter mRangeParameter;
	EVortelTimeMode mMode = EVortelTimeMode::kEven;
	double mSamplesPerBeat = 22050.0;
	TVortelSliceBuffer mLeft, mRight;
	float mMinTime = 0.0f; // normalised
	float mMaxTime = 1.0f;
	int mRangeBeats = 2;
	float mRepeatThreshold = 0.0f;
	float mShuffleThreshold = 1.0f;
	float mForwardThreshold = 0.0f;
	int mSliceLength = 11025;
	int mCounter = 0; // samples into the slice
	int mSliceStart = 0;
	TParkMillerPRNG mRandom;
};
