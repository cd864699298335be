// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/views/TFocusRootView.h"

#include "tests/support/TGuiFixture.h"

namespace {

class TFocusRootViewTest : public TGuiFixture {
protected:
	void SetUp() override {
		TGuiFixture::SetUp();
		TMainFrameView& frame = OpenEditor();
		mpFirst = MakePtr<TProbeView>(mJournal, "1", TRectT<int>{0, 0, 50, 50});
		mpSecond = MakePtr<TProbeView>(mJournal, "2", TRectT<int>{50, 0, 50, 50});
		mpInner = MakePtr<TProbeView>(mJournal, "i", TRectT<int>{10, 10, 10, 10});
		frame.AddChild(mpFirst.Get());
		frame.AddChild(mpSecond.Get());
		mpFirst->AddChild(mpInner.Get());
		for (const auto& view : {mpFirst, mpSecond})
			view->SetFocusMode(kFocusOnPress);
		Tick();
		mJournal.clear();
	}

	TMainFrameView& Frame() { return *Editor().MainFrame(); }

	std::string Told() { return std::exchange(mJournal, {}); }

	std::string mJournal;
	TPtr<TProbeView> mpFirst;
	TPtr<TProbeView> mpSecond;
	TPtr<TProbeView> mpInner;
};

TEST_F(TFocusRootViewTest, TheFocusPassesOnAndMarksWhatLiesBelow) {
	mpFirst->GrabFocus();
	EXPECT_EQ(Told(), "1:focus ");
	EXPECT_TRUE(mpInner->IsFocused());
	EXPECT_FALSE(mpInner->HasFocus());
	EXPECT_FALSE(Frame().IsFocused());
	mpSecond->GrabFocus();
	EXPECT_EQ(Told(), "1:blur 2:focus ");
	EXPECT_FALSE(mpInner->IsFocused());
	EXPECT_EQ(Frame().PreviousFocusedView(), mpFirst.Get());
	mpSecond->ReleaseFocus();
	EXPECT_EQ(Told(), "2:blur 1:focus ");
	mpFirst->SetVisible(false);
	EXPECT_EQ(Told(), "1:blur ");
	EXPECT_EQ(Frame().FocusedView(), nullptr);
}

TEST_F(TFocusRootViewTest, AHandlerThatSendsTheFocusBackHasTheLastWord) {
	mpFirst->GrabFocus();
	mpSecond->mOnEvent = [this](const std::string& what) {
		if (what == "focus")
			mpFirst->GrabFocus();
	};
	mpSecond->GrabFocus();
	EXPECT_TRUE(mpFirst->HasFocus());
	EXPECT_FALSE(mpSecond->IsFocused());
}

TEST_F(TFocusRootViewTest, AClickGivesTheFocusToTheInnermostViewThatTakesIt) {
	Click(60, 10);
	EXPECT_TRUE(mpSecond->HasFocus());
	mpSecond->SetClaimsFocusFirst(true);
	Click(15, 15);
	EXPECT_FALSE(mpSecond->HasFocus()) << "it lets go even where nobody takes it";
	EXPECT_FALSE(mpInner->HasFocus());
	mpInner->SetFocusMode(kFocusOnDoubleClick);
	Click(15, 15);
	EXPECT_FALSE(mpInner->HasFocus());
	Press(TMouseButton::kLeft, 2);
	EXPECT_TRUE(mpInner->HasFocus());
	Release();
	Click(150, 90);
	EXPECT_TRUE(Frame().HasFocus());
}

TEST_F(TFocusRootViewTest, KeysGoToTheFocusedViewOnly) {
	KeyDown(kKeyA);
	EXPECT_EQ(Told(), "");
	mpSecond->GrabFocus();
	Told();
	KeyUp(kKeyA);
	EXPECT_EQ(Told(), "2:keyup ");
	mpFirst->GrabFocus();
	Told();
	KeyDown(kKeyReturn);
	EXPECT_EQ(Told(), "1:key i:key ");
}

TEST_F(TFocusRootViewTest, AViewThatLeavesTheTreeLeavesTheFocus) {
	mpFirst->GrabFocus();
	mpSecond->GrabFocus();
	Frame().RemoveChild(mpFirst.Get());
	EXPECT_EQ(Frame().PreviousFocusedView(), nullptr);
	Told();
	Frame().RemoveChild(mpSecond.Get());
	EXPECT_EQ(Told(), "2:blur ");
	EXPECT_FALSE(mpSecond->IsFocused());
	EXPECT_EQ(Frame().FocusedView(), nullptr);
	KeyDown(kKeyA);
	EXPECT_EQ(Told(), "");
}

TEST_F(TFocusRootViewTest, AWindowThatLosesTheKeyboardTakesItsFocusUpAgain) {
	mpSecond->GrabFocus();
	Told();
	Platform().SetActive(false);
	EXPECT_EQ(Told(), "2:blur ");
	Platform().SetActive(true);
	EXPECT_EQ(Told(), "2:focus ");
	const auto popup = OpenWindow(&Editor(), kPopupWindow, {0, 50, 20, 20});
	EXPECT_TRUE(mpSecond->HasFocus()) << "a popup of its own does not take it";
	popup->Close();
	EXPECT_EQ(Told(), "");
}

} // namespace
