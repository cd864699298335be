// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <emmintrin.h>

/// Elementary functions for two doubles at once, mostly a left and a right channel. SSE2 only, no branches, no tables.
/// Errors are absolute and far below what a float sample resolves; results are the same on every compiler.
namespace VectorMath {

/// Both lanes to the nearest whole number, halves to even. For |x| below 2^51.
inline __m128d RoundToNearest(__m128d x) {
	const __m128d magic = _mm_set1_pd(6755399441055744.0); // 1.5 * 2^52: adding it leaves no room for a fraction
	return _mm_sub_pd(_mm_add_pd(x, magic), magic);
}

/// Lanes of a where the mask is set, of b elsewhere.
inline __m128d Select(__m128d mask, __m128d a, __m128d b) {
	return _mm_or_pd(_mm_and_pd(mask, a), _mm_andnot_pd(mask, b));
}

inline __m128d Absolute(__m128d x) {
	return _mm_andnot_pd(_mm_set1_pd(-0.0), x);
}

/// Sine, error below 1e-9 for |x| below 1e5. Taylor to the 13th power on half a period.
inline __m128d Sine(__m128d x) {
	const __m128d k = RoundToNearest(_mm_mul_pd(x, _mm_set1_pd(0.31830988618379067)));
	// pi in two parts, so that the product with k loses nothing
	__m128d r = _mm_sub_pd(x, _mm_mul_pd(k, _mm_set1_pd(3.141592653589793)));
	r = _mm_sub_pd(r, _mm_mul_pd(k, _mm_set1_pd(1.2246467991473532e-16)));
	const __m128d q = _mm_mul_pd(r, r);
	__m128d p = _mm_set1_pd(1.0 / 6227020800.0);
	p = _mm_add_pd(_mm_mul_pd(p, q), _mm_set1_pd(-1.0 / 39916800.0));
	p = _mm_add_pd(_mm_mul_pd(p, q), _mm_set1_pd(1.0 / 362880.0));
	p = _mm_add_pd(_mm_mul_pd(p, q), _mm_set1_pd(-1.0 / 5040.0));
	p = _mm_add_pd(_mm_mul_pd(p, q), _mm_set1_pd(1.0 / 120.0));
	p = _mm_add_pd(_mm_mul_pd(p, q), _mm_set1_pd(-1.0 / 6.0));
	const __m128d sine = _mm_add_pd(r, _mm_mul_pd(r, _mm_mul_pd(q, p)));
	// odd half periods change the sign: the lowest bit of k, moved up to the sign
	const __m128i bits = _mm_castpd_si128(_mm_add_pd(k, _mm_set1_pd(6755399441055744.0)));
	return _mm_xor_pd(sine, _mm_castsi128_pd(_mm_slli_epi64(bits, 63)));
}

/// Base-2 logarithm of positive, normal numbers, error below 1e-9.
inline __m128d Log2(__m128d x) {
	const __m128i bits = _mm_castpd_si128(x);
	// mantissa in sqrt(1/2) to sqrt(2): the exponent goes up by one where the mantissa is above sqrt(2)
	const __m128i offset = _mm_sub_epi64(bits, _mm_set1_epi64x(0x3FE6A09E667F3BCDLL));
	const __m128i exponent = _mm_srli_epi64(_mm_add_epi64(offset, _mm_set1_epi64x(0x4000000000000000LL)), 52);
	const __m128i scaled = _mm_slli_epi64(_mm_sub_epi64(exponent, _mm_set1_epi64x(0x400)), 52);
	const __m128d m = _mm_castsi128_pd(_mm_sub_epi64(bits, scaled));
	// exponents as doubles: a whole number below 2^52 in the mantissa of 2^52
	const __m128d whole = _mm_sub_pd(
	    _mm_castsi128_pd(_mm_or_si128(exponent, _mm_set1_epi64x(0x4330000000000000LL))),
	    _mm_set1_pd(4503599627370496.0 + 1024.0));
	const __m128d one = _mm_set1_pd(1.0);
	const __m128d s = _mm_div_pd(_mm_sub_pd(m, one), _mm_add_pd(m, one));
	const __m128d q = _mm_mul_pd(s, s);
	// log2(m) / s as a minimax polynomial of s^2; pairs, so that the terms need not wait for each other
	const __m128d low = _mm_add_pd(_mm_set1_pd(2.8853900727484905), _mm_mul_pd(q, _mm_set1_pd(0.9618007604552946)));
	const __m128d high = _mm_add_pd(_mm_set1_pd(0.5765844401090098), _mm_mul_pd(q, _mm_set1_pd(0.4342582325951876)));
	const __m128d p = _mm_add_pd(low, _mm_mul_pd(_mm_mul_pd(q, q), high));
	return _mm_add_pd(whole, _mm_mul_pd(s, p));
}

/// 2^x, relative error below 1e-8, for x from -1000 to 1000.
inline __m128d Exp2(__m128d x) {
	const __m128d magic = _mm_set1_pd(6755399441055744.0);
	const __m128d shifted = _mm_add_pd(x, magic);
	const __m128d f = _mm_sub_pd(x, _mm_sub_pd(shifted, magic));
	// minimax for -0.5 to 0.5, with exactly 1 at 0; pairs as above
	const __m128d f2 = _mm_mul_pd(f, f);
	const __m128d low = _mm_add_pd(_mm_set1_pd(1.0), _mm_mul_pd(f, _mm_set1_pd(0.6931472253950112)));
	const __m128d middle = _mm_add_pd(_mm_set1_pd(0.2402265108411733), _mm_mul_pd(f, _mm_set1_pd(0.05550297314199107)));
	const __m128d high = _mm_add_pd(
	    _mm_add_pd(_mm_set1_pd(0.009618030782499577), _mm_mul_pd(f, _mm_set1_pd(0.0013410000966174052))),
	    _mm_mul_pd(f2, _mm_set1_pd(0.0001546973197908821)));
	const __m128d p = _mm_add_pd(low, _mm_mul_pd(f2, _mm_add_pd(middle, _mm_mul_pd(f2, high))));
	// the whole part goes straight into the exponent
	return _mm_castsi128_pd(_mm_add_epi64(_mm_castpd_si128(p), _mm_slli_epi64(_mm_castpd_si128(shifted), 52)));
}

/// Four doubles, for formulas over four samples in a row.
struct TQuad {
	__m128d mLow;
	__m128d mHigh;

