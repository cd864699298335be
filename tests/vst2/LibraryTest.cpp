// SPDX-License-Identifier: GPL-3.0-or-later
// The built library as a host loads it: against the program's own format and against the VST 3 bundle.
#include "shell/vst3/Vst3Ids.h"
#include "tests/vst2/TVst2Host.h"
#include "tests/vst3/TTestHost.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <pluginterfaces/vst/ivstunits.h>
#include <set>
#include <thread>

namespace {

std::span<const uint8_t> ChunkOf(const TTestState& state) {
	return std::span<const uint8_t>(state).subspan(sizeof(int32_t));
}

/// The session as this format can play it: values change between blocks.
TTestSession::TSound Play(const TTestSession& session, const TVst2Effect& effect, TVst2Host& host) {
	host.mTime.flags = kVstTransportPlaying | kVstTempoValid | kVstPpqPosValid;
	host.mTime.tempo = TTestSession::kTempo;
	const auto process = [&](const TTestSession::TBlock& block, double beat, float* left, float* right) {
		host.mTime.ppqPos = beat;
		for (const auto& change : block.mChanges)
			effect.SetParameter(change.mParameter, change.mValue);
		TVst2Events events;
		for (const TMidiEvent& midi : block.mEvents)
			events.Add(midi.mStatus, midi.mData1, midi.mData2, midi.mSampleOffset);
		effect.Do(effProcessEvents, 0, 0, events.Record());
		effect.Process(left, right, left, right, block.mSamples);
	};
	return session.PlayBlocks(false, process, [&] { effect.Do(effEditIdle); });
}

TTestSession SessionWithoutOffsets(unsigned int seed) {
	TTestSession session = TTestSession::Busy(seed, 200);
	std::erase_if(session.mBlocks, [](const auto& block) { return block.mSamples == 0; });
	for (auto& block : session.mBlocks)
		for (auto& change : block.mChanges)
			change.mSampleOffset = 0;
	return session;
}

bool IsMapped(const std::string& file) {
	std::ifstream maps("/proc/self/maps");
	for (std::string line; std::getline(maps, line);)
		if (line.ends_with(file))
			return true;
	return false;
}

} // namespace

TEST(Vst2LibraryTest, ShowsItsEntryPointsAloneAndNeedsAHost) {
	FILE* nm = popen("nm -D --defined-only " VORTEL_VST2_BINARY, "r");
	ASSERT_NE(nm, nullptr);
	std::set<std::string> symbols;
	char name[512];
	while (std::fscanf(nm, "%*s %*s %511s", name) == 1)
		symbols.insert(name);
	pclose(nm);
	EXPECT_EQ(symbols, (std::set<std::string>{"VSTPluginMain", "main_macho"}));
	TVst2Host host;
	const TVst2Module module;
	EXPECT_EQ(module.Make(nullptr), nullptr);
	host.mVersion = 0;
	EXPECT_EQ(module.Make(), nullptr);
}

TEST(Vst2LibraryTest, SaysWhatItIsInEveryText) {
	TVst2Host host;
	const TVst2Module module;
	const TVst2Effect effect(module.Make(&TVst2Host::Callback, "main_macho"));
	EXPECT_EQ(effect->magic, kEffectMagic);
	EXPECT_EQ(effect->uniqueID, CCONST('k', 'm', 'q', '7'));
	EXPECT_EQ(effect->version, 215);
	EXPECT_EQ(effect->numPrograms, 16);
	EXPECT_EQ(effect->numParams, 210);
	EXPECT_EQ(effect->numInputs, 2);
	EXPECT_EQ(effect->numOutputs, 2);
	EXPECT_EQ(effect->flags, effFlagsHasEditor | effFlagsCanReplacing | effFlagsProgramChunks);
	EXPECT_EQ(effect.Text(effGetEffectName), "Vortel2");
	EXPECT_EQ(effect.Text(effGetVendorString), "Brightfen");
	EXPECT_EQ(effect.Do(effGetVendorVersion), 215);
	EXPECT_EQ(effect.Do(effGetVstVersion), 2400);
	// Value and unit apart, as the program's own texts have them together; names and programs as in VST 3.
	const TVst3Module bundle;
	TTestPlugin vst3(bundle);
	const auto units = vst3.As<Steinberg::Vst::IUnitInfo>(Steinberg::Vst::IUnitInfo_iid);
	for (int id = 0; id < 210; ++id) {
		Steinberg::Vst::String128 both{};
		vst3.mpController->getParamStringByValue(static_cast<uint32_t>(id), effect.Parameter(id), both);
		const std::string unit = effect.Text(effGetParamLabel, id);
		const std::string value = effect.Text(effGetParamDisplay, id);
		EXPECT_TRUE(unit.empty() || !value.ends_with(unit)) << value;
		const std::string text = Narrow(both).substr(0, 23);
		EXPECT_TRUE(text == value || text == value + " " + unit || text == value + unit) << text << " | " << value;
	}
	for (int program = 0; program < 16; ++program) {
		Steinberg::Vst::String128 name{};
		units->getProgramName(kVst3Preset, program, name);
		EXPECT_EQ(effect.Text(effGetProgramNameIndexed, program), Narrow(name).substr(0, 23)) << "one factory bank";
	}
}

