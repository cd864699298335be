// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/blocks/TVortelSliceBuffer.h"

#include "framework/foundation/values/TRandom.h"

#include <algorithm>
#include <cmath>

namespace {

/// A fade between samples far beyond full scale is no longer than this many of the longest.
constexpr double kWidestJump = 16.0;

} // namespace

void TVortelSliceBuffer::SetFades(int minimum, int maximum) {
	mMinimumFade = minimum;
	mMaximumFade = maximum;
	mFade.Resize(maximum);
	SetCapacity(mCapacity);
}

void TVortelSliceBuffer::SetCapacity(int capacity) {
	mCapacity = capacity;
	mSize = capacity + mMaximumFade;
	mSamples.ResizeZeroed(mSize);
	Reset();
}

void TVortelSliceBuffer::Reset() {
	mReadA = mReadB = {};
	mWrite = mWriteTail = 0;
	mFadeLength = mFadeRemaining = 0;
}

void TVortelSliceBuffer::RestartRecording(int position) {
	mWriteTail = mWrite;
	mWrite = position;
}

void TVortelSliceBuffer::WriteAhead(float sample) {
	Store(&sample, 1);
}

void TVortelSliceBuffer::Jump(int position, int direction) {
	mReadB = {position, direction};
	const auto level = [](float sample) { return (sample + 32767.0) / 2.0 / 65536.0; };
	const double distance = std::abs(level(mSamples[mReadA.mPosition]) - level(mSamples[position]));
	const double width = (std::pow(16.0, std::pow(distance, 0.1)) - 1.0) / 15.0;
	const double limited = width < kWidestJump ? width : kWidestJump;
	mFadeLength = mFadeRemaining = mMinimumFade + RoundHalfAway(limited * (mMaximumFade - mMinimumFade));
}

void TVortelSliceBuffer::Bounce(THead& head) const {
	if (head.mPosition < 0)
		head = {0, 1};
	else if (head.mPosition >= mSize)
		head = {mSize - 1, -1};
}

float TVortelSliceBuffer::ReadFading() {
	const double share =
	    mFade.Interpolated(static_cast<double>(mFadeLength - mFadeRemaining) / static_cast<double>(mFadeLength));
	const double sample = mSamples[mReadA.mPosition] * (1.0 - share) + mSamples[mReadB.mPosition] * share;
	mReadA.mPosition += mReadA.mDirection;
	mReadB.mPosition += mReadB.mDirection;
	if (--mFadeRemaining == 0)
		mReadA = mReadB;
	Bounce(mReadA);
	Bounce(mReadB);
	return static_cast<float>(sample);
}

/// The tail is ahead of the recording head, which writes over it later: so it comes first.
void TVortelSliceBuffer::Store(const float* samples, int count) {
	if (mWriteTail < mSize && mWriteTail != mWrite)
		std::copy_n(samples, count, mSamples.Data() + mWriteTail);
	std::copy_n(samples, count, mSamples.Data() + mWrite);
}

void TVortelSliceBuffer::AdvanceWriting(int count) {
	mWrite += count;
	if (mWrite == mSize)
		mWrite = 0;
	if (mWriteTail < mSize)
		mWriteTail += count;
}

/// No head meets an end within the run.
int TVortelSliceBuffer::LongestRun(int count) const {
	const int toReadEnd = mReadA.mDirection > 0 ? mSize - mReadA.mPosition : mReadA.mPosition + 1;
	const int toTailEnd = mWriteTail < mSize ? mSize - mWriteTail : count;
	return std::min({count, toReadEnd, mSize - mWrite, toTailEnd});
}

/// Whether reading finds the same when the whole run is written first: the read head is behind a write head, or so far
/// before it that neither reaches the other.
bool TVortelSliceBuffer::CanRun(int count) const {
	const auto isApart = [&](int write) {
		return write >= mSize || mReadA.mPosition <= write || mReadA.mPosition >= write + 2 * count;
	};
	return isApart(mWrite) && isApart(mWriteTail);
}

void TVortelSliceBuffer::ProcessRun(float* samples, int count) {
	Store(samples, count);
	const float* from = mSamples.Data() + mReadA.mPosition;
	if (mReadA.mDirection > 0)
		std::copy_n(from, count, samples);
	else
		for (int i = 0; i < count; ++i)
			samples[i] = from[-i];
	mReadA.mPosition += mReadA.mDirection * count;
	Bounce(mReadA);
	AdvanceWriting(count);
}

void TVortelSliceBuffer::Process(float* samples, int count) {
	for (int i = 0; i < count;) {
		if (IsFading()) {
			Store(samples + i, 1);
			samples[i] = ReadFading();
			AdvanceWriting(1);
			++i;
			continue;
		}
		int run = LongestRun(count - i);
		if (!CanRun(run))
			run = 1;
		ProcessRun(samples + i, run);
		i += run;
	}
}
