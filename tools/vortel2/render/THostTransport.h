// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/TTransportInfo.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// The transport of the host that the program plays: where the song stands at each block.
///
/// While it plays, the position runs on with the samples at the tempo in force; while it is stopped, it stands, and
/// playing goes on from there. Each position is computed from the last change of tempo or state, not from the block
/// before, so that it does not drift and does not depend on the block sizes.
class THostTransport {
public:
	enum class EChange : uint8_t { kTempo, kPlay, kStop };

	/// Takes effect at the first block that begins at or after its time. A tempo of the song itself has moved the
	/// position from its very time on when the block begins.
	struct TChange {
		EChange mChange;
		double mSeconds;
		float mTempo = 0.0f; // of kTempo only
		bool mIsOfSong = false;
	};

	struct TStart {
		float mTempo = 120.0f;  // beats per minute
		double mPosition = 0.0; // beats; may be negative
		bool mIsPlaying = true;
	};

	/// Changes at one time take effect in the order given.
	THostTransport(int32_t sampleRate, const TStart& start, std::vector<TChange> changes);

	/// Blocks must come in order; valid until the next call.
	const TTransportInfo& AtBlock(int64_t firstSample, int32_t samples);

private:
	double PositionAt(double sample) const;
	void Apply(const TChange& change, int64_t sample);

	int32_t mSampleRate;
	std::vector<TChange> mChanges;
	std::size_t mNextChange = 0;
	TTransportInfo mInfo;
	double mAnchorPosition; // beats
	double mAnchorSample = 0.0;
	int64_t mSamplesPlayed = 0; // up to the last change
	int64_t mLastChange = 0;    // sample
};
