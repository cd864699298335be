// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/tools/vortel2/RunVortel2.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace {

using namespace std::string_literals;

class TRenderCommandTest : public TVortel2Test {
protected:
	TRenderCommandTest() { WriteWav("in.wav", Noise()); }

	/// Noise that stays below full scale, whatever ramps there are at the beginning.
	static TStereoSound QuietNoise() {
		TStereoSound sound = Noise();
		for (std::vector<float>* side : {&sound.mLeft, &sound.mRight})
			for (float& sample : *side)
				sample *= 0.5f;
		return sound;
	}

	static TArguments Retriggered(const TArguments& more) {
		TArguments words{"--steps", "3=*+++*+++----*+++", "--param", "RET:Decay=30"};
		words.insert(words.end(), more.begin(), more.end());
		return words;
	}
};

TEST_F(TRenderCommandTest, EmptyPatternIsTheInputBitForBit) {
	const TStereoSound in = Noise();
	for (const char* block : {"1", "64", "1000", "65536", "3,256,1"}) {
		for (const char* transport : {"--quiet", "--stopped", "--no-transport"}) {
			Render("out.wav", {"--block", block, transport});
			const TStereoSound out = ReadSound("out.wav");
			EXPECT_TRUE(out.mLeft == in.mLeft && out.mRight == in.mRight) << block << transport;
		}
	}
}

TEST_F(TRenderCommandTest, FileFormatsAndMono) {
	Render("dry.wav", {"--format", "pcm16"});
	EXPECT_EQ(Run({"render", "dry.wav", "same.wav", "--format", "pcm16"}).mStatus, 0);
	EXPECT_EQ(Bytes("same.wav"), Bytes("dry.wav"));
	EXPECT_EQ(Render("fine.wav", {"--format", "pcm24"}).size() - 44, 44100u * 6);

	std::string mono = Bytes("dry.wav");
	mono[22] = 1;                             // channels
	mono[32] = 2;                             // bytes of a frame
	mono.replace(28, 4, "\x88\x58\x01\x00"s); // bytes of a second
	WriteBytes("mono.wav", mono);
	EXPECT_EQ(Run({"render", "mono.wav", "out.wav"}).mStatus, 0);
	const TStereoSound out = ReadSound("out.wav");
	EXPECT_EQ(out.mLeft.size(), 88200u);
	EXPECT_EQ(out.mLeft, out.mRight);
}

TEST_F(TRenderCommandTest, LengthsFromNothingUpwardsAndTheTail) {
	for (const std::size_t frames : {0u, 1u, 257u}) {
		WriteWav("in.wav", Noise(frames));
		Render("out.wav", Retriggered({}));
		EXPECT_EQ(ReadSound("out.wav").mLeft.size(), frames);
	}
	Render("out.wav", {"--tail", "0.01"});
	const TStereoSound out = ReadSound("out.wav");
	ASSERT_EQ(out.mLeft.size(), 257u + 441u);
	EXPECT_EQ(out.mLeft[257], 0.0f);
}

TEST_F(TRenderCommandTest, RatesFromEndToEnd) {
	for (const int32_t rate : {8000, 384000}) {
		WriteWav("in.wav", Noise(20000, rate));
		Render("out.wav", Retriggered({}));
		EXPECT_EQ(ReadSound("out.wav").mSampleRate, rate);
	}
}

