// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TVortelSoftClipper.h"

#include <emmintrin.h>

void TVortelSoftClipper::ProcessBlock(float* samples, int count) const {
	const auto bend = [&](int from, int to) {
		for (int i = from; i < to; ++i)
			samples[i] = static_cast<float>(Process(samples[i]));
	};
	// Rounding the knee to float may take in samples a hair below it; Process decides about those.
	const __m128 knee = _mm_set1_ps(static_cast<float>(mThreshold));
	const __m128 sign = _mm_set1_ps(-0.0f);
	int i = 0;
	for (; i <= count - 4; i += 4) {
		const __m128 level = _mm_andnot_ps(sign, _mm_loadu_ps(samples + i));
		if (_mm_movemask_ps(_mm_cmpnlt_ps(level, knee)) != 0)
			bend(i, i + 4);
	}
	bend(i, count);
}
