// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TVADelayLine.h"

#include "effects/blocks/TVortelBuffers.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <emmintrin.h>

void TVADelayLine::SetLength(int length) {
	if (length == mLength)
		return;
	mLength = length;
	const int size = static_cast<int>(std::bit_ceil(static_cast<unsigned>(length)));
	if (size == mSize)
		return;
	mSamples.ResizeZeroed(size);
	mSize = size;
	mWriteIndex = 0;
	mWritten = 0;
}

void TVADelayLine::Clear() {
	const int before = std::min(mWritten, mWriteIndex);
	std::fill_n(mSamples.Data() + mWriteIndex - before, before, 0.0f);
	const int wrapped = mWritten - before;
	std::fill_n(mSamples.Data() + mSize - wrapped, wrapped, 0.0f);
	mWritten = 0;
}

namespace {

/// With a delay at rest the place between two samples is the same for all, and the cubic is four weights.
struct TWeights {
	explicit TWeights(double t)
	    : mA(t * (-0.5 + t * (1.0 - 0.5 * t))),
	      mB(1.0 + t * t * (-2.5 + 1.5 * t)),
	      mC(t * (0.5 + t * (2.0 - 1.5 * t))),
	      mD(t * t * (-0.5 + 0.5 * t)) {}

	double mA, mB, mC, mD;
};

__m128d LoadTwo(const float* samples) {
	return _mm_cvtps_pd(VortelBuffers::LoadPair(samples));
}

struct TRestingGain {
	float mValue;

	__m128 Pair(int) const { return _mm_set1_ps(mValue); }

	float At(int) const { return mValue; }
};

struct TMovingGain {
	const float* mValues;

	__m128 Pair(int index) const { return VortelBuffers::LoadPair(mValues + index); }

	float At(int index) const { return mValues[index]; }
};

} // namespace

void TVADelayLine::ProcessSteady(float* samples, int count, float send, float feedback, double delay, float returned) {
	ProcessRuns(samples, count, TRestingGain{send}, feedback, delay, TRestingGain{returned});
}

void TVADelayLine::ProcessSteady(
    float* samples, int count, const float* send, float feedback, double delay, const float* returned) {
	ProcessRuns(samples, count, TMovingGain{send}, feedback, delay, TMovingGain{returned});
}

template <class TGain>
void TVADelayLine::ProcessRuns(float* samples, int count, TGain send, float feedback, double delay, TGain returned) {
	const int behind = static_cast<int>(std::ceil(delay));
	const TWeights weights(behind - delay);
	for (int done = 0; done < count;) {
		const int read = (mWriteIndex - behind - 1) & (mSize - 1);
		const int run = std::min({count - done, mSize - mWriteIndex, mSize - 3 - read});
		float* const x = samples + done;
		if (run > 0) {
			float* const write = mSamples.Data() + mWriteIndex;
			const float* const from = mSamples.Data() + read;
			int i = 0;
			for (; i <= run - 2; i += 2) {
				const __m128d y = _mm_add_pd(
				    _mm_add_pd(
				        _mm_mul_pd(LoadTwo(from + i), _mm_set1_pd(weights.mA)),
				        _mm_mul_pd(LoadTwo(from + i + 1), _mm_set1_pd(weights.mB))),
				    _mm_add_pd(
				        _mm_mul_pd(LoadTwo(from + i + 2), _mm_set1_pd(weights.mC)),
				        _mm_mul_pd(LoadTwo(from + i + 3), _mm_set1_pd(weights.mD))));
				const __m128 in = VortelBuffers::LoadPair(x + i);
				const __m128d sent = _mm_cvtps_pd(_mm_mul_ps(in, send.Pair(done + i)));
				VortelBuffers::StorePair(
				    write + i, _mm_cvtpd_ps(_mm_add_pd(sent, _mm_mul_pd(y, _mm_set1_pd(feedback)))));
				VortelBuffers::StorePair(x + i, _mm_add_ps(in, _mm_mul_ps(_mm_cvtpd_ps(y), returned.Pair(done + i))));
			}
			for (; i < run; ++i) {
				// added in the order of the pairs: which samples are left over depends on the host's blocks
				const double y = (weights.mA * from[i] + weights.mB * from[i + 1]) +
				                 (weights.mC * from[i + 2] + weights.mD * from[i + 3]);
				write[i] = static_cast<float>(send.At(done + i) * x[i] + feedback * y);
				x[i] += returned.At(done + i) * static_cast<float>(y);
			}
			mWriteIndex = (mWriteIndex + run) & (mSize - 1);
			mWritten = std::min(mSize, mWritten + run);
			done += run;
		} else { // the four samples lie across the end
			*x += returned.At(done) * Process(send.At(done) * *x, feedback, delay);
			++done;
		}
	}
}
