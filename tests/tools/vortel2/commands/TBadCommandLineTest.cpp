// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/tools/vortel2/RunVortel2.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

class TBadCommandLineTest : public TVortel2Test {
protected:
	TBadCommandLineTest() {
		WriteWav("in.wav", Noise(1000));
		WriteBytes("out.wav", "as it was");
		WriteBytes("text.txt", "no sound\n");
	}

	/// The run ends with that status and one line that names the culprit, and no file has come or changed.
	void ExpectFailure(const TArguments& arguments, int status, const std::string& culprit) {
		const auto files = Files();
		const TRunResult result = Run(arguments);
		const std::string words = testing::PrintToString(arguments);
		EXPECT_EQ(result.mStatus, status) << words << result.mErrors;
		EXPECT_TRUE(result.HasOneErrorLine()) << words << result.mErrors;
		EXPECT_NE(result.mErrors.find(culprit), std::string::npos) << words << result.mErrors;
		EXPECT_EQ(result.mOutput, "") << words;
		EXPECT_EQ(Files(), files) << words;
		EXPECT_EQ(Bytes("out.wav"), "as it was") << words;
	}

	void ExpectBadOption(const std::string& option, const std::vector<std::string>& values) {
		for (const std::string& value : values)
			ExpectFailure({"render", "in.wav", "out.wav", option, value}, 2, option);
	}
};

TEST_F(TBadCommandLineTest, CommandsAndTheirArguments) {
	ExpectFailure({}, 2, "command");
	ExpectFailure({"play"}, 2, "play");
	ExpectFailure({"--loud"}, 2, "--loud");
	ExpectFailure({"render"}, 2, "IN");
	ExpectFailure({"render", "in.wav"}, 2, "OUT");
	ExpectFailure({"render", "in.wav", "out.wav", "more.wav"}, 2, "more.wav");
	ExpectFailure({"render", "in.wav", "--demo", "out.wav"}, 2, "in.wav");
	ExpectFailure({"render", "in.wav", "out.wav", "--quiet=loud"}, 2, "--quiet");
	ExpectFailure({"render", "in.wav", "out.wav", "--beats"}, 2, "--beats");
	ExpectFailure({"render", "--demo", ""}, 2, "--demo");
	ExpectFailure({"params", "--jsn"}, 2, "--jsn");
	ExpectFailure({"params", "58"}, 2, "58");
	ExpectFailure({"text", "58"}, 2, "V");
	ExpectFailure({"text", "58", "1.5"}, 2, "V");
	ExpectFailure({"text", "210", "0"}, 2, "ID");
	ExpectFailure({"text", "RET:Decay", "0"}, 2, "ID");
	ExpectFailure({"value", "-1", "0"}, 2, "ID");
	ExpectFailure({"value", "58", "1", "--scene", "3"}, 2, "--scene");
	ExpectFailure({"value", "58", "1", "--param", "RET:Mode=Sometimes"}, 2, "--param");
}

TEST_F(TBadCommandLineTest, ValuesOutOfTheirRange) {
	ExpectBadOption("--program-index", {"16", "-1", "1.5", "x", ""});
	ExpectBadOption("--scene", {"128", "-1", "nan"});
	ExpectBadOption(
	    "--order", {"0,1,2,3,4,5,6,7,8,9", "1,0,2,3,4,5,6,7,8,9,10", "0,1,1,3,4,5,6,7,8,9,10", "0,1,2,3,4,5,6,7,8,9,11",
	                "0,1,2,3,4,5,6,7,8,9,10,", "0,MST,2,3,4,5,6,7,8,9,10"});
	ExpectBadOption("--trigger", {"midi", "HOST", "0"});
	ExpectBadOption("--quantize", {"on", "1/8"});
	ExpectBadOption("--soft-clip", {"1", "maybe"});
	ExpectBadOption("--lock", {"true"});
	ExpectBadOption("--loop", {""});
	ExpectBadOption("--solo", {"-2", "11"});
	ExpectBadOption("--beats", {"0", "9", "-1"});
	ExpectBadOption("--divisions", {"1", "9"});
	ExpectBadOption("--seed", {"2147483648", "1e3"});
	ExpectBadOption("--random", {"1.5", "-1", "4294967296"});
	ExpectFailure({"names", "--count", "-1"}, 2, "--count");
	ExpectFailure({"names", "--seed", "x"}, 2, "--seed");
	ExpectBadOption("--format", {"mp3", "pcm32"});
	ExpectBadOption("--block", {"0", "65537", "", "64,", ",64", "64;32", "-1"});
	ExpectBadOption("--tempo", {"0", "-120", "nan", "inf", "1e999", "fast"});
	ExpectBadOption("--position", {"nan", "-inf", "1e30"});
	ExpectBadOption("--tail", {"-1", "nan", "1e300"});
}

