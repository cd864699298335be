// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstring>
#include <emmintrin.h>

/// What is done to whole stretches of samples, four at a time. Buffers need no alignment; source and target are the
/// same or do not overlap. Results are those of the plain loop, bit for bit.
namespace VortelBuffers {

inline void Copy(float* target, const float* source, int count) {
	std::memcpy(target, source, static_cast<std::size_t>(count) * sizeof(float));
}

/// Two channels at once. The library's copy is the fastest once it has begun, which takes longer than a short copy.
inline void CopyBoth(float* targetLeft, float* targetRight, const float* left, const float* right, int count) {
	constexpr int kLong = 96;
	if (count >= kLong) {
		Copy(targetLeft, left, count);
		Copy(targetRight, right, count);
		return;
	}
	int i = 0;
	for (; i <= count - 8; i += 8) {
		const __m128 a = _mm_loadu_ps(left + i);
		const __m128 b = _mm_loadu_ps(left + i + 4);
		const __m128 c = _mm_loadu_ps(right + i);
		const __m128 d = _mm_loadu_ps(right + i + 4);
		_mm_storeu_ps(targetLeft + i, a);
		_mm_storeu_ps(targetLeft + i + 4, b);
		_mm_storeu_ps(targetRight + i, c);
		_mm_storeu_ps(targetRight + i + 4, d);
	}
	for (; i < count; ++i) {
		_mm_store_ss(targetLeft + i, _mm_load_ss(left + i));
		_mm_store_ss(targetRight + i, _mm_load_ss(right + i));
	}
}

/// Two samples of one channel, in the lower half.
inline __m128 LoadPair(const float* samples) {
	double both;
	std::memcpy(&both, samples, sizeof(both));
	return _mm_castpd_ps(_mm_set_sd(both));
}

inline void StorePair(float* samples, __m128 values) {
	const double both = _mm_cvtsd_f64(_mm_castps_pd(values));
	std::memcpy(samples, &both, sizeof(both));
}

/// Two samples side by side in double: left in the lower half, right in the upper.
inline __m128d LoadFrame(const float* left, const float* right) {
	return _mm_cvtps_pd(_mm_unpacklo_ps(_mm_load_ss(left), _mm_load_ss(right)));
}

inline void StoreFrame(float* left, float* right, __m128d frame) {
	const __m128 samples = _mm_cvtpd_ps(frame);
	_mm_store_ss(left, samples);
	_mm_store_ss(right, _mm_shuffle_ps(samples, samples, 1));
}

/// Copies two channels. Tells whether they are numbers, and together no farther from 0 than the limit, at every sample.
inline bool
CopyWithin(float* targetLeft, float* targetRight, const float* left, const float* right, int count, float limit) {
	const __m128 most = _mm_set1_ps(limit);
	const __m128 sign = _mm_set1_ps(-0.0f);
	__m128 found = _mm_setzero_ps();
	const auto look = [&](__m128 l, __m128 r) {
		const __m128 sum = _mm_add_ps(_mm_andnot_ps(sign, l), _mm_andnot_ps(sign, r));
		found = _mm_or_ps(found, _mm_cmpnle_ps(sum, most));
	};
	const auto copyFour = [&](int at) {
		const __m128 l = _mm_loadu_ps(left + at);
		const __m128 r = _mm_loadu_ps(right + at);
		_mm_storeu_ps(targetLeft + at, l);
		_mm_storeu_ps(targetRight + at, r);
		look(l, r);
	};
	int i = 0;
	for (; i <= count - 8; i += 8) {
		copyFour(i);
		copyFour(i + 4);
	}
	for (; i < count; ++i) {
		targetLeft[i] = left[i];
		targetRight[i] = right[i];
		look(_mm_load_ss(left + i), _mm_load_ss(right + i));
	}
	return _mm_movemask_ps(found) == 0;
}

/// What is not finite becomes 0.
inline void ReplaceNonFinite(float* samples, int count) {
	for (int i = 0; i < count; ++i)
		samples[i] = samples[i] * 0.0f == 0.0f ? samples[i] : 0.0f;
}

/// (x * gain1) * gain2
inline void Scale(float* samples, int count, float gain1, float gain2) {
	const __m128 g1 = _mm_set1_ps(gain1);
	const __m128 g2 = _mm_set1_ps(gain2);
	int i = 0;
	for (; i <= count - 4; i += 4)
		_mm_storeu_ps(samples + i, _mm_mul_ps(_mm_mul_ps(_mm_loadu_ps(samples + i), g1), g2));
	for (; i < count; ++i)
		samples[i] = samples[i] * gain1 * gain2;
}

/// ((dry * dryGain + wet * wetGain) * gain1) * gain2, into wet
inline void Mix(float* wet, const float* dry, int count, float dryGain, float wetGain, float gain1, float gain2) {
	const __m128 d = _mm_set1_ps(dryGain);
	const __m128 w = _mm_set1_ps(wetGain);
	const __m128 g1 = _mm_set1_ps(gain1);
	const __m128 g2 = _mm_set1_ps(gain2);
	int i = 0;
	for (; i <= count - 4; i += 4) {
		const __m128 sum = _mm_add_ps(_mm_mul_ps(_mm_loadu_ps(dry + i), d), _mm_mul_ps(_mm_loadu_ps(wet + i), w));
		_mm_storeu_ps(wet + i, _mm_mul_ps(_mm_mul_ps(sum, g1), g2));
	}
	for (; i < count; ++i)
		wet[i] = (dry[i] * dryGain + wet[i] * wetGain) * gain1 * gain2;
}

} // namespace VortelBuffers
