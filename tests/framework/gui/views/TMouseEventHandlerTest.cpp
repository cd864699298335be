// SPDX-License-Identifier: GPL-3.0-or-later
// Auto-repeat of buttons, and tool tips.

#include "framework/gui/views/TMouseEventHandler.h"

#include "framework/gui/views/TToolTipPresenter.h"
#include "tests/support/TGuiFixture.h"
#include "tests/support/TStringPrinter.h"

#include <algorithm>

namespace {

class TMouseEventHandlerTest : public TGuiFixture {
protected:
	void SetUp() override {
		TGuiFixture::SetUp();
		mpView = MakePtr<TProbeView>(mJournal, "v", TRectT<int>{0, 0, 100, 100});
		mpView->mWantsCapture = true;
		OpenEditor().AddChild(mpView.Get());
		Move(10, 10);
	}

	int Repeats() {
		const std::string text = std::exchange(mJournal, {});
		int count = 0;
		for (std::size_t place = text.find("repeat"); place != text.npos; place = text.find("repeat", place + 1))
			++count;
		return count;
	}

	std::string mJournal;
	TPtr<TProbeView> mpView;
};

TEST_F(TMouseEventHandlerTest, AHeldButtonRepeatsAfterAWhileByItsOwnInterval) {
	Press();
	Wait(600);
	EXPECT_EQ(Repeats(), 0);
	Wait(300);
	EXPECT_EQ(Repeats(), 10) << "with every frame that is more than 20 ms after the last";
	Release();
	Press(TMouseButton::kMiddle);
	Wait(900);
	EXPECT_EQ(Repeats(), 0);
	Release(TMouseButton::kMiddle);
}

TEST_F(TMouseEventHandlerTest, AControlMayAskForRepeatsAtOnce) {
	mpView->mOnEvent = [this](const std::string& what) {
		if (what == "down")
			Editor().MouseHandler()->RepeatImmediately();
	};
	Press();
	Wait(50);
	EXPECT_EQ(Repeats(), 5);
	Release();
	Wait(50);
	EXPECT_EQ(Repeats(), 0);
}

/// Stands in for who draws tips.
class TFakePresenter final : public TToolTipPresenter {
public:
	TFakePresenter() { SetInstance(this); }

	~TFakePresenter() { SetInstance(nullptr); }

	bool IsOpen() const override { return mpTarget != nullptr; }

	TString Text() const override { return mText; }

	TView* Target() const override { return mpTarget; }

	void Show(TView& target, const TString& text) override {
		mpTarget = &target;
		mText = text;
	}

	void Close() override { mpTarget = nullptr; }

private:
	TView* mpTarget = nullptr;
	TString mText;
};

TEST_F(TMouseEventHandlerTest, ATipComesAfterARestTheNextOneAtOnceAndNoneOverWhatWasClicked) {
	TFakePresenter tips;
	TMainFrameView& frame = *Editor().MainFrame();
	const auto other = MakePtr<TProbeView>(mJournal, "o", TRectT<int>{100, 0, 100, 100});
	const auto silent = MakePtr<TView>();
	frame.AddChild(other.Get());
	other->AddChild(silent);
	silent->SetSize(50, 50);
	mpView->SetToolTip("this");
	other->SetToolTip("that");
	Move(20, 20);
	Wait(750);
	EXPECT_FALSE(tips.IsOpen());
	Wait(10);
	EXPECT_EQ(tips.Text(), "this");
	Move(120, 20); // a child without a tip shows that of the view below it
	Wait(10);
	EXPECT_EQ(tips.Text(), "that");
	Press();
	EXPECT_FALSE(tips.IsOpen());
	Release();
	Wait(2000);
	EXPECT_FALSE(tips.IsOpen());
	Move(20, 20);
	TBaseViewsPrefs::Instance()->ShowTooltips().Set(false);
	Wait(2000);
	EXPECT_FALSE(tips.IsOpen());
}

TEST_F(TMouseEventHandlerTest, AWindowThatIsHiddenLetsGoAsItWillSeeNoRelease) {
	// Of an editor that does not want the keys: one that has them would lose them when it is hidden.
	Editor().Glue()->SetWantsKeyboardInput(false);
	Platform().SetActive(false);
	mpView->mWantsCapture = true;
	for (const TMouseButton button : {TMouseButton::kLeft, TMouseButton::kMiddle}) {
		Press(button);
		EXPECT_TRUE(TGuiEventTarget::HasMouseCapture());
		Platform().ShowHost(false);
		EXPECT_FALSE(TGuiEventTarget::HasMouseCapture());
		EXPECT_FALSE(Editor().MouseHandler()->IsAnyButtonHeld());
		Release(button);
		Platform().ShowHost(true);
		Tick();
	}
}

} // namespace
