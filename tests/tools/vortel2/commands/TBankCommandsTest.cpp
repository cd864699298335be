// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/tools/vortel2/RunVortel2.h"

#include <gtest/gtest.h>

namespace {

class TBankCommandsTest : public TVortel2Test {
protected:
	std::string Output(const TArguments& arguments) const {
		const TRunResult result = Run(arguments);
		EXPECT_EQ(result.mStatus, 0) << result.mErrors;
		return result.mOutput;
	}

	std::string Written(const TArguments& arguments) const {
		EXPECT_EQ(Output(arguments), "");
		return Bytes(arguments[arguments[1] == "init" || arguments[1] == "random" ? 2 : 3]);
	}

	void ExpectFailure(const TArguments& arguments, int status, const std::string& culprit) const {
		const auto files = Files();
		const TRunResult result = Run(arguments);
		EXPECT_EQ(result.mStatus, status) << testing::PrintToString(arguments);
		EXPECT_TRUE(result.HasOneErrorLine()) << result.mErrors;
		EXPECT_NE(result.mErrors.find(culprit), std::string::npos) << result.mErrors;
		EXPECT_EQ(Files(), files);
	}
};

} // namespace

TEST_F(TBankCommandsTest, FreshFiles) {
	const std::string bank = Written({"bank", "init", "fresh.v2bnk"});
	EXPECT_EQ(Output({"bank", "show", "fresh.v2bnk"}), "bank, version 3\nprograms with content: 0, active: 0\n");
	EXPECT_EQ(Written({"bank", "convert", "fresh.v2bnk", "again.v2bnk"}), bank);
	Written({"bank", "init", "fresh.v2prg"});
	EXPECT_EQ(Output({"bank", "show", "fresh.v2prg"}), "program, version 3\nInit: no scenes with content\n");
}

TEST_F(TBankCommandsTest, RandomFilesRepeatFromTheirSeedAndSurviveTheRoundTrip) {
	const std::string bank = Written({"bank", "random", "a.v2bnk", "--seed", "5"});
	EXPECT_EQ(Written({"bank", "random", "b.v2bnk", "--seed", "5"}), bank);
	EXPECT_NE(Written({"bank", "random", "b.v2bnk", "--seed", "6"}), bank);
	EXPECT_EQ(Written({"bank", "convert", "a.v2bnk", "b.v2bnk"}), bank);
	EXPECT_EQ(
	    Output({"bank", "show", "a.v2bnk"}).substr(0, 52), "bank, version 3\nprograms with content: 16, active: 0");
	const std::string program = Written({"bank", "random", "a.v2prg", "--seed", "5"});
	EXPECT_EQ(Written({"bank", "convert", "a.v2prg", "b.v2prg"}), program);
	// A host is given the empty rows too.
	EXPECT_NE(Written({"bank", "chunk", "a.v2prg", "a.chunk"}).find("<Sequence"), std::string::npos);
	EXPECT_GT(Bytes("a.chunk").size(), program.size());
	EXPECT_GT(Written({"bank", "chunk", "a.v2bnk", "a.chunk"}).size(), bank.size());
}

TEST_F(TBankCommandsTest, RendersPlayFilesWithTheFurtherOptionsOnTop) {
	WriteWav("in.wav", Noise());
	Written({"bank", "random", "a.v2bnk", "--seed", "5"});
	Written({"bank", "random", "a.v2prg", "--seed", "5"}); // the same draws as program 0 of the bank
	const std::string third = Render("a.wav", {"--program-index", "3", "--bank", "a.v2bnk"});
	EXPECT_NE(Render("b.wav", {"--bank", "a.v2bnk"}), third);
	const std::string program = Render("a.wav", {"--program", "a.v2prg", "--bank", "a.v2bnk", "--program-index", "3"});
	EXPECT_EQ(Render("b.wav", {"--program", "a.v2prg"}), program);
	EXPECT_NE(program, third);
	EXPECT_NE(Render("b.wav", {"--program", "a.v2prg", "--param", "MST:Mix=0"}), program);
	EXPECT_EQ(Render("a.wav", {"--program", "a.v2prg", "--scene", "1"}), Render("b.wav", {}));
}