TEST_F(TBadCommandLineTest, RowsLevelsParametersAndEvents) {
	ExpectBadOption("--steps", {"*+++", "11=*", "MST=*", "XYZ=*", "=*", "3=*..", "3=* +", "3=" + std::string(65, '*')});
	ExpectBadOption("--gater-steps", {"1.1", "-0.1", "nan", "1,,1", "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0"});
	ExpectBadOption(
	    "--param", {"58", "210=0", "-1=0", "58=1.01", "58=nan", "58=", "RET:Decline=3", "RET:Decay=much",
	                "RET:Decay=nan", "RET:Decay=inf", "RET:Decay=", "MST:Unused=1", "RET:Mode=even", "Decay=30"});
	ExpectBadOption("--automate", {"3@1", "3=1", "210@0=1", "3@-1=1", "3@0=2", "3@inf=1", "3@0=1=1"});
	ExpectBadOption("--note", {"60", "128@0", "60:0@0", "60:128@0", "60@-1", "60@2-1", "60@1-", "60@1x", "60@nan"});
	ExpectBadOption("--tempo-at", {"1", "1=0", "-1=120", "x=120"});
	ExpectBadOption("--play-at", {"-1", "now"});
	ExpectBadOption("--stop-at", {"inf"});
	ExpectFailure({"render", "in.wav", "out.wav", "--param", "two\nlines"}, 2, "--param");
}

