// SPDX-License-Identifier: GPL-3.0-or-later
// Longer sessions, and what nobody means to do: held against the document that the same settings give from the command
// line.

#include "tests/tools/vortel2/editor/TEditorScriptTest.h"

#include <algorithm>

namespace {

using namespace EditorScript;

class EditingSessionTest : public TEditorScriptTest {
protected:
	/// The program that these settings make.
	std::string ProgramOf(TArguments settings) {
		settings.insert(settings.begin(), {"snapshot", "settings.png", "--save", "settings.v2prg"});
		const TRunResult result = Run(settings);
		EXPECT_EQ(result.mStatus, 0) << result.mErrors;
		return Bytes("settings.v2prg");
	}

	static std::string Renamed(std::string program, const std::string& name) {
		const std::string before = "<Name>Init</Name>";
		return program.replace(program.find(before), before.size(), "<Name>" + name + "</Name>");
	}
};

TEST_F(EditingSessionTest, AWholeSessionLeavesTheDocumentThatTheSettingsGive) {
	const std::string drawing = Draw(2, 5, 1) + Click(Cell(4, 1, 0.2), "middle") + Draw(0, 7, 2) +
	                            Click(Cell(3, 2), "right") + Draw(8, 11, 3) + Draw(12, 13, 3) +
	                            Click(Cell(12, 3, 0.2), "middle") + Draw(15, 14, 10);
	const std::string order = Click(At(131, 142 + 88)) + // soloed: row 3
	                          Drag(RowAt(1.5), RowAt(3.5)) + Drag(RowAt(5.5), RowAt(2.0));
	const std::string values = Type("824 65", "50") + Type(kBeats, "3") + Type(kDivisions, "5") + Click("721 106") +
	                           Click("688 52") + Click("690 102") + Click("750 52") + Click("750 102");
	const std::string saving = "answer first.v2prg\n" + Click(kFileButton) + Click(kSaveProgram);
	const std::string inAnotherScene = "note 61\nplay 0.1\n" + Draw(0, 3, 4);
	const std::string naming =
	    Click(kPencil) + "key LControl A\ntype Wrong\nkey LControl Z\nkey Return\n" + Type(kPencil, "Session");
	Play(drawing + order + values + saving + inAnotherScene + naming);

	const std::string first = ProgramOf({"--order",     "0,3,5,2,1,4,6,7,8,9,10",
	                                     "--steps",     "1=--*+*+----------",
	                                     "--steps",     "3=--------*+++++--",
	                                     "--steps",     "10=--------------*+",
	                                     "--param",     "MST:Mix=50",
	                                     "--beats",     "3",
	                                     "--divisions", "5",
	                                     "--loop",      "off",
	                                     "--trigger",   "latch",
	                                     "--quantize",  "8th"});
	EXPECT_EQ(Bytes("first.v2prg"), first);
	EXPECT_EQ(View("TVortelSequencerEffectListView")["value"], "4, 1, -1") << "solo and selection went with the effect";
	EXPECT_EQ(
	    mProgram,
	    Renamed(
	        ProgramOf({"--program", "first.v2prg", "--scene", "61", "--seed", "1942894", "--steps", "1=*+++"}),
	        "Session"));

	// Loaded again, all is as it was.
	Play(
	    Type(kPencil, "Other") + Draw(1, 1, 1) + "answer first.v2prg\n" + Click(kFileButton) + Click(kLoadProgram),
	    {"--program", "end.v2prg"});
	EXPECT_EQ(mProgram, first);
}

TEST_F(EditingSessionTest, RandomCommandsRepeatWithTheGeneratorsState) {
	const std::string script = Click("234 106") + Click("278 106") + Click("373 106") + Click("592 52") +
	                           Click("527 106", "right") + Click("571 106") + Click("882 106") + Click("926 106") +
	                           Click(At(152, 142 + 63)) + Click("926 553");
	Play(script, {"--random", "5"});
	const std::string once = mProgram;
	Play(script, {"--random", "5"});
	EXPECT_EQ(mProgram, once);
	EXPECT_NE(Element("Name"), "Init");
	Play("", {"--random", "5"});
	EXPECT_NE(mProgram, once);
	const TRunResult read = Run({"bank", "convert", "end.v2prg", "again.v2prg"});
	ASSERT_EQ(read.mStatus, 0);
	EXPECT_EQ(Bytes("again.v2prg"), mProgram);
}

TEST_F(EditingSessionTest, EveryGridIsDrawnFromEndToEnd) {
	std::string script;
	for (int beats = 1; beats <= 8; ++beats)
		for (int steps = 2; steps <= 8; ++steps) {
			const int columns = beats * steps;
			script += Type(kBeats, std::to_string(beats)) + Type(kDivisions, std::to_string(steps)) +
			          Draw(0, columns - 1, 2, columns) + "save " + std::to_string(columns) + ".v2prg\nmove " +
			          Cell(0, 2, 0.5, columns) + "\nclick right 2\n";
		}
	Play(script);
	EXPECT_EQ(Steps(2), "----------------");
	for (const std::size_t columns : {2u, 3u, 16u, 35u, 64u}) {
		mProgram = Bytes(std::to_string(columns) + ".v2prg");
		EXPECT_EQ(Steps(2, columns + 1), "*" + std::string(columns - 1, '+') + (columns < 64 ? "-" : ""));
	}
}

TEST_F(EditingSessionTest, NamesOfAnyLettersAreShownAndKept) {
	const std::string names[] = {
	    std::string(10000, 'x'), "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xD8\xB3\xD9\x84\xD8\xA7\xD9\x85",
	    "\xE2\x99\xAB \xEE\x80\x80 \xE3\x81\x82", "< & > \" '"};
	for (const std::string& name : names) {
		Play("clipboard " + name + "\n" + Click(kPencil) + "key LControl A\nkey LControl V\nkey Return\nwait 100\n");
		const TJson menu = View("TPopUpMenu");
		EXPECT_EQ(menu["text"], name.size() < 1000 ? TJson(name) : menu["tooltip"]);
		ASSERT_EQ(Run({"snapshot", "out.png", "--program", "end.v2prg", "--save", "again.v2prg"}).mStatus, 0);
		EXPECT_EQ(Bytes("again.v2prg"), mProgram);
	}
}

/// The preview stays; the release writes into the scene that is active by then.
TEST_F(EditingSessionTest, ANoteChangesTheSceneInTheMiddleOfAGesture) {
	const auto playInterrupted = [&](const std::string& from, const std::string& to, const std::string& button) {
		const std::string begin = "move " + from + "\npress " + button + "\ndrag " + to + " 3\n";
		const std::string end = "drag " + to + " 2\nrelease " + button + "\n";
		Play(begin + "note 1\nplay 0.05\n" + end, {"--steps", "1=--*+++----------"});
	};
	const auto stepsOfScene = [&](int scene) {
		const std::size_t start = mProgram.find("<Scene" + std::to_string(scene) + ">");
		const std::string name = "<Sequence1>";
		const std::size_t steps = mProgram.find(name, start);
		return steps == std::string::npos ? std::string() : mProgram.substr(steps + name.size(), kColumns);
	};
	playInterrupted(Cell(8, 1), Cell(10, 1), "left");
	EXPECT_EQ(stepsOfScene(1), "--------*++-----") << "drawn";
	playInterrupted(Cell(3, 1, 0.9), Cell(7, 1, 0.9), "left");
	EXPECT_EQ(stepsOfScene(1), "------*+++------") << "moved";
	playInterrupted(Cell(5, 1, 0.9), Cell(7, 1, 0.9), "left");
	EXPECT_EQ(stepsOfScene(1), "--*+++++--------") << "stretched";
	playInterrupted(Cell(9, 1), Cell(10, 1), "right");
	EXPECT_EQ(stepsOfScene(1), "") << "there was nothing to erase";
	EXPECT_EQ(stepsOfScene(0), "--*+++----------");
	// A rotary and the list go on, too.
	playInterrupted("824 43", "824 83", "left");
	EXPECT_NE(Element("MasterMix"), "1.0");
	playInterrupted(RowAt(1.5), RowAt(3.5), "left");
	EXPECT_EQ(Element("DeviceOrder"), "0 3 2 1 4 5 6 7 8 9 10");
}

} // namespace
