// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Bends what is louder than the knee so that it never passes the ceiling. Below the knee nothing changes; the curve
/// leaves the line there with slope 1. Stateless.
class TVortelSoftClipper {
public:
	/// The knee is a share of the ceiling.
	TVortelSoftClipper(double ceiling, float kneeFactor) : mCeiling(ceiling), mThreshold(ceiling * kneeFactor) {}

	double Process(double x) const {
		if (x > mThreshold)
			return Bend(x);
		if (x < -mThreshold)
			return -Bend(-x);
		return x;
	}

	/// In place. Stretches that stay below the knee are only looked at.
	void ProcessBlock(float* samples, int count) const;

private:
	double Bend(double x) const {
		const double room = mCeiling - mThreshold;
		return mCeiling - room * room / ((mCeiling - 2.0 * mThreshold) + x);
	}

	double mCeiling;
	double mThreshold;
};
