// SPDX-License-Identifier: GPL-3.0-or-later
// The sound must not tell how the host cut it: a bounce is what was heard. VORTEL_BLOCK_SWEEP=1 in the environment adds
// the whole factory bank, hundreds of random scenes, and each effect by itself with each filter.
#include "framework/foundation/values/TParkMillerPRNG.h"
#include "framework/foundation/values/TRandom.h"
#include "plugin/TProgramInstance.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace {

using TPrepare = std::function<void(TVortelDocument&)>;

constexpr int32_t kLargestBlock = 4096;
constexpr uint8_t kNoteOn = 0x90;

/// What the host sends, at samples of the whole render.
struct TScore {
	std::vector<TMidiEvent> mNotes{};
	std::vector<TProgramPluginShell::TParameterChange> mChanges{};
};

struct TPiece {
	TPrepare mPrepare;
	int32_t mRate = 44100;
	int32_t mFrames = 44100;
	TScore mScore{};
};

/// Bursts that die away, so that levels and ramps have something to follow.
std::vector<float> Bursts(const TPiece& piece, unsigned int seed) {
	TParkMillerPRNG noise;
	noise.SetSeed(seed);
	std::vector<float> sound(static_cast<std::size_t>(piece.mFrames));
	for (std::size_t i = 0; i < sound.size(); ++i) {
		const double t = static_cast<double>(i) / piece.mRate;
		const double burst = std::exp(-20.0 * std::fmod(t, 0.25));
		sound[i] = static_cast<float>(burst * (0.5 * std::sin(500.0 * t) + 0.3 * (noise.NextDouble() - 0.5)));
	}
	return sound;
}

/// Those of [from, from + count), with offsets from there.
template <class TEvent>
std::vector<TEvent> Within(const std::vector<TEvent>& events, int32_t from, int32_t count) {
	std::vector<TEvent> inside;
	for (TEvent event : events) {
		event.mSampleOffset -= from;
		if (event.mSampleOffset >= 0 && event.mSampleOffset < count)
			inside.push_back(event);
	}
	return inside;
}

/// Left, then right.
std::vector<float> Render(const TPiece& piece, const std::vector<int32_t>& blocks) {
	const auto instance = TProgramInstance::Create();
	TRandom::SetState(1); // the Stretcher draws from it
	TProgramPluginShell& shell = instance->Shell();
	shell.Setup(piece.mRate, kLargestBlock);
	shell.AsGui([&] { piece.mPrepare(instance->Document()); });
	shell.Tick();
	std::vector<float> left = Bursts(piece, 3);
	std::vector<float> right = Bursts(piece, 4);
	TTransportInfo transport;
	transport.mFlags =
	    TTransportInfo::kTempoValid | TTransportInfo::kBeatPositionValid | TTransportInfo::kIsPlayingValid;
	transport.mTempo = 140.0f;
	transport.mIsPlaying = true;
	for (int32_t at = 0, block = 0; at < piece.mFrames; ++block) {
		const int32_t size = std::min(blocks[static_cast<std::size_t>(block) % blocks.size()], piece.mFrames - at);
		const auto notes = Within(piece.mScore.mNotes, at, size);
		const auto changes = Within(piece.mScore.mChanges, at, size);
		transport.mBeatPosition = at * 140.0 / 60.0 / piece.mRate;
		TProgramPluginShell::TBlock call;
		call.mpLeftIn = call.mpLeftOut = left.data() + at;
		call.mpRightIn = call.mpRightOut = right.data() + at;
		call.mSamples = size;
		call.mpTransport = &transport;
		call.mMidiEvents = notes;
		call.mParameterChanges = changes;
		shell.Process(call);
		shell.Tick();
		at += size;
	}
	left.insert(left.end(), right.begin(), right.end());
	return left;
}

void ExpectSameSound(const TPiece& piece, const std::string& name) {
	const std::vector<float> expected = Render(piece, {64});
	for (const std::vector<int32_t>& blocks : {std::vector<int32_t>{512}, {333, 1, 4096}}) {
		const std::vector<float> sound = Render(piece, blocks);
		const auto different = std::mismatch(sound.begin(), sound.end(), expected.begin()).first;
		EXPECT_EQ(different, sound.end())
		    << name << ", blocks of " << blocks[0] << ": sample " << (different - sound.begin()) % piece.mFrames;
	}
}

bool IsSweep() {
	const char* wanted = std::getenv("VORTEL_BLOCK_SWEEP");
	return wanted && std::string(wanted) == "1";
}

