// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cmath>

/// Which of `from` pixels stands at a place among `to`: the first and the last of both lie on each other. A single
/// place takes the first.
class TNearestPixel {
public:
	TNearestPixel(int from, int to) : mStep(to < 2 ? 0.0 : static_cast<double>(std::max(from, 1) - 1) / (to - 1)) {}

	int operator()(int place) const { return static_cast<int>(std::round(place * mStep)); }

private:
	double mStep;
};
