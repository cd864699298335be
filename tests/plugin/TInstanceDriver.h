// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TParkMillerPRNG.h"
#include "plugin/TProgramInstance.h"

#include <algorithm>
#include <vector>

/// Drives an instance with noise, a playing host and, where wanted, notes, program changes, automation and jumps. The
/// same calls give the same sound.
class TInstanceDriver {
public:
	static constexpr int32_t kBlock = 256;

	explicit TInstanceDriver(TProgramInstance& instance, unsigned int seed = 1) : mInstance(instance) {
		mRandom.SetSeed(seed);
		mTransport.mFlags =
		    TTransportInfo::kTempoValid | TTransportInfo::kBeatPositionValid | TTransportInfo::kIsPlayingValid;
		mTransport.mTempo = 140.0f;
		mTransport.mIsPlaying = true;
		mInstance.Shell().Setup(44100, kBlock);
	}

	/// GUI: every scene that is used gets blocks in every row, so that all effects run often.
	void FillScenes() {
		const TProgramPluginShell::TGuiScope scope(mInstance.Shell());
		static constexpr const char* kRows[]{"*+-*", "*+++++--", "-*", "*---+++-", "***+"};
		for (int32_t program : {0, 1}) {
			for (int32_t scene = 0; scene < 4; ++scene) {
				for (int32_t row = 0; row < TVortelDocument::kNumberOfDevices; ++row) {
					TVortelScene& target = *mInstance.Document().Program(program)->Scene(scene);
					target.Sequencer()->Sequence(row).FromString(
					    kRows[static_cast<std::size_t>(row + scene) % std::size(kRows)]);
				}
			}
		}
	}

	/// Audio: one block; the output stays in Left and Right.
	void Block(
	    std::span<const TProgramPluginShell::TParameterChange> changes = {}, std::span<const TMidiEvent> events = {}) {
		for (int32_t i = 0; i < kBlock; ++i) {
			mLeft[static_cast<std::size_t>(i)] = static_cast<float>(mRandom.NextDouble() - 0.5);
			mRight[static_cast<std::size_t>(i)] = static_cast<float>(mRandom.NextDouble() - 0.5);
		}
		TProgramPluginShell::TBlock block;
		block.mpLeftIn = block.mpLeftOut = mLeft.data();
		block.mpRightIn = block.mpRightOut = mRight.data();
		block.mSamples = kBlock;
		block.mpTransport = &mTransport;
		block.mParameterChanges = changes;
		block.mMidiEvents = events;
		mInstance.Shell().Process(block);
		mTransport.mBeatPosition += kBlock * static_cast<double>(mTransport.mTempo) / 60.0 / 44100.0;
	}

	/// Audio: a block with automation in its middle and at times notes, program changes, "all sound off", another
	/// tempo, another place in the song, or a stop.
	void BusyBlock(int32_t number) {
		if (number % 11 == 0)
			mTransport.mTempo = 20.0f + static_cast<float>(400.0 * mRandom.NextDouble());
		if (number % 29 == 0)
			mTransport.mBeatPosition = 100.0 * mRandom.NextDouble() - 20.0;
		mTransport.mIsPlaying = number % 64 < 60;
		const auto parameter = static_cast<int32_t>(mRandom.NextInt() % TVortelDocument::kNumberOfParameters);
		const std::array<TProgramPluginShell::TParameterChange, 2> changes{
		    {{0, parameter, static_cast<float>(mRandom.NextDouble())},
		     {100, 209 - parameter, static_cast<float>(mRandom.NextDouble())}}};
		std::vector<TMidiEvent>& events = mEvents;
		events.clear();
		if (number % 5 == 0)
			events.push_back({0x90, static_cast<uint8_t>(number / 5 % 4), 100, 17});
		if (number % 7 == 0)
			events.push_back({0x80, static_cast<uint8_t>(number / 7 % 4), 0, 60});
		if (number % 50 == 0)
			events.push_back({0xC0, static_cast<uint8_t>(number / 50 % 2), 0, 99});
		if (number % 190 == 0)
			events.push_back({0xB0, 120, 0, 200});
		Block(changes, events);
	}

	bool IsFinite() const {
		const auto finite = [](float x) { return x - x == 0.0f; };
		return std::ranges::all_of(mLeft, finite) && std::ranges::all_of(mRight, finite);
	}

	const std::vector<float>& Left() const { return mLeft; }

private:
	TProgramInstance& mInstance;
	TParkMillerPRNG mRandom;
	TTransportInfo mTransport;
	std::vector<float> mLeft = std::vector<float>(kBlock);
	std::vector<float> mRight = std::vector<float>(kBlock);
	std::vector<TMidiEvent> mEvents = std::vector<TMidiEvent>(8);
};
