// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/tools/vortel2/RunVortel2.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace {

class TParameterCommandsTest : public TVortel2Test {
protected:
	std::string Output(const TArguments& arguments, int status = 0) {
		const TRunResult result = Run(arguments);
		EXPECT_EQ(result.mStatus, status) << result.mErrors;
		return result.mOutput;
	}
};

TEST_F(TParameterCommandsTest, JsonHasEveryParameter) {
	const std::string output = Output({"params", "--json"});
	EXPECT_NE(
	    output.find(
	        R"({"id": 58, "name": "RET:Initial Speed", "unit": "", "default": 0.666666687, "text": "1 / 64th"})"),
	    std::string::npos);
	const auto array = nlohmann::json::parse(output);
	ASSERT_EQ(array.size(), 210u);
	for (std::size_t id = 0; id < 210; ++id)
		EXPECT_EQ(array[id]["id"], id);
	EXPECT_EQ(array[0]["name"], "RND:Weight");
	EXPECT_EQ(array[1]["name"], "MST:Mix");
	EXPECT_EQ(array[23]["unit"], "\u00b0");
	EXPECT_EQ(array[209]["name"], "SHF:Unused");
}

TEST_F(TParameterCommandsTest, TableHasALineForEachParameter) {
	const std::string table = Output({"params"});
	EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 210);
	EXPECT_NE(table.find("\n58   RET:Initial Speed"), std::string::npos) << table;
}

TEST_F(TParameterCommandsTest, DevicesWithWhatTheirParametersCanBe) {
	const std::string table = Output({"params", "ret"});
	EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 12);
	EXPECT_NE(table.find("Free, Even, Triplet or Dotted"), std::string::npos) << table;
	EXPECT_NE(table.find("1 beat to 1 / 256th"), std::string::npos) << table;
	EXPECT_EQ(Output({"params", "Retrigger"}), table);
	const std::string all = Output({"params", "3", "--all"});
	EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 20);
	const auto array = nlohmann::json::parse(Output({"params", "MST", "--json"}));
	ASSERT_EQ(array.size(), 4u);
	EXPECT_EQ(array[2]["first"], "50 L");
}

TEST_F(TParameterCommandsTest, TextsOfValuesAndValuesOfTexts) {
	EXPECT_EQ(Output({"text", "58", "0", "0.666666687", "1"}), "1 beat\n1 / 64th\n1 / 256th\n");
	EXPECT_EQ(Output({"text", "12", "0", "0.5"}), "50 L\nCenter\n");
	EXPECT_EQ(Output({"value", "58", "1 / 64th", "1/16", "1 beat"}), "0.666666687\n0.333333343\n0\n");
	EXPECT_EQ(Output({"value", "20", "-5000", "0"}), "0\n0.5\n");
}

TEST_F(TParameterCommandsTest, TimeModeChangesTheReading) {
	EXPECT_EQ(Output({"text", "58", "0.4"}), "1 / 16th\n");
	EXPECT_EQ(Output({"text", "58", "0.4", "--param", "RET:Mode=Free"}), "1 / 21.11\n");
	EXPECT_EQ(Output({"text", "--param", "57=0", "58", "0.4"}), "1 / 21.11\n");
	// Settings by id come before settings by name, wherever they stand.
	EXPECT_EQ(Output({"text", "--param", "RET:Mode=Even", "58", "0.4", "--param", "57=0"}), "1 / 16th\n");
}

TEST_F(TParameterCommandsTest, TextsThatDoNotParseAreErrors) {
	const TRunResult result = Run({"value", "61", "30", "much", "nan", "-inf", "100"});
	EXPECT_EQ(result.mStatus, 2) << "an option-like word is no text";
	const TRunResult behind = Run({"value", "61", "--", "30", "much", "nan", "-inf", "100"});
	EXPECT_EQ(behind.mOutput, "0.300000012\nerror\nerror\nerror\n1\n");
	EXPECT_EQ(behind.mStatus, 1);
	EXPECT_TRUE(behind.HasOneErrorLine());
}

TEST_F(TParameterCommandsTest, HelpAndVersionGoToStandardOutput) {
	EXPECT_EQ(Output({"--version"}), "Vortel2 2.1.5\n");
	EXPECT_NE(Output({"--help"}).find("render"), std::string::npos);
	const std::string help = Output({"render", "--help"});
	for (const char* option :
	     {"--demo",     "--demo-dry", "--format",       "--quiet",       "--program-index", "--scene",   "--order",
	      "--trigger",  "--quantize", "--soft-clip",    "--lock",        "--solo",          "--beats",   "--divisions",
	      "--loop",     "--seed",     "--steps",        "--gater-steps", "--param",         "--block",   "--tempo",
	      "--position", "--stopped",  "--no-transport", "--tempo-at",    "--play-at",       "--stop-at", "--automate",
	      "--note",     "--midi",     "--tail"})
		EXPECT_NE(help.find(option), std::string::npos) << option;
}

} // namespace
