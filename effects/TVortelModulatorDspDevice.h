// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/TVortelDspDevice.h"
#include "effects/blocks/TVAEnvelopeFollower.h"

#include <array>

class TVortelModulatorDevice;

/// Ring modulator. Its sine can follow the input level in frequency and can be heard by itself. The two sides lie
/// spread x 180 degrees apart.
class TVortelModulatorDspDevice final : public TVortelDspDevice {
public:
	TVortelModulatorDspDevice(TVortelModulatorDevice* device, THost* host, int32_t index);

protected:
	void ProcessEffect(float* left, float* right, int count) override;
	void OnSampleRateChanged(int32_t rate) override;
	void OnStart() override;
	void OnParametersChanged() override;
	bool AreRampsSettled() const override;
	void OnStateLost() override;

private:
	static constexpr int kPiece = 64; // ramps are followed for so many samples in advance

	/// Of the ramps, at one sample.
	struct TValues {
		float mFrequency, mDepth, mOsc, mFM, mSpread;
	};

	struct TMovingValues;
	struct TRestingValues;

	/// Returns the samples done: all, or at least those until no ramp moves.
	int ProcessRamped(float* left, float* right, int count);
	template <class TSource>
	void ProcessSamples(float* left, float* right, int count, TSource values);
	std::array<TRampable<float>*, 5> Ramps();
	void SetFollower();

	TVortelConvertedParameter mFrequencyParameter;
	TVortelConvertedParameter mAttackParameter;
	TVortelConvertedParameter mReleaseParameter;
	double mPhase = 0.0;                                   // radians
	TRampable<float> mFrequencyRamp{440.0f, 1.0f / 64.0f}; // hertz
	TRampable<float> mDepthRamp{1.0f, 1.0f / 64.0f};
	TRampable<float> mOscRamp{0.0f, 1.0f / 64.0f};
	TRampable<float> mFMRamp{0.0f, 1.0f / 64.0f};     // normalised
	TRampable<float> mSpreadRamp{0.0f, 1.0f / 64.0f}; // normalised
	double mAttack = TVAEnvelopeFollower::kDefaultAttack;
	double mRelease = TVAEnvelopeFollower::kDefaultRelease;
	TVAEnvelopeFollower mFollower;
};
