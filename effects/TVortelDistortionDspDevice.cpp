// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelDistortionDspDevice.h"

#include "document/TVortelEffectDevices.h"
#include "effects/blocks/TVortelBuffers.h"
#include "effects/blocks/VectorMath.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

using namespace VortelParameterIds::Distortion;

namespace {

using VectorMath::TQuad;

constexpr double kFullScale = 32767.0;
constexpr float kLeastDrive = 0.0001f; // the power curves need a positive base
constexpr double kToneFrequency = 1200.0;
constexpr double kToneQ = 1.5;
/// Input beyond this is far outside any scale; it keeps the whole-number arithmetic below inside what a double holds.
constexpr double kWholeLimit = 1e9;

__m128d Limited(__m128d x, double limit) {
	return _mm_max_pd(_mm_set1_pd(-limit), _mm_min_pd(x, _mm_set1_pd(limit)));
}

/// Towards zero, for |x| below 2^31.
__m128d WholePart(__m128d x) {
	return _mm_cvtepi32_pd(_mm_cvttpd_epi32(x));
}

/// Halves away from zero.
__m128d RoundedMagnitude(__m128d x) {
	const __m128d magnitude = _mm_min_pd(VectorMath::Absolute(x), _mm_set1_pd(kWholeLimit));
	return WholePart(_mm_add_pd(magnitude, _mm_set1_pd(0.5)));
}

__m128d Rounded(__m128d x) {
	return _mm_or_pd(RoundedMagnitude(x), _mm_and_pd(x, _mm_set1_pd(-0.0)));
}

} // namespace

/// What a curve derives from the drive, for four samples in a row.
struct TVortelDistortionDspDevice::TDriveQuad {
	TQuad mFirst;        // the curve's own
	TQuad mSecond;       // the curve's own
	TQuad mCompensation; // gain of the output
};

/// The same for one sample, with the gains of the output.
struct TVortelDistortionDspDevice::TSettings {
	double mFirst;
	double mSecond;
	double mWetGain; // wet, compensation and the curve's scale in one
	double mDryGain;
};

/// Hard clip in whole-number arithmetic. The limit falls as the square of the drive rises.
class TVortelDistortionDspDevice::TRazorCurve {
public:
	explicit TRazorCurve(TVortelDistortionDspDevice&) {}

	static constexpr double kScale = 1.0;

	static TDriveQuad Follow(__m128 drive) {
		const __m128 root = _mm_add_ps(_mm_mul_ps(drive, _mm_set1_ps(100.0f)), _mm_set1_ps(7.0f));
		const __m128i whole = _mm_cvttps_epi32(_mm_mul_ps(root, root));
		const __m128i step = _mm_or_si128(_mm_slli_epi32(whole, 2), _mm_set1_epi32(1));
		const __m128 square = _mm_mul_ps(_mm_mul_ps(drive, drive), _mm_set1_ps(100.0f));
		return {TQuad(_mm_cvtepi32_ps(step)), 0.0, TQuad(_mm_add_ps(square, _mm_set1_ps(1.0f)))};
	}

	/// (n x step >> 7, clipped, << 7) / step, exact in double: the products stay far below 2^53.
	__m128d operator()(__m128d in, const TSettings& settings) const {
		const __m128d step = _mm_set1_pd(settings.mFirst);
		const __m128d shifted = _mm_mul_pd(_mm_mul_pd(Rounded(in), step), _mm_set1_pd(1.0 / 128.0));
		const __m128d clipped = Limited(Floor(Limited(shifted, 65536.0)), kFullScale);
		return WholePart(_mm_div_pd(_mm_mul_pd(clipped, _mm_set1_pd(128.0)), step));
	}

private:
	/// An arithmetic shift rounds down.
	static __m128d Floor(__m128d x) {
		const __m128d whole = WholePart(x);
		return _mm_sub_pd(whole, _mm_and_pd(_mm_cmpgt_pd(whole, x), _mm_set1_pd(1.0)));
	}
};

/// Soft saturation; the settings are k and k + 1.
class TVortelDistortionDspDevice::TShapeCurve {
public:
	explicit TShapeCurve(TVortelDistortionDspDevice&) {}

	static constexpr double kScale = kFullScale;

	static TDriveQuad Follow(__m128 drive) {
		const TQuad base = TQuad(drive) * 10.0;
		const TQuad k = base * base * VectorMath::SquareRoot(base); // base^2.5
		const TQuad root = VectorMath::FifthRoot(_mm_mul_ps(drive, _mm_set1_ps(0.25f)));
		return {k, k + 1.0, 1.0 - root};
	}

	__m128d operator()(__m128d in, const TSettings& settings) const {
		const __m128d x = _mm_div_pd(in, _mm_set1_pd(kFullScale));
		const __m128d slope = _mm_mul_pd(VectorMath::Absolute(x), _mm_set1_pd(settings.mFirst));
		return _mm_div_pd(_mm_mul_pd(_mm_set1_pd(settings.mSecond), x), _mm_add_pd(slope, _mm_set1_pd(1.0)));
	}
};

