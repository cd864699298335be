// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>

/// A colour without alpha; each part is 0 to 255.
struct TColor {
	int mRed = 0;
	int mGreen = 0;
	int mBlue = 0;

	friend constexpr bool operator==(const TColor&, const TColor&) = default;
};

/// A factor in fixed point, truncated toward zero. Limited so that a part times the result stays an int; what is no
/// number counts as 0.
constexpr int FixedPointFactor(float factor, float one) {
	constexpr float kLimit = 4000000.0f;
	const float scaled = factor * one;
	if (!(scaled == scaled))
		return 0;
	return static_cast<int>(std::clamp(scaled, -kLimit, kLimit));
}

/// t of a, the rest of b, in steps of 1/256; t may lie outside of 0 to 1.
constexpr TColor Mix(const TColor& a, const TColor& b, float t) {
	const int weight = FixedPointFactor(t, 256.0f);
	const auto part = [weight](int ofA, int ofB) {
		return std::clamp((ofB * (256 - weight) + ofA * weight) >> 8, 0, 255);
	};
	return {part(a.mRed, b.mRed), part(a.mGreen, b.mGreen), part(a.mBlue, b.mBlue)};
}

/// Every part times the factor, in steps of 1/255 that are divided by 256: a factor of 1 darkens a little.
constexpr TColor operator*(const TColor& color, float factor) {
	const int weight = FixedPointFactor(factor, 255.0f);
	const auto part = [weight](int value) { return std::clamp((value * weight) >> 8, 0, 255); };
	return {part(color.mRed), part(color.mGreen), part(color.mBlue)};
}

/// White for a divisor of 0.
constexpr TColor operator/(const TColor& color, float divisor) {
	return divisor == 0.0f ? TColor{255, 255, 255} : color * (1.0f / divisor);
}
