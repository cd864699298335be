// SPDX-License-Identifier: GPL-3.0-or-later
// Gestures as steps of the document, popups, modal windows, and windows that close in the wrong moment.

#include "framework/gui/views/TViewWindow.h"

#include "framework/document/undo/TDocumentRoot.h"
#include "tests/support/TGuiFixture.h"

#include <gmock/gmock.h>

namespace {

class TStepDocument final : public TDocumentRoot {
public:
	TStepDocument() { FinishDeclaration(); }

	std::string mSteps;

protected:
	void UndoTransactionBegun() override { mSteps += "("; }

	void UndoTransactionEnded() override { mSteps += ")"; }
};

class TViewWindowTest : public TGuiFixture {
protected:
	void SetUp() override {
		TGuiFixture::SetUp();
		mpDocument = MakePtr<TStepDocument>();
		mpView = MakePtr<TProbeView>(mJournal, "v", TRectT<int>{0, 0, 100, 100});
		OpenEditor().AddChild(mpView.Get());
		Editor().SetDocument(mpDocument.Get());
		mpView->GrabFocus();
		Move(10, 10);
		mJournal.clear();
	}

	void TearDown() override {
		mpView = nullptr;
		if (mpEditor)
			mpEditor->Close();
		mpEditor = nullptr;
		mpDocument = nullptr;
		TGuiFixture::TearDown();
	}

	std::string Steps() { return std::exchange(mpDocument->mSteps, {}); }

	std::string Told() { return std::exchange(mJournal, {}); }

