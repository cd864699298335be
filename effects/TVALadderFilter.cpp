// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVALadderFilter.h"

#include "effects/TVortelBuffers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <type_traits>

namespace {

constexpr double kInputScale = 1.9073486328125e-6; // 2^-19
constexpr double kOutputScale = 524288.0;          // 2^19
constexpr double kBandScale = 1625292.8;           // 3.1 x 2^19
constexpr double kLimit = 6.249809265136719;
constexpr double kMinimumFrequency = 20.0;
constexpr double kMaximumFrequency = 0.49875311720698257; // of the sample rate
constexpr double kFrequencyScale = 1.84;
constexpr double kCutoffCurve = 0.800000011920929; // 0.8f
constexpr double kResonanceCurve = 1.258;

// exp on 0 to 1.258, the range of the resonance curve: Taylor's series of exp(x / 2), squared. The relative error stays
// below 1e-13. Evaluated for two values at once.
__m128d ExpOfResonanceCurve(__m128d x) {
	constexpr std::array<double, 12> kFactors = {1.0 / 39916800, 1.0 / 3628800, 1.0 / 362880, 1.0 / 40320,
	                                             1.0 / 5040,     1.0 / 720,     1.0 / 120,    1.0 / 24,
	                                             1.0 / 6,        1.0 / 2,       1.0,          1.0};
	const __m128d half = _mm_mul_pd(x, _mm_set1_pd(0.5));
	__m128d sum = _mm_set1_pd(kFactors[0]);
	for (std::size_t i = 1; i < kFactors.size(); ++i)
		sum = _mm_add_pd(_mm_mul_pd(sum, half), _mm_set1_pd(kFactors[i]));
	return _mm_mul_pd(sum, sum);
}

__m128d ChannelMask(bool left, bool right) {
	return _mm_castsi128_pd(_mm_set_epi64x(right ? -1 : 0, left ? -1 : 0));
}

using VortelBuffers::LoadFrame;
using VortelBuffers::StoreFrame;

} // namespace

void TVALadderFilter::SetCoefficients(int mode, double frequency, double sampleRate, double q) {
	if (mode == mMode && frequency == mFrequency && sampleRate == mSampleRate && q == mQ)
		return;
	mMode = mode;
	mFrequency = frequency;
	mSampleRate = sampleRate;
	mQ = q;
	const double f =
	    std::min(std::max(frequency, kMinimumFrequency), kMaximumFrequency * sampleRate) * kFrequencyScale / sampleRate;
	const double t = 1.0 - f;
	mCutoff = f * kCutoffCurve * t + f;
	mStageFeedback = 2.0 * mCutoff - 1.0;
	mResonance = std::exp(t * t * kResonanceCurve) * q;
}

TVALadderFilter::TCoefficients TVALadderFilter::Spread(double cutoff, double stageFeedback, double resonance) {
	return {
	    _mm_set1_pd(cutoff), _mm_set1_pd(stageFeedback), _mm_set1_pd(resonance),
	    _mm_set1_pd((resonance + 1.0) * kOutputScale)};
}

template <int kMode>
inline __m128d TVALadderFilter::Step(TState& state, const TCoefficients& coefficients, __m128d input) {
	const __m128d p = coefficients.mCutoff;
	const __m128d k = coefficients.mStageFeedback;
	const auto stage = [p, k](__m128d in, __m128d previousIn, __m128d previousOut) {
		return _mm_sub_pd(_mm_mul_pd(_mm_add_pd(in, previousIn), p), _mm_mul_pd(previousOut, k));
	};
	const __m128d u =
	    _mm_sub_pd(_mm_mul_pd(input, _mm_set1_pd(kInputScale)), _mm_mul_pd(coefficients.mResonance, state.mY4));
	const __m128d y1 = stage(u, state.mX, state.mY1);
	const __m128d y2 = stage(y1, state.mY1, state.mY2);
	const __m128d y3 = stage(y2, state.mY2, state.mY3);
	const __m128d y4 = stage(y3, state.mY3, state.mY4);
	const __m128d cube = _mm_mul_pd(_mm_mul_pd(y4, y4), y4);
	const __m128d bent = _mm_sub_pd(y4, _mm_mul_pd(cube, _mm_set1_pd(1.0 / 6.0)));
	const __m128d limited = _mm_min_pd(_mm_max_pd(bent, _mm_set1_pd(-kLimit)), _mm_set1_pd(kLimit));
	state = {u, y1, y2, y3, limited};
	if constexpr (kMode == kLowpass)
		return _mm_mul_pd(limited, coefficients.mLowpassGain);
	if constexpr (kMode == kHighpass)
		return _mm_mul_pd(_mm_sub_pd(_mm_sub_pd(_mm_add_pd(u, y3), y2), limited), _mm_set1_pd(kOutputScale));
	const __m128d band = _mm_mul_pd(_mm_sub_pd(y3, limited), _mm_set1_pd(kBandScale));
	return kMode == kBandpass ? band : _mm_sub_pd(input, band);
}

