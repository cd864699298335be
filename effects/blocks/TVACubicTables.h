// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>

/// Catmull-Rom spline weights for 4096 places between two samples. One constant table serves everybody.
class TVACubicTables {
public:
	static constexpr int kSize = 4096;

	/// The spline through a, b, c, d at b + index / 4096 of the way to c; index 0 gives b exactly.
	static float Interpolate(int index, float a, float b, float c, float d) {
		const TWeights& weights = sWeights[static_cast<std::size_t>(index)];
		return weights.mA * a + weights.mB * b + weights.mC * c + weights.mD * d;
	}

private:
	/// Of the four samples, side by side: one place takes one cache line.
	struct alignas(16) TWeights {
		float mA, mB, mC, mD;
	};

	static constexpr std::array<TWeights, kSize> MakeWeights();

	static const std::array<TWeights, kSize> sWeights;
};
