// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TVALadderFilter.h"

#include "effects/blocks/TVortelBuffers.h"

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
constexpr float kSaneInput = 4.0f * 32768.0f;
constexpr double kLongestHang = 0.5; // seconds

constexpr double SmallExp(double x) {
	double sum = 1.0;
	for (int i = 20; i > 0; --i)
		sum = 1.0 + sum * x / i;
	return sum;
}

/// Coefficients of exp(kResonanceCurve / 4 * x) around x = 1/2, the highest first.
constexpr std::array<double, 7> MakeQuarterCurve() {
	std::array<double, 7> factors{};
	double factor = SmallExp(kResonanceCurve / 8.0);
	for (std::size_t i = 0; i < factors.size(); ++i) {
		factors[factors.size() - 1 - i] = factor;
		factor *= kResonanceCurve / 4.0 / static_cast<double>(i + 1);
	}
	return factors;
}

/// exp(kResonanceCurve * x) for two x in 0 to 1. Relative error below 3e-9.
__m128d ResonanceCurve(__m128d x) {
	constexpr auto kFactors = MakeQuarterCurve();
	const __m128d fromMiddle = _mm_sub_pd(x, _mm_set1_pd(0.5));
	__m128d quarter = _mm_set1_pd(kFactors[0]);
	for (std::size_t i = 1; i < kFactors.size(); ++i)
		quarter = _mm_add_pd(_mm_mul_pd(quarter, fromMiddle), _mm_set1_pd(kFactors[i]));
	const __m128d half = _mm_mul_pd(quarter, quarter);
	return _mm_mul_pd(half, half);
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

/// Runs pieces and looks at each end whether the filter hangs, on a grid of its own, so that the host's cuts make no
/// difference. A run returns how far it came; a piece that is not finished is the last.
template <class TRun>
inline int TVALadderFilter::Watch(float* left, float* right, int count, TRun run) {
	for (int done = 0; done < count;) {
		const int length = std::min(count - done, mUnwatched);
		const float lastLeft = left[done + length - 1];
		const float lastRight = right[done + length - 1];
		const int ran = run(left + done, right + done, length);
		done += ran;
		mUnwatched -= ran;
		if (ran < length)
			return done;
		if (mUnwatched == 0)
			FreeHungStages(lastLeft, lastRight);
	}
	return count;
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
		Watch(left, right, count, [&](float* l, float* r, int n) {
			TState state = mState;
			for (int i = 0; i < n; ++i)
				StoreFrame(l + i, r + i, Step<mode>(state, coefficients, LoadFrame(l + i, r + i)));
			mState = state;
			return n;
		});
	});
}

/// Two samples at a time where the ramps allow it, for the sake of their coefficients.
template <int kMode>
inline int TVALadderFilter::RunRamped(
    TState& state, double sampleRate, TRampGroup& ramps, float* left, float* right, int count, __m128d& last) {
	const __m128d one = _mm_set1_pd(1.0);
	const __m128d lowest = _mm_set1_pd(kMinimumFrequency);
	const __m128d highest = _mm_set1_pd(kMaximumFrequency * sampleRate);
	const __m128d scale = _mm_set1_pd(kFrequencyScale / sampleRate);
	const auto step = [&](int at, __m128d first, bool isPair) __attribute__((always_inline)) {
		const __m128d frequency = _mm_unpacklo_pd(first, last);
		const __m128d q = _mm_unpackhi_pd(first, last);
		const __m128d f = _mm_mul_pd(_mm_min_pd(_mm_max_pd(frequency, lowest), highest), scale);
		const __m128d t = _mm_sub_pd(one, f);
		const __m128d p = _mm_add_pd(_mm_mul_pd(_mm_mul_pd(f, _mm_set1_pd(kCutoffCurve)), t), f);
		const __m128d k = _mm_sub_pd(_mm_add_pd(p, p), one);
		const __m128d r = _mm_mul_pd(ResonanceCurve(_mm_mul_pd(t, t)), q);
		const __m128d gain = _mm_mul_pd(_mm_add_pd(r, one), _mm_set1_pd(kOutputScale));
		const auto stepOne = [&](float* inLeft, float* inRight, auto spread) {
			const TCoefficients coefficients = {spread(p), spread(k), spread(r), spread(gain)};
			StoreFrame(inLeft, inRight, Step<kMode>(state, coefficients, LoadFrame(inLeft, inRight)));
		};
		stepOne(left + at, right + at, [](__m128d pair) { return _mm_unpacklo_pd(pair, pair); });
		if (isPair)
			stepOne(left + at + 1, right + at + 1, [](__m128d pair) { return _mm_unpackhi_pd(pair, pair); });
	};
	const auto single = [&](int at, __m128 values) {
		last = _mm_cvtps_pd(values);
		step(at, last, false);
	};
	const auto run = [&](int at, int samples, TRampGroup::TSteps& steps) {
		const int end = at + samples;
		for (; at <= end - 2; at += 2) {
			const __m128d first = _mm_cvtps_pd(steps.Next());
			last = _mm_cvtps_pd(steps.Next());
			step(at, first, true);
		}
		if (at < end)
			single(at, steps.Next());
	};
	return ramps.Follow(count, run, single);
}

int TVALadderFilter::ProcessRamped(
    int mode, double sampleRate, TRampGroup& frequencyAndQ, float* left, float* right, int count) {
	mMode = mode;
	__m128d last = _mm_set_pd(mQ, mFrequency);
	int done = 0;
	WithMode([&](auto kMode) {
		done = Watch(left, right, count, [&](float* l, float* r, int n) {
			TState state = mState;
			const int moving = RunRamped<kMode>(state, sampleRate, frequencyAndQ, l, r, n, last);
			mState = state;
			return moving;
		});
	});
	SetCoefficients(mode, _mm_cvtsd_f64(last), sampleRate, _mm_cvtsd_f64(_mm_unpackhi_pd(last, last)));
	return done;
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

bool TVALadderFilter::IsHung(std::size_t channel, double lastStage, float lastInput) {
	const bool atLimit = std::abs(lastStage) >= kLimit && std::abs(lastInput) <= kSaneInput;
	mHungSamples[channel] = atLimit ? mHungSamples[channel] + kWatchInterval : 0;
	return mHungSamples[channel] > mSampleRate * kLongestHang;
}

void TVALadderFilter::FreeHungStages(float lastLeft, float lastRight) {
	mUnwatched = kWatchInterval;
	const bool hungLeft = IsHung(0, _mm_cvtsd_f64(mState.mY4), lastLeft);
	const bool hungRight = IsHung(1, _mm_cvtsd_f64(_mm_unpackhi_pd(mState.mY4, mState.mY4)), lastRight);
	if (hungLeft || hungRight)
		mState.Take(ChannelMask(hungLeft, hungRight), TState());
}
