// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/TVortelDspDevice.h"
#include "effects/blocks/TVAEnvelopeFollower.h"
#include "effects/blocks/TVortelRecording.h"

#include <array>

class TVortelStretcherDevice;

/// Granular time stretcher. A read pointer crawls through the recording; grains start at it and play at normal pitch,
/// so time slows while pitch stays. Left and right have grains of their own. The input level can bend their size.
class TVortelStretcherDspDevice final : public TVortelDspDevice {
public:
	TVortelStretcherDspDevice(TVortelStretcherDevice* device, THost* host, int32_t index);

protected:
	void ProcessEffect(float* left, float* right, int count) override;
	void OnSampleRateChanged(int32_t rate) override;
	void OnStart() override;
	void OnRetrigger() override;
	void OnParametersChanged() override;
	void OnStateLost() override;

private:
	/// One side's running grain, in samples. The grain before plays on under it for the length of the fade.
	struct TGrain {
		int mPreviousStart = 0;
		int mStart = 0;
		int mPosition = 0;
		int mLength = 4410;
		int mFadeLength = 2205;
		double mFadeScale = 1.0 / 2205.0;

		/// Everything but the lengths.
		void Restart() { mPreviousStart = mStart = mPosition = 0; }

		/// Up to the end of the grain.
		void Advance(int samples);

		/// Samples to the end of the grain, or to that of its fade.
		int Remaining() const { return (mPosition < mFadeLength ? mFadeLength : mLength) - mPosition; }
	};

	struct TGrainSet {
		double mReadPosition = 0.0;
		TGrain mLeft, mRight;

		void Restart();
		void Advance(float speed, int limit, int samples);
	};

	/// Bounds in milliseconds between which the length of the next grains is drawn.
	struct TSizeRange {
		double mLow, mRange;
	};

	TSizeRange SizeRange(double envelope) const;
	double DrawLength(const TSizeRange& range) const;
	void UpdateGrains(TGrainSet& set, double envelope) const;
	void BeginGrain(TGrain& grain, double readPosition, int length) const;
	float ReadGrain(const TGrain& grain, const float* samples, int size) const;
	void ReadGrain(const TGrain& grain, const float* samples, int size, float* target, int count) const;
	double Follow(const float* left, const float* right, int count);
	void ProcessSwitchingSample(float& left, float& right);
	int ProcessRun(float* left, float* right, int count);
	void SetFollower();

	TVortelConvertedParameter mGrainSizeParameter;
	TVortelConvertedParameter mAttackParameter;
	TVortelConvertedParameter mReleaseParameter;
	float mSpeed = 0.25f;
	float mGrainSize = 25.0f; // ms
	float mSmoothing = 0.5f;
	float mJitter = 0.0f;
	TVortelRecording mRecording;
	int mReadLimit = 0; // where the read pointer stops: a longest grain and its successor's fade must fit behind it
	TGrainSet mGrains;
	TGrainSet mNextGrains;
	TVortelDeClickEnvelope mGrainFade{512};
	float mGrainModulation = 0.5f; // normalised
	double mAttack = TVAEnvelopeFollower::kDefaultAttack;
	double mRelease = TVAEnvelopeFollower::kDefaultRelease;
	TVAEnvelopeFollower mFollower;
};
