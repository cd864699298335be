// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/MixRamped.h"

#include "effects/blocks/TRampable.h"

#include <array>
#include <cmath>
#include <immintrin.h>

namespace {

using TSteps = TRampGroup::TSteps;

constexpr float kDoubledGain = 2.0f / kCenterGain; // of the volume, which is unity at 0.5

void MixOne(__m128 row, float dryLeft, float dryRight, float& left, float& right) {
	alignas(16) std::array<float, 4> values;
	_mm_store_ps(values.data(), row);
	const auto [mix, pan, volume, unused] = values;
	const float scale = volume * kDoubledGain;
	left = (dryLeft * (1.0f - mix) + left * mix) * std::sqrt(1.0f - pan) * scale;
	right = (dryRight * (1.0f - mix) + right * mix) * std::sqrt(pan) * scale;
}

void MixRest(TSteps& ramps, const float* dryLeft, const float* dryRight, float* left, float* right, int count) {
	for (int i = 0; i < count; ++i)
		MixOne(ramps.Next(), dryLeft[i], dryRight[i], left[i], right[i]);
}

void MixBy4(TSteps& steps, const float* dryLeft, const float* dryRight, float* left, float* right, int count) noexcept {
	TSteps ramps = steps;
	const __m128 one = _mm_set1_ps(1.0f);
	int i = 0;
	for (; i <= count - 4; i += 4) {
		__m128 mix = ramps.Next();
		__m128 pan = ramps.Next();
		__m128 volume = ramps.Next();
		__m128 unused = ramps.Next();
		_MM_TRANSPOSE4_PS(mix, pan, volume, unused);
		const __m128 dryGain = _mm_sub_ps(one, mix);
		const __m128 scale = _mm_mul_ps(volume, _mm_set1_ps(kDoubledGain));
		const auto channel = [&](float* wet, const float* dry, __m128 power) {
			const __m128 sum = _mm_add_ps(_mm_mul_ps(_mm_loadu_ps(dry), dryGain), _mm_mul_ps(_mm_loadu_ps(wet), mix));
			_mm_storeu_ps(wet, _mm_mul_ps(_mm_mul_ps(sum, _mm_sqrt_ps(power)), scale));
		};
		channel(left + i, dryLeft + i, _mm_sub_ps(one, pan));
		channel(right + i, dryRight + i, pan);
	}
	MixRest(ramps, dryLeft + i, dryRight + i, left + i, right + i, count - i);
	steps = ramps;
}

/// The row of a sample, and of the one four samples after it.
[[gnu::target("avx")]] inline __m256 Join(__m128 first, __m128 second) {
	return _mm256_insertf128_ps(_mm256_castps128_ps256(first), second, 1);
}

[[gnu::target("avx")]] inline void
MixChannelBy8(float* wet, const float* dry, __m256 dryGain, __m256 wetGain, __m256 power, __m256 scale) {
	const __m256 sum =
	    _mm256_add_ps(_mm256_mul_ps(_mm256_loadu_ps(dry), dryGain), _mm256_mul_ps(_mm256_loadu_ps(wet), wetGain));
	_mm256_storeu_ps(wet, _mm256_mul_ps(_mm256_mul_ps(sum, _mm256_sqrt_ps(power)), scale));
}

[[gnu::target("avx")]] void
MixBy8(TSteps& steps, const float* dryLeft, const float* dryRight, float* left, float* right, int count) noexcept {
	TSteps ramps = steps;
	const __m256 one = _mm256_set1_ps(1.0f);
	int i = 0;
	for (; i <= count - 8; i += 8) {
		const __m128 first0 = ramps.Next();
		const __m128 first1 = ramps.Next();
		const __m128 first2 = ramps.Next();
		const __m128 first3 = ramps.Next();
		const __m256 row0 = Join(first0, ramps.Next());
		const __m256 row1 = Join(first1, ramps.Next());
		const __m256 row2 = Join(first2, ramps.Next());
		const __m256 row3 = Join(first3, ramps.Next());
		const __m256 mixPan01 = _mm256_unpacklo_ps(row0, row1);
		const __m256 mixPan23 = _mm256_unpacklo_ps(row2, row3);
		const __m256 volume01 = _mm256_unpackhi_ps(row0, row1);
		const __m256 volume23 = _mm256_unpackhi_ps(row2, row3);
		const __m256 mix = _mm256_shuffle_ps(mixPan01, mixPan23, 0x44);
		const __m256 pan = _mm256_shuffle_ps(mixPan01, mixPan23, 0xEE);
		const __m256 volume = _mm256_shuffle_ps(volume01, volume23, 0x44);
		const __m256 dryGain = _mm256_sub_ps(one, mix);
		const __m256 scale = _mm256_mul_ps(volume, _mm256_set1_ps(kDoubledGain));
		MixChannelBy8(left + i, dryLeft + i, dryGain, mix, _mm256_sub_ps(one, pan), scale);
		MixChannelBy8(right + i, dryRight + i, dryGain, mix, pan, scale);
	}
	MixBy4(ramps, dryLeft + i, dryRight + i, left + i, right + i, count - i);
	steps = ramps;
}

using TMix = decltype(&MixBy4);

TMix FastestMix() noexcept {
	__builtin_cpu_init();
	return __builtin_cpu_supports("avx") ? &MixBy8 : &MixBy4;
}

const TMix sMix = FastestMix();

} // namespace

int MixRamped(
    TRampGroup& ramps, const float* dryLeft, const float* dryRight, float* left, float* right, int count) noexcept {
	return ramps.Follow(
	    count,
	    [&](int at, int n, TSteps& steps) { sMix(steps, dryLeft + at, dryRight + at, left + at, right + at, n); },
	    [&](int at, __m128 row) { MixOne(row, dryLeft[at], dryRight[at], left[at], right[at]); });
}
