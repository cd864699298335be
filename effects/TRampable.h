// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <emmintrin.h>
#include <initializer_list>

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
		if (mCurrent != target && !IsRamping())
			mCurrent = target;
	}

	bool IsRamping() const { return Next() != mCurrent; }

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

/// Up to four ramps that move together, in the lanes of one vector. While the group exists it stands for the ramps;
/// they learn of its steps at its end. Their coefficients must be powers of two, which makes the steps the same as
/// those of Step, bit for bit.
class TRampGroup {
public:
	explicit TRampGroup(std::initializer_list<TRampable<float>*> ramps);
	~TRampGroup();
	TRampGroup(const TRampGroup&) = delete;
	TRampGroup& operator=(const TRampGroup&) = delete;

	/// Moves all by one sample and returns the values, the first in the lowest lane.
	__m128 Step() {
		mCurrent = _mm_add_ps(mCurrent, _mm_mul_ps(_mm_sub_ps(mTarget, mCurrent), mShare));
		return mCurrent;
	}

private:
	static constexpr std::size_t kLanes = 4;

	__m128 mTarget;
	__m128 mCurrent;
	__m128 mShare;
	std::array<TRampable<float>*, kLanes> mRamps{};
};
