// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <emmintrin.h>

/// Base of values that glide. Stateless.
class TRampableBase {
public:
	virtual ~TRampableBase() = default;

	/// Moves on by one sample.
	virtual void Step() = 0;
	/// Puts the value where it was going.
	virtual void Finish() = 0;
};

template <class T>
class TRampable;

/// One-pole smoothed value. Audio thread.
///
/// Each step covers a fixed share of the distance that is left, so a glide ends by itself when the step no longer
/// changes the float. The share is given for 44100 Hz; the scale (44100 / sample rate) keeps the speed in seconds the
/// same at any rate. Whoever owns the ramp hands it the scale when the sample rate changes.
template <>
class TRampable<float> final : public TRampableBase {
public:
	static constexpr float kDefaultCoefficient = 1.0f / 256.0f;

	TRampable() = default;

	TRampable(float value, float coefficient) : mCoefficient(coefficient), mTarget(value), mCurrent(value) {}

	void SetCoefficient(float coefficient) { mCoefficient = coefficient; }

	void SetScale(float scale) { mScale = scale; }

	void Jump(float value) { mTarget = mCurrent = value; }

	/// A target too near for a step is reached at once.
	void SetTarget(float target) {
		mTarget = target;
		if (!IsRamping())
			mCurrent = target;
	}

	/// At the target to the last bit; nothing but another target moves it.
	bool IsSettled() const { return mCurrent == mTarget; }

	bool IsRamping() const { return mCurrent != mTarget && Next() != mCurrent; }

	void Step() override { mCurrent = Next(); }

	void Finish() override { mCurrent = mTarget; }

	float Current() const { return mCurrent; }

	float Target() const { return mTarget; }

private:
	friend class TRampGroup;

	float Next() const { return mCurrent + (mTarget - mCurrent) * mCoefficient * mScale; }

	float mCoefficient = kDefaultCoefficient;
	float mTarget = 0.0f;
	float mCurrent = 0.0f;
	float mScale = 1.0f;
};

/// Up to three ramps that move together, in the lanes of one vector. While the group exists it stands for the ramps;
/// they learn of its steps at its end. Their coefficients must be powers of two, which makes the steps the same as
/// those of Step, bit for bit. All inline, so that a loop keeps the group in registers.
class TRampGroup {
public:
	TRampGroup(TRampable<float>& first, TRampable<float>& second) : TRampGroup(&first, &second, nullptr) {}

	TRampGroup(TRampable<float>& first, TRampable<float>& second, TRampable<float>& third)
	    : TRampGroup(&first, &second, &third) {}

	~TRampGroup() {
		mpFirst->mCurrent = _mm_cvtss_f32(mCurrent);
		mpSecond->mCurrent = _mm_cvtss_f32(_mm_shuffle_ps(mCurrent, mCurrent, 1));
		if (mpThird)
			mpThird->mCurrent = _mm_cvtss_f32(_mm_movehl_ps(mCurrent, mCurrent));
	}

	TRampGroup(const TRampGroup&) = delete;
	TRampGroup& operator=(const TRampGroup&) = delete;

	/// Moves all by one sample and returns the values, the first in the lowest lane.
	__m128 Step() {
		mCurrent = _mm_add_ps(mCurrent, _mm_mul_ps(_mm_sub_ps(mTarget, mCurrent), mShare));
		return mCurrent;
	}

	/// The values of the next `count` steps, an array for each ramp. The last value is repeated up to a multiple of
	/// four, for which the arrays have room.
	void Fill(int count, float* first, float* second, float* third = nullptr) {
		int i = 0;
		for (; i <= count - 4; i += 4) {
			__m128 a = Step();
			__m128 b = Step();
			__m128 c = Step();
			__m128 d = Step();
			_MM_TRANSPOSE4_PS(a, b, c, d);
			_mm_storeu_ps(first + i, a);
			_mm_storeu_ps(second + i, b);
			if (third)
				_mm_storeu_ps(third + i, c);
		}
		for (; i < count; ++i) {
			const __m128 row = Step();
			first[i] = _mm_cvtss_f32(row);
			second[i] = _mm_cvtss_f32(_mm_shuffle_ps(row, row, 1));
			if (third)
				third[i] = _mm_cvtss_f32(_mm_movehl_ps(row, row));
		}
		for (; i % 4 != 0; ++i) {
			first[i] = first[i - 1];
			second[i] = second[i - 1];
			if (third)
				third[i] = third[i - 1];
		}
	}

private:
	using TRamp = TRampable<float>;

	TRampGroup(TRamp* first, TRamp* second, TRamp* third)
	    : mTarget(_mm_set_ps(0.0f, third ? third->mTarget : 0.0f, second->mTarget, first->mTarget)),
	      mCurrent(_mm_set_ps(0.0f, third ? third->mCurrent : 0.0f, second->mCurrent, first->mCurrent)),
	      mShare(_mm_set_ps(0.0f, third ? Share(*third) : 0.0f, Share(*second), Share(*first))),
	      mpFirst(first),
	      mpSecond(second),
	      mpThird(third) {}

	static float Share(const TRamp& ramp) { return ramp.mCoefficient * ramp.mScale; }

	__m128 mTarget;
	__m128 mCurrent;
	__m128 mShare;
	TRamp* mpFirst;
	TRamp* mpSecond;
	TRamp* mpThird;
};
