// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/text/TTextFieldModel.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// Every unit 10 wide.
int32_t WidthOf(const TString& text) {
	return 10 * text.Length();
}

constexpr int kRoom = 45; // four and a half

class TTextFieldModelTest : public testing::Test {
protected:
	void Begin(const TString& text, int32_t caret) {
		mModel.Begin(text);
		mModel.SetSelection(caret, caret);
	}

	/// The text with "|" at the caret and "^" at an anchor elsewhere.
	std::string State() const {
		TString text = mModel.Text();
		const int32_t caret = mModel.Caret();
		const int32_t anchor = mModel.Anchor();
		text.Insert(std::max(caret, anchor), caret >= anchor ? "|" : "^");
		if (caret != anchor)
			text.Insert(std::min(caret, anchor), caret < anchor ? "|" : "^");
		std::string bytes;
		text.ToBytes(bytes, kUtf8Encoding);
		return bytes;
	}

	/// As a key does it: the state before is recorded, the one behind kept.
	void Type(const char* text) {
		mModel.RecordState();
		mModel.Insert(text, true);
		mModel.CollapseSelection();
		mModel.StoreCurrentState();
	}

	TTextFieldModel mModel;
};

TEST_F(TTextFieldModelTest, MovesByCharactersAndWordsAndCollapsesSelections) {
	Begin("one two", 3);
	mModel.MoveLeft(false, false);
	mModel.CollapseSelection();
	EXPECT_EQ(State(), "on|e two");
	mModel.MoveRight(true, true);
	EXPECT_EQ(State(), "on^e |two");
	mModel.MoveLeft(false, false);
	EXPECT_EQ(State(), "on|e two");
	mModel.MoveRight(true, false);
	mModel.CollapseSelection();
	mModel.MoveRight(true, false);
	EXPECT_EQ(State(), "one ^two|");
	mModel.MoveRight(false, false);
	EXPECT_EQ(State(), "one two|");
	mModel.MoveRight(false, false);
	EXPECT_EQ(State(), "one two|");
}

TEST_F(TTextFieldModelTest, NeverCutsACharacterOfTwoUnits) {
	const TString face(U"\U0001F600");
	Begin("a" + face + face, 5);
	mModel.MoveLeft(false, false);
	EXPECT_EQ(mModel.Caret(), 3);
	mModel.SetSelection(2, 4);
	EXPECT_EQ(mModel.Selection(), (TTextFieldModel::TRange{1, 3}));
	mModel.CollapseSelection();
	mModel.DeleteBack(false);
	EXPECT_EQ(mModel.Text(), "a" + face);
	mModel.MoveRight(true, false);
	EXPECT_EQ(mModel.Caret(), 3);
	mModel.DeleteBack(true);
	EXPECT_EQ(State(), "a|");
	Begin(face, 0);
	mModel.DeleteForward(false);
	EXPECT_EQ(State(), "|");
}

TEST_F(TTextFieldModelTest, DeletesWordsAndSelections) {
	Begin("one two three", 8);
	mModel.DeleteBack(true);
	EXPECT_EQ(State(), "one |three");
	mModel.DeleteForward(true);
	EXPECT_EQ(State(), "one |");
	mModel.SetSelection(0, 3);
	mModel.DeleteForward(false);
	EXPECT_EQ(State(), "| ");
	mModel.DeleteBack(false);
	EXPECT_EQ(State(), "| ");
}

TEST_F(TTextFieldModelTest, SelectsTheWordOrTheSeparatorsAroundAClick) {
	Begin("ab  cd", 0);
	mModel.SelectWordAt(5, false);
	EXPECT_EQ(State(), "ab  ^cd|");
	mModel.SelectWordAt(3, true);
	EXPECT_EQ(State(), "ab|  ^cd");
	mModel.SelectWordAt(0, false);
	EXPECT_EQ(State(), "|ab  cd");
}

TEST_F(TTextFieldModelTest, PastesLinesAsOneAndNumbersAsTheWholeText) {
	Begin("<>", 1);
	mModel.Paste("  a\tb \r\n\n c\x01 ");
	mModel.CollapseSelection();
	EXPECT_EQ(State(), "<a  b c|>");
	mModel.PasteNumber("12 apples");
	EXPECT_EQ(State(), "12|");
	mModel.PasteNumber("0.1x");
	EXPECT_EQ(State(), "0.1|");
	mModel.PasteNumber("99999999999999");
	EXPECT_EQ(State(), "0|");
}

