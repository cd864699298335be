// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/TVortelDspDevice.h"
#include "effects/blocks/TVortelRecording.h"
#include "effects/blocks/TVortelTempoSync.h"

class TVortelReverserDevice;

/// Records from the start of its block and walks back and forth between two points of a tempo-synced stretch of the
/// recording. The first walk goes forward with the recording, so the block begins with the live signal; the walk turns
/// at the right bound, and from then on at both.
class TVortelReverserDspDevice final : public TVortelDspDevice {
public:
	TVortelReverserDspDevice(TVortelReverserDevice* device, THost* host, int32_t index);

protected:
	void ProcessEffect(float* left, float* right, int count) override;
	void OnSampleRateChanged(int32_t rate) override;
	void OnTempoChanged(float tempo) override;
	void OnStart() override;
	void OnRetrigger() override;
	void OnParametersChanged() override;

private:
	/// A reading position that walks between the bounds, in samples.
	struct TWalk {
		int mPosition = 0;
		bool mBackwards = false;
	};

	void ComputeLoopLength();
	void ComputeBounds();
	void Step(TWalk& walk) const;
	int SamplesToTurn(const TWalk& walk) const;
	void ProcessSwitchingSample(float& left, float& right);
	int ProcessRun(float* left, float* right, int count);

	TVortelConvertedParameter mTimeParameter;
	TVortelConvertedParameter mModeParameter;
	TVortelRecording mRecording;
	TWalk mWalk;
	TWalk mNextWalk;
	EVortelTimeMode mMode = EVortelTimeMode::kEven;
	double mSamplesPerBeat = 22050.0;
	float mTime = 32.0f; // beat time
	int mLoopLength = 11025;
	float mPointA = 0.0f;
	float mPointB = 1.0f;
	int mLeftBound = 0;
	int mRightBound = 11025;
};