/// Random settings and blocks. The master's ramps have somewhere to go, those of the effects from scene 0 to scene 1.
void DrawScenes(TVortelDocument& document, uint32_t seed) {
	TRandom::SetState(seed);
	for (int32_t scene : {1, 0}) {
		document.ActiveProgram()->ActiveSceneIndex().Set(scene);
		document.RandomizeScene(true);
	}
	document.ActiveProgram()->MasterMix().Set(0.8f);
	document.ActiveProgram()->MasterPanning().Set(0.4f);
}

/// Every effect in the rows that are given, coming and going, with a filter.
void DrawEffects(TVortelDocument& document, const std::vector<int32_t>& devices, int filter, uint32_t seed) {
	static constexpr const char* kRows[] = {"*-*+--*+++-**-*+", "--*++-*-*+++--**", "*++-----*+*+*---"};
	DrawScenes(document, seed);
	for (int32_t index : {0, 1}) {
		TVortelScene& scene = *document.ActiveProgram()->Scene(index);
		for (int32_t device = 0; device < TVortelDocument::kNumberOfDevices; ++device) {
			const bool plays = std::find(devices.begin(), devices.end(), device) != devices.end();
			scene.Sequencer()->Sequence(device).FromString(
			    plays ? kRows[static_cast<std::size_t>(device + index) % std::size(kRows)] : "----------------");
			if (device > 0)
				scene.SetParameterValue(
				    TVortelParameterTable::Device(device).mFirstId + VortelParameterIds::kFilterType,
				    static_cast<float>(filter) / 4.0f);
		}
	}
}

} // namespace

TEST(BlockPatternTest, AllEffectsWithEachFilterSoundTheSameInAnyBlocks) {
	for (int filter = 0; filter <= 4; ++filter) {
		TPiece piece{[filter](TVortelDocument& document) {
			DrawEffects(document, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, filter, 77 + static_cast<uint32_t>(filter));
		}};
		piece.mRate = 16000;
		piece.mFrames = 16000;
		ExpectSameSound(piece, "filter " + std::to_string(filter));
	}
}

TEST(BlockPatternTest, EachEffectWithEachFilter) {
	if (!IsSweep())
		GTEST_SKIP() << "VORTEL_BLOCK_SWEEP=1 asks for it";
	for (int32_t device = 1; device <= 10; ++device)
		for (int filter = 0; filter <= 4; ++filter)
			for (uint32_t seed = 1; seed <= 2; ++seed)
				ExpectSameSound(
				    {[=](TVortelDocument& document) { DrawEffects(document, {device}, filter, seed); }},
				    "device " + std::to_string(device) + ", filter " + std::to_string(filter));
}

TEST(BlockPatternTest, RandomScenes) {
	if (!IsSweep())
		GTEST_SKIP() << "VORTEL_BLOCK_SWEEP=1 asks for it";
	for (uint32_t seed = 1; seed <= 500; ++seed)
		ExpectSameSound(
		    {[seed](TVortelDocument& document) { DrawScenes(document, seed); }}, "seed " + std::to_string(seed));
}

TEST(BlockPatternTest, TheFactoryBank) {
	if (!IsSweep())
		GTEST_SKIP() << "VORTEL_BLOCK_SWEEP=1 asks for it";
	const auto loadBank = [](TVortelDocument& document) {
		ASSERT_TRUE(document.LoadBank(TString(VORTEL_FACTORY_BANK, kUtf8Encoding)));
	};
	const auto instance = TProgramInstance::Create();
	std::vector<std::pair<int32_t, int32_t>> used;
	instance->Shell().AsGui([&] {
		loadBank(instance->Document());
		for (int32_t program = 0; program < TVortelDocument::kNumberOfPrograms; ++program)
			for (int32_t scene = 0; scene < TVortelProgram::kNumberOfScenes; ++scene)
				if (instance->Document().Program(program)->Scene(scene)->HasContent())
					used.emplace_back(program, scene);
	});
	ASSERT_FALSE(used.empty());
	for (const auto& [program, scene] : used) {
		TPiece piece{[&, program = program](TVortelDocument& document) {
			loadBank(document);
			document.SetCurrentProgramIndex(program);
		}};
		piece.mFrames = 3 * piece.mRate;
		piece.mScore.mNotes = {{kNoteOn, static_cast<uint8_t>(scene), 100, 0}};
		ExpectSameSound(piece, "program " + std::to_string(program) + ", scene " + std::to_string(scene));
	}
}