// What a render says beside its result: once, and with the status of a success unless that is not wanted.
TEST_F(TRenderCommandTest, Warnings) {
	const std::string whole = Bytes("in.wav");
	WriteBytes("short.wav", whole.substr(0, whole.size() - 40000));
	ASSERT_EQ(Run({"render", "in.wav", "whole.flac"}).mStatus, 0);
	WriteBytes("cut.flac", Bytes("whole.flac").substr(0, 100000));
	WriteWav("quiet.wav", QuietNoise());
	Render("used.v2bnk.wav", Retriggered({"--save", "used.v2bnk"}));

	const struct {
		TArguments mArguments;
		const char* mWarning; // null: none
	} kRuns[] = {
	    {{"short.wav", "--param", "MST:Mix=50", "--param", "MST:Volume=50"}, "short.wav: ends early"},
	    {{"cut.flac", "--param", "MST:Volume=50"}, "cut.flac: ends early"},
	    {{"in.wav", "--format", "pcm16", "--param", "MST:Volume=100.1"}, "clipped"},
	    {{"quiet.wav", "--format", "pcm16", "--param", "MST:Volume=90"}, nullptr},
	    {{"in.wav"}, "scene 0 of program 0 \"Init\" has no block"},
	    {{"in.wav", "--bank", "used.v2bnk", "--scene", "5"}, "scene 5 of program 0"},
	    {{"in.wav", "--bank", "used.v2bnk"}, nullptr},
	    {{"in.wav", "--program-index", "3"}, "--bank"},
	    {{"in.wav", "--steps", "RET=----*+++", "--trigger", "latch"}, "plays notes"},
	    {{"in.wav", "--steps", "RET=----*+++", "--stopped"}, "--stopped"},
	    {{"in.wav", "--param", "MST:Volume=50", "--save", "a.v2bnk"}, nullptr},
	    {{"in.wav", "--param", "MST:Volume=50", "--param", "RET:Decay=9", "--save", "a.v2bnk"}, "--save"},
	};
	for (const auto& run : kRuns) {
		TArguments words{"render", run.mArguments[0], "out.wav"};
		words.insert(words.end(), run.mArguments.begin() + 1, run.mArguments.end());
		const TRunResult result = Run(words);
		const std::string name = testing::PrintToString(words) + result.mErrors;
		EXPECT_EQ(result.mStatus, 0) << name;
		EXPECT_EQ(result.mErrors.empty(), run.mWarning == nullptr) << name;
		EXPECT_TRUE(result.mErrors.empty() || result.HasOneErrorLine()) << name;
		EXPECT_NE(result.mErrors.find(run.mWarning ? run.mWarning : ""), std::string::npos) << name;
		std::filesystem::remove(Path("out.wav"));
		words.emplace_back("--strict");
		EXPECT_EQ(Run(words).mStatus, run.mWarning ? 1 : 0) << name;
		EXPECT_EQ(std::filesystem::exists(Path("out.wav")), run.mWarning == nullptr) << name;
	}
}

TEST_F(TRenderCommandTest, ContainersAndStandardStreams) {
	const TArguments quiet{"--param", "MST:Volume=30"};
	WriteWav("in.wav", QuietNoise());
	const std::string wav = Render("a.wav", quiet);
	const TStereoSound sound = ReadSound("a.wav");
	for (const char* name : {"a.aiff", "a.AIF", "a.flac"}) {
		Render(name, quiet);
		const TStereoSound other = ReadSound(name);
		ASSERT_EQ(other.mLeft.size(), sound.mLeft.size()) << name;
		for (std::size_t i = 0; i < sound.mLeft.size(); ++i)
			ASSERT_NEAR(other.mLeft[i], sound.mLeft[i], 1e-6f) << name;
	}
	EXPECT_EQ(Bytes("a.flac").substr(0, 4), "fLaC");
	Render("a.ogg", quiet);
	EXPECT_EQ(ReadSound("a.ogg").mLeft.size(), sound.mLeft.size());
	EXPECT_EQ(Render("b.ogg", quiet), Bytes("a.ogg"));
	EXPECT_EQ(RunInShell("cat in.wav | \"$0\" render - - --param MST:Volume=30 | cat > b.wav").mStatus, 0);
	EXPECT_EQ(Bytes("b.wav"), wav);
	EXPECT_EQ(RunInShell("\"$0\" render - - --param MST:Volume=30 --container flac <in.wav >b.flac").mStatus, 0);
	EXPECT_EQ(Bytes("b.flac"), Bytes("a.flac"));
}

TEST_F(TRenderCommandTest, KilledRunsLeaveNothingForLong) {
	WriteBytes("Vortel2_TmpFile-0-7.unfinished", "left behind");
	WriteBytes("Vortel2_TmpFile-0-8.unfinished", "being written");
	EXPECT_EQ(
	    RunInShell("flock Vortel2_TmpFile-0-8.unfinished \"$0\" render in.wav out.wav --param MST:Mix=50").mStatus, 0);
	EXPECT_EQ(Files(), (std::vector<std::string>{"Vortel2_TmpFile-0-8.unfinished", "in.wav", "out.wav"}));
}

TEST_F(TRenderCommandTest, WhatIsSavedSoundsAsItWasRendered) {
	const std::string dice = Render(
	    "a.wav", {"--random", "5", "--scene", "3", "--tempo", "97", "--param", "STR:Jitter=0", "--save", "a.v2prg"});
	EXPECT_EQ(Render("b.wav", {"--program", "a.v2prg", "--tempo", "97"}), dice);
	const TRunResult unseeded = Run({"render", "in.wav", "a.wav", "--random"});
	const std::size_t seed = unseeded.mErrors.find("seed ");
	ASSERT_NE(seed, std::string::npos) << unseeded.mErrors;
	EXPECT_EQ(
	    Render("b.wav", {"--random", unseeded.mErrors.substr(seed + 5, unseeded.mErrors.size() - seed - 6)}),
	    Bytes("a.wav"));
}

