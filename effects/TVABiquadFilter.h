// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

/// Stereo biquad, direct form I in double. Audio thread.
class TVABiquadFilter {
public:
	/// High shelf of the well-known audio equalizer cookbook. The frequency (hertz) is kept within 0.0001 to 0.45 of
	/// the sample rate, q at 0.04 or more. Setting the same values again costs nothing.
	void SetHighShelf(double frequency, double sampleRate, double q, double gainDb);

	double ProcessLeft(double x) { return Step(mChannels[0], x); }

	double ProcessRight(double x) { return Step(mChannels[1], x); }

	void ClearState() { mChannels = {}; }

private:
	struct TState {
		double mX1 = 0.0, mX2 = 0.0, mY1 = 0.0, mY2 = 0.0;
	};

	double Step(TState& state, double x) const {
		const double y = mB0 * x + mB1 * state.mX1 + mB2 * state.mX2 - mA1 * state.mY1 - mA2 * state.mY2;
		state = {x, state.mX1, y, state.mY1};
		return y;
	}

	double mFrequency = 0.0, mSampleRate = 0.0, mQ = 0.0, mGain = 0.0;
	double mB0 = 0.0, mB1 = 0.0, mB2 = 0.0, mA1 = 0.0, mA2 = 0.0;
	std::array<TState, 2> mChannels{};
};
