// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
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
/// changes the float; the next step then lands on the target, on the same sample whatever the slices. The share is
/// given for 44100 Hz; the scale (44100 / sample rate) keeps the speed in seconds the same at any rate. Whoever owns
/// the ramp hands it the scale when the sample rate changes.
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

	void Step() override {
		const float next = Next();
		mCurrent = next == mCurrent ? mTarget : next;
	}

	void Finish() override { mCurrent = mTarget; }

	float Current() const { return mCurrent; }

	float Target() const { return mTarget; }

private:
	friend class TRampGroup;

	float Share() const { return mCoefficient * mScale; }

	float Next() const { return mCurrent + (mTarget - mCurrent) * Share(); }

	float mCoefficient = kDefaultCoefficient;
	float mTarget = 0.0f;
	float mCurrent = 0.0f;
	float mScale = 1.0f;
};

/// Up to three ramps that move together, in the lanes of one vector. While the group exists it stands for the ramps;
/// they learn of its steps at its end. The values are those of Step, bit for bit. All inline, so that a loop keeps the
/// group in registers.
class TRampGroup {
public:
	/// The steps that Follow leaves to its run. A copy of its own, so that stores of samples leave it in registers.
	class TSteps {
	public:
		/// Moves all by one sample and returns the values, the first in the lowest lane.
		__m128 Next() {
			mCurrent = Following();
			return mCurrent;
		}

	private:
		friend class TRampGroup;

		__m128 Following() const { return _mm_add_ps(mCurrent, _mm_mul_ps(_mm_sub_ps(mTarget, mCurrent), mShare)); }

		__m128 mTarget, mCurrent, mShare;
	};

	TRampGroup(TRampable<float>& first, TRampable<float>& second) : TRampGroup(&first, &second, nullptr) {}

	TRampGroup(TRampable<float>& first, TRampable<float>& second, TRampable<float>& third)
	    : TRampGroup(&first, &second, &third) {}

	~TRampGroup() {
		mpFirst->mCurrent = _mm_cvtss_f32(mSteps.mCurrent);
		mpSecond->mCurrent = _mm_cvtss_f32(_mm_shuffle_ps(mSteps.mCurrent, mSteps.mCurrent, 1));
		if (mpThird)
			mpThird->mCurrent = _mm_cvtss_f32(_mm_movehl_ps(mSteps.mCurrent, mSteps.mCurrent));
	}

	TRampGroup(const TRampGroup&) = delete;
	TRampGroup& operator=(const TRampGroup&) = delete;

	/// Whether a step would still change something other than to land on a target.
	bool IsMoving() const { return _mm_movemask_ps(_mm_cmpneq_ps(mSteps.Following(), mSteps.mCurrent)) != 0; }

	/// Follows the ramps for up to `count` samples and returns for how many any of them moves; after that all are at
	/// their targets. Where none can land, run(at, n, steps) is to take n steps; elsewhere single(at, values) gets the
	/// values of one sample.
	template <class TRun, class TSingle>
	int Follow(int count, TRun run, TSingle single) {
		constexpr int kNear = 16; // samples after which another look pays
		for (int done = 0;;) {
			if (mFarSteps == 0)
				mFarSteps = CountFarSteps();
			if (const int far = std::min(mFarSteps, count - done); far > 0) {
				TSteps steps = mSteps;
				run(done, far, steps);
				mSteps = steps;
				mFarSteps -= far;
				done += far;
			}
			for (const int end = std::min(count, done + kNear); done < end && mFarSteps == 0; ++done) {
				if (!StepNear())
					return done;
				single(done, mSteps.mCurrent);
			}
			if (done == count)
				return done;
		}
	}

