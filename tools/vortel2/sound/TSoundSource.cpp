// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/sound/TSoundSource.h"

#include <algorithm>
#include <cmath>

std::size_t TMemorySource::Read(std::span<float> left, std::span<float> right) {
	const std::size_t frames = std::min(left.size(), mSound.mLeft.size() - mPosition);
	std::copy_n(mSound.mLeft.data() + mPosition, frames, left.data());
	std::copy_n(mSound.mRight.data() + mPosition, frames, right.data());
	mPosition += frames;
	return frames;
}

TTailSource::TTailSource(TSoundSource& source, double seconds)
    : mSource(source),
      mTailFrames(std::llround(seconds * source.SampleRate())),
      mFrames(source.Frames() + mTailFrames) {}

std::size_t TTailSource::Read(std::span<float> left, std::span<float> right) {
	const std::size_t sound = mSource.Read(left, right);
	if (sound == left.size())
		return sound;
	const int64_t silence = std::min<int64_t>(mTailFrames, static_cast<int64_t>(left.size() - sound));
	std::fill_n(left.data() + sound, silence, 0.0f);
	std::fill_n(right.data() + sound, silence, 0.0f);
	mTailFrames -= silence;
	return sound + static_cast<std::size_t>(silence);
}
