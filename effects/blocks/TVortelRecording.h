// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/blocks/TAlignedBuffer.h"
#include "effects/blocks/TVortelDeClickEnvelope.h"

#include <algorithm>

/// What the effects that play from a recording of their own block share: a stereo buffer that fills from the first
/// sample of the block on until it is full, and the takeover of a retrigger. For the length of the takeover (1 ms) the
/// old voice goes on in the loop buffers while the new recording grows in the next buffers and fades in; then the new
/// samples are copied over the beginning of the loop buffers and recording goes on behind them. Audio thread.
class TVortelRecording {
public:
	/// Allocates; both recordings are silent afterwards.
	void SetLengths(int capacity, int switchLength) {
		mCapacity = std::max(capacity, 2);
		mSwitchLength = std::clamp(switchLength, 1, mCapacity);
		mSwitchFade.Resize(mSwitchLength);
		for (TAlignedBuffer* buffer : {&mLoopLeft, &mLoopRight})
			buffer->ResizeZeroed(mCapacity);
		for (TAlignedBuffer* buffer : {&mNextLeft, &mNextRight})
			buffer->ResizeZeroed(mSwitchLength);
	}

	/// Recording begins again at the first sample.
	void Restart() { mRecorded = 0; }

	/// A retrigger: the new voice begins.
	void BeginSwitch() { mSwitchCount = 0; }

	bool IsSwitching() const { return mSwitchCount < mSwitchLength; }

	/// Stores up to `count` samples while there is room.
	void Record(const float* left, const float* right, int count) {
		const int n = std::min(count, mCapacity - mRecorded);
		std::copy_n(left, n, mLoopLeft.Data() + mRecorded);
		std::copy_n(right, n, mLoopRight.Data() + mRecorded);
		mRecorded += n;
	}

	void Record(float left, float right) {
		if (mRecorded < mCapacity) {
			mLoopLeft[mRecorded] = left;
			mLoopRight[mRecorded] = right;
			++mRecorded;
		}
	}

	/// Stores one sample of the new voice and moves the takeover on. Returns the new voice's share, 0 to 1.
	/// Only while IsSwitching.
	double RecordNext(float left, float right) {
		mNextLeft[mSwitchCount] = left;
		mNextRight[mSwitchCount] = right;
		return mSwitchFade.Value(mSwitchCount++);
	}

	/// At the end of the takeover: the loop buffers begin with the new recording.
	void TakeOver() {
		std::copy_n(mNextLeft.Data(), mSwitchLength, mLoopLeft.Data());
		std::copy_n(mNextRight.Data(), mSwitchLength, mLoopRight.Data());
		mRecorded = mSwitchCount;
	}

	int Capacity() const { return mCapacity; }

	int SwitchLength() const { return mSwitchLength; }

	const float* LoopLeft() const { return mLoopLeft.Data(); }

	const float* LoopRight() const { return mLoopRight.Data(); }

	const float* NextLeft() const { return mNextLeft.Data(); }

	const float* NextRight() const { return mNextRight.Data(); }

private:
	TAlignedBuffer mLoopLeft, mLoopRight;
	TAlignedBuffer mNextLeft, mNextRight;
	TVortelDeClickEnvelope mSwitchFade{64};
	int mCapacity = 0;
	int mRecorded = 0;
	int mSwitchLength = 64;
	int mSwitchCount = 0;
};
