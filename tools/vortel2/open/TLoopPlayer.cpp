// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/open/TLoopPlayer.h"

#include <algorithm>
#include <utility>

TLoopPlayer::TLoopPlayer(TProgramPluginShell& shell, TStereoSound sound, float tempo)
    : mShell(shell),
      mSound(std::move(sound)),
      mTempo(tempo),
      mLeft(kBlockSize),
      mRight(kBlockSize) {
	mShell.Setup(mSound.mSampleRate, kBlockSize);
}

void TLoopPlayer::Play(std::span<float> left, std::span<float> right) {
	while (!left.empty()) {
		const std::size_t count = std::min<std::size_t>(left.size(), kBlockSize);
		PlayBlock(left.first(count), right.first(count));
		left = left.subspan(count);
		right = right.subspan(count);
	}
}

void TLoopPlayer::PlayBlock(std::span<float> left, std::span<float> right) {
	for (std::size_t index = 0; index < left.size(); ++index) {
		mLeft[index] = mSound.mLeft[mPosition];
		mRight[index] = mSound.mRight[mPosition];
		mPosition = mPosition + 1 == mSound.mLeft.size() ? 0 : mPosition + 1;
	}
	const bool isPlaying = mIsPlaying.load(std::memory_order_relaxed);
	TTransportInfo transport;
	transport.mFlags = TTransportInfo::kBeatPositionValid | TTransportInfo::kSamplePositionValid |
	                   TTransportInfo::kIsPlayingValid | TTransportInfo::kTempoValid;
	transport.mSampleRate = mSound.mSampleRate;
	transport.mBlockSize = static_cast<int64_t>(left.size());
	transport.mSamplePosition = static_cast<double>(mSamplesPlayed);
	transport.mBeatPosition = static_cast<double>(mSamplesPlayed) * mTempo / (60.0 * mSound.mSampleRate);
	transport.mIsPlaying = isPlaying;
	transport.mTempo = mTempo;
	mShell.Process(
	    {.mpLeftIn = mLeft.data(),
	     .mpRightIn = mRight.data(),
	     .mpLeftOut = left.data(),
	     .mpRightOut = right.data(),
	     .mSamples = static_cast<int32_t>(left.size()),
	     .mpTransport = &transport,
	     .mParameterChanges = {},
	     .mMidiEvents = {}});
	if (isPlaying)
		mSamplesPlayed += static_cast<int64_t>(left.size());
}
