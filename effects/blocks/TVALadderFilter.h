// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/blocks/TRampable.h"

#include <array>
#include <emmintrin.h>

/// Stereo four-stage ladder with a soft limit in the last stage; the filter behind every effect. Audio thread.
/// Samples are in the engine's scale (full scale 32768), frequencies in hertz, q is normalised 0 to 1.
///
/// The state lives on from block to block; ClearState drops it, and one thing more: input some 30 dB above full scale
/// can drive the last stage to its limit so that feedback holds it there for good, whatever follows. A channel that has
/// hung like that for half a second of sane input begins afresh.
class TVALadderFilter {
public:
	enum TMode : int { kUnset = -1, kLowpass = 0, kHighpass = 1, kBandpass = 2, kBandstop = 3 };

	/// The same four values as last time cost nothing.
	void SetCoefficients(int mode, double frequency, double sampleRate, double q);

	/// In place, with the coefficients set last. Any mode but the four leaves the samples alone.
	void ProcessBlock(float* left, float* right, int count);

	/// In place, while the first two ramps of the group, frequency and q, take a step before each sample. The results
	/// are those of SetCoefficients before every sample, to 1e-9; the last pair stays set. Returns the samples done:
	/// all, or those until both ramps are at their targets.
	int ProcessRamped(int mode, double sampleRate, TRampGroup& frequencyAndQ, float* left, float* right, int count);

	double ProcessSampleLeft(double x);
	double ProcessSampleRight(double x);

	void ClearState() { mState = {}; }

private:
	/// Left in the lower half, right in the upper.
	struct TState {
		__m128d mX = _mm_setzero_pd();
		__m128d mY1 = _mm_setzero_pd();
		__m128d mY2 = _mm_setzero_pd();
		__m128d mY3 = _mm_setzero_pd();
		__m128d mY4 = _mm_setzero_pd();

		/// The channels in the mask become those of the other state.
		void Take(__m128d mask, const TState& other);
	};

	struct TCoefficients {
		__m128d mCutoff, mStageFeedback, mResonance, mLowpassGain;
	};

	static TCoefficients Spread(double cutoff, double stageFeedback, double resonance);
	template <int kMode>
	static __m128d Step(TState& state, const TCoefficients& coefficients, __m128d input);
	template <int kMode>
	static int
	RunRamped(TState& state, double sampleRate, TRampGroup& ramps, float* left, float* right, int count, __m128d& last);
	template <class TRun>
	int Watch(float* left, float* right, int count, TRun run);
	template <class TAction>
	void WithMode(TAction action);
	__m128d ProcessSample(double x, __m128d channel);
	void FreeHungStages(float lastLeft, float lastRight);
	bool IsHung(std::size_t channel, double lastStage, float lastInput);

	static constexpr int kWatchInterval = 1024;

	int mMode = kUnset;
	double mFrequency = 0.0;
	double mSampleRate = 0.0;
	double mQ = 0.0;
	double mCutoff = 0.0;
	double mStageFeedback = 0.0;
	double mResonance = 0.0;
	TState mState;
	int mUnwatched = kWatchInterval; // samples to the next look
	std::array<int, 2> mHungSamples{};
};
