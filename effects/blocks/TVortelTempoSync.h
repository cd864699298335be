// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelParameterIds.h"

/// Lengths in samples that follow the tempo. A beat time x is a fraction of a bar of four beats: 16 is a sixteenth of
/// the bar, 4 one beat.
namespace VortelTempoSync {

inline double SamplesPerBeat(int sampleRate, float tempo) {
	return static_cast<double>(sampleRate) * 60.0 / static_cast<double>(tempo);
}

/// Free and even times differ only in the values that the parameter takes.
inline double BarLength(double samplesPerBeat, EVortelTimeMode mode) {
	const double bar = 4.0 * samplesPerBeat;
	switch (mode) {
	case EVortelTimeMode::kTriplet:
		return bar / 1.5;
	case EVortelTimeMode::kDotted:
		return bar * 1.5;
	default:
		return bar;
	}
}

/// Longer than any length that is of use, short enough to add to.
inline constexpr int kLongest = 1 << 30;

/// Whole part, at most `limit`. Defined for any value: a tempo that makes no sense gives 0 or the limit.
inline int WholeSamples(double length, int limit) {
	if (!(length < limit))
		return limit;
	return length > 0.0 ? static_cast<int>(length) : 0;
}

} // namespace VortelTempoSync
