// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ScaleSamples.h"

#include <bit>

#if defined(__x86_64__)
#	include <immintrin.h>
#endif

namespace {

/// A whole number of vectors of any kind.
constexpr int32_t kPortion = 64;

template <int32_t kCount>
bool IsSilentPortion(const float* samples) noexcept {
	uint32_t bits = 0;
	for (int32_t i = 0; i < kCount; ++i)
		bits |= std::bit_cast<uint32_t>(samples[i]);
	return bits == 0;
}

using TScale = void (*)(const float*, float*, int32_t, float) noexcept;

void ScaleSingly(const float* source, float* target, int32_t samples, float factor) noexcept {
	for (int32_t i = 0; i < samples; ++i)
		target[i] = source[i] * factor;
}

#if defined(__x86_64__)

void ScaleBy4(const float* source, float* target, int32_t samples, float factor) noexcept {
	const __m128 factors = _mm_set1_ps(factor);
	const auto scaleFour = [source, target, factors](int32_t at) {
		_mm_storeu_ps(target + at, _mm_mul_ps(_mm_loadu_ps(source + at), factors));
	};
	int32_t i = 0;
	for (; i + 16 <= samples; i += 16) {
		scaleFour(i);
		scaleFour(i + 4);
		scaleFour(i + 8);
		scaleFour(i + 12);
	}
	ScaleSingly(source + i, target + i, samples - i, factor);
}

[[gnu::target("avx")]] void ScaleBy8(const float* source, float* target, int32_t samples, float factor) noexcept {
	const __m256 factors = _mm256_set1_ps(factor);
	int32_t i = 0;
	for (; i + 32 <= samples; i += 32) {
		const __m256 a = _mm256_mul_ps(_mm256_loadu_ps(source + i), factors);
		const __m256 b = _mm256_mul_ps(_mm256_loadu_ps(source + i + 8), factors);
		const __m256 c = _mm256_mul_ps(_mm256_loadu_ps(source + i + 16), factors);
		const __m256 d = _mm256_mul_ps(_mm256_loadu_ps(source + i + 24), factors);
		_mm256_storeu_ps(target + i, a);
		_mm256_storeu_ps(target + i + 8, b);
		_mm256_storeu_ps(target + i + 16, c);
		_mm256_storeu_ps(target + i + 24, d);
	}
	ScaleSingly(source + i, target + i, samples - i, factor);
}

TScale FastestScale() noexcept {
	__builtin_cpu_init();
	return __builtin_cpu_supports("avx") ? &ScaleBy8 : &ScaleBy4;
}

#else

TScale FastestScale() noexcept {
	return &ScaleSingly;
}

#endif

const TScale sScale = FastestScale();

} // namespace

void ScaleSamples(const float* source, float* target, int32_t samples, float factor) noexcept {
	sScale(source, target, samples, factor);
}

bool IsSilence(const float* samples, int32_t count) noexcept {
	int32_t i = 0;
	for (; i + kPortion <= count; i += kPortion)
		if (!IsSilentPortion<kPortion>(samples + i))
			return false;
	for (; i < count; ++i)
		if (!IsSilentPortion<1>(samples + i))
			return false;
	return true;
}
