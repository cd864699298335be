// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVADelayLine.h"

#include <algorithm>
#include <bit>
#include <cmath>

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

void TVADelayLine::ProcessSteady(float* samples, int count, float send, float feedback, double delay, float returned) {
	// With a delay at rest the place between two samples is the same for all: the cubic is four weights.
	const double place = std::ceil(delay) - delay;
	const int behind = static_cast<int>(std::ceil(delay));
	const double t = place;
	const double wa = t * (-0.5 + t * (1.0 - 0.5 * t));
	const double wb = 1.0 + t * t * (-2.5 + 1.5 * t);
	const double wc = t * (0.5 + t * (2.0 - 1.5 * t));
	const double wd = t * t * (-0.5 + 0.5 * t);
	float* const line = mSamples.Data();
	const int mask = mSize - 1;
	for (int i = 0; i < count; ++i) {
		const int at = mWriteIndex - behind;
		const double y =
		    wa * line[(at - 1) & mask] + wb * line[at & mask] + wc * line[(at + 1) & mask] + wd * line[(at + 2) & mask];
		line[mWriteIndex] = static_cast<float>(send * samples[i] + feedback * y);
		samples[i] += returned * static_cast<float>(y);
		mWriteIndex = (mWriteIndex + 1) & mask;
	}
	mWritten = std::min(mSize, mWritten + count);
}
