// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

/// Sound to feed to what is tested, in the engine's scale.
namespace TestSignals {

using TSignal = std::vector<float>;

/// Repeatable white noise up to the given level.
inline TSignal Noise(int count, float level, uint32_t seed = 1) {
	TSignal signal(static_cast<std::size_t>(count));
	for (float& sample : signal) {
		seed = seed * 1664525u + 1013904223u;
		sample = level * (static_cast<float>(seed >> 8) / 8388608.0f - 1.0f);
	}
	return signal;
}

inline TSignal Sine(int count, double frequency, double sampleRate, double level) {
	TSignal signal;
	for (int i = 0; i < count; ++i)
		signal.push_back(static_cast<float>(level * std::sin(6.283185307179586 * frequency * i / sampleRate)));
	return signal;
}

/// 1, 2, 3 and so on, so that an output sample tells which input sample it is. Exact up to 2^24.
inline TSignal Count(int count, float first = 1.0f) {
	TSignal signal;
	for (int i = 0; i < count; ++i)
		signal.push_back(first + static_cast<float>(i));
	return signal;
}

inline double Peak(const TSignal& signal, std::size_t from = 0) {
	double peak = 0.0;
	for (std::size_t i = from; i < signal.size(); ++i)
		peak = std::fmax(peak, std::abs(static_cast<double>(signal[i])));
	return peak;
}

} // namespace TestSignals
