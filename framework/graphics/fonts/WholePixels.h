// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cmath>

/// To whole pixels; what lies far outside of any surface is limited, so that coordinates can be added.
inline int TruncatedPixels(float value) {
	constexpr float kLimit = 1 << 29;
	return value == value ? static_cast<int>(std::clamp(value, -kLimit, kLimit)) : 0;
}

/// Halves away from zero.
inline int RoundedPixels(float value) {
	return TruncatedPixels(std::round(value));
}
