// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/tooltips/TToolTipWindow.h"

#include "framework/gui/controls/TButton.h"
#include "framework/gui/keyboard/TKeyboardBindings.h"
#include "tests/support/TControlFixture.h"
#include "tests/support/TStringPrinter.h"

namespace {

class TToolTipWindowTest : public TControlFixture {
protected:
	TButton& ShowButton(const TString& tip, const TRectT<int>& rect) {
		const auto button = MakePtr<TButton>("Rand");
		button->SetToolTip(tip);
		return Show(button, rect);
	}

	static TString Tip() { return TToolTipWindow::Current() ? TToolTipWindow::Current()->Text() : TString(); }
};

TEST_F(TToolTipWindowTest, ComesAfterARestAndGoesOnFromViewToView) {
	ShowButton("First.", {10, 10, 40, 20});
	ShowButton("Second.\nIn two lines.", {60, 10, 40, 20});
	Move(20, 20);
	Wait(740);
	EXPECT_EQ(Tip(), "");
	Wait(30);
	EXPECT_EQ(Tip(), "First.");
	EXPECT_EQ(TToolTipWindow::Current()->Position(), (TPointT<int>{26, 38}));
	const TPointT<int> first = TToolTipWindow::Current()->ClientSize();
	Move(70, 20);
	Wait(20);
	EXPECT_EQ(Tip(), "Second.\nIn two lines.");
	EXPECT_EQ(TToolTipWindow::Current()->ClientSize().mY, first.mY + 13);
	Move(70, 80);
	Wait(20);
	EXPECT_EQ(Tip(), "");
	// Not over a view that was clicked.
	Click(20, 20);
	Wait(1000);
	EXPECT_EQ(Tip(), "");
}

TEST_F(TToolTipWindowTest, StaysWholeOnTheScreenAbovePointersNearItsEdge) {
	ShowButton("A tip that is rather long, for its place.", {150, 70, 50, 30});
	mpEditor->SetPosition({2200, 1400});
	Move(2390, 1490);
	Wait(800);
	ASSERT_NE(Tip(), "");
	const TPointT<int> size = TToolTipWindow::Current()->ClientSize();
	EXPECT_EQ(TToolTipWindow::Current()->Position(), (TPointT<int>{2400 - size.mX, 1490 - size.mY}));
}

TEST_F(TToolTipWindowTest, NamesTheKeyOfAControl) {
	TButton& button = ShowButton("Copy.", {10, 10, 40, 20});
	Move(20, 20);
	Wait(800);
	const TPointT<int> plain = TToolTipWindow::Current()->ClientSize();
	Move(150, 80);
	Wait(20);
	button.SetKey(TKeyboardKey(kKeyA, kCommandModifier | kShiftModifier));
	Move(20, 20);
	Wait(800);
	const TPointT<int> hinted = TToolTipWindow::Current()->ClientSize();
	EXPECT_EQ(hinted.mY, plain.mY + 13);
	EXPECT_EQ(hinted.mX, button.ToolTipKeyWidth() + 8);
	// Two pictures and a letter.
	EXPECT_GT(button.ToolTipKeyWidth(), 22 + 2);
}

} // namespace