	/// The values of the next `count` steps, an array for each ramp; those of ramps at rest are their targets. The last
	/// value is repeated up to a multiple of four, for which the arrays have room.
	void Fill(int count, float* first, float* second, float* third = nullptr) {
		const auto store = [=](int at, __m128 row) {
			first[at] = _mm_cvtss_f32(row);
			second[at] = _mm_cvtss_f32(_mm_shuffle_ps(row, row, 1));
			if (third)
				third[at] = _mm_cvtss_f32(_mm_movehl_ps(row, row));
		};
		const auto run = [=](int at, int length, TSteps& steps) {
			int i = at;
			for (; i <= at + length - 4; i += 4) {
				__m128 a = steps.Next();
				__m128 b = steps.Next();
				__m128 c = steps.Next();
				__m128 d = steps.Next();
				_MM_TRANSPOSE4_PS(a, b, c, d);
				_mm_storeu_ps(first + i, a);
				_mm_storeu_ps(second + i, b);
				if (third)
					_mm_storeu_ps(third + i, c);
			}
			for (; i < at + length; ++i)
				store(i, steps.Next());
		};
		for (int i = Follow(count, run, store); i < count || i % 4 != 0; ++i)
			store(i, mSteps.mCurrent);
	}

private:
	using TRamp = TRampable<float>;

	TRampGroup(TRamp* first, TRamp* second, TRamp* third) : mpFirst(first), mpSecond(second), mpThird(third) {
		mSteps.mTarget = _mm_set_ps(0.0f, third ? third->mTarget : 0.0f, second->mTarget, first->mTarget);
		mSteps.mCurrent = _mm_set_ps(0.0f, third ? third->mCurrent : 0.0f, second->mCurrent, first->mCurrent);
		mSteps.mShare = _mm_set_ps(0.0f, third ? third->Share() : 0.0f, second->Share(), first->Share());
	}

	/// A step of any kind. False: none was left to make, and all have landed.
	bool StepNear() {
		const __m128 next = mSteps.Following();
		const __m128 moves = _mm_cmpneq_ps(next, mSteps.mCurrent);
		mSteps.mCurrent = _mm_or_ps(_mm_and_ps(moves, next), _mm_andnot_ps(moves, mSteps.mTarget));
		return _mm_movemask_ps(moves) != 0;
	}

	/// Steps that every ramp on its way is certain to have before it. A ramp moves while its step is more than half of
	/// the last place of its value, which is at most 2^-23 of the larger of where it is and where it goes. The step
	/// halves in ln 2 / share steps or more; rounding takes less than the one halving that is kept in reserve.
	int CountFarSteps() const {
		const __m128 target = mSteps.mTarget;
		const __m128 current = mSteps.mCurrent;
		const __m128 share = mSteps.mShare;
		const __m128 sign = _mm_set1_ps(-0.0f);
		const __m128 least = _mm_set1_ps(7.9e-31f); // far above where numbers lose their precision
		const __m128 rests = _mm_cmpeq_ps(current, target);
		if (_mm_movemask_ps(rests) == 15)
			return 0;
		const __m128 step = _mm_mul_ps(_mm_andnot_ps(sign, _mm_sub_ps(target, current)), share);
		const __m128 size = _mm_max_ps(_mm_andnot_ps(sign, current), _mm_andnot_ps(sign, target));
		const __m128 lastPlace = _mm_mul_ps(_mm_max_ps(size, least), _mm_set1_ps(1.1920929e-7f));
		const __m128i exponent = _mm_srli_epi32(_mm_castps_si128(_mm_div_ps(step, lastPlace)), 23);
		const __m128 halvings = _mm_cvtepi32_ps(_mm_sub_epi32(exponent, _mm_set1_epi32(128)));
		const __m128 halfLife = _mm_sub_ps(_mm_div_ps(_mm_set1_ps(0.69f), share), _mm_set1_ps(1.0f));
		__m128 steps = _mm_mul_ps(halvings, halfLife);
		steps = _mm_or_ps(_mm_andnot_ps(rests, steps), _mm_and_ps(rests, _mm_set1_ps(1e6f)));
		steps = _mm_min_ps(steps, _mm_movehl_ps(steps, steps));
		steps = _mm_min_ss(steps, _mm_shuffle_ps(steps, steps, 1));
		return std::max(0, _mm_cvttss_si32(steps));
	}

	TSteps mSteps;
	int mFarSteps = 0;
	TRamp* mpFirst;
	TRamp* mpSecond;
	TRamp* mpThird;
};