/// Wave folder; the settings are the threshold and the gain.
class TVortelDistortionDspDevice::TFoldCurve {
public:
	explicit TFoldCurve(TVortelDistortionDspDevice&) {}

	static constexpr double kScale = kFullScale;

	/// The threshold comes close to 0, where the folds are many: the root must be good to the last digits.
	static TDriveQuad Follow(__m128 drive) {
		const TQuad d(drive);
		const TQuad threshold = 1.01 - VectorMath::FifthRoot(drive);
		return {threshold, d * d + 1.0, 1.0 / (threshold * 2.75) + 0.6};
	}

	__m128d operator()(__m128d in, const TSettings& settings) const {
		const __m128d t = _mm_set1_pd(settings.mFirst);
		const __m128d x = _mm_mul_pd(_mm_div_pd(in, _mm_set1_pd(kFullScale)), _mm_set1_pd(settings.mSecond));
		const __m128d outside = _mm_cmpgt_pd(VectorMath::Absolute(x), t);
		if (_mm_movemask_pd(outside) == 0)
			return x;
		// | |fmod(x - t, 4 t)| - 2 t | - t
		const __m128d period = _mm_mul_pd(t, _mm_set1_pd(4.0));
		const __m128d distance = VectorMath::Absolute(_mm_sub_pd(x, t));
		const __m128d rest = Remainder(distance, period);
		const __m128d folded = _mm_sub_pd(VectorMath::Absolute(_mm_sub_pd(rest, _mm_add_pd(t, t))), t);
		return VectorMath::Select(outside, folded, x);
	}

private:
	/// Of x of 0 or more. The curve is continuous where it wraps, so a quotient that rounds to the next whole number
	/// is not heard. Beyond what a whole number holds the phase of the fold means nothing.
	static __m128d Remainder(__m128d x, __m128d period) {
		const __m128d within = _mm_min_pd(x, _mm_mul_pd(period, _mm_set1_pd(2147483000.0)));
		const __m128d turns = WholePart(_mm_div_pd(within, period));
		return _mm_max_pd(_mm_sub_pd(within, _mm_mul_pd(turns, period)), _mm_setzero_pd());
	}
};

/// Rectifying power curve with a filter that takes the DC out; the settings are the exponent, and what brings the
/// logarithm from full scale to samples.
class TVortelDistortionDspDevice::TShiftCurve {
public:
	explicit TShiftCurve(TVortelDistortionDspDevice& device) : mDevice(device), mState(device.mShift) {}

	~TShiftCurve() { mDevice.mShift = mState; }

	TShiftCurve(const TShiftCurve&) = delete;
	TShiftCurve& operator=(const TShiftCurve&) = delete;

	static constexpr double kScale = 1.0;

	static TDriveQuad Follow(__m128 drive) {
		constexpr double kBitsOfFullScale = 14.999955971769559; // log2(32767)
		const TQuad d(drive);
		const TQuad bend = d * 0.9;
		return {1.0 - bend, bend * kBitsOfFullScale, 1.5 - VectorMath::Power(d * 0.5, 0.95)};
	}

	__m128d operator()(__m128d in, const TSettings& settings) {
		const __m128d n = RoundedMagnitude(in);
		const __m128d isZero = _mm_cmpeq_pd(n, _mm_setzero_pd());
		// (n / full scale)^exponent * full scale, in one power of two
		const __m128d log =
		    _mm_add_pd(_mm_mul_pd(VectorMath::Log2(n), _mm_set1_pd(settings.mFirst)), _mm_set1_pd(settings.mSecond));
		const __m128d v = AsFloat(_mm_andnot_pd(isZero, VectorMath::Exp2(log)));
		const __m128d y = AsFloat(_mm_add_pd(_mm_sub_pd(v, mState.mIn), _mm_mul_pd(mState.mOut, _mm_set1_pd(0.99))));
		mState.mOut = y;
		mState.mIn = v;
		return y;
	}

private:
	/// The states are floats.
	static __m128d AsFloat(__m128d x) { return _mm_cvtps_pd(_mm_cvtpd_ps(x)); }

	TVortelDistortionDspDevice& mDevice;
	TShiftState mState;
};

TVortelDistortionDspDevice::TVortelDistortionDspDevice(TVortelDistortionDevice* device, THost* host, int32_t index)
    : TVortelDspDevice(device, host, index),
      mTypeParameter(*device->mpType) {
	FinishConstruction();
}

void TVortelDistortionDspDevice::UpdateTone() {
	mToneFilter.SetHighShelf(kToneFrequency, SampleRate(), kToneQ, 16.0 * mTone - 8.0);
}

void TVortelDistortionDspDevice::OnParametersChanged() {
	if (const auto type = mTypeParameter.ReadChoice<EVortelDistortionType>(*Scene()); type != mType) {
		mType = type;
		OnTypeChanged();
	}
	mDriveRamp.SetTarget(Scene()->ParameterValue(kDrive));
	mTone = Scene()->ParameterValue(kTone);
	mWetRamp.SetTarget(Scene()->ParameterValue(kWetOut));
	mDryRamp.SetTarget(Scene()->ParameterValue(kDryOut));
	UpdateTone();
}

