// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <emmintrin.h>

/// Stereo biquad, direct form I in double. Audio thread.
class TVABiquadFilter {
public:
	/// High shelf of the well-known audio equalizer cookbook. The frequency (hertz) is kept within 0.0001 to 0.45 of
	/// the sample rate, q at 0.04 or more. Setting the same values again costs nothing.
	void SetHighShelf(double frequency, double sampleRate, double q, double gainDb);

	/// Left in the lower half, right in the upper.
	__m128d Process(__m128d x) {
		const __m128d y = _mm_sub_pd(
		    _mm_sub_pd(
		        _mm_add_pd(
		            _mm_add_pd(_mm_mul_pd(_mm_set1_pd(mB0), x), _mm_mul_pd(_mm_set1_pd(mB1), mState.mX1)),
		            _mm_mul_pd(_mm_set1_pd(mB2), mState.mX2)),
		        _mm_mul_pd(_mm_set1_pd(mA1), mState.mY1)),
		    _mm_mul_pd(_mm_set1_pd(mA2), mState.mY2));
		mState = {x, mState.mX1, y, mState.mY1};
		return y;
	}

	double ProcessLeft(double x);
	double ProcessRight(double x);

	void ClearState() { mState = {}; }

private:
	struct TState {
		__m128d mX1 = _mm_setzero_pd(), mX2 = _mm_setzero_pd(), mY1 = _mm_setzero_pd(), mY2 = _mm_setzero_pd();
	};

	double mFrequency = 0.0, mSampleRate = 0.0, mQ = 0.0, mGain = 0.0;
	double mB0 = 0.0, mB1 = 0.0, mB2 = 0.0, mA1 = 0.0, mA2 = 0.0;
	TState mState;
};
