// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/blocks/TAlignedBuffer.h"
#include "effects/blocks/TVortelDeClickEnvelope.h"

/// One channel's ring of recorded sound for jumping about in. Two read heads: the one that plays and the one it fades
/// to; each runs forwards or backwards and bounces at the ends. Two write heads: the recording one, which goes round,
/// and one that finishes an earlier recording up to the end. Positions and lengths are in samples. Audio thread;
/// SetFades and SetCapacity allocate.
class TVortelSliceBuffer {
public:
	void SetFades(int minimum, int maximum);
	/// Silent afterwards.
	void SetCapacity(int capacity);
	void Reset();

	/// Recording goes on at the position; what was being recorded goes on behind it too.
	void RestartRecording(int position);
	/// Begins a fade to another place: short between samples alike, long over a big step in level.
	void Jump(int position, int direction);
	/// What Process will write first; a jump to the write head lands on it.
	void WriteAhead(float sample);
	/// Records the samples and replaces them by what the read heads find, one by one in this order.
	void Process(float* samples, int count);

	int WritePosition() const { return mWrite; }

private:
	struct THead {
		int mPosition = 0;
		int mDirection = 1;
	};

	bool IsFading() const { return mFadeRemaining > 0; }

	bool CanRun(int count) const;
	int LongestRun(int count) const;
	void ProcessRun(float* samples, int count);
	void Store(const float* samples, int count);
	void AdvanceWriting(int count);
	float ReadFading();
	void Bounce(THead& head) const;

	TAlignedBuffer mSamples;
	int mCapacity = 0;
	int mSize = 0;
	THead mReadA, mReadB;
	int mWrite = 0;
	int mWriteTail = 0; // at the end: at rest
	TVortelDeClickEnvelope mFade{1};
	int mFadeLength = 0;
	int mFadeRemaining = 0;
	int mMinimumFade = 0;
	int mMaximumFade = 0;
};