TEST_F(TTextFieldModelTest, GoesBackToTheValueAndForthToWhereItWas) {
	mModel.Begin("abc");
	mModel.SelectAll(false);
	mModel.CollapseSelection();
	Type("d");
	Type("e");
	Type("f");
	EXPECT_TRUE(mModel.Undo("abc", false));
	EXPECT_EQ(State(), "abcde|");
	EXPECT_TRUE(mModel.Undo("abc", false));
	EXPECT_EQ(State(), "abcd|");
	EXPECT_TRUE(mModel.Undo("abc", false));
	EXPECT_EQ(State(), "abc|");
	EXPECT_TRUE(mModel.Undo("abc", false));
	EXPECT_EQ(State(), "^abc|");
	while (mModel.Redo()) {
	}
	EXPECT_EQ(State(), "abcdef|");
	EXPECT_FALSE(mModel.Redo());

	mModel.Undo("abc", false);
	mModel.Undo("abc", false);
	Type("x");
	EXPECT_FALSE(mModel.Redo());
	EXPECT_EQ(State(), "abcdx|");
}

TEST_F(TTextFieldModelTest, FindsTheCharacterUnderThePointer) {
	Begin("abcdefgh", 0);
	for (const auto& [x, index] : {std::pair{-50, 0}, {5, 0}, {6, 1}, {15, 1}, {16, 2}, {200, 4}})
		EXPECT_EQ(mModel.CharacterAt(&WidthOf, kRoom, x), index) << x;
	mModel.ScrollTo(3);
	EXPECT_EQ(mModel.CharacterAt(&WidthOf, kRoom, 6), 4);
	EXPECT_EQ(mModel.VisibleEnd(&WidthOf, kRoom), 7);
}

TEST_F(TTextFieldModelTest, ScrollsNoFurtherThanTheCaretNeeds) {
	Begin("abcdefgh", 8);
	mModel.ScrollToCaret(&WidthOf, kRoom);
	EXPECT_EQ(mModel.FirstVisible(), 4);
	mModel.SetSelection(5, 5);
	mModel.ScrollToCaret(&WidthOf, kRoom);
	EXPECT_EQ(mModel.FirstVisible(), 4);
	mModel.SetSelection(2, 2);
	mModel.ScrollToCaret(&WidthOf, kRoom);
	EXPECT_EQ(mModel.FirstVisible(), 2);
	// Room that has come free at the end is used.
	mModel.SetSelection(6, 8);
	mModel.RemoveSelection();
	mModel.SetSelection(4, 6);
	mModel.RemoveSelection();
	mModel.ScrollToCaret(&WidthOf, kRoom);
	EXPECT_EQ(mModel.FirstVisible(), 0);

	Begin("abcdefgh", 0);
	mModel.ScrollTo(0);
	int steps = 0;
	while (mModel.ScrollByOne(&WidthOf, kRoom, true))
		++steps;
	EXPECT_EQ(steps, 4);
	EXPECT_TRUE(mModel.ScrollByOne(&WidthOf, kRoom, false));
}

TEST_F(TTextFieldModelTest, TakesATextOfAMegabyte) {
	Begin("x", 1);
	mModel.RecordState();
	mModel.Paste(TString(std::string(1 << 20, 'a').c_str()));
	mModel.CollapseSelection();
	mModel.ScrollToCaret(&WidthOf, kRoom);
	EXPECT_EQ(mModel.Caret(), (1 << 20) + 1);
	EXPECT_EQ(mModel.FirstVisible(), (1 << 20) - 3);
	EXPECT_EQ(mModel.VisibleEnd(&WidthOf, kRoom), mModel.Caret());
	EXPECT_TRUE(mModel.Undo("x", false));
	EXPECT_EQ(State(), "x|");
}

TEST_F(TTextFieldModelTest, ShowsAMaskForEachUnitWhenMasked) {
	Begin("abc", 0);
	mModel.SetMasked(true);
	EXPECT_EQ(mModel.Shown(1, 3), TString(u"\u26AB\u26AB"));
}

} // namespace
