// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/tools/vortel2/RunVortel2.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace std::string_literals;

class TRenderCommandTest : public TVortel2Test {
protected:
	TRenderCommandTest() { WriteWav("in.wav", Noise()); }

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

TEST_F(TRenderCommandTest, OutputMayBeTheInputOrLookLikeACommand) {
	const std::string out = Render("params", Retriggered({}));
	EXPECT_EQ(Render("in.wav", Retriggered({})), out);
	EXPECT_EQ(Files(), (std::vector<std::string>{"in.wav", "params"}));
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
