// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/sound/TLevels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace {

double Decibels(double amplitude) {
	return 20.0 * std::log10(amplitude);
}

} // namespace

void TLevels::Add(std::span<const float> left, std::span<const float> right) {
	for (std::size_t i = 0; i < left.size(); ++i) {
		for (const double sample : {static_cast<double>(left[i]), static_cast<double>(right[i])}) {
			mPeak = std::max(mPeak, std::abs(sample));
			mSumOfSquares += sample * sample;
		}
	}
	mFrames += static_cast<int64_t>(left.size());
}

TLevels TLevels::Measure(TSoundSource& source) {
	TLevels levels;
	levels.mSampleRate = source.SampleRate();
	std::array<float, 4096> left;
	std::array<float, 4096> right;
	while (const std::size_t frames = source.Read(left, right))
		levels.Add({left.data(), frames}, {right.data(), frames});
	return levels;
}

double TLevels::Rms() const {
	return mFrames > 0 ? std::sqrt(mSumOfSquares / (2.0 * static_cast<double>(mFrames))) : 0.0;
}

std::string TLevels::InWords() const {
	std::array<char, 128> text;
	std::snprintf(
	    text.data(), text.size(), "%.3f s, %lld frames, %d Hz, ", static_cast<double>(mFrames) / mSampleRate,
	    static_cast<long long>(mFrames), mSampleRate);
	return text.data() + LoudnessInWords();
}

std::string TLevels::LoudnessInWords() const {
	std::array<char, 64> text;
	std::snprintf(text.data(), text.size(), "peak %.2f dB, RMS %.2f dB", Decibels(mPeak), Decibels(Rms()));
	return text.data();
}
