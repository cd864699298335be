// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/blocks/TAlignedBuffer.h"

/// Delay line of one channel with feedback, read between samples with a cubic. Audio thread; SetLength allocates.
class TVADelayLine {
public:
	/// Room for delays up to `length` samples. Keeps the content as long as the same power of two holds the length.
	void SetLength(int length);
	/// Silences the line; the cost is that of what was written since the last time.
	void Clear();

	int Length() const { return mLength; }

	/// Returns the signal of `delay` samples ago (0 reads the slot about to be written) and writes
	/// input + feedback x that.
	float Process(float input, float feedback, double delay) {
		double read = mWriteIndex - delay;
		if (read < 0.0)
			read += mSize;
		const int whole = static_cast<int>(read);
		const double t = read - whole;
		const double a = At(whole - 1);
		const double b = At(whole);
		const double c = At(whole + 1);
		const double d = At(whole + 2);
		const double y =
		    b + t * ((c - a) / 2.0 + t * (a - 2.5 * b + 2.0 * c - 0.5 * d + t * (1.5 * (b - c) + 0.5 * (d - a))));
		mSamples[mWriteIndex] = static_cast<float>(input + feedback * y);
		mWriteIndex = (mWriteIndex + 1) & (mSize - 1);
		if (mWritten < mSize)
			++mWritten;
		return static_cast<float>(y);
	}

	/// In place: each sample gets `returned` x the signal of `delay` samples ago added, after send x the sample and
	/// the feedback have gone into the line. The same as Process for each sample, to rounding, while the delay rests.
	void ProcessSteady(float* samples, int count, float send, float feedback, double delay, float returned);
	/// The same with a value of send and return for each sample.
	void
	ProcessSteady(float* samples, int count, const float* send, float feedback, double delay, const float* returned);

private:
	template <class TGain>
	void ProcessRuns(float* samples, int count, TGain send, float feedback, double delay, TGain returned);

	float At(int index) const { return mSamples[index & (mSize - 1)]; }

	int mLength = 0;
	int mSize = 0; // a power of two
	TAlignedBuffer mSamples;
	int mWriteIndex = 0;
	int mWritten = 0; // samples behind the write index that may differ from 0
};
