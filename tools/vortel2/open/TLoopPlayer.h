// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/program/TProgramPluginShell.h"
#include "tools/vortel2/sound/TSoundSource.h"

#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

/// Plays a sound round through an instance, as a host does whose transport runs while it plays.
class TLoopPlayer {
public:
	/// The largest block that Play takes at once.
	static constexpr int32_t kBlockSize = 512;

	/// The shell must outlive the player. The sound has at least one frame.
	TLoopPlayer(TProgramPluginShell& shell, TStereoSound sound, float tempo);

	int32_t SampleRate() const noexcept { return mSound.mSampleRate; }

	/// Audio thread. The next samples, both of one length.
	void Play(std::span<float> left, std::span<float> right);

	/// Any thread. Stopped, the sound goes on and the transport stands.
	void ToggleTransport() noexcept { mIsPlaying.store(!mIsPlaying.load()); }

private:
	void PlayBlock(std::span<float> left, std::span<float> right);

	TProgramPluginShell& mShell;
	const TStereoSound mSound;
	const float mTempo;
	std::atomic<bool> mIsPlaying{true};
	std::size_t mPosition = 0;  // in the sound
	int64_t mSamplesPlayed = 0; // by the transport
	std::vector<float> mLeft;   // of one block
	std::vector<float> mRight;
};