// What people get wrong, and the words that set them right.
TEST_F(TBadCommandLineTest, MisusesThatPeopleMake) {
	WriteWav("more.wav", Noise(100));
	WriteBytes("song.mid", "no MIDI");
	ASSERT_EQ(Run({"bank", "random", "a.v2bnk", "--seed", "5"}).mStatus, 0);
	ASSERT_EQ(Run({"bank", "init", "a.v2prg"}).mStatus, 0);
	std::filesystem::create_hard_link(Path("in.wav"), Path("hard.wav"));
	std::filesystem::create_symlink("in.wav", Path("soft.wav"));
	std::filesystem::create_directory(Path("sub"));
	const auto withFiles = [](TArguments more) {
		more.insert(more.begin(), {"render", "in.wav", "out.wav"});
		return more;
	};
	const struct {
		TArguments mArguments;
		const char* mHint;
	} kMisuses[] = {
	    // Variables that are not set
	    {{"render", "", "out.wav"}, "IN: is empty"},
	    {{"render", "in.wav", ""}, "OUT: is empty"},
	    {{"render", "in.wav", "", "--to", "sub"}, "IN: is empty"},
	    {{"render", "in.wav", "--to", ""}, "--to"},
	    {withFiles({"--plot", ""}), "--plot"},
	    {withFiles({"--midi", ""}), "--midi"},
	    {withFiles({"--save", ""}), "--save"},
	    {withFiles({"--random", ""}), "--random"},
	    {withFiles({"--steps", ""}), "--steps"},
	    {{"bank", "show", ""}, "FILE: is empty"},
	    {{"bank", "convert", "a.v2bnk", ""}, "OUT: is empty"},
	    {{"levels", ""}, "FILE: is empty"},
	    {{"snapshot", ""}, "OUT.png: is empty"},
	    {{"snapshot", "a.png", "--script", ""}, "--script"},
	    // Something would be lost
	    {{"render", "in.wav", "in.wav"}, "is also IN"},
	    {{"render", "in.wav", "./sub/../in.wav"}, "is also IN"},
	    {{"render", "in.wav", "hard.wav"}, "is also IN"},
	    {{"render", "in.wav", "soft.wav"}, "is also IN"},
	    {{"render", "in.wav", "more.wav", "--to", "."}, "is also IN"},
	    {{"render", "in.wav", "./in.wav", "--to", "sub"}, "is also"},
	    {{"render", "in.wav", "-", "--to", "sub"}, "--to"},
	    {withFiles({"--plot", "out.wav"}), "is also OUT"},
	    {withFiles({"--plot", "a.v2bnk", "--bank", "a.v2bnk"}), "is also --bank"},
	    {withFiles({"--save", "in.wav"}), "--save"},
	    {{"bank", "convert", "a.v2bnk", "./a.v2bnk"}, "is also IN"},
	    {{"snapshot", "a.v2bnk", "--bank", "a.v2bnk"}, "is also --bank"},
	    // Forms of files
	    {{"render", "in.wav", "out.mp3"}, ".flac"},
	    {{"render", "in.wav", "out"}, ".flac"},
	    {{"render", "in.wav", "new.flac", "--format", "float"}, "--format"},
	    {{"render", "in.wav", "new.ogg", "--format", "pcm16"}, "--format"},
	    {withFiles({"--container", "flac"}), "--container"},
	    {withFiles({"more.wav"}), "--to"},
	    {withFiles({"--to", "sub", "--plot", "a.png"}), "--plot"},
	    {withFiles({"--tempo", "midi"}), "--midi"},
	    {{"bank", "convert", "a.v2bnk", "b.v2prg"}, "--program-index"},
	    {{"bank", "convert", "a.v2bnk", "b.v2bnk", "--program-index", "1"}, "--program-index"},
	    {{"bank", "convert", "a.v2bnk", "b.v2prg", "--program-name", "Nobody"}, "--program-name"},
	    // Typing errors
	    {{"rendr", "in.wav", "out.wav"}, "did you mean render?"},
	    {{"parms"}, "did you mean params?"},
	    {{"bank", "shwo", "a.v2bnk"}, "did you mean show?"},
	    {withFiles({"--divisons", "3"}), "did you mean --divisions?"},
	    {withFiles({"--steps"}), "--steps DEVICE=PATTERN"},
	    {{"params", "RTE"}, "RET"},
	    {withFiles({"--steps", "RTE=*"}), "RET"},
	    {withFiles({"--param", "RET:Decya=3"}), "did you mean RET:Decay?"},
	    {withFiles({"--param", "Decay=3"}), "did you mean RET:Decay?"},
	    {withFiles({"--param", "DLY:S=3"}), "DLY:Slew, DLY:Send and DLY:Spread"},
	    {withFiles({"--param", "RET:Mode=Odd"}), "Free, Even, Triplet or Dotted"},
	    {withFiles({"--program-name", "In"}), "--program-index"},
	    // Values that would not be what was typed
	    {withFiles({"--param", "MOD:Frequency=1kHz"}), "\"kHz\" left over; MOD:Frequency takes 1 to 5000 Hz"},
	    {withFiles({"--param", "MOD:Frequency=6000"}), "beyond"},
	    {withFiles({"--param", "TAP:Slow Down=3 beats"}), "\"4 beats\""},
	    {withFiles({"--param", "RET:Initial Speed=1/12"}), "1 / 8th"},
	    {withFiles({"--param", "RET:Initial Speed=3/16"}), "left over"},
	    {withFiles({"--param", "RET:Pan=60 L"}), "beyond"},
	    {withFiles({"--param", "RET:Pan=12.5 L"}), "left over"},
	    {withFiles({"--param", "GAT:Vol Steps=2.5"}), "2, 3, 4"},
	    {withFiles({"--param", "LFI:Type=Loud"}), "Signed or Unsigned"},
	    {withFiles({"--automate", "RET:Decya@1=3"}), "--automate"},
	    {withFiles({"--automate", "RET:Decay@1..3=0"}), "FROM..TO"},
	    {withFiles({"--automate", "RET:Decay@3..1=0..100"}), "ends before it begins"},
	};
	for (const auto& misuse : kMisuses)
		ExpectFailure(misuse.mArguments, 2, misuse.mHint);
}