TEST(Vst2LibraryTest, SoundsAsTheProgramDoesWithTheStateThatVst3Keeps) {
	TVst2Host host;
	const TVst2Module module;
	const TVst3Module bundle;
	for (const unsigned int seed : {1u, 2u}) {
		const TTestState state = MakeTestState(seed);
		TTestPlugin vst3(bundle);
		vst3.Load(state);
		const TTestState kept = vst3.State();
		const TVst2Effect effect(module.Make());
		effect.Do(effOpen);
		effect.Load(ChunkOf(state));
		EXPECT_TRUE(std::ranges::equal(effect.Chunk(), ChunkOf(kept)));

		const auto reference = TProgramInstance::Create();
		LoadTestState(*reference, state);
		reference->Shell().Setup(44100, 512);
		const TTestSession session = SessionWithoutOffsets(seed);
		effect.Do(effMainsChanged, 0, 1);
		TTestSession::TSound sound;
		std::thread([&] { sound = Play(session, effect, host); }).join();
		const TTestSession::TSound expected = session.Play(*reference);
		ASSERT_EQ(sound.size(), expected.size());
		EXPECT_EQ(std::ranges::mismatch(sound, expected).in1 - sound.begin(), std::ssize(sound));

		// One program alone, into another place of a bank that has been played.
		const std::vector<uint8_t> program = effect.Chunk(true);
		effect.Do(effSetProgram, 0, 9);
		effect.Load(program, true);
		EXPECT_EQ(effect.Chunk(true), program);
		const std::vector<uint8_t> bank = effect.Chunk();
		const TVst2Effect other(module.Make());
		other.Load(bank);
		EXPECT_EQ(other.Chunk(), bank);
		EXPECT_EQ(other.Do(effGetProgram), 9);
	}
}

TEST(Vst2LibraryTest, TakesEveryOpcodeWithNothingInAnyOrder) {
	TVst2Host host;
	const TVst2Module module;
	const TVst2Effect effect(module.Make());
	for (int round = 0; round < 2; ++round)
		for (const int index : {0, -1, 1 << 30})
			for (int opcode = effOpen; opcode < 100; ++opcode)
				if (opcode != effClose)
					effect.Do(opcode, index, 0, nullptr, -1.0f);
	EXPECT_EQ(effect.Do(4711), 0);
	effect->setParameter(effect.operator->(), -1, 0.5f);
	effect->processReplacing(effect.operator->(), nullptr, nullptr, 64);
	const uint8_t damaged[] = "<VortelDocument><Program0><Name>Half";
	effect.Load(damaged);
	EXPECT_EQ(effect.Text(effGetEffectName), "Vortel2");
	EXPECT_EQ(effect->dispatcher(nullptr, effOpen, 0, 0, nullptr, 0.0f), 0);
}

TEST(Vst2LibraryTest, PlaysOnWhileAnotherThreadWritesAndReadsChunksAndUnloadsWithoutATrace) {
	TVst2Host host;
	const TTestState state = MakeTestState(3);
	const TTestSession session = SessionWithoutOffsets(3);
	for (int round = 0; round < 2; ++round) {
		{
			const TVst2Module module;
			const TVst2Effect effect(module.Make());
			const TVst2Effect other(module.Make());
			effect.Load(ChunkOf(state));
			effect.Do(effMainsChanged, 0, 1);
			std::jthread writer([&](const std::stop_token& stop) {
				while (!stop.stop_requested()) {
					effect.Load(ChunkOf(state));
					EXPECT_FALSE(effect.Chunk().empty());
					EXPECT_FALSE(other.Chunk(true).empty());
				}
			});
			const auto sound = Play(session, effect, host);
			EXPECT_TRUE(std::ranges::all_of(sound, [](float x) { return x - x == 0.0f; }));
		}
		EXPECT_FALSE(IsMapped(VORTEL_VST2_BINARY)) << "still loaded";
	}
}
