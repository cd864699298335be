// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TVABiquadFilter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

void TVABiquadFilter::SetHighShelf(double frequency, double sampleRate, double q, double gainDb) {
	if (frequency == mFrequency && sampleRate == mSampleRate && q == mQ && gainDb == mGain)
		return;
	mFrequency = frequency;
	mSampleRate = sampleRate;
	mQ = q;
	mGain = gainDb;

	const double a = std::pow(10.0, gainDb / 40.0);
	const double w =
	    2.0 * std::numbers::pi * std::clamp(frequency, 0.0001 * sampleRate, 0.45 * sampleRate) / sampleRate;
	const double beta = std::sqrt(a) / std::max(q, 0.04);
	const double cosine = (a - 1.0) * std::cos(w);
	const double sine = beta * std::sin(w);
	const double a0 = (a + 1.0) - cosine + sine;
	const double scale = a0 == 0.0 ? 0.0 : 1.0 / a0;

	mB0 = a * ((a + 1.0) + cosine + sine) * scale;
	mB1 = -2.0 * a * ((a - 1.0) + (a + 1.0) * std::cos(w)) * scale;
	mB2 = a * ((a + 1.0) + cosine - sine) * scale;
	mA1 = 2.0 * ((a - 1.0) - (a + 1.0) * std::cos(w)) * scale;
	mA2 = ((a + 1.0) - cosine - sine) * scale;
}

double TVABiquadFilter::ProcessLeft(double x) {
	const TState before = mState;
	const double y = _mm_cvtsd_f64(Process(_mm_set_sd(x)));
	const auto keepRight = [](__m128d& now, __m128d then) { now = _mm_move_sd(then, now); };
	keepRight(mState.mX1, before.mX1);
	keepRight(mState.mX2, before.mX2);
	keepRight(mState.mY1, before.mY1);
	keepRight(mState.mY2, before.mY2);
	return y;
}

double TVABiquadFilter::ProcessRight(double x) {
	const TState before = mState;
	const __m128d y = Process(_mm_set1_pd(x));
	const auto keepLeft = [](__m128d& now, __m128d then) { now = _mm_move_sd(now, then); };
	keepLeft(mState.mX1, before.mX1);
	keepLeft(mState.mX2, before.mX2);
	keepLeft(mState.mY1, before.mY1);
	keepLeft(mState.mY2, before.mY2);
	return _mm_cvtsd_f64(_mm_unpackhi_pd(y, y));
}
