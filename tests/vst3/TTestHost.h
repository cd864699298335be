// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TParkMillerPRNG.h"
#include "plugin/TProgramInstance.h"
#include "tests/shell/vst3/FakeVst3Host.h"
#include "tests/vst3/TVst3Module.h"

#include <pluginterfaces/vst/ivstaudioprocessor.h>
#include <pluginterfaces/vst/ivstcomponent.h>
#include <pluginterfaces/vst/ivstmidicontrollers.h>
#include <pluginterfaces/vst/ivstprocesscontext.h>

#include <cstdint>
#include <string>
#include <vector>

using TTestState = std::vector<Steinberg::uint8>;

std::string Narrow(const Steinberg::Vst::String128 text);

/// One instance in the loaded bundle with what a host holds of it. Initialised, twice, as hosts do that take the
/// component and the controller for two objects. The thread that makes it plays the main thread.
class TTestPlugin {
public:
	explicit TTestPlugin(const TVst3Module& module);
	~TTestPlugin();

	TTestPlugin(const TTestPlugin&) = delete;
	TTestPlugin& operator=(const TTestPlugin&) = delete;

	template <class TInterface>
	Steinberg::IPtr<TInterface> As(const Steinberg::TUID interfaceId) const {
		return AskFor<TInterface>(mpComponent, interfaceId);
	}

	Steinberg::tresult Setup(double rate, Steinberg::int32 block);
	void Activate(double rate = 44100.0, Steinberg::int32 block = 512);
	void Deactivate();

	TTestState State();
	Steinberg::tresult Load(const TTestState& state);

	/// What the run loop's timer does.
	void Tick() { mHost.mpTimer->onTimer(); }

	std::vector<double> Values() const;

	TFakeVst3Host mHost;
	Steinberg::IPtr<Steinberg::Vst::IComponent> mpComponent;
	Steinberg::IPtr<Steinberg::Vst::IAudioProcessor> mpProcessor;
	Steinberg::IPtr<Steinberg::Vst::IEditController> mpController;
};

/// Where the outputs lie: on the inputs of their side, nowhere near, on the other side's.
enum class EBuffers { kInPlace, kApart, kMono, kLeftOnRight, kRightOnLeft, kCrossed };
enum class ETicks { kWith, kWithout };

/// What a host plays to an instance: noise, in blocks of any size, under a running transport, with automation and MIDI
/// events. Plays to the bundle and to an instance of the program's own format, which must sound the same.
class TTestSession {
public:
	struct TBlock {
		int32_t mSamples = 0;
		std::vector<TProgramPluginShell::TParameterChange> mChanges; // in time order
		std::vector<TMidiEvent> mEvents;
	};

	using TSound = std::vector<float>; // left, right, left ...

	/// The Stretcher's jitter: drawn anew each time.
	static constexpr int32_t kJitter = 103;
	static constexpr double kTempo = 140.0;

	TTestSession() = default;
	/// Blocks of 0 to 512 samples with changes, notes, program changes and "all sound off".
	static TTestSession Busy(unsigned int seed, int blocks);

	/// On the calling thread, which plays both the audio and, every ten blocks, the main thread. The instance is
	/// active.
	TSound Play(TTestPlugin& plugin, EBuffers buffers = EBuffers::kInPlace, ETicks ticks = ETicks::kWith) const;
	TSound Play(TProgramInstance& instance, EBuffers buffers = EBuffers::kInPlace) const;

	int32_t mSampleRate = 44100;
	std::vector<TBlock> mBlocks;

	/// In any format: process(block, beat, left, right) plays a block in place, tick() is the main thread's turn.
	template <class TProcess, class TTick>
	TSound PlayBlocks(bool isMono, const TProcess& process, const TTick& tick) const;
};

template <class TProcess, class TTick>
TTestSession::TSound TTestSession::PlayBlocks(bool isMono, const TProcess& process, const TTick& tick) const {
	TParkMillerPRNG noise;
	noise.SetSeed(77);
	std::vector<float> channels[2];
	TSound sound;
	double beat = 0.0;
	int number = 0;
	for (const TBlock& block : mBlocks) {
		for (auto& channel : channels)
			channel.resize(static_cast<std::size_t>(block.mSamples) + 1); // never without data
		for (int32_t i = 0; i < block.mSamples; ++i)
			for (auto& channel : channels)
				channel[static_cast<std::size_t>(i)] = static_cast<float>(noise.NextDouble() - 0.5);
		if (isMono)
			channels[1] = channels[0];
		process(block, beat, channels[0].data(), channels[1].data());
		for (std::size_t i = 0; i < static_cast<std::size_t>(block.mSamples); ++i)
			sound.insert(sound.end(), {channels[0][i], channels[1][i]});
		beat += block.mSamples * kTempo / 60.0 / mSampleRate;
		if (++number % 10 == 0)
			tick();
	}
	return sound;
}

/// A bank in which all effects run often in four scenes of two programs, with parameters drawn at random, as the
/// program's own format makes it and a VST 3 host keeps it.
TTestState MakeTestState(unsigned int seed);
/// Loads such a state into an instance of the program's own format.
void LoadTestState(TProgramInstance& instance, const TTestState& state);
