// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TRampable.h"

#include <emmintrin.h>

void TRampGroup::Step(const TRamps& ramps, std::span<TRow> rows) {
	TRow target{}, current{}, coefficient{}, scale{};
	for (std::size_t lane = 0; lane < kLanes; ++lane) {
		if (const TRampable<float>* ramp = ramps[lane]) {
			target.mValues[lane] = ramp->mTarget;
			current.mValues[lane] = ramp->mCurrent;
			coefficient.mValues[lane] = ramp->mCoefficient;
			scale.mValues[lane] = ramp->mScale;
		}
	}
	const __m128 targets = _mm_load_ps(target.mValues.data());
	const __m128 coefficients = _mm_load_ps(coefficient.mValues.data());
	const __m128 scales = _mm_load_ps(scale.mValues.data());
	__m128 now = _mm_load_ps(current.mValues.data());
	for (TRow& row : rows) {
		now = _mm_add_ps(now, _mm_mul_ps(_mm_mul_ps(_mm_sub_ps(targets, now), coefficients), scales));
		_mm_store_ps(row.mValues.data(), now);
	}
	_mm_store_ps(current.mValues.data(), now);
	for (std::size_t lane = 0; lane < kLanes; ++lane) {
		if (TRampable<float>* ramp = ramps[lane])
			ramp->mCurrent = current.mValues[lane];
	}
}
