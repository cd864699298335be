// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/controls/TButton.h"

#include "framework/graphics/bitmaps/TRecolorableBitmap.h"
#include "framework/gui/controls/TButtonField.h"
#include "framework/gui/controls/TIncDecButtonPair.h"
#include "framework/gui/controls/TSwitchButton.h"
#include "tests/support/TControlFixture.h"

#include <string>

namespace {

/// Writes down what was called.
struct TActions {
	void Click() { mCalls += "c"; }

	void Secondary() { mCalls += "s"; }

	void Command(bool isRelease, bool isRepeat) { mCalls += isRelease ? "R" : isRepeat ? "r" : "k"; }

	void Index(int index) { mCalls += std::to_string(index); }

	int Get() { return mNumber; }

	void Set(int number) { mNumber = number; }

	std::string mCalls;
	int mNumber = 1;
};

class TButtonTest : public TControlFixture {
protected:
	TPtr<TButton> MakeButton() {
		const auto button = MakePtr<TButton>("Rand");
		button->SetClickAction({&mActions, &TActions::Click});
		return button;
	}

	TActions mActions;
};

TEST_F(TButtonTest, ActsWhenItIsReleasedOverIt) {
	TButton& button = Show(MakeButton(), {10, 10, 40, 20});
	Move(20, 20);
	EXPECT_EQ(button.State(), kButtonHoverUp);
	Press();
	EXPECT_EQ(button.State(), kButtonPressed);
	Move(100, 60);
	EXPECT_EQ(button.State(), kButtonUp);
	Release();
	EXPECT_EQ(mActions.mCalls, "");
	EXPECT_EQ(button.State(), kButtonUp);
	// A hair outside is inside.
	Click(9, 9);
	EXPECT_EQ(mActions.mCalls, "c");
	EXPECT_EQ(button.State(), kButtonHoverUp);
	// A release that follows no press on the button is none of its business.
	Move(100, 60);
	Press();
	Move(20, 20);
	Release();
	button.SetEnabled(false);
	Click(20, 20);
	EXPECT_EQ(mActions.mCalls, "c");
}

TEST_F(TButtonTest, TellsTheMouseButtonsApart) {
	TButton& button = Show(MakeButton(), {10, 10, 40, 20});
	Move(20, 20);
	Press(TMouseButton::kRight);
	Release(TMouseButton::kRight);
	button.SetSecondaryAction({&mActions, &TActions::Secondary});
	Press(TMouseButton::kRight);
	Release(TMouseButton::kRight);
	button.SetClickCommand({&mActions, &TActions::Command});
	Click(20, 20);
	EXPECT_EQ(mActions.mCalls, "csk");
}

TEST_F(TButtonTest, RepeatsWhileItIsHeldAlsoFromOutside) {
	TButton& button = Show(MakeButton(), {10, 10, 40, 20});
	button.SetRepeat(true);
	Move(20, 20);
	Press();
	Wait(590);
	EXPECT_EQ(mActions.mCalls, "");
	Move(100, 60);
	Wait(100);
	EXPECT_GE(mActions.mCalls.size(), 3u);
	const std::string repeated = mActions.mCalls;
	Release();
	EXPECT_EQ(mActions.mCalls, repeated);

	mActions.mCalls.clear();
	button.SetRepeatImmediately(true);
	Move(20, 20);
	Press();
	Wait(30);
	EXPECT_GE(mActions.mCalls.size(), 2u);
	Release();
}

/// Takes its button away.
struct TRemover {
	void Remove() { mpFrame->RemoveChild(mButton.Get()); }

