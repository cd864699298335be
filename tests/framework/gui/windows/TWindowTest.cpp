// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/windows/TWindow.h"

#include "framework/gui/windows/TDesktop.h"
#include "tests/support/TGuiFixture.h"
#include "tests/support/TStringPrinter.h"

namespace {

class TWindowTest : public TGuiFixture {
protected:
	void SetUp() override {
		TGuiFixture::SetUp();
		OpenEditor();
	}

	static THeadlessWindow& GlueOf(TWindow& window) { return static_cast<THeadlessWindow&>(*window.Glue()); }
};

class TStubbornWindow final : public TWindow {
public:
	using TWindow::TWindow;

	bool ShouldClose(bool /*force*/) override { return mAgrees; }

	bool HidesOnClose() const override { return mHides; }

	bool mAgrees = false;
	bool mHides = false;
};

TEST_F(TWindowTest, ClosingAsksTheChildrenFirst) {
	const auto child = MakePtr<TStubbornWindow>(&Editor(), kTopLevelWindow);
	child->Show();
	EXPECT_FALSE(Editor().CanClose(false));
	EXPECT_TRUE(child->IsOpen());
	child->mHides = true;
	child->RequestClose();
	EXPECT_TRUE(child->IsOpen());
	EXPECT_FALSE(child->IsVisible());
	child->mHides = false;
	child->mAgrees = true;
	EXPECT_TRUE(Editor().CanClose(false));
	EXPECT_FALSE(child->IsOpen());
	EXPECT_TRUE(Editor().Children().IsEmpty());
}

TEST_F(TWindowTest, TheMainWindowAsksTheProgramToQuit) {
	static int sQuits = 0;
	sQuits = 0;
	TDesktop::Instance()->SetQuitAction(TFunctionPtr<void>([]() { ++sQuits; }));
	Editor().RequestClose();
	EXPECT_EQ(sQuits, 1);
	EXPECT_TRUE(Editor().IsOpen());
	TDesktop::Instance()->SetQuitAction({});
	Editor().RequestClose();
	EXPECT_FALSE(Editor().IsOpen());
}

TEST_F(TWindowTest, AWindowDestroyedByOthersIsClosedWithAllItsOwn) {
	const auto child = OpenWindow(&Editor(), kPopupWindow, {10, 10, 10, 10});
	GlueOf(Editor()).Lose("The host has destroyed it.");
	EXPECT_FALSE(Editor().IsOpen());
	EXPECT_FALSE(child->IsOpen());
	Editor().Show(); // harmless from now on
	Editor().Close();
	Tick();
	EXPECT_EQ(TWindow::WithId(Editor().Id()), nullptr);
}

TEST_F(TWindowTest, PointsAreConvertedByTheScaleAndRoundedDown) {
	Editor().SetPosition({100, 50});
	Preferences().mUIScaleFactor.Set(TGraphPort::kScale200);
	EXPECT_EQ(Editor().ClientToScreen({10, 5}), (TPointT<int>{120, 60}));
	EXPECT_EQ(Editor().ScreenToClient({121, 61}), (TPointT<int>{10, 5}));
	EXPECT_EQ(Editor().ScreenToClient({99, 48}), (TPointT<int>{-1, -1}));
}

TEST_F(TWindowTest, AChangeOfScaleKeepsTheLogicalSizeOnTheScreen) {
	const auto window = OpenWindow(nullptr, kTopLevelWindow, {0, 0, 700, 500});
	window->SetResizable(true);
	window->SetMinimumSize({400, 300});
	Preferences().mUIScaleFactor.Set(TGraphPort::kScale200);
	EXPECT_EQ(GlueOf(*window).ClientSize(), (TPointT<int>{1400, 1000}));
	EXPECT_EQ(window->ClientSize(), (TPointT<int>{700, 500}));
	EXPECT_EQ(GlueOf(*window).MinimumSize(), (TPointT<int>{800, 600}));
	EXPECT_EQ(GlueOf(Editor()).ClientSize(), (TPointT<int>{200, 100})) << "the host has the say there";
	window->Close();
}

TEST_F(TWindowTest, AnExposedWindowIsPresentedAgainWithoutDrawing) {
	const int presented = GlueOf(Editor()).PresentedRects();
	Platform().ShowHost(false);
	EXPECT_FALSE(Editor().MainFrame()->IsVisible());
	Tick();
	EXPECT_EQ(GlueOf(Editor()).PresentedRects(), presented);
	Platform().ShowHost(true);
	Tick();
	EXPECT_GT(GlueOf(Editor()).PresentedRects(), presented);
}

} // namespace
