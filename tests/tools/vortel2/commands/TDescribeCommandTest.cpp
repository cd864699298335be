// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/tools/vortel2/RunVortel2.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <set>

namespace {

using testing::HasSubstr;
using testing::Not;

class TDescribeCommandTest : public TVortel2Test {
protected:
	std::string Describe(const std::string& form) const {
		const TRunResult result = Run({"describe", form});
		EXPECT_EQ(result.mStatus, 0) << result.mErrors;
		return result.mOutput;
	}

	/// What bash proposes for the last of the words.
	std::string Completed(const std::string& words) {
		WriteBytes("completions.bash", Describe("bash"));
		WriteBytes(
		    "complete.sh",
		    "compopt() { :; }\nsource ./completions.bash\nCOMP_WORDS=(" + words +
		        ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_vortel2\nprintf '<%s>' \"${COMPREPLY[@]}\" >completed\n");
		const std::string command = "cd '" + Path("") + "' && bash complete.sh";
		EXPECT_EQ(std::system(command.c_str()), 0);
		return Bytes("completed");
	}
};

TEST_F(TDescribeCommandTest, EveryOptionOfTheHelpIsDescribed) {
	const std::string help = Run({"render", "--help"}).mOutput;
	const std::string page = Describe("man");
	const std::string zsh = Describe("zsh");
	const std::string fish = Describe("fish");
	std::set<std::string> options;
	for (std::size_t at = help.find("--"), end = 0; at != help.npos; at = help.find("--", end)) {
		end = help.find_first_not_of("abcdefghijklmnopqrstuvwxyz-", at);
		options.insert(help.substr(at, end - at));
	}
	ASSERT_GT(options.size(), 30u);
	for (const std::string& option : options) {
		std::string inRoff;
		for (const char c : option)
			inRoff += c == '-' ? "\\-" : std::string(1, c);
		EXPECT_THAT(page, HasSubstr(inRoff));
		EXPECT_THAT(zsh, HasSubstr(option + "["));
		EXPECT_THAT(fish, HasSubstr(" -l " + option.substr(2) + " "));
	}
	EXPECT_THAT(Run({"--help"}).mOutput, Not(HasSubstr("describe"))) << "it is nothing for users";
}

TEST_F(TDescribeCommandTest, BashCompletesCommandsOptionsChoicesAndFiles) {
	WriteBytes("a loop.wav", "");
	EXPECT_EQ(Completed("vortel2 re"), "<render>");
	EXPECT_EQ(Completed("vortel2 bank con"), "<convert>");
	EXPECT_EQ(Completed("vortel2 bank random --se"), "<--seed>");
	EXPECT_EQ(Completed("vortel2 render --soft"), "<--soft-clip>");
	EXPECT_EQ(Completed("vortel2 render in.wav --trigger l"), "<latch>");
	EXPECT_EQ(Completed("vortel2 render --format = pcm1"), "<pcm16>");
	EXPECT_EQ(Completed("vortel2 render --beats ''"), "<>");
	EXPECT_EQ(Completed("vortel2 render a"), "<a loop.wav>");
	EXPECT_EQ(Completed("vortel2 render --plot a"), "<a loop.wav>");
}

/// A help text's own quotes and brackets must not end those of the shell.
TEST_F(TDescribeCommandTest, TheShellsReadWhatIsMadeForThem) {
	for (const std::string shell : {"bash", "zsh", "fish"}) {
		WriteBytes("completions", Describe(shell));
		const std::string command =
		    "! command -v " + shell + " >/dev/null || " + shell + " -n '" + Path("completions") + "'";
		EXPECT_EQ(std::system(command.c_str()), 0) << shell;
	}
}

} // namespace