TEST_F(TRenderCommandTest, BatchesEqualSingleRuns) {
	// The grains' lengths are drawn from the general generator.
	const TArguments options{"--random",      "5",       "--steps",    "STR=*+++++++++++++++", "--param",
	                         "STR:Jitter=80", "--param", "STR:Mix=100"};
	TArguments batch{"render", "in.wav", "b.wav", "c.wav", "d.wav", "--to", "out"};
	for (const char* name : {"b.wav", "c.wav", "d.wav"})
		WriteWav(name, Noise(20000 + static_cast<std::size_t>(name[0]) * 100));
	batch.insert(batch.end(), options.begin(), options.end());
	EXPECT_EQ(Run(batch).mStatus, 0);
	for (const std::string name : {"in.wav", "b.wav", "c.wav", "d.wav"}) {
		TArguments single{"render", name, "single.wav"};
		single.insert(single.end(), options.begin(), options.end());
		EXPECT_EQ(Run(single).mStatus, 0);
		EXPECT_EQ(Bytes("out/" + name), Bytes("single.wav")) << name;
		EXPECT_NE(Bytes("out/" + name), Bytes(name));
	}
	WriteBytes("bad.wav", "no sound");
	const TRunResult mixed = Run({"render", "bad.wav", "b.wav", "--to", "some", "--param", "MST:Volume=50"});
	EXPECT_EQ(mixed.mStatus, 1);
	EXPECT_NE(mixed.mErrors.find("1 of 2 files failed: bad.wav"), std::string::npos) << mixed.mErrors;
	EXPECT_TRUE(std::filesystem::exists(Path("some/b.wav")));
	EXPECT_EQ(Run({"render", "bad.wav", "--to", "none"}).mStatus, 1);
	EXPECT_FALSE(std::filesystem::exists(Path("none")));
}

TEST_F(TRenderCommandTest, TempoOfTheMidiFile) {
	// 100 ticks a beat; 60 beats a minute for half a beat, then 240.
	const std::string track = "\0\xff\x51\x03\x0f\x42\x40"s
	                          "\x32\xff\x51\x03\x03\xd0\x90"s;
	WriteBytes("song.mid", "MThd\0\0\0\6\0\0\0\1\0\x64MTrk\0\0\0\x0e"s + track);
	// Where a block begins at the change, it is the same as changes of the host.
	const std::string reference =
	    Render("a.wav", Retriggered({"--tempo", "60", "--tempo-at", "0.5=240", "--block", "50"}));
	EXPECT_EQ(Render("b.wav", Retriggered({"--tempo", "midi", "--midi", "song.mid", "--block", "50"})), reference);
	EXPECT_NE(Render("c.wav", Retriggered({"--midi", "song.mid"})), reference);
}

TEST_F(TRenderCommandTest, BlockSizesDoNotChangeTheSound) {
	const std::string reference = Render("a.wav", Retriggered({"--block", "256"}));
	EXPECT_NE(reference, Render("dry.wav", {}));
	for (const char* block : {"1", "7,4096,13", "65536", "64"})
		EXPECT_EQ(Render("b.wav", Retriggered({"--block", block})), reference) << block;
}

TEST_F(TRenderCommandTest, OrderOfTheOptionsDoesNotMatter) {
	const TArguments options{"--param", "RET:Initial Speed=1 / 12.5",
	                         "--steps", "RET=*+++++++",
	                         "--scene", "5",
	                         "--param", "57=0",
	                         "--tempo", "97.5",
	                         "--beats", "3"};
	TArguments reversed;
	for (std::size_t i = options.size(); i > 0; i -= 2)
		reversed.insert(reversed.end(), {options[i - 2], options[i - 1]});
	const std::string reference = Render("a.wav", options);
	EXPECT_EQ(Render("b.wav", reversed), reference);
	EXPECT_NE(Render("c.wav", {"--scene", "5"}), reference);
}

TEST_F(TRenderCommandTest, RandomSceneRepeatsFromItsSeed) {
	const std::string reference = Render("a.wav", {"--scene", "9", "--random", "7"});
	EXPECT_EQ(Render("b.wav", {"--random=7", "--scene", "9"}), reference);
	EXPECT_NE(Render("b.wav", {"--random", "8", "--scene", "9"}), reference);
	Render("b.wav", {"--random", "--steps", "DLY=*"});
	EXPECT_EQ(Run({"render", "--random", "in.wav", "b.wav"}).mStatus, 0); // a file name is no seed
	EXPECT_EQ(Run({"names", "--seed", "1", "--count", "2"}).mOutput, "Fancifully Half-Baked Funk\nObedient Doodad\n");
	EXPECT_NE(Run({"names", "--count", "5"}).mOutput, Run({"names", "--count", "5"}).mOutput);
}