/// One instance of the action for each mode, so that no loop tests the mode.
template <class TAction>
inline void TVALadderFilter::WithMode(TAction action) {
	switch (mMode) {
	case kLowpass:
		return action(std::integral_constant<int, kLowpass>());
	case kHighpass:
		return action(std::integral_constant<int, kHighpass>());
	case kBandpass:
		return action(std::integral_constant<int, kBandpass>());
	case kBandstop:
		return action(std::integral_constant<int, kBandstop>());
	default:
		return;
	}
}

void TVALadderFilter::ProcessBlock(float* left, float* right, int count) {
	WithMode([&](auto mode) {
		const TCoefficients coefficients = Spread(mCutoff, mStageFeedback, mResonance);
		TState state = mState;
		for (int i = 0; i < count; ++i)
			StoreFrame(left + i, right + i, Step<mode>(state, coefficients, LoadFrame(left + i, right + i)));
		mState = state;
	});
}

void TVALadderFilter::ProcessRamped(
    int mode, double sampleRate, std::span<const TRampGroup::TRow> frequencyAndQ, float* left, float* right) {
	if (frequencyAndQ.empty())
		return;
	const int count = static_cast<int>(frequencyAndQ.size());
	mMode = mode;
	WithMode([&](auto kMode) {
		const __m128d one = _mm_set1_pd(1.0);
		const __m128d lowest = _mm_set1_pd(kMinimumFrequency);
		const __m128d highest = _mm_set1_pd(kMaximumFrequency * sampleRate);
		const __m128d scale = _mm_set1_pd(kFrequencyScale / sampleRate);
		TState state = mState;
		const auto row = [&](int i) {
			return _mm_cvtps_pd(_mm_load_ps(frequencyAndQ[static_cast<std::size_t>(i)].mValues.data()));
		};
		for (int i = 0; i < count; i += 2) {
			const __m128d first = row(i);
			const __m128d second = row(std::min(i + 1, count - 1));
			const __m128d frequency = _mm_unpacklo_pd(first, second);
			const __m128d q = _mm_unpackhi_pd(first, second);
			const __m128d f = _mm_mul_pd(_mm_min_pd(_mm_max_pd(frequency, lowest), highest), scale);
			const __m128d t = _mm_sub_pd(one, f);
			const __m128d p = _mm_add_pd(_mm_mul_pd(_mm_mul_pd(f, _mm_set1_pd(kCutoffCurve)), t), f);
			const __m128d k = _mm_sub_pd(_mm_add_pd(p, p), one);
			const __m128d r =
			    _mm_mul_pd(ExpOfResonanceCurve(_mm_mul_pd(_mm_mul_pd(t, t), _mm_set1_pd(kResonanceCurve))), q);
			const __m128d gain = _mm_mul_pd(_mm_add_pd(r, one), _mm_set1_pd(kOutputScale));
			const auto process = [&](int index, auto spread) {
				const TCoefficients coefficients = {spread(p), spread(k), spread(r), spread(gain)};
				StoreFrame(
				    left + index, right + index,
				    Step<kMode>(state, coefficients, LoadFrame(left + index, right + index)));
			};
			process(i, [](__m128d pair) { return _mm_unpacklo_pd(pair, pair); });
			if (i + 1 < count)
				process(i + 1, [](__m128d pair) { return _mm_unpackhi_pd(pair, pair); });
		}
		mState = state;
	});
	const auto& last = frequencyAndQ.back().mValues;
	SetCoefficients(mode, last[0], sampleRate, last[1]);
}

void TVALadderFilter::TState::Take(__m128d mask, const TState& other) {
	const auto take = [mask](__m128d& mine, __m128d others) {
		mine = _mm_or_pd(_mm_andnot_pd(mask, mine), _mm_and_pd(mask, others));
	};
	take(mX, other.mX);
	take(mY1, other.mY1);
	take(mY2, other.mY2);
	take(mY3, other.mY3);
	take(mY4, other.mY4);
}

__m128d TVALadderFilter::ProcessSample(double x, __m128d channel) {
	TState state = mState;
	__m128d output = _mm_set1_pd(x);
	WithMode([&](auto mode) { output = Step<mode>(state, Spread(mCutoff, mStageFeedback, mResonance), output); });
	mState.Take(channel, state);
	return output;
}

double TVALadderFilter::ProcessSampleLeft(double x) {
	return _mm_cvtsd_f64(ProcessSample(x, ChannelMask(true, false)));
}

double TVALadderFilter::ProcessSampleRight(double x) {
	const __m128d output = ProcessSample(x, ChannelMask(false, true));
	return _mm_cvtsd_f64(_mm_unpackhi_pd(output, output));
}