	TPtr<TStepDocument> mpDocument;
	std::string mJournal;
	TPtr<TProbeView> mpView;
};

TEST_F(TViewWindowTest, EachGestureIsOneStep) {
	Press();
	EXPECT_EQ(Steps(), "(");
	Press(TMouseButton::kRight);
	Move(20, 20);
	Release(TMouseButton::kRight);
	Wait(700);
	EXPECT_EQ(Steps().find("("), std::string::npos) << "one step, whatever happens while a button is down";
	Release();
	Steps();
	Platform().Wheel({0, 1});
	Tick();
	EXPECT_EQ(Steps(), "()");
	KeyDown(kKeyA);
	Wait(400);
	EXPECT_EQ(Steps(), "(");
	KeyUp(kKeyA);
	EXPECT_EQ(Steps(), ")");
}

TEST_F(TViewWindowTest, TheDeviceThatOpenedTheStepClosesIt) {
	Press();
	KeyDown(kKeyA);
	KeyUp(kKeyA);
	EXPECT_EQ(Steps(), "(");
	Release();
	EXPECT_EQ(Steps(), ")");
	KeyDown(kKeyA);
	Press();
	Release();
	EXPECT_EQ(Steps(), "(");
	KeyUp(kKeyA);
	EXPECT_EQ(Steps(), ")");
}

TEST_F(TViewWindowTest, LosingTheWindowEndsTheGesture) {
	mpView->mWantsCapture = true;
	Press();
	Platform().SetActive(false);
	EXPECT_FALSE(TGuiEventTarget::HasMouseCapture());
	Tick();
	EXPECT_EQ(Steps(), "()");
	Platform().SetActive(true);
	Release();
	Press();
	Editor().Close();
	mFrame.EditorFrameTick(nullptr);
	EXPECT_EQ(Steps(), "()") << "behind the event in which the window went";
}

TEST_F(TViewWindowTest, APressOutsideClosesPopupsAndDoesNothingElse) {
	const auto menu = OpenWindow(&Editor(), kPopupWindow, {20, 20, 30, 30});
	const auto subMenu = OpenWindow(menu.Get(), kPopupWindow, {50, 20, 30, 30});
	menu->SetClosesPopupsOnPress(false);
	Click(30, 30);
	EXPECT_TRUE(subMenu->IsOpen()) << "a menu looks after its own";
	Click(10, 10);
	EXPECT_FALSE(menu->IsOpen());
	EXPECT_FALSE(subMenu->IsOpen());
	EXPECT_EQ(Told().find("down"), std::string::npos);
	Click(10, 10);
	EXPECT_NE(Told().find("down"), std::string::npos);
	const auto list = OpenWindow(&Editor(), kPopupWindow, {20, 20, 30, 30});
	Click(900, 900); // beyond all windows
	EXPECT_FALSE(list->IsOpen());
	const auto other = OpenWindow(&Editor(), kPopupWindow, {20, 20, 30, 30});
	Platform().SetActive(false);
	Tick();
	EXPECT_FALSE(other->IsOpen());
}

TEST_F(TViewWindowTest, AModalWindowBlocksWhatIsBelowItAndNotItsOwnPopups) {
	std::string dialogJournal;
	const auto frame = MakePtr<TMainFrameView>();
	const auto inside = MakePtr<TProbeView>(dialogJournal, "d", TRectT<int>{0, 0, 100, 100});
	frame->AddChild(inside.Get());
	const auto dialog = OpenWindow(&Editor(), kModalDialogWindow, {300, 300, 100, 100}, frame);
	Click(10, 10);
	KeyDown(kKeyA);
	EXPECT_EQ(Told().find("down"), std::string::npos);
	Click(350, 350);
	EXPECT_NE(dialogJournal.find("d:down"), std::string::npos);
	const auto popup = OpenWindow(dialog.Get(), kPopupWindow, {350, 350, 20, 20});
	EXPECT_EQ(popup->BlockingWindow(), nullptr);
	EXPECT_EQ(Editor().BlockingWindow(), dialog.Get());
	const auto inner = OpenWindow(dialog.Get(), kModalDialogWindow, {500, 300, 50, 50});
	EXPECT_EQ(dialog->BlockingWindow(), inner.Get());
	EXPECT_EQ(inner->BlockingWindow(), nullptr);
}

TEST_F(TViewWindowTest, WindowsMayCloseInsideTheirOwnHandlers) {
	const auto frame = MakePtr<TMainFrameView>();
	const auto inside = MakePtr<TProbeView>(mJournal, "d", TRectT<int>{0, 0, 50, 50});
	inside->mWantsCapture = true;
	inside->mTellsDraws = true;
	frame->AddChild(inside.Get());
	for (const char* when : {"taken", "down", "up", "released", "hover", "key", "draw", "focus"}) {
		TWeakPtr<TViewWindow> window = OpenWindow(&Editor(), kPopupWindow, {20, 20, 50, 50}, frame);
		inside->mOnEvent = [&window, when](const std::string& what) {
			if (what == when && window)
				window->Close();
		};
		inside->GrabFocus();
		inside->Invalidate();
		Move(30, 30);
		Press();
		Release();
		KeyDown(kKeyA);
		KeyUp(kKeyA);
		EXPECT_FALSE(window) << when;
		EXPECT_FALSE(TGuiEventTarget::HasMouseCapture()) << when;
		Move(10, 10);
	}
	mpView->mOnEvent = [this](const std::string& what) {
		if (what == "down")
			Editor().Close();
	};
	Click(10, 10);
	EXPECT_FALSE(Editor().IsOpen());
	EXPECT_EQ(TWindow::MainWindow(), nullptr);
	Tick();
}

TEST_F(TViewWindowTest, AClickOnTheFrameClosesWindowsThatAskForIt) {
	Move(150, 50);
	const auto field = OpenWindow(&Editor(), kEmbeddedWindow, {0, 0, 40, 20});
	field->SetClosesOnClickOutside(true);
	Press();
	EXPECT_TRUE(field->IsOpen());
	Release();
	EXPECT_FALSE(field->IsOpen());
	EXPECT_EQ(Told().find("down"), std::string::npos);
}

TEST_F(TViewWindowTest, TheFrameIsNeverSmallerThanTheWindowsMinimum) {
	Editor().SetMinimumSize({150, 80});
	Editor().SetClientSize({100, 90});
	EXPECT_EQ(Editor().MainFrame()->Size(), (TPointT<int>{150, 90}));
	Editor().SetClientSize({300, 200});
	EXPECT_EQ(Editor().MainFrame()->Size(), (TPointT<int>{300, 200}));
}

TEST_F(TViewWindowTest, TheMouseIsSeenToLeaveForAnotherWindow) {
	const auto dialog = OpenWindow(&Editor(), kTopLevelWindow, {50, 50, 50, 50});
	Move(60, 60);
	Tick();
	EXPECT_THAT(Told(), testing::HasSubstr("v:leave"));
}

} // namespace
