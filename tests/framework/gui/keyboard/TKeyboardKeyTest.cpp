// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/keyboard/TKeyboardKey.h"

#include "framework/gui/keyboard/TKeyStateTable.h"
#include "framework/gui/keyboard/TKeyboardTranslator.h"
#include "tests/support/TGuiFixture.h"
#include "tests/support/TStringPrinter.h"

namespace {

using TKeyboardKeyTest = TGuiFixture;

constexpr int kShiftOption = kShiftModifier | kOptionModifier;

TEST_F(TKeyboardKeyTest, AKeyShowsAShortTextAndIsStoredByALongOne) {
	struct TCase {
		int mCode;
		int mModifiers;
		const char* mShown;
		const char* mStored;
	};

	for (const TCase& test : {
	         TCase{kKeyDelete, 0, "Del", "Delete"},
	         {kKeyNumpad0, 0, "Numpad 0", "Numpad0"},
	         {kKeyNumpadPlus, kCommandModifier, "Command + Numpad +", "Command + NumpadPlus"},
	         {kKeyA, kShiftModifier | kCommandModifier, "Shift + Command + A", "Shift + Command + A"},
	         {kKeyA + 25, kShiftOption | kControlModifier, "Shift + Option + Control + Z",
	          "Shift + Option + Control + Z"},
	         {kKeySpace, 0, "Space", "Space"},
	         {kKeyComma, 0, "Comma", "Comma"},
	         {kKeySlash, 0, "/", "Slash"},
	         {kKeyEscape, 0, "Esc", "Escape"},
	         {kKeyLeftShift, kShiftModifier, "Shift + LShift", "LShift"},
	     }) {
		const TKeyboardKey key(test.mCode, test.mModifiers);
		EXPECT_EQ(key.ToDisplayString(true), test.mShown);
		EXPECT_EQ(key.ToString(), test.mStored);
		TKeyboardKey read;
		read.FromString(test.mStored);
		EXPECT_EQ(read.Code(), test.mCode) << test.mStored;
	}
	EXPECT_EQ(TKeyboardKey(kKeyA, kShiftModifier).ToDisplayString(false), "A");
	EXPECT_EQ(TKeyboardKey(u'é', kOptionModifier).ToString(), TString(u"Option + é"));
}

TEST_F(TKeyboardKeyTest, ReadsTheWordsOfOtherSystemsAndNothingFromNonsense) {
	TKeyboardKey key;
	key.FromString("Shift + Alt + Tab");
	EXPECT_EQ(key, TKeyboardKey(kKeyTab, kShiftModifier));
	key.FromString("HelpKey(Insert)");
	EXPECT_EQ(key.Code(), kKeyInsert);
	key.FromString("RAlt");
	EXPECT_EQ(key.Code(), kKeyRightOption);
	for (const char* text : {"", "Shift + ", "Shift + Nothing"}) {
		key.FromString(text);
		EXPECT_FALSE(key.IsKey()) << text;
	}
	EXPECT_EQ(TKeyboardTranslator::Instance()->NameOfCode(kKeyCodeCount), "");
}

TEST_F(TKeyboardKeyTest, AnAssignmentNotifiesOnlyAroundAChange) {
	struct TWatch : TObserver {
		void OnKey(TObservable*, int32_t reason) { mReasons += std::to_string(reason); }

		std::string mReasons;
	};

	const auto watch = MakePtr<TWatch>();
	TKeyboardKey key(kKeyA, 0);
	key.AddObserver({watch.Get(), &TWatch::OnKey});
	key = TKeyboardKey(kKeyA, 0);
	key = TKeyboardKey(kKeyA, kShiftModifier);
	EXPECT_EQ(watch->mReasons, "023");
}

TEST_F(TKeyboardKeyTest, ClassesOfKeys) {
	EXPECT_TRUE(TKeyboardKey(kKeyHome, kShiftOption).IsSelectionMoveKey());
	EXPECT_FALSE(TKeyboardKey(kKeyHome, 0).IsSelectionMoveKey());
	EXPECT_FALSE(TKeyboardKey(kKeyTab, kShiftModifier).IsSelectionMoveKey());
	EXPECT_TRUE(TKeyboardKey(kKeyTab, 0).IsNavigationKey());
	EXPECT_TRUE(TKeyboardKey(u',', 0).IsNumericKey());
	EXPECT_FALSE(TKeyboardKey(u'e', 0).IsNumericKey());
	EXPECT_TRUE(TKeyboardKey(kKeyPeriod, 0).IsNumericKey());
	EXPECT_FALSE(TKeyboardKey(kKeyNumpadEqual, 0).IsNumericKey());
	EXPECT_TRUE(TKeyboardKey(kKeyRightShift, 0).IsModifierKey());
	Preferences().mUseRightSideModifiersAsMappableKeys.Set(true);
	EXPECT_FALSE(TKeyboardKey(kKeyRightShift, 0).IsModifierKey());
}

TEST_F(TKeyboardKeyTest, HeldKeysGiveModifiersAndTheirOrder) {
	TKeyStateTable table;
	table.SetState(kKeyRightOption, kKeyIsDown);
	mClock.Advance(std::chrono::milliseconds(5));
	table.SetState(kKeyRightCommand, kKeyIsDown);
	EXPECT_EQ(table.Modifiers(), kOptionModifier) << "the key of the third characters is no Command";
	mClock.Advance(std::chrono::milliseconds(5));
	table.SetState(kKeyA, kKeyIsDown);
	table.SetState(kKeyCodeCount, kKeyIsDown);
	table.SetState(-1, kKeyIsDown);
	const auto held = table.HeldKeys();
	EXPECT_EQ(std::vector<int>(held.begin(), held.end()), (std::vector<int>{kKeyRightOption, kKeyRightCommand, kKeyA}));
	table.SetStates({});
	EXPECT_FALSE(table.IsAnyDown());
}

} // namespace