TEST_F(TBadCommandLineTest, FilesThatCannotBeRead) {
	std::filesystem::create_directory(Path("folder"));
	ExpectFailure({"render", "none.wav", "out.wav"}, 1, "none.wav");
	ExpectFailure({"render", "folder", "out.wav"}, 1, "folder");
	ExpectFailure({"render", "text.txt", "out.wav"}, 1, "text.txt");
	ExpectFailure({"render", "/dev/null", "out.wav"}, 1, "/dev/null");
	ExpectFailure({"render", "in.wav", "out.wav", "--midi", "none.mid"}, 1, "none.mid");
	ExpectFailure({"render", "in.wav", "out.wav", "--midi", "text.txt"}, 1, "text.txt");
	ExpectFailure({"render", "in.wav", "out.wav", "--midi", "folder"}, 1, "folder");
	ExpectFailure({"levels", "none.wav"}, 1, "none.wav");
	// Both are wrong: the command line is what the user can see.
	ExpectFailure({"render", "none.wav", "out.wav", "--param", "RET:Decline=3"}, 2, "--param");
}

TEST_F(TBadCommandLineTest, SoundThatDoesNotFit) {
	WriteWav("slow.wav", Noise(100, 7999));
	WriteWav("fast.wav", Noise(100, 384001));
	std::string surround = Bytes("in.wav");
	surround[22] = 6; // channels, in the header
	WriteBytes("six.wav", surround);
	ExpectFailure({"render", "slow.wav", "out.wav"}, 1, "slow.wav");
	ExpectFailure({"render", "fast.wav", "out.wav"}, 1, "fast.wav");
	ExpectFailure({"render", "six.wav", "out.wav"}, 1, "six.wav");
	ExpectFailure({"render", "in.wav", "out.wav", "--tail", "100000"}, 1, "out.wav");
}

TEST_F(TBadCommandLineTest, FilesThatCannotBeWritten) {
	std::filesystem::create_directory(Path("folder"));
	ExpectFailure({"render", "in.wav", "folder"}, 1, "folder");
	ExpectFailure({"render", "in.wav", "folder/"}, 1, "folder/");
	ExpectFailure({"render", "in.wav", "missing/out.wav"}, 1, "missing/out.wav");
	ExpectFailure({"render", "in.wav", "text.txt/out.wav"}, 1, "text.txt/out.wav");
	ExpectFailure({"render", "in.wav", "/dev/null"}, 1, "/dev/null");
	ExpectFailure({"render", "--demo-dry", "missing/out.wav"}, 1, "missing/out.wav");
}

TEST_F(TBadCommandLineTest, FullDiskLeavesTheOldFile) {
	WriteWav("in.wav", Noise());
	const auto files = Files();
	const TRunResult result = RunInShell("ulimit -f 8; exec \"$0\" render in.wav out.wav");
	EXPECT_EQ(result.mStatus, 1);
	EXPECT_TRUE(result.HasOneErrorLine()) << result.mErrors;
	EXPECT_NE(result.mErrors.find("out.wav"), std::string::npos);
	EXPECT_EQ(Files(), files);
	EXPECT_EQ(Bytes("out.wav"), "as it was");
	EXPECT_EQ(RunInShell("exec \"$0\" params >/dev/full").mStatus, 1);
}

} // namespace
