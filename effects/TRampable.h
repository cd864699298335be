// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <span>

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

/// Up to four ramps that move together, one vector operation for all.
class TRampGroup {
public:
	/// The values of the ramps at one sample.
	struct alignas(16) TRow {
		std::array<float, 4> mValues;
	};

	static constexpr int kLanes = 4;
	using TRamps = std::array<TRampable<float>*, kLanes>; // null where there are fewer

	/// One step of each ramp for each row. The same values as from Step.
	static void Step(const TRamps& ramps, std::span<TRow> rows);
};
