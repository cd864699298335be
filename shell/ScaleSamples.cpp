// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ScaleSamples.h"

#if defined(__SSE__)
#	include <xmmintrin.h>
#endif

void ScaleSamples(const float* source, float* target, int32_t samples, float factor) noexcept {
	int32_t i = 0;
#if defined(__SSE__)
	const __m128 factors = _mm_set1_ps(factor);
	const auto scaleFour = [source, target, factors](int32_t at) {
		_mm_storeu_ps(target + at, _mm_mul_ps(_mm_loadu_ps(source + at), factors));
	};
	for (; i + 16 <= samples; i += 16) {
		scaleFour(i);
		scaleFour(i + 4);
		scaleFour(i + 8);
		scaleFour(i + 12);
	}
#endif
	for (; i < samples; ++i)
		target[i] = source[i] * factor;
}
