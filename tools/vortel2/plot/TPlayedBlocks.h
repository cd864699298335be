// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/TVortelAudioEngine.h"

#include <array>
#include <cstdint>
#include <vector>

/// Which blocks of which effects the sequencer has played, told from where it stands after each host block. What a run
/// that began or ended within a host block did before or after is known to that block only.
class TPlayedBlocks {
public:
	struct TBlock {
		int32_t mDevice;
		double mStart; // samples
		double mEnd;
		bool mIsRandom; // the randomizer's choice
	};

	/// Both must outlive this.
	TPlayedBlocks(const TVortelAudioEngine& engine, TVortelDocument& document);

	/// Audio thread, after each host block.
	void AddHostBlock(int64_t firstSample, int32_t samples);
	/// To be called behind the last block.
	void Finish(int64_t end);

	/// In order of their ends.
	const std::vector<TBlock>& Blocks() const noexcept { return mBlocks; }

private:
	struct TStepEntry {
		int32_t mStep;
		double mStart;
	};

	std::vector<TStepEntry> StepsEntered(int64_t firstSample, int32_t samples, double position);
	void EnterStep(const TStepEntry& entry);
	const TVortelSequence* OwnRow(int32_t device) const;
	const TVortelSequence* RandomRow(int32_t device) const;
	void Close(int32_t device, double end);
	void CloseAll(double end);

	const TVortelAudioEngine& mEngine;
	TVortelDocument& mDocument;
	int32_t mStep = -1; // the last one entered; -1 while the sequencer stands
	std::array<TBlock, TVortelAudioEngine::kNumberOfDevices> mOpen{};
	std::array<bool, TVortelAudioEngine::kNumberOfDevices> mIsOpen{};
	std::vector<TBlock> mBlocks;
};
