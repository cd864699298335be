// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelDistortionDspDevice.h"

#include "document/TVortelEffectDevices.h"
#include "effects/VectorMath.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

enum TParameterId : int32_t { kTypeId = 137, kDriveId = 138, kToneId = 139, kWetId = 140, kDryId = 141 };

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

/// Hard clip in whole-number arithmetic. The limit falls as the square of the drive rises.
class TVortelDistortionDspDevice::TRazorCurve {
public:
	explicit TRazorCurve(TVortelDistortionDspDevice&) {}

	void SetDrive(float drive) {
		const float root = drive * 100.0f + 7.0f;
		mStep = 1 | (4 * static_cast<int>(root * root));
		mCompensation = drive * drive * 100.0f + 1.0f;
	}

	double Compensation() const { return mCompensation; }

	static constexpr double kScale = 1.0;

	/// (n x step >> 7, clipped, << 7) / step, exact in double: the products stay far below 2^53.
	__m128d operator()(__m128d in) const {
		const __m128d step = _mm_set1_pd(mStep);
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

	int mStep = 1;
	float mCompensation = 1.0f;
};

/// Soft saturation.
class TVortelDistortionDspDevice::TShapeCurve {
public:
	explicit TShapeCurve(TVortelDistortionDspDevice&) {}

	void SetDrive(float drive) {
		mK = std::pow(drive * 10.0, 2.5);
		mCompensation = 1.0 - std::pow(drive / 4.0, 0.2);
	}

	double Compensation() const { return mCompensation; }

	static constexpr double kScale = kFullScale;

	__m128d operator()(__m128d in) const {
		const __m128d k = _mm_set1_pd(mK);
		const __m128d one = _mm_set1_pd(1.0);
		const __m128d x = _mm_div_pd(in, _mm_set1_pd(kFullScale));
		return _mm_div_pd(_mm_mul_pd(_mm_add_pd(k, one), x), _mm_add_pd(_mm_mul_pd(VectorMath::Absolute(x), k), one));
	}

private:
	double mK = 0.0;
	double mCompensation = 1.0;
};

/// Wave folder.
class TVortelDistortionDspDevice::TFoldCurve {
public:
	explicit TFoldCurve(TVortelDistortionDspDevice&) {}

	void SetDrive(float drive) {
		mThreshold = 1.01 - std::pow(static_cast<double>(drive), 0.2);
		mGain = static_cast<double>(drive) * drive + 1.0;
		mCompensation = 1.0 / (mThreshold * 2.75) + 0.6;
	}

	double Compensation() const { return mCompensation; }

	static constexpr double kScale = kFullScale;

	__m128d operator()(__m128d in) const {
		const __m128d t = _mm_set1_pd(mThreshold);
		const __m128d x = _mm_mul_pd(_mm_div_pd(in, _mm_set1_pd(kFullScale)), _mm_set1_pd(mGain));
		const __m128d outside = _mm_cmpgt_pd(VectorMath::Absolute(x), t);
		if (_mm_movemask_pd(outside) == 0)
			return x;
		// | |fmod(x - t, 4 t)| - 2 t | - t
		const __m128d period = _mm_set1_pd(4.0 * mThreshold);
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

	double mThreshold = 1.0;
	double mGain = 1.0;
	double mCompensation = 1.0;
};

/// Rectifying power curve with a filter that takes the DC out.
class TVortelDistortionDspDevice::TShiftCurve {
public:
	explicit TShiftCurve(TVortelDistortionDspDevice& device) : mDevice(device), mState(device.mShift) {}

	~TShiftCurve() { mDevice.mShift = mState; }

	TShiftCurve(const TShiftCurve&) = delete;
	TShiftCurve& operator=(const TShiftCurve&) = delete;

	void SetDrive(float drive) {
		mCompensation = 1.5 - std::pow(drive / 2.0, 0.95);
		mExponent = 1.0 - drive * 0.9;
		mOffset = (1.0 - mExponent) * std::log2(kFullScale);
	}

	double Compensation() const { return mCompensation; }

	static constexpr double kScale = 1.0;

	__m128d operator()(__m128d in) {
		const __m128d n = RoundedMagnitude(in);
		const __m128d isZero = _mm_cmpeq_pd(n, _mm_setzero_pd());
		// (n / full scale)^exponent * full scale, in one power of two
		const __m128d log = _mm_add_pd(_mm_mul_pd(VectorMath::Log2(n), _mm_set1_pd(mExponent)), _mm_set1_pd(mOffset));
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
	double mExponent = 1.0;
	double mOffset = 0.0;
	double mCompensation = 1.0;
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
	if (const int type = mTypeParameter.ReadWhole(*Scene()); type != mType) {
		mType = type;
		OnTypeChanged();
	}
	mDriveRamp.SetTarget(Scene()->ParameterValue(kDriveId));
	mTone = Scene()->ParameterValue(kToneId);
	mWetRamp.SetTarget(Scene()->ParameterValue(kWetId));
	mDryRamp.SetTarget(Scene()->ParameterValue(kDryId));
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
	case kShape:
		return ProcessWith<TShapeCurve>(left, right, count);
	case kFold:
		return ProcessWith<TFoldCurve>(left, right, count);
	case kShift:
		return ProcessWith<TShiftCurve>(left, right, count);
	default:
		return ProcessWith<TRazorCurve>(left, right, count);
	}
}

template <class TCurve>
void TVortelDistortionDspDevice::ProcessWith(float* left, float* right, int count) {
	const bool driveMoves = mDriveRamp.IsRamping();
	const bool outputMoves = mWetRamp.IsRamping() || mDryRamp.IsRamping();
	if (driveMoves)
		outputMoves ? ProcessSamples<TCurve, true, true>(left, right, count)
		            : ProcessSamples<TCurve, true, false>(left, right, count);
	else
		outputMoves ? ProcessSamples<TCurve, false, true>(left, right, count)
		            : ProcessSamples<TCurve, false, false>(left, right, count);
}

template <class TCurve, bool kDriveMoves, bool kOutputMoves>
void TVortelDistortionDspDevice::ProcessSamples(float* left, float* right, int count) {
	TCurve curve(*this);
	curve.SetDrive(std::max(kLeastDrive, mDriveRamp.Target()));
	TVABiquadFilter filter = mToneFilter;
	double wet = mWetRamp.Target();
	double dry = mDryRamp.Target();
	for (int i = 0; i < count; ++i) {
		if constexpr (kDriveMoves) {
			mDriveRamp.Step();
			curve.SetDrive(std::max(kLeastDrive, mDriveRamp.Current()));
		}
		if constexpr (kOutputMoves) {
			mWetRamp.Step();
			mDryRamp.Step();
			wet = mWetRamp.Current();
			dry = mDryRamp.Current();
		}
		const __m128d in = _mm_set_pd(right[i], left[i]);
		const __m128d distorted = filter.Process(curve(in));
		const __m128d gain = _mm_set1_pd(TCurve::kScale * wet * curve.Compensation());
		const __m128 out = _mm_cvtpd_ps(_mm_add_pd(_mm_mul_pd(distorted, gain), _mm_mul_pd(_mm_set1_pd(dry), in)));
		_mm_store_ss(left + i, out);
		_mm_store_ss(right + i, _mm_shuffle_ps(out, out, 1));
	}
	mToneFilter = filter;
}
