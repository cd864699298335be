// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/undo/TDocumentRoot.h"

#include "tests/framework/document/undo/TUndoDocument.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <random>

namespace {

class TDocumentRootTest : public TUndoFixture {};

/// Changes a tree in every way there is, again and again.
class TGardener {
public:
	explicit TGardener(uint32_t seed) : mRandom(seed) {}

	int Below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(mRandom); }

	void ChangeSomething(TUndoLeaf& top) {
		TUndoLeaf* leaf = &top;
		for (int depth = 0; depth < 2 && leaf->mpLeaves->Size() > 0 && Below(4) > 0; ++depth)
			leaf = (*leaf->mpLeaves)[Below(leaf->mpLeaves->Size())];
		if (Below(2) == 0)
			ChangeValue(*leaf);
		else
			ChangeStructure(*leaf);
	}

private:
	TString Text() {
		// None of blanks alone: such a text reads back empty, in a step as in any document.
		static const std::array<TString, 8> kTexts = {
		    TString(),       " a ",         "a < b & \"c\"", "&#65; &#1;", TString(u"\x0001\xd800\xfffe"),
		    "line\r\n\ttwo", "100 % of %s", "[0]/Leaves"};
		return kTexts[static_cast<std::size_t>(Below(8))];
	}

	void ChangeValue(TUndoLeaf& leaf) {
		static constexpr std::array kRatios = {0.1f, -0.0f, FLT_MAX, FLT_MIN, 1.0f / 3.0f};
		switch (Below(6)) {
		case 0:
			return leaf.mNumber.Set(Below(1000) - 500);
		case 1:
			return leaf.mText.Set(Text());
		case 2:
			return leaf.mRatio.Set(kRatios[static_cast<std::size_t>(Below(5))]);
		case 3:
			return leaf.SetSteps(Below(2) ? TString("1 -2 3") : TString::ToString(Below(9)));
		case 4:
			return leaf.mXml.FromString(TString("<Xml><Text>") + TString::ToString(Below(9)) + "</Text></Xml>");
		default:
			return leaf.mpBag->SetData("bytes\0of it", static_cast<std::size_t>(Below(12)));
		}
	}

	void ChangeStructure(TUndoLeaf& leaf) {
		if (Below(2) == 0)
			return ChangeList(leaf.mTags, [&](int32_t index) { leaf.AddTag(index, Text()); });
		ChangeList(*leaf.mpLeaves, [&](int32_t index) {
			const TPtr<TUndoLeaf> added = MakePtr<TUndoLeaf>();
			ChangeValue(*added);
			added->mSprouts = Below(3) == 0;
			leaf.mpLeaves->Insert(&*added, index);
		});
	}

	template <class TAnyList, class TInsert>
	void ChangeList(TAnyList& list, const TInsert& insert) {
		const int size = list.Size();
		if (size == 0 || (size < 4 && Below(2) == 0))
			insert(Below(size + 1));
		else if (Below(3) == 0)
			list.Swap(Below(size), Below(size));
		else if (Below(3) == 0)
			list.Move(Below(size), Below(size));
		else
			list.Remove(Below(size));
	}

	std::mt19937 mRandom;
};

} // namespace

TEST_F(TDocumentRootTest, EveryStateOfARandomHistoryComesBack) {
	TGardener gardener(20);
	std::vector<std::string> states = {mpRoot->Snapshot()};
	std::size_t now = 0;
	const auto undo = [&] {
		ASSERT_TRUE(mpRoot->CanUndo());
		mpRoot->Undo();
		ASSERT_EQ(mpRoot->Snapshot(), states[--now]);
	};
	const auto redo = [&] {
		ASSERT_TRUE(mpRoot->CanRedo());
		mpRoot->Redo();
		ASSERT_EQ(mpRoot->Snapshot(), states[++now]);
	};
	for (int round = 0; round < 400 && !HasFatalFailure(); ++round) {
		const int choice = gardener.Below(8);
		if (choice == 0 && now > 0) {
			undo();
			continue;
		}
		if (choice == 1 && now + 1 < states.size()) {
			redo();
			continue;
		}
		mpRoot->BeginAction();
		for (int changes = gardener.Below(8); changes >= 0; --changes)
			gardener.ChangeSomething(*mpRoot->mpTop);
		const bool hasChanged = mpRoot->IsModified();
		mpRoot->EndAction();
		if (!hasChanged)
			continue;
		states.resize(++now);
		states.push_back(mpRoot->Snapshot());
		ASSERT_FALSE(mpRoot->CanRedo());
	}
	while (now > 0 && !HasFatalFailure())
		undo();
	EXPECT_FALSE(mpRoot->CanUndo());
	while (now + 1 < states.size() && !HasFatalFailure())
		redo();
	EXPECT_FALSE(mpRoot->CanRedo());
	EXPECT_TRUE(sTold.empty());
}

