// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "plugin/AudioUnitInstances.h"
#include "plugin/TProgramInstance.h"
#include "tests/shell/audiounit/FakeAudioUnitHost.h"

#include <cstdint>
#include <utility>
#include <vector>

using TTestState = std::vector<uint8_t>; // a bank as hosts keep it

/// One instance of the plug-in, with what a host gives it: sound to pull, and a transport.
class TTestUnit : public TFakeAudioUnit {
public:
	explicit TTestUnit(const TTestState& state = {});

	void Start(double rate = 44100.0, UInt32 frames = 512, UInt32 inputChannels = 2);

	TTestState Bank();
	OSStatus LoadBank(const TTestState& state);

	/// What the main event loop does for this instance.
	void Tick() { mpTimer->OnTimer(); }

	/// The process around all units of the program.
	static TFakeAudioUnitSystem& System();

	// What the next render pulls and asks
	std::vector<float> mInput[2];
	double mBeat = 0.0;
	double mTempo = 140.0;
	bool mLendsBuffers = false; // instead of filling those that it is given

private:
	AUSystem::TTimerTarget* const mpTimer;

	static OSStatus GiveSound(
	    void* unit, AudioUnitRenderActionFlags*, const AudioTimeStamp*, UInt32, UInt32 frames, AudioBufferList* data);
};

enum class EBuffers { kHosts, kUnits, kLent, kInPlace, kMono };

/// What a host plays: noise in blocks of any size under a running transport, with parameter changes and MIDI events. An
/// instance of the program's own format must sound the same.
class TTestSession {
public:
	struct TBlock {
		UInt32 mFrames = 0;
		std::vector<std::pair<int32_t, float>> mChanges;
		std::vector<TMidiEvent> mEvents;
	};

	using TSound = std::vector<float>; // left, right, left ...

	/// The Stretcher's jitter: drawn anew each time.
	static constexpr int32_t kJitter = 103;

	static TTestSession Busy(unsigned int seed, int blocks);

	/// On the calling thread, which is audio and main thread in turn. The unit is started.
	TSound Play(TTestUnit& unit, EBuffers buffers = EBuffers::kHosts) const;
	TSound Play(TProgramInstance& instance, EBuffers buffers = EBuffers::kHosts) const;

	int32_t mSampleRate = 44100;
	std::vector<TBlock> mBlocks;

private:
	template <class TProcess, class TTick>
	TSound PlayBlocks(bool isMono, const TProcess& process, const TTick& tick) const;
};

/// All effects run often in four scenes of two programs, with parameters drawn at random.
TTestState MakeTestState(unsigned int seed);
/// An instance of the program's own format with that bank.
TOwnerPtr<TProgramInstance> MakeReference(const TTestState& state, int32_t rate = 44100);
