// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <emmintrin.h>
#include <span>

/// Stereo four-stage ladder with a soft limit in the last stage; the filter behind every effect. Audio thread.
/// Samples are in the engine's scale (full scale 32768), frequencies in hertz, q is normalised 0 to 1.
///
/// The state lives on from block to block and is never cleared by use. Only a state that no sane input could bring
/// back is dropped, at the end of a block: one that is not finite, or one whose last stage has hung at its limit for
/// half a second under sane input (feedback makes the limit a resting place; only input far beyond full scale leads
/// there).
class TVALadderFilter {
public:
	enum TMode : int { kUnset = -1, kLowpass = 0, kHighpass = 1, kBandpass = 2, kBandstop = 3 };

	/// The same four values as last time cost nothing.
	void SetCoefficients(int mode, double frequency, double sampleRate, double q);

	/// In place, with the coefficients set last.
	void ProcessBlock(float* left, float* right, int count);
	/// In place, with a frequency and a q of its own for each sample. Leaves the last pair set.
	void ProcessRamped(
	    int mode, std::span<const float> frequencies, std::span<const float> qs, double sampleRate, float* left,
	    float* right);

	double ProcessSampleLeft(double x) { return ProcessSample(0, x); }

	double ProcessSampleRight(double x) { return ProcessSample(1, x); }

private:
	/// Left in the lower half, right in the upper.
	struct TState {
		__m128d mX, mY1, mY2, mY3, mY4;
	};

	struct TCoefficients {
		__m128d mCutoff, mStageFeedback, mResonance;
	};

	template <int kMode>
	static __m128d Step(TState& state, const TCoefficients& coefficients, __m128d input);
	template <int kMode>
	void RunBlock(float* left, float* right, int count);
	template <int kMode>
	void RunRamped(std::span<const float> frequencies, std::span<const float> qs, float* left, float* right);

	double ProcessSample(int channel, double x);
	void DropLostState(float lastLeft, float lastRight, int count);

	int mMode = kUnset;
	double mFrequency = 0.0;
	double mSampleRate = 0.0;
	double mQ = 0.0;
	double mCutoff = 0.0;
	double mStageFeedback = 0.0;
	double mResonance = 0.0;
	TState mState{};
	int mHungSamples = 0; // how long the last stage has been at its limit under sane input
};