TEST_F(TDocumentRootTest, StepsAreNamedByTheirFirstChange) {
	mpRoot->mpTop->AddTag(0, "x");
	mpRoot->mpTop->mpLeaves->Insert(new TUndoLeaf);
	const std::pair<void (*)(TUndoLeaf&), const char*> kChanges[] = {
	    {[](TUndoLeaf& top) { top.mpBag->SetData(nullptr, 0); }, ""}, // no change
	    {[](TUndoLeaf& top) { top.mpBag->SetData("ab", 2); }, "Change Bag"},
	    {[](TUndoLeaf& top) { top.mText.Set("100 %"); }, "Change Text"},
	    {[](TUndoLeaf& top) { top.mTags.Append(); }, "Insert Tag"},
	    {[](TUndoLeaf& top) { top.mTags.Swap(0, 1); }, "Swap Tag"},
	    {[](TUndoLeaf& top) { top.mTags.Remove(1); }, "Delete Tag"},
	    {[](TUndoLeaf& top) { top.mpLeaves->Insert(new TUndoLeaf); }, "Insert Leave"},
	    {[](TUndoLeaf& top) { top.mpLeaves->Swap(0, 1); }, "Swap in Leaves"},
	    {[](TUndoLeaf& top) { top.mpLeaves->Remove(1); }, "Delete Leave"}};
	for (const auto& [change, name] : kChanges) {
		Do(change);
		EXPECT_EQ(Chain().UndoName(), name);
	}
	mpRoot->BeginAction();
	mpRoot->BeginUndoableAction("Own");
	mpRoot->BeginUndoableAction("Other");
	mpRoot->mpTop->mNumber.Set(1);
	mpRoot->EndAction();
	EXPECT_EQ(Chain().UndoName(), "Own");
}

TEST_F(TDocumentRootTest, StepIsOpenBetweenItsBrackets) {
	mpRoot->mpTop->mNumber.Set(1);
	mpRoot->BeginAction();
	mpRoot->EndAction();
	EXPECT_FALSE(mpRoot->CanUndo()) << "nothing has changed within a step";
	SetNumber(2);
	mpRoot->BeginAction();
	EXPECT_TRUE(mpRoot->CanUndo());
	mpRoot->mpTop->mNumber.Set(3);
	mpRoot->mpTop->mNumber.Set(2);
	EXPECT_FALSE(mpRoot->CanUndo()) << "the open step has a record, though the value is back";
	mpRoot->BeginAction();
	EXPECT_TRUE(mpRoot->CanUndo()) << "the step before has been closed";
	mpRoot->EndAction();
	EXPECT_EQ(mpRoot->mHooks, "()()()()");
	mpRoot->mHooks.clear();
	mpRoot->ClearModified();
	mpRoot->Undo();
	EXPECT_EQ(Number(), 2);
	EXPECT_TRUE(mpRoot->IsModified());
	EXPECT_EQ(mpRoot->mHooks, "be");
	mpRoot->Undo();
	EXPECT_EQ(Number(), 1);
	mpRoot->Undo();
	EXPECT_EQ(mpRoot->mHooks, "bebe") << "nothing left";
}

TEST_F(TDocumentRootTest, ChangesOfOneNameInARowAreOneStep) {
	const auto turn = [this](const char* name, int number, double milliseconds, bool mergeable = true) {
		mpRoot->mMilliseconds = milliseconds;
		mpRoot->BeginAction();
		mpRoot->BeginUndoableAction(name, mergeable);
		mpRoot->mpTop->mNumber.Set(number);
		mpRoot->mpTop->mpLeaves->Insert(new TUndoLeaf);
		mpRoot->EndAction();
	};
	const auto undo = [this] {
		mpRoot->Undo();
		return Number();
	};
	turn("Turn", 1, 0.0);
	turn("Turn", 2, 1999.9);
	turn("Turn", 3, 0.0);
	turn("Turn", 4, 2000.0);
	turn("Push", 5, 0.0);
	turn("Push", 6, 0.0, false);
	EXPECT_EQ(undo(), 5) << "was not mergeable";
	EXPECT_EQ(undo(), 4) << "had another name";
	EXPECT_EQ(undo(), 3) << "came too late";
	EXPECT_EQ(undo(), 0) << "three in one";
	EXPECT_EQ(mpRoot->mpTop->mpLeaves->Size(), 0);
	mpRoot->Redo();
	EXPECT_EQ(Number(), 3);
	EXPECT_EQ(mpRoot->mpTop->mpLeaves->Size(), 3);
	turn("Turn", 7, 0.0);
	EXPECT_EQ(undo(), 3) << "a step that was redone is not continued";
}

TEST_F(TDocumentRootTest, WhatIsUndoneIsLostWithTheNextChangeAndEverythingWithALoad) {
	mFolder.Write("side", "");
	for (int i = 1; i <= 3; ++i) {
		if (i == 3)
			Chain().AddSideFile(mFolder.Path("side"));
		SetNumber(i);
	}
	const std::string third = mpRoot->Snapshot();
	mpRoot->Undo();
	mpRoot->Undo();
	EXPECT_TRUE(TFile(mFolder.Path("side")).Exists());
	SetNumber(4);
	EXPECT_FALSE(mpRoot->CanRedo());
	EXPECT_FALSE(TFile(mFolder.Path("side")).Exists());
	mpRoot->Undo();
	EXPECT_EQ(Number(), 1);
	Chain().AddSideFile(mFolder.Path("side"));
	mFolder.Write("side", "");
	SetNumber(5);
	mpRoot->BeginAction();
	mpRoot->LoadFromStream(StreamOf(third));
	EXPECT_EQ(Number(), 3);
	mpRoot->EndAction();
	EXPECT_FALSE(mpRoot->CanUndo()) << "not even the step that was open";
	EXPECT_FALSE(TFile(mFolder.Path("side")).Exists());
	SetNumber(6);
	mpRoot->Undo();
	EXPECT_EQ(Number(), 3);
}
