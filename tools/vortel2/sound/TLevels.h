// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/sound/TSoundSource.h"

#include <cstdint>
#include <span>
#include <string>

/// How long and how loud a sound is.
struct TLevels {
	int32_t mSampleRate = 0;
	int64_t mFrames = 0;
	double mPeak = 0.0; // full scale is 1
	double mSumOfSquares = 0.0;

	/// Both of one length.
	void Add(std::span<const float> left, std::span<const float> right);
	/// Reads the source to its end.
	static TLevels Measure(TSoundSource& source);

	/// Over both sides.
	double Rms() const;

	/// "8.000 s, 352800 frames, 44100 Hz, peak -1.51 dB, RMS -17.20 dB"; silence reads "-inf".
	std::string InWords() const;
	/// "peak -1.51 dB, RMS -17.20 dB"
	std::string LoudnessInWords() const;
};