	TQuad(__m128d low, __m128d high) : mLow(low), mHigh(high) {}

	/// The same in all lanes.
	TQuad(double value) : mLow(_mm_set1_pd(value)), mHigh(mLow) {}

	explicit TQuad(__m128 values) : mLow(_mm_cvtps_pd(values)), mHigh(_mm_cvtps_pd(_mm_movehl_ps(values, values))) {}

	friend TQuad operator+(TQuad a, TQuad b) { return {_mm_add_pd(a.mLow, b.mLow), _mm_add_pd(a.mHigh, b.mHigh)}; }

	friend TQuad operator-(TQuad a, TQuad b) { return {_mm_sub_pd(a.mLow, b.mLow), _mm_sub_pd(a.mHigh, b.mHigh)}; }

	friend TQuad operator*(TQuad a, TQuad b) { return {_mm_mul_pd(a.mLow, b.mLow), _mm_mul_pd(a.mHigh, b.mHigh)}; }

	friend TQuad operator/(TQuad a, TQuad b) { return {_mm_div_pd(a.mLow, b.mLow), _mm_div_pd(a.mHigh, b.mHigh)}; }
};

inline TQuad SquareRoot(TQuad x) {
	return {_mm_sqrt_pd(x.mLow), _mm_sqrt_pd(x.mHigh)};
}

/// x^y of positive, normal x; relative error below 1e-8 while the result is within 2^-15 to 2^15.
inline TQuad Power(TQuad x, double y) {
	const __m128d exponent = _mm_set1_pd(y);
	return {Exp2(_mm_mul_pd(Log2(x.mLow), exponent)), Exp2(_mm_mul_pd(Log2(x.mHigh), exponent))};
}

/// x^(1/5), relative error below 1e-12, for x from 1e-30 to 1e30. A first guess from the bits, then Newton's method for
/// the inverse, which needs no division: the error falls from 3 % to 0.3 %, 3e-5, what a float holds, and 1e-13.
inline TQuad FifthRoot(__m128 x) {
	const __m128 scaledBits = _mm_mul_ps(_mm_cvtepi32_ps(_mm_castps_si128(x)), _mm_set1_ps(0.2f));
	__m128 guess = _mm_castsi128_ps(_mm_cvttps_epi32(_mm_sub_ps(_mm_set1_ps(1277930609.0f), scaledBits)));
	const __m128 fifth = _mm_mul_ps(x, _mm_set1_ps(0.2f));
	for (int i = 0; i < 3; ++i) {
		const __m128 square = _mm_mul_ps(guess, guess);
		const __m128 power = _mm_mul_ps(_mm_mul_ps(square, square), guess);
		guess = _mm_mul_ps(guess, _mm_sub_ps(_mm_set1_ps(1.2f), _mm_mul_ps(fifth, power)));
	}
	const TQuad wide(x);
	const TQuad rough(guess);
	const TQuad square = rough * rough;
	const TQuad inverse = rough * (1.2 - wide * 0.2 * (square * square * rough));
	const TQuad better = inverse * inverse;
	return wide * (better * better);
}

} // namespace VectorMath