	TView* mpFrame = nullptr;
	TWeakPtr<TButton> mButton;
};

TEST_F(TButtonTest, MayGoInItsOwnAction) {
	TRemover remover;
	{
		const auto button = MakeButton();
		button->SetClickAction({&remover, &TRemover::Remove});
		remover.mButton = button.Get();
		Show(button, {10, 10, 40, 20});
	}
	remover.mpFrame = mpEditor->MainFrame();
	Click(20, 20);
	EXPECT_FALSE(remover.mButton);
	EXPECT_FALSE(TView::HasMouseCapture());
}

TEST_F(TButtonTest, TakesTheSizeOfItsContentUnlessItHasOne) {
	const auto button = MakePtr<TButton>("Mutate");
	EXPECT_EQ(button->Size(), (TPointT<int>{40, 18}));
	button->SetLabel("A longer one");
	EXPECT_EQ(button->Width(), 40);
	const auto picture = MakePtr<TButton>();
	const auto bitmap = MakePtr<TRecolorableBitmap>("Icons/Loop.png");
	picture->SetBitmaps(bitmap, bitmap, true);
	EXPECT_EQ(picture->Size(), (TPointT<int>{20, 18}));
}

TEST_F(TButtonTest, SwitchFollowsItsValueAndReportsTheMouseButton) {
	TObservableBaseType<bool> value(false);
	auto& pair = Show(MakePtr<TSwitchButton<bool>>(&value, kOnOffRow), {0, 0, 60, 18});
	pair.SetChangedAction({&mActions, &TActions::Index});
	EXPECT_EQ(pair.OffButton().RestState(), kButtonPressed);
	Click(10, 9);
	EXPECT_TRUE(value.Get());
	EXPECT_EQ(pair.OnButton().RestState(), kButtonPressed);
	Click(10, 9);
	Move(50, 9);
	Press(TMouseButton::kRight);
	Release(TMouseButton::kRight);
	EXPECT_FALSE(value.Get());
	EXPECT_EQ(mActions.mCalls, "001");

	auto& single = Show(MakePtr<TSwitchButton<bool>>(&value, kToolSwitch), {0, 30, 20, 20});
	EXPECT_FALSE(single.OnButton().IsVisible());
	Click(10, 40);
	Click(10, 40);
	Click(10, 40);
	EXPECT_TRUE(value.Get());
	EXPECT_TRUE(single.OnButton().IsVisible());
	EXPECT_FALSE(single.OffButton().IsVisible());

	TObservableBaseType<float> half(0.5f);
	EXPECT_FALSE(MakePtr<TSwitchButton<float>>(&half, kToolSwitch)->IsOn());
}

TEST_F(TButtonTest, SwitchWithADeadValueIgnoresClicks) {
	auto value = std::make_unique<TObservableBaseType<bool>>(true);
	auto& single = Show(MakePtr<TSwitchButton<bool>>(value.get(), kToolSwitch), {0, 0, 20, 20});
	single.SetChangedAction({&mActions, &TActions::Index});
	value = nullptr;
	Click(10, 10);
	EXPECT_TRUE(single.OnButton().IsVisible());
	EXPECT_EQ(mActions.mCalls, "");
}

TEST_F(TButtonTest, TickBoxIsToggledByItsBoxOnly) {
	TObservableBaseType<bool> value(false);
	auto& pair = Show(MakePtr<TSwitchButtonViewPair<bool>>(&value, TString("Tool tips")), {0, 0, 100, 18});
	Click(9, 9);
	EXPECT_TRUE(value.Get());
	Click(40, 9);
	EXPECT_TRUE(value.Get());
	pair.SetEnabled(false);
	Click(9, 9);
	EXPECT_TRUE(value.Get());
}

TEST_F(TButtonTest, FieldKeepsTheButtonOfItsValuePressed) {
	using TField = TSwitchButtonField<int>;
	auto& field = Show(
	    MakePtr<TField>(TField::TGetter(&mActions, &TActions::Get), TField::TSetter(&mActions, &TActions::Set), 3, 1),
	    {0, 0, 70, 50});
	EXPECT_EQ(field.PressedIndex(), 1);
	EXPECT_EQ(field.Button(2).Position().mY + field.Button(2).Height(), 50);
	Click(10, 45);
	EXPECT_EQ(mActions.mNumber, 2);
	EXPECT_EQ(field.Button(2).RestState(), kButtonPressed);
	mActions.mNumber = 0;
	Tick();
	EXPECT_EQ(field.Button(0).RestState(), kButtonPressed);
	// A filter's names and its values do not have one order.
	field.SetButtonValue(1, 4);
	Click(10, 25);
	EXPECT_EQ(mActions.mNumber, 4);
	EXPECT_EQ(field.PressedIndex(), 1);
	mActions.mNumber = 9;
	Tick();
	EXPECT_EQ(field.PressedIndex(), -1);
}

TEST_F(TButtonTest, ArrowsStepByTheMouseButton) {
	auto& pair = Show(MakePtr<TIncDecButtonPair>(TIncDecButtonPair::kUpDown), {0, 0, 13, 20});
	pair.SetActions({&mActions, &TActions::Index}, {&mActions, &TActions::Index});
	Click(6, 5);
	Move(6, 15);
	Press(TMouseButton::kRight);
	Release(TMouseButton::kRight);
	pair.SetEnabled(false);
	Click(6, 5);
	EXPECT_EQ(mActions.mCalls, "01");
}

} // namespace