TEST_F(TBankCommandsTest, ProgramsGoOutOfBanksAndIn) {
	Written({"bank", "random", "a.v2bnk", "--seed", "5"});
	const std::string shown = Output({"bank", "show", "a.v2bnk"});
	const std::size_t line = shown.find("\n    4 ") + 18;
	const std::string name = shown.substr(line, shown.find(": ", line) - line);
	const std::string program = Written({"bank", "convert", "a.v2bnk", "a.v2prg", "--program-index", "4"});
	EXPECT_EQ(Written({"bank", "convert", "a.v2bnk", "b.v2prg", "--program-name", name}), program);
	EXPECT_EQ(Output({"bank", "show", "a.v2prg"}).substr(19, name.size()), name);

	const std::string bank = Bytes("a.v2bnk");
	EXPECT_EQ(Written({"bank", "convert", "a.v2prg", "a.v2bnk", "--program-index", "4"}), bank);
	EXPECT_NE(Written({"bank", "convert", "a.v2prg", "a.v2bnk", "--program-index", "5"}), bank);
	Written({"bank", "convert", "a.v2prg", "new.v2bnk", "--program-index", "7"});
	EXPECT_NE(Output({"bank", "show", "new.v2bnk"}).find("content: 1, active: 0\n"), std::string::npos);
	WriteWav("in.wav", Noise());
	EXPECT_EQ(
	    Render("a.wav", {"--bank", "new.v2bnk", "--program-name", name}), Render("b.wav", {"--program", "a.v2prg"}));
}

TEST_F(TBankCommandsTest, BankFromAText) {
	WriteBytes(
	    "a.txt",
	    "# remark\nprogram One \"two\"\n  --soft-clip on\nscene 3 what it does\n\n  --steps RET=*+\n"
	    "    --param \"RET:Initial Speed=1 / 8th\"\nprogram Two\nscene 0\n  --beats 3\nscene 127\n  --divisions 3\n");
	Written({"bank", "build", "a.txt", "a.v2bnk"});
	EXPECT_EQ(
	    Output({"bank", "show", "a.v2bnk"}), "bank, version 3\nprograms with content: 2, active: 0\n"
	                                         "index  in hosts  name\n"
	                                         "    0         1  One \"two\": scene 3\n"
	                                         "    1         2  Two: 2 scenes 0, 127\n");
	WriteWav("in.wav", Noise());
	EXPECT_EQ(
	    Render("a.wav", {"--bank", "a.v2bnk", "--scene", "3"}),
	    Render("b.wav", {"--steps", "RET=*+", "--param", "RET:Initial Speed=1 / 8th", "--soft-clip", "on"}));
	for (const char* text :
	     {"scene 0 x\n", "  --beats 3\n", "program A\nscene 128 x\n", "program A\nscene 0 x\n  --beats 9\n",
	      "program A\nscene 0 x\n  --bank a.v2bnk\n", "program A\nscene 0 x\n  --param \"RET:Mode=Odd\"\n",
	      "program A\n  --param \"RET:Mode\n", "programme\n"}) {
		WriteBytes("bad.txt", text);
		ExpectFailure({"bank", "build", "bad.txt", "b.v2bnk"}, 1, "bad.txt:");
	}
}

TEST_F(TBankCommandsTest, FilesAndNamesThatAreWrong) {
	Written({"bank", "random", "a.v2bnk"});
	Written({"bank", "init", "a.v2prg"});
	WriteWav("in.wav", Noise(100));
	WriteBytes("text.v2bnk", "no XML\n");
	std::filesystem::copy(Path("a.v2prg"), Path("program.v2bnk"));
	std::filesystem::create_directory(Path("folder.v2bnk"));
	ExpectFailure({"bank"}, 2, "subcommand");
	ExpectFailure({"bank", "show"}, 2, "FILE");
	ExpectFailure({"bank", "show", "in.wav"}, 2, "in.wav");
	ExpectFailure({"bank", "show", "none.v2bnk"}, 1, "none.v2bnk");
	ExpectFailure({"bank", "show", "folder.v2bnk"}, 1, "folder.v2bnk");
	ExpectFailure({"bank", "show", "text.v2bnk"}, 1, "text.v2bnk");
	ExpectFailure({"bank", "chunk", "program.v2bnk", "b.chunk"}, 1, "program.v2bnk");
	ExpectFailure({"bank", "convert", "a.v2bnk", "b.v2prg"}, 2, "b.v2prg");
	ExpectFailure({"bank", "convert", "text.v2bnk", "b.v2bnk"}, 1, "text.v2bnk");
	ExpectFailure({"bank", "init", "b.xml"}, 2, "b.xml");
	ExpectFailure({"bank", "init", "folder.v2bnk"}, 1, "folder.v2bnk");
	ExpectFailure({"bank", "init", "none/b.v2bnk"}, 1, "none/b.v2bnk");
	ExpectFailure({"bank", "random", "b.v2bnk", "--seed", "-1"}, 2, "--seed");
	ExpectFailure({"bank", "build", "text.v2bnk", "b.v2prg"}, 2, "b.v2prg");
	ExpectFailure({"render", "in.wav", "b.wav", "--bank", ""}, 2, "--bank");
	ExpectFailure({"render", "in.wav", "b.wav", "--bank", "none.v2bnk"}, 1, "none.v2bnk");
	ExpectFailure({"render", "in.wav", "b.wav", "--program", "a.v2bnk"}, 1, "a.v2bnk");
}
