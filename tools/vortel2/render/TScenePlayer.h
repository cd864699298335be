// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/vortel2/sound/TLevels.h"
#include "tools/vortel2/sound/TSoundSource.h"

#include <cstdint>
#include <limits>
#include <string>

/// Plays the scenes of a bank as a keyboard does: the drum loop runs at its tempo, and the scene's key is held from the
/// first sample on, so every trigger mode plays. Each scene is played by an instance of its own.
class TScenePlayer {
public:
	/// At most so many frames from the front of the loop.
	explicit TScenePlayer(std::string bankFile, std::size_t frames = kWholeLoop);

	TStereoSound Play(int32_t program, int32_t scene) const;

	const TStereoSound& Loop() const noexcept { return mLoop; }

private:
	static constexpr std::size_t kWholeLoop = std::numeric_limits<std::size_t>::max();

	std::string mBankFile;
	TStereoSound mLoop;
};

/// `bank levels`: a line for each scene with content, and one for the loop itself: peak, and RMS against the loop's.
std::string ListSceneLevels(const std::string& bankFile);
