// SPDX-License-Identifier: GPL-3.0-or-later
// The editor from the outside: scripts of what a person does, held against the saved document and the listed views.

#include "tests/tools/vortel2/editor/TEditorScriptTest.h"

namespace {

using namespace EditorScript;

using SnapshotTest = TEditorScriptTest;

TEST_F(SnapshotTest, StandsAsItWasDesigned) {
	Play("");
	EXPECT_EQ(mViews["windows"][0]["rect"], TJson({0, 0, 962, 595}));
	EXPECT_EQ(View("TVortelLogoPanelView")["rect"], TJson({3, 3, 170, 80}));
	EXPECT_EQ(View("TVortelProgramPanelView")["rect"], TJson({176, 3, 610, 80}));
	EXPECT_EQ(View("TVortelSequencerView")["rect"], TJson({13, 96, 936, 333}));
	EXPECT_EQ(View("TVortelTabbedView")["rect"], TJson({3, 442, 956, 150}));
	EXPECT_EQ(mViews["scale"], TJson({4, 4}));

	// Twice the size has twice the pixels and the same logical places.
	Play("", {"--scale", "2"});
	EXPECT_EQ(mViews["scale"], TJson({8, 4}));
	EXPECT_EQ(mViews["windows"][0]["rect"], TJson({0, 0, 962, 595}));
	const std::string png = Bytes("out.png");
	EXPECT_EQ(static_cast<unsigned char>(png[18]) * 256 + static_cast<unsigned char>(png[19]), 2 * 962);
}

TEST_F(SnapshotTest, BlocksAreDrawnMovedStretchedSplitAndErased) {
	Play(Draw(2, 5, 1));
	EXPECT_EQ(Steps(1), "--*+++----------");

	// From its middle into another row; from its right end to a longer one.
	Play(Draw(2, 5, 1) + "move " + Cell(3, 1, 0.9) + "\npress left\ndrag " + Cell(7, 3, 0.9) + "\nrelease left\n");
	EXPECT_EQ(Steps(1), "----------------");
	EXPECT_EQ(Steps(3), "------*+++------");
	Play(Draw(2, 3, 1) + "move " + Cell(3, 1, 0.9) + "\npress left\ndrag " + Cell(6, 1) + "\nrelease left\n");
	EXPECT_EQ(Steps(1), "--*++++---------");

	// Split at the nearest boundary, and joined there again.
	const std::string split = "move " + Cell(4, 1, 0.2) + "\nclick middle\n";
	Play(Draw(2, 5, 1) + split);
	EXPECT_EQ(Steps(1), "--*+*+----------");
	Play(Draw(2, 5, 1) + split + split);
	EXPECT_EQ(Steps(1), "--*+++----------");

	// What a new block covers is gone; what is left behind it is a block of its own.
	Play(
	    Draw(2, 7, 1) + Draw(10, 11, 2) + "move " + Cell(10.5, 2) + "\npress left\ndrag " + Cell(4.5, 1) +
	    "\nrelease left\n");
	EXPECT_EQ(Steps(1), "--*+*+*+--------");

	Play(
	    Draw(2, 3, 1) + Draw(6, 7, 1) + "move " + Cell(2, 1) + "\npress right\ndrag " + Cell(6, 1) +
	    " 16\nrelease right\n");
	EXPECT_EQ(Steps(1), "----------------");
	Play(Draw(2, 3, 1) + Draw(6, 7, 1) + "move " + Cell(0, 1) + "\nclick right 2\n");
	EXPECT_EQ(Steps(1), "----------------") << "a double click empties the row";
}

TEST_F(SnapshotTest, EffectsAreReorderedByDraggingAndTheSelectionFollows) {
	const auto drag = [](double from, double to) {
		return "move " + RowAt(from) + "\npress left\ndrag " + RowAt(to) + "\nrelease left\n";
	};
	Play(drag(1.5, 3.5));
	EXPECT_EQ(Element("DeviceOrder"), "0 3 2 1 4 5 6 7 8 9 10") << "onto the middle: swapped";
	EXPECT_EQ(View("TVortelSequencerEffectListView")["value"], "3, -1, -1");
	EXPECT_EQ(View("TVortelTabbedView")["value"], "3");
	Play(drag(1.5, 4.0));
	EXPECT_EQ(Element("DeviceOrder"), "0 2 3 1 4 5 6 7 8 9 10") << "between two: put there";
	Play(drag(4.5, 2.0));
	EXPECT_EQ(Element("DeviceOrder"), "0 1 4 2 3 5 6 7 8 9 10");
	Play(drag(0.5, 4.5));
	EXPECT_EQ(Element("DeviceOrder"), "0 1 2 3 4 5 6 7 8 9 10") << "the randomizer stays in front";
}

TEST_F(SnapshotTest, SoloSelectsAndIsTakenBack) {
	const std::string solo = Click(At(kMatrixLeft - 35, kMatrixTop + static_cast<int>(kRowHeight * 5.5)));
	Play(solo);
	EXPECT_EQ(View("TVortelSequencerEffectListView")["value"], "5, 5, -1");
	Play(solo + solo);
	EXPECT_EQ(View("TVortelSequencerEffectListView")["value"], "5, -1, -1");
}

TEST_F(SnapshotTest, ProgramsAreRenamedByTyping) {
	Play(Click("569 52") + "key LControl A\ntype Grüße\nkey Return\n");
	EXPECT_EQ(Element("Name"), "Grüße");
	Play(Click("569 52") + "key LControl A\ntype Gone\nkey Escape\n");
	EXPECT_EQ(Element("Name"), "Init");
}

TEST_F(SnapshotTest, MenusRunCommandsAndCloseByAPressBeside) {
	Play(Click("160 106"));
	ASSERT_EQ(mViews["windows"].size(), 2u);
	EXPECT_EQ(mViews["windows"][1]["kind"], 5);
	EXPECT_EQ(View("TMenuEntryView", 1)["text"], "Init scene.");
	Play(Draw(2, 5, 1) + Click("160 106") + "move 180 130\nclick left\n");
	EXPECT_EQ(mViews["windows"].size(), 1u);
	EXPECT_EQ(Steps(1), "----------------");
	Play(Click("160 106") + Click(Cell(8, 4)));
	EXPECT_EQ(mViews["windows"].size(), 1u);
	EXPECT_EQ(Steps(4), "----------------") << "the press only closes the menu";
}

TEST_F(SnapshotTest, TheAboutBoxChangesTheScaleForGood) {
	const TArguments keeping{"--preferences", "kept"};
	Play(Click("80 40") + "wait 50\n" + Click("530 375") + "wait 50\nkey Escape\n" + Draw(2, 5, 1), keeping);
	EXPECT_EQ(mViews["scale"], TJson({8, 4}));
	EXPECT_EQ(mViews["windows"][0]["rect"], TJson({0, 0, 962, 595}));
	EXPECT_EQ(Steps(1), "--*+++----------");
	EXPECT_NE(Bytes("kept/Config.xml").find("<UIScaleFactor>200%</UIScaleFactor>"), std::string::npos);
	Play(Click("80 40") + "views open.json\n");
	std::string labels;
	const TJson open = TJson::parse(Bytes("open.json"));
	for (const TJson& view : open["windows"].back()["views"])
		if (view["class"] == "TTextView")
			labels += view["text"].get<std::string>() + ",";
	EXPECT_NE(labels.find("Tool tips,Mouse warping,Randomize on load,"), std::string::npos) << labels;
}

TEST_F(SnapshotTest, FilesAreAskedForAndWritten) {
	Play("answer mine\n" + Click("207 52") + Click("250 98"));
	ASSERT_EQ(mViews["dialogs"].size(), 1u);
	EXPECT_EQ(mViews["dialogs"][0]["caption"], "Save a Vortel 2 program");
	EXPECT_EQ(mViews["dialogs"][0]["filter"], "*.v2prg");
	EXPECT_EQ(mViews["dialogs"][0]["name"], "Init");
	EXPECT_NE(Bytes("mine.v2prg").find("<VortelProgram"), std::string::npos);
	Play("cancel\n" + Click("207 52") + Click("250 80"));
	EXPECT_EQ(mViews["dialogs"][0]["save"], false);
}

TEST_F(SnapshotTest, TheHostPlaysAndIsFollowed) {
	Play("play 1.1\n");
	EXPECT_EQ(View("TVortelSequencerPlayerPositionView")["value"], "4");
	Play("note 61\nplay 0.1\n");
	EXPECT_EQ(Element("ActiveSceneIndex"), "61") << "a note picks the scene";
	Play("host 1 0.25\nsave then.v2prg\n");
	EXPECT_EQ(View("TRotaryEncoder")["value"], "0.25");
	Play("play 1\nplay 0.001\nviews first.json\nwait 300\n");
	EXPECT_EQ(mViews["dirty"], 0) << "nothing is drawn while nothing changes";
}

TEST_F(SnapshotTest, TheHostClosesTheEditorAtAnyTime) {
	Play("close\n");
	EXPECT_EQ(mViews["windows"].size(), 0u);
	Play("move " + Cell(2, 2) + "\npress left\ndrag " + Cell(5, 2) + "\nclose\nopen\n" + Draw(1, 1, 1));
	EXPECT_EQ(Steps(2), "----------------") << "a gesture that was cut off writes nothing";
	EXPECT_EQ(Steps(1), "-*--------------");
	Play(Click("80 40") + "close\nopen\n");
	EXPECT_EQ(mViews["windows"].size(), 1u) << "an open dialog goes with the editor";
}

TEST_F(SnapshotTest, WrongScriptsAreRefusedBeforeAnythingHappens) {
	const std::pair<const char*, const char*> wrong[] = {
	    {"jump 1 2", "script.txt:1"},       {"move 1", "script.txt:1"},     {"\nclick left zero", "script.txt:2"},
	    {"key Nothing", "script.txt:1"},    {"host 210 0", "script.txt:1"}, {"press up", "script.txt:1"},
	    {"clipboard a\\q", "script.txt:1"}, {"close now", "script.txt:1"}};
	for (const auto& [script, place] : wrong) {
		WriteBytes("script.txt", script);
		const TRunResult result = Run({"snapshot", "out.png", "--script", "script.txt"});
		EXPECT_EQ(result.mStatus, 2) << script;
		EXPECT_TRUE(result.HasOneErrorLine());
		EXPECT_NE(result.mErrors.find(place), std::string::npos) << result.mErrors;
		EXPECT_FALSE(std::filesystem::exists(Path("out.png")));
	}
}

} // namespace
