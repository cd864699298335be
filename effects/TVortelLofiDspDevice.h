// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/TVortelDspDevice.h"
#include "effects/blocks/TVAEnvelopeFollower.h"

class TVortelLofiDevice;

/// Sample rate and bit depth reduction: holds the input at a rate of its own, which can follow the input level, and
/// quantises what it holds. Phase and held samples go on from block to block.
class TVortelLofiDspDevice final : public TVortelDspDevice {
public:
	TVortelLofiDspDevice(TVortelLofiDevice* device, THost* host, int32_t index);

protected:
	void ProcessEffect(float* left, float* right, int count) override;
	void OnSampleRateChanged(int32_t rate) override;
	void OnParametersChanged() override;
	void OnStateLost() override;

private:
	/// The quantiser is a function object, so that each kind has a loop of its own.
	template <class TQuantizer>
	void ProcessSamples(float* left, float* right, int count, const TQuantizer& quantizer);
	void SetFollower();

	TVortelConvertedParameter mFrequencyParameter;
	TVortelConvertedParameter mBitDepthParameter;
	TVortelConvertedParameter mTypeParameter;
	TVortelConvertedParameter mAttackParameter;
	TVortelConvertedParameter mReleaseParameter;
	double mPhase = 0.0; // 0 to 1
	float mHoldLeft = 0.0f;
	float mHoldRight = 0.0f;
	float mBitDepth = 8.0f;
	EVortelBitDepthType mType = EVortelBitDepthType::kSigned;
	double mFrequency = 11025.0; // hertz
	float mFMAmount = 0.0f;      // normalised
	double mAttack = TVAEnvelopeFollower::kDefaultAttack;
	double mRelease = TVAEnvelopeFollower::kDefaultRelease;
	TVAEnvelopeFollower mFollower;
};
