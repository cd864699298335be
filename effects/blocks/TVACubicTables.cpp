// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TVACubicTables.h"

constexpr std::array<TVACubicTables::TWeights, TVACubicTables::kSize> TVACubicTables::MakeWeights() {
	std::array<TWeights, kSize> weights{};
	for (std::size_t i = 0; i < weights.size(); ++i) {
		const double t = static_cast<double>(i) / kSize;
		const double t2 = t * t;
		const double t3 = t2 * t;
		weights[i] = {
		    static_cast<float>(-0.5 * t3 + t2 - 0.5 * t), static_cast<float>(1.5 * t3 - 2.5 * t2 + 1.0),
		    static_cast<float>(-1.5 * t3 + 2.0 * t2 + 0.5 * t), static_cast<float>(0.5 * t3 - 0.5 * t2)};
	}
	return weights;
}

constinit const std::array<TVACubicTables::TWeights, TVACubicTables::kSize> TVACubicTables::sWeights = MakeWeights();
