// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/TLevels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace {

double Decibels(double amplitude) {
	return 20.0 * std::log10(amplitude);
}

} // namespace

TLevels TLevels::Measure(TSoundSource& source) {
	TLevels levels{source.SampleRate(), 0, 0.0, 0.0};
	std::array<float, 4096> left;
	std::array<float, 4096> right;
	double sumOfSquares = 0.0;
	while (const std::size_t frames = source.Read(left, right)) {
		for (std::size_t i = 0; i < frames; ++i) {
			for (const double sample : {static_cast<double>(left[i]), static_cast<double>(right[i])}) {
				levels.mPeak = std::max(levels.mPeak, std::abs(sample));
				sumOfSquares += sample * sample;
			}
		}
		levels.mFrames += static_cast<int64_t>(frames);
	}
	if (levels.mFrames > 0)
		levels.mRms = std::sqrt(sumOfSquares / (2.0 * static_cast<double>(levels.mFrames)));
	return levels;
}

std::string TLevels::InWords() const {
	std::array<char, 128> text;
	std::snprintf(
	    text.data(), text.size(), "%.3f s, %lld frames, %d Hz, peak %.2f dB, RMS %.2f dB",
	    static_cast<double>(mFrames) / mSampleRate, static_cast<long long>(mFrames), mSampleRate, Decibels(mPeak),
	    Decibels(mRms));
	return text.data();
}