TEST_F(TRenderCommandTest, TransportDecidesWhetherThePatternPlays) {
	const std::string dry = Render("dry.wav", {});
	const std::string wet = Render("wet.wav", Retriggered({}));
	EXPECT_EQ(Render("a.wav", Retriggered({"--stopped"})), dry);
	EXPECT_EQ(Render("a.wav", Retriggered({"--no-transport"})), dry);
	EXPECT_EQ(Render("a.wav", Retriggered({"--stopped", "--play-at", "0"})), wet);
	EXPECT_EQ(Render("a.wav", Retriggered({"--tempo", "60", "--tempo-at", "0=120"})), wet);
	EXPECT_NE(Render("a.wav", Retriggered({"--position", "2"})), wet);
	EXPECT_NE(Render("a.wav", Retriggered({"--stop-at", "0.5"})), wet);
}

TEST_F(TRenderCommandTest, AutomationAtTheStartIsASetting) {
	const std::string set = Render("a.wav", {"--param", "3=0.25"});
	EXPECT_EQ(Render("b.wav", {"--automate", "3@0=0.25"}), set);
	EXPECT_NE(Render("c.wav", {"--automate", "3@0.1=0.25"}), set);
	EXPECT_EQ(Render("b.wav", {"--automate", "mst:vol@0=50"}), set);

	const std::string ramp = Render("a.wav", {"--automate", "MST:Volume@0.2..0.6=100..50"});
	EXPECT_NE(ramp, Render("b.wav", {"--automate", "3@0.6=0.25"}));
	EXPECT_EQ(ramp, Render("b.wav", {"--automate", "3@0.2..0.6=0.5..0.25"}));
	const TArguments sweep{"--steps", "LFI=*+++++++++++++++", "--automate", "LFI:Frequency@0.1..0.9=500..5000"};
	TArguments inOneBlock = sweep;
	inOneBlock.insert(inOneBlock.end(), {"--block", "65536"});
	EXPECT_EQ(Render("a.wav", sweep), Render("b.wav", inOneBlock));
}

TEST_F(TRenderCommandTest, NotesAndMidiFileAreTheSame) {
	const TArguments gate{"--trigger", "gate", "--steps", "RET=****************"};
	TArguments notes = gate;
	notes.insert(notes.end(), {"--note", "0@0.25-0.75", "--note", "0:1@0.8"});
	TArguments file = gate;
	file.insert(file.end(), {"--midi", "song.mid"});
	// 100 ticks a beat and 120 beats a minute: a tick is 5 ms.
	const std::string track = "\x32\x90\0\x64"s
	                          "\x64\x80\0\0"s
	                          "\x0a\x90\0\x01"s;
	WriteBytes("song.mid", "MThd\0\0\0\6\0\0\0\1\0\x64MTrk\0\0\0\x0c"s + track);

	const std::string reference = Render("a.wav", notes);
	EXPECT_NE(reference, Render("b.wav", gate));
	EXPECT_EQ(Render("c.wav", file), reference);
}

TEST_F(TRenderCommandTest, DemoLoopDryAndProcessed) {
	EXPECT_EQ(Run({"render", "--demo-dry", "dry.wav", "--demo", "same.wav"}).mStatus, 0);
	EXPECT_EQ(Bytes("dry.wav"), Bytes("same.wav"));
	EXPECT_EQ(Run({"render", "--demo", "wet.wav", "--steps", "RET=*+++*+++----*+++"}).mStatus, 0);
	EXPECT_NE(Bytes("wet.wav"), Bytes("dry.wav"));
	EXPECT_EQ(Run({"levels", "dry.wav"}).mOutput.substr(0, 42), "dry.wav: 8.000 s, 352800 frames, 44100 Hz,");
}

TEST_F(TRenderCommandTest, EveryRunOfEverythingIsTheSame) {
	const TArguments options{"--trigger",  "latch",     "--quantize", "8th",       "--steps",    "0=****************",
	                         "--steps",    "3=*+*+",    "--note",     "3@0.1-0.2", "--note",     "0@0.3-0.4",
	                         "--note",     "0@0.6",     "--automate", "58@0.2=0",  "--automate", "61@0.333=1",
	                         "--tempo-at", "0.5=180.5", "--block",    "1,100,17",  "--seed",     "7"};
	const std::string reference = Render("a.wav", options);
	for (int run = 0; run < 4; ++run)
		EXPECT_EQ(Render("b.wav", options), reference);
}

} // namespace
