// SPDX-License-Identifier: GPL-3.0-or-later
// How mouse events find their view, and who has the capture.

#include "framework/gui/views/TMouseEventHandler.h"
#include "framework/gui/windows/TCursor.h"
#include "tests/support/TGuiFixture.h"

#include <gmock/gmock.h>

namespace {

class TViewRoutingTest : public TGuiFixture {
protected:
	TPtr<TProbeView> AddProbe(TView& parent, const char* name, const TRectT<int>& rect) {
		auto probe = MakePtr<TProbeView>(mJournal, name, rect);
		parent.AddChild(probe.Get());
		return probe;
	}

	std::string Told() { return std::exchange(mJournal, {}); }

	/// Two views side by side in a panel that starts at 10,10.
	void OpenPanel() {
		TMainFrameView& frame = OpenEditor();
		mpPanel = AddProbe(frame, "p", {10, 10, 100, 50});
		mpLeft = AddProbe(*mpPanel, "l", {0, 0, 50, 50});
		mpRight = AddProbe(*mpPanel, "r", {50, 0, 50, 50});
		Tick();
		Told();
	}

	std::string mJournal;
	TPtr<TProbeView> mpPanel;
	TPtr<TProbeView> mpLeft;
	TPtr<TProbeView> mpRight;
};

TEST_F(TViewRoutingTest, AViewIsAskedBeforeItsChildrenUnlessItWantsToBeLast) {
	OpenPanel();
	Click(20, 20);
	EXPECT_EQ(Told(), "p:enter l:enter p:hover l:hover p:down l:down p:up l:up ");
	mpPanel->SetEventOrder(kChildrenFirst);
	mpLeft->mUses = true;
	Click(21, 20);
	EXPECT_EQ(Told(), "l:hover l:down l:up ");
	mpLeft->SetVisible(false);
	EXPECT_EQ(Told(), "l:leave ");
	Click(22, 20);
	EXPECT_EQ(Told(), "p:hover p:down p:up ");
}

TEST_F(TViewRoutingTest, TheCaptureTakesAllUntilARealRelease) {
	OpenPanel();
	mpLeft->mWantsCapture = true;
	Move(20, 20);
	Told();
	Press();
	EXPECT_EQ(Told(), "p:down l:taken l:down ");
	Move(80, 20);
	EXPECT_EQ(Told(), "r:enter l:drag ");
	Move(80, 20);
	EXPECT_EQ(Told(), "") << "a move to the same place is none";
	Wait(640);
	EXPECT_EQ(Told().substr(0, 18), "l:repeat l:repeat ");
	EXPECT_TRUE(TGuiEventTarget::IsCapturing(mpLeft.Get()));
	Release();
	EXPECT_EQ(Told(), "l:up l:released ");
	EXPECT_FALSE(TGuiEventTarget::HasMouseCapture());
	EXPECT_EQ(mpLeft->MouseDownPoint(), (TPointT<int>{20, 20}));
	Move(81, 20);
	EXPECT_EQ(Told(), "l:leave p:hover r:hover ");
}

TEST_F(TViewRoutingTest, WithoutACaptureTheReleaseGoesWhereTheMouseIs) {
	OpenPanel();
	mpPanel->mUses = false;
	Move(20, 20);
	Press();
	Told();
	Move(80, 20);
	Release();
	EXPECT_THAT(Told(), testing::EndsWith("p:up r:up "));
}

TEST_F(TViewRoutingTest, AViewThatGoesTakesCaptureHoverAndLaterEventsWithIt) {
	OpenPanel();
	mpLeft->mWantsCapture = true;
	Move(20, 20);
	Press();
	Told();
	mpPanel->RemoveChild(mpLeft.Get());
	EXPECT_EQ(Told(), "l:released ");
	Move(25, 20);
	Release();
	EXPECT_EQ(Told(), "p:hover p:up ");
	EXPECT_EQ(mpLeft->MainFrame(), nullptr);

	mpPanel->AddChild(mpLeft.Get());
	mpLeft->mOnEvent = [this](const std::string& what) {
		if (what == "down")
			mpPanel->RemoveAllChildren();
	};
	Press();
	mpLeft = nullptr; // dies between press and release
	Release();
	EXPECT_FALSE(TGuiEventTarget::HasMouseCapture());
}

TEST_F(TViewRoutingTest, ControlMakesTheLeftButtonTheRightOneUpToItsRelease) {
	OpenPanel();
	Move(20, 20);
	mpPanel->mUses = true;
	Told();
	Platform().KeyDown(kKeyLeftControl);
	Press();
	Platform().KeyUp(kKeyLeftControl);
	Tick();
	Wait(700); // the system has the left button down, which must not count as a lost right one
	EXPECT_EQ(Editor().IsButtonDown(TMouseButton::kRight), true);
	Told();
	Release();
	EXPECT_EQ(Told(), "p:rup ");
}

TEST_F(TViewRoutingTest, WheelAndClicksAreCountedByTheNotchAndThePair) {
	OpenPanel();
	mpPanel->mUses = true;
	Move(20, 20);
	Told();
	Platform().Wheel({0, 3});
	Tick();
	EXPECT_EQ(Told(), "p:wheel p:wheel p:wheel ");
	Preferences().mApplyMouseWheelAcceleration.Set(false);
	Platform().Wheel({0, 3});
	Tick();
	EXPECT_EQ(Told(), "p:wheel ");
	for (int count = 1; count <= 3; ++count) {
		Press(TMouseButton::kLeft, count);
		Release();
	}
	EXPECT_EQ(Told(), "p:down p:up p:double p:up p:down p:up ");
}

TEST_F(TViewRoutingTest, CursorsAreInheritedAndSetAtOnceUnderTheMouse) {
	OpenPanel();
	const TCursorImpl& cursor = Platform().Cursor();
	mpPanel->SetCursor(kPencilCursor);
	Move(20, 20);
	EXPECT_EQ(cursor.Current(), kPencilCursor);
	mpRight->SetCursor(kMoveCursor);
	EXPECT_EQ(cursor.Current(), kPencilCursor);
	mpLeft->SetCursor(kEmptyCursor);
	EXPECT_EQ(cursor.Current(), kEmptyCursor);
	mpLeft->SetCursor(TView::kInheritCursor);
	EXPECT_EQ(cursor.Current(), kDefaultCursor) << "a hidden pointer comes back";
	Move(80, 20);
	EXPECT_EQ(cursor.Current(), kMoveCursor);
	Move(5, 5);
	EXPECT_EQ(cursor.Current(), kDefaultCursor);
}

TEST_F(TViewRoutingTest, MouseModifiersAreTheKeysAndButtonsHeld) {
	OpenPanel();
	int seen = 0;
	mpPanel->mOnEvent = [&](const std::string&) { seen = Editor().MouseHandler()->Modifiers(); };
	Move(20, 20);
	KeyDown(kKeyLeftShift);
	KeyDown(kKeyLeftCommand);
	KeyDown(kKeyLeftOption);
	Press(TMouseButton::kMiddle);
	EXPECT_EQ(seen, kMouseShift | kMouseCommand | kMouseOption | kMouseMiddleHeld);
	EXPECT_EQ(mpLeft->KeyModifiers(), kShiftModifier | kCommandModifier | kOptionModifier);
}

} // namespace
