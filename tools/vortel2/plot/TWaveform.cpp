// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/plot/TWaveform.h"

#include <algorithm>
#include <cmath>

TWaveform::TWaveform(int64_t frames, int32_t columns) : mFrames(std::max<int64_t>(1, frames)) {
	for (auto& side : mSides)
		side.resize(static_cast<std::size_t>(columns));
}

void TWaveform::Add(std::span<const float> left, std::span<const float> right) {
	AddSide(mSides[0], left);
	AddSide(mSides[1], right);
	mPosition += static_cast<int64_t>(left.size());
}

void TWaveform::AddSide(std::vector<TSums>& columns, std::span<const float> samples) const {
	const auto count = static_cast<int64_t>(columns.size());
	int64_t position = mPosition;
	for (const float sample : samples) {
		// A sample of a short sound is several columns wide.
		const int64_t first = std::min(count - 1, position * count / mFrames);
		const int64_t end = std::max(first + 1, std::min(count, ++position * count / mFrames));
		for (int64_t column = first; column < end && std::isfinite(sample); ++column)
			columns[static_cast<std::size_t>(column)].Add(sample);
	}
}

void TWaveform::TSums::Add(float sample) {
	mLowest = mSamples == 0 ? sample : std::min(mLowest, sample);
	mHighest = mSamples == 0 ? sample : std::max(mHighest, sample);
	mSquares += static_cast<double>(sample) * static_cast<double>(sample);
	++mSamples;
}

TWaveform::TPart TWaveform::Part(int32_t side, int32_t column) const {
	const TSums& sums = mSides[static_cast<std::size_t>(side)][static_cast<std::size_t>(column)];
	const double rms = sums.mSamples > 0 ? std::sqrt(sums.mSquares / static_cast<double>(sums.mSamples)) : 0.0;
	return {sums.mLowest, sums.mHighest, static_cast<float>(rms)};
}
