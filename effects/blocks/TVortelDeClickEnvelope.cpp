// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TVortelDeClickEnvelope.h"

#include <cmath>
#include <numbers>

void TVortelDeClickEnvelope::Resize(int size) {
	using std::numbers::pi;
	mSize = std::max(size, 1);
	mLastIndex = mSize - 1;
	mValues.resize(static_cast<std::size_t>(mSize) + 1);
	for (int i = 0; i < mSize; ++i) {
		const double s = std::sin((static_cast<double>(i) / mSize - 0.5) * pi);
		mValues[static_cast<std::size_t>(i)] = std::clamp(std::sin((s + 1.0) * pi / 4.0), 0.0, 1.0);
	}
	mValues.back() = mValues[static_cast<std::size_t>(mLastIndex)]; // what the last entry is interpolated with
}
