// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>

/// Follows the level of a signal (unit scale): one pole each for rise and fall, then one that smooths.
/// Below about 1e-5 it holds, so silence never takes it down to denormals. Audio thread.
class TVAEnvelopeFollower {
public:
	static constexpr double kDefaultAttack = 2.5;   // ms
	static constexpr double kDefaultRelease = 25.0; // ms
	static constexpr double kDefaultSampleRate = 44100.0;

	TVAEnvelopeFollower() {
		SetAttack(kDefaultAttack, kDefaultSampleRate);
		SetRelease(kDefaultRelease, kDefaultSampleRate);
	}

	/// Setting the same times again costs nothing.
	void SetAttack(double ms, double sampleRate);
	void SetRelease(double ms, double sampleRate);

	double Process(double x) {
		const double level = std::abs(x);
		if (mEnvelope <= level)
			mEnvelope = level + mAttack * (mEnvelope - level);
		else if (mEnvelope > kHoldLevel)
			mEnvelope = level + mRelease * (mEnvelope - level);
		mOutput = mEnvelope + mSmooth * (mOutput - mEnvelope);
		return mOutput;
	}

	void ClearState() { mEnvelope = mOutput = 0.0; }

private:
	static constexpr double kHoldLevel = 9.999999747378752e-6; // 1e-5f

	double mEnvelope = 0.0;
	double mOutput = 0.0;
	double mAttack = 0.0;
	double mSmooth = 0.0;
	double mRelease = 0.0;
	double mAttackTime = 0.0; // ms x rate that the coefficients stand for
	double mReleaseTime = 0.0;
};
