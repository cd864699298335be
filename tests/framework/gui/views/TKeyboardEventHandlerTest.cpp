// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/views/TKeyboardEventHandler.h"

#include "tests/support/TGuiFixture.h"

#include <gmock/gmock.h>

namespace {

class TKeyboardEventHandlerTest : public TGuiFixture {
protected:
	void SetUp() override {
		TGuiFixture::SetUp();
		mpView = MakePtr<TProbeView>(mJournal, "v", TRectT<int>{0, 0, 100, 100});
		OpenEditor().AddChild(mpView.Get());
		mpView->GrabFocus();
		Tick();
		mJournal.clear();
	}

	std::string Told() { return std::exchange(mJournal, {}); }

	std::string mJournal;
	TPtr<TProbeView> mpView;
};

TEST_F(TKeyboardEventHandlerTest, AHeldKeyRepeatsAsReleaseAndPress) {
	KeyDown(kKeyA);
	KeyDown(kKeyA); // the platform's own repeat
	EXPECT_EQ(Told(), "v:key ");
	Wait(250);
	EXPECT_EQ(Told(), "");
	Wait(100);
	EXPECT_EQ(Told(), "v:*keyup v:*key v:*keyup v:*key ");
	KeyUp(kKeyA);
	EXPECT_EQ(Told(), "v:keyup ");
	KeyDown(kKeyLeftShift);
	Told();
	Wait(1000);
	EXPECT_EQ(Told(), "") << "modifiers do not repeat";
}

TEST_F(TKeyboardEventHandlerTest, TheSystemsShortcutsRepeatByTheSystem) {
	KeyDown(kKeyLeftCommand);
	KeyDown(kKeyA);
	Told();
	KeyDown(kKeyA);
	EXPECT_EQ(Told(), "v:*key ");
	Preferences().mOverrideSystemShortcuts.Set(true);
	KeyDown(kKeyA);
	EXPECT_EQ(Told(), "");
}

TEST_F(TKeyboardEventHandlerTest, ALostReleaseIsMadeUpForAfterSixtyFrames) {
	KeyDown(kKeyA);
	Wait(260);
	Told();
	Platform().LoseKey(kKeyA);
	Wait(580);
	EXPECT_EQ(Told(), "");
	Wait(20);
	EXPECT_EQ(Told(), "v:keyup ");
	EXPECT_FALSE(Editor().KeyboardHandler()->KeyStates().IsAnyDown());

	KeyDown(kKeyLeftShift);
	Platform().LoseKey(kKeyLeftShift);
	Wait(620);
	EXPECT_EQ(mpView->KeyModifiers(), 0);
}

TEST_F(TKeyboardEventHandlerTest, LosingTheKeyboardLetsAllKeysGo) {
	KeyDown(kKeyLeftShift);
	EXPECT_EQ(mpView->KeyModifiers(), int{kShiftModifier});
	Platform().SetActive(false);
	EXPECT_EQ(mpView->KeyModifiers(), 0);
	EXPECT_FALSE(Editor().KeyboardHandler()->KeyStates().IsAnyDown());
	Platform().SetActive(true);
	EXPECT_TRUE(Editor().KeyboardHandler()->KeyStates().IsDown(kKeyLeftShift)) << "still held";
}

TEST_F(TKeyboardEventHandlerTest, KeysThatNobodyUsesGoBackToTheHost) {
	KeyDown(kKeySpace);
	KeyUp(kKeySpace);
	ASSERT_EQ(Platform().HostKeys().size(), 2u);
	EXPECT_EQ(Platform().HostKeys()[0].mCode, kKeySpace);
	mpView->mUses = true;
	KeyDown(kKeyA);
	mpView->mUses = false;
	KeyUp(kKeyA);
	EXPECT_EQ(Platform().HostKeys().size(), 2u) << "nor a release whose press was used";
}

} // namespace
