// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/render/THostTransport.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/// Far below a sample, and above what a product of seconds and a rate is off by: 0.3 s at 8000 Hz is sample 2400.
constexpr double kSampleTolerance = 1e-6;

bool IsDue(double seconds, int32_t sampleRate, int64_t sample) {
	return seconds * sampleRate <= static_cast<double>(sample) + kSampleTolerance;
}

} // namespace

THostTransport::THostTransport(int32_t sampleRate, const TStart& start, std::vector<TChange> changes)
    : mSampleRate(sampleRate),
      mChanges(std::move(changes)),
      mAnchorPosition(start.mPosition) {
	std::stable_sort(
	    mChanges.begin(), mChanges.end(), [](const TChange& a, const TChange& b) { return a.mSeconds < b.mSeconds; });
	mInfo.mFlags = TTransportInfo::kSampleRateValid | TTransportInfo::kBlockSizeValid |
	               TTransportInfo::kBeatPositionValid | TTransportInfo::kSamplePositionValid |
	               TTransportInfo::kIsPlayingValid | TTransportInfo::kTempoValid | TTransportInfo::kTimeSignatureValid;
	mInfo.mSampleRate = sampleRate;
	mInfo.mTempo = start.mTempo;
	mInfo.mIsPlaying = start.mIsPlaying;
	mInfo.mTimeSigNumerator = 4;
	mInfo.mTimeSigDenominator = 4;
	// The host's time line in samples begins at beat 0 and would have been played at the first tempo.
	mSamplesPlayed = std::llround(start.mPosition * 60.0 * sampleRate / static_cast<double>(start.mTempo));
}

const TTransportInfo& THostTransport::AtBlock(int64_t firstSample, int32_t samples) {
	for (; mNextChange < mChanges.size() && IsDue(mChanges[mNextChange].mSeconds, mSampleRate, firstSample);
	     ++mNextChange)
		Apply(mChanges[mNextChange], firstSample);
	mInfo.mBlockSize = samples;
	mInfo.mBeatPosition = PositionAt(static_cast<double>(firstSample));
	mInfo.mSamplePosition = static_cast<double>(mSamplesPlayed + (mInfo.mIsPlaying ? firstSample - mLastChange : 0));
	return mInfo;
}

double THostTransport::PositionAt(double sample) const {
	if (!mInfo.mIsPlaying)
		return mAnchorPosition;
	const double samples = sample - mAnchorSample;
	return mAnchorPosition + samples * static_cast<double>(mInfo.mTempo) / (60.0 * mSampleRate);
}

void THostTransport::Apply(const TChange& change, int64_t sample) {
	const double start = static_cast<double>(sample);
	const double anchor = change.mIsOfSong ? std::clamp(change.mSeconds * mSampleRate, mAnchorSample, start) : start;
	mAnchorPosition = PositionAt(anchor);
	mAnchorSample = anchor;
	mSamplesPlayed += mInfo.mIsPlaying ? sample - mLastChange : 0;
	mLastChange = sample;
	if (change.mChange == EChange::kTempo)
		mInfo.mTempo = change.mTempo;
	else
		mInfo.mIsPlaying = change.mChange == EChange::kPlay;
}
