// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/TVortelDspDevice.h"
#include "effects/blocks/TVABiquadFilter.h"

#include <array>
#include <emmintrin.h>

class TVortelDistortionDevice;

/// Four ways to distort behind one tone control, with outputs for wet and dry. Filter and DC states go on from block to
/// block and are cleared when the type changes.
class TVortelDistortionDspDevice final : public TVortelDspDevice {
public:
	TVortelDistortionDspDevice(TVortelDistortionDevice* device, THost* host, int32_t index);

protected:
	void ProcessEffect(float* left, float* right, int count) override;
	void OnSampleRateChanged(int32_t rate) override;
	void OnParametersChanged() override;
	bool AreRampsSettled() const override;

	void OnStateLost() override { OnTypeChanged(); }

	virtual void OnTypeChanged();

private:
	/// A left and a right value of the filter that takes DC out of the rectified signal; floats, kept as doubles.
	struct TShiftState {
		__m128d mOut = _mm_setzero_pd();
		__m128d mIn = _mm_setzero_pd();
	};

	class TRazorCurve;
	class TShapeCurve;
	class TFoldCurve;
	class TShiftCurve;

	static constexpr int kPiece = 64; // ramps are followed for so many samples in advance

	struct TDriveQuad;
	struct TSettings;
	using TSettingsOfPiece = std::array<TSettings, kPiece>;

	template <class TCurve>
	void ProcessWith(float* left, float* right, int count);
	template <class TCurve>
	static void FollowRamps(TRampGroup& ramps, TSettingsOfPiece& settings, int count);
	template <class TCurve>
	void Settle(TSettingsOfPiece& settings) const;
	template <class TCurve>
	static void Derive(TSettings* settings, __m128 drive, __m128 wet, __m128 dry);
	void UpdateTone();

	TVortelConvertedParameter mTypeParameter;
	EVortelDistortionType mType = EVortelDistortionType::kRazor;
	TRampable<float> mDriveRamp{0.2f, 1.0f / 32.0f};
	float mTone = 0.5f;
	TRampable<float> mWetRamp{0.75f, 1.0f / 256.0f};
	TRampable<float> mDryRamp{0.0f, 1.0f / 256.0f};
	TShiftState mShift;
	TVABiquadFilter mToneFilter;
};