bool TVortelDistortionDspDevice::AreRampsSettled() const {
	return mDriveRamp.IsSettled() && mWetRamp.IsSettled() && mDryRamp.IsSettled();
}

void TVortelDistortionDspDevice::OnSampleRateChanged(int32_t) {
	for (TRampable<float>* ramp : {&mDriveRamp, &mWetRamp, &mDryRamp})
		ramp->SetScale(RampScale());
	UpdateTone();
}

void TVortelDistortionDspDevice::OnTypeChanged() {
	mShift = {};
	mToneFilter.ClearState();
}

void TVortelDistortionDspDevice::ProcessEffect(float* left, float* right, int count) {
	switch (mType) {
	case EVortelDistortionType::kShape:
		return ProcessWith<TShapeCurve>(left, right, count);
	case EVortelDistortionType::kFold:
		return ProcessWith<TFoldCurve>(left, right, count);
	case EVortelDistortionType::kShift:
		return ProcessWith<TShiftCurve>(left, right, count);
	default:
		return ProcessWith<TRazorCurve>(left, right, count);
	}
}

template <class TCurve>
void TVortelDistortionDspDevice::ProcessWith(float* left, float* right, int count) {
	TCurve curve(*this);
	TVABiquadFilter filter = mToneFilter;
	const auto process = [&](float& l, float& r, const TSettings& settings) {
		const __m128d in = _mm_set_pd(r, l);
		const __m128d wet = _mm_mul_pd(filter.Process(curve(in, settings)), _mm_set1_pd(settings.mWetGain));
		const __m128 out = _mm_cvtpd_ps(_mm_add_pd(wet, _mm_mul_pd(_mm_set1_pd(settings.mDryGain), in)));
		_mm_store_ss(&l, out);
		_mm_store_ss(&r, _mm_shuffle_ps(out, out, 1));
	};
	int done = 0;
	TSettingsOfPiece settings;
	if (!AreRampsSettled()) {
		TRampGroup ramps(mDriveRamp, mWetRamp, mDryRamp);
		while (done < count && ramps.IsMoving()) {
			const int length = std::min(kPiece, count - done);
			FollowRamps<TCurve>(ramps, settings, length);
			for (int i = 0; i < length; ++i)
				process(left[done + i], right[done + i], settings[static_cast<std::size_t>(i)]);
			done += length;
		}
	}
	if (done < count) {
		Settle<TCurve>(settings);
		const TSettings settled = settings[0];
		for (int i = done; i < count; ++i)
			process(left[i], right[i], settled);
	}
	mToneFilter = filter;
}

/// The settings of four samples from their ramps.
template <class TCurve>
inline void TVortelDistortionDspDevice::Derive(TSettings* settings, __m128 drive, __m128 wet, __m128 dry) {
	const TDriveQuad quad = TCurve::Follow(_mm_max_ps(drive, _mm_set1_ps(kLeastDrive)));
	const TQuad wetGain = TQuad(wet) * TCurve::kScale * quad.mCompensation;
	const TQuad dryGain(dry);
	const auto store = [](TSettings* two, __m128d first, __m128d second, __m128d wets, __m128d drys) {
		_mm_storeu_pd(&two[0].mFirst, _mm_unpacklo_pd(first, second));
		_mm_storeu_pd(&two[0].mWetGain, _mm_unpacklo_pd(wets, drys));
		_mm_storeu_pd(&two[1].mFirst, _mm_unpackhi_pd(first, second));
		_mm_storeu_pd(&two[1].mWetGain, _mm_unpackhi_pd(wets, drys));
	};
	store(settings, quad.mFirst.mLow, quad.mSecond.mLow, wetGain.mLow, dryGain.mLow);
	store(settings + 2, quad.mFirst.mHigh, quad.mSecond.mHigh, wetGain.mHigh, dryGain.mHigh);
}

template <class TCurve>
void TVortelDistortionDspDevice::Settle(TSettingsOfPiece& settings) const {
	Derive<TCurve>(
	    settings.data(), _mm_set1_ps(mDriveRamp.Target()), _mm_set1_ps(mWetRamp.Target()),
	    _mm_set1_ps(mDryRamp.Target()));
}

template <class TCurve>
void TVortelDistortionDspDevice::FollowRamps(TRampGroup& ramps, TSettingsOfPiece& settings, int count) {
	std::array<float, kPiece> drive, wet, dry;
	ramps.Fill(count, drive.data(), wet.data(), dry.data());
	for (std::size_t i = 0; i < static_cast<std::size_t>(count); i += 4)
		Derive<TCurve>(&settings[i], _mm_loadu_ps(&drive[i]), _mm_loadu_ps(&wet[i]), _mm_loadu_ps(&dry[i]));
}
