// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

/// The host's transport for one block, independent of the host format. mFlags says which fields are valid.
struct TTransportInfo {
	enum TFlags : uint32_t {
		kSampleRateValid = 0x1,
		kBlockSizeValid = 0x2,
		kSystemTimeValid = 0x4,
		kBeatPositionValid = 0x8,
		kSamplePositionValid = 0x10,
		kIsPlayingValid = 0x20,
		kTransportChanged = 0x40,
		kIsOffline = 0x80,
		kTempoValid = 0x100,
		kTimeSignatureValid = 0x400,
		kCycleValid = 0x800
	};

	uint32_t mFlags = 0;
	int32_t mSampleRate = 0;
	int64_t mBlockSize = 0; // samples in this block, as far as the host tells
	double mSystemTime = 0.0;
	double mBeatPosition = 0.0;   // song position in quarter notes; may be negative
	double mSamplePosition = 0.0; // on the host's time line
	bool mIsPlaying = false;
	bool mTransportChanged = false;
	bool mIsOffline = false;
	float mTempo = 0.0f; // beats per minute
	int32_t mTimeSigNumerator = 0;
	int32_t mTimeSigDenominator = 0;
	bool mIsCycling = false;
	double mCycleStart = 0.0; // quarter notes
	double mCycleEnd = 0.0;   // quarter notes
};
