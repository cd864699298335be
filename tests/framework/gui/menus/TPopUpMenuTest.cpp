// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/menus/TPopUpMenu.h"

#include "framework/gui/menus/TPopupListView.h"
#include "framework/gui/windows/TDesktop.h"
#include "tests/support/TControlFixture.h"
#include "tests/support/TStringPrinter.h"

#include <string>

namespace {

class TPopUpMenuTest : public TControlFixture {
protected:
	TPopUpMenu& ShowMenu(const TList<TString>& labels, const TRectT<int>& rect = {10, 10, 90, 20}) {
		const auto menu = MakePtr<TPopUpMenu>(&mValue);
		menu->SetEntries(labels);
		menu->SetStepAction({this, &TPopUpMenuTest::OnStep});
		return Show(menu, rect);
	}

	void OnStep(int mouseButton) { mSteps += std::to_string(mouseButton); }

	static TViewWindow* ListWindow() {
		const TList<TWindow*>& windows = TDesktop::Instance()->OpenWindows();
		return windows.Count() > 1 ? static_cast<TViewWindow*>(windows[1]) : nullptr;
	}

	static TPopupListView& List() { return static_cast<TPopupMainFrameView*>(ListWindow()->MainFrame())->List(); }

	void ClickRow(int row, TMouseButton button = TMouseButton::kLeft) {
		const TPointT<int> point = ListWindow()->ClientToScreen({10, row * 16 + 8});
		Move(point.mX, point.mY);
		Press(button);
		Release(button);
	}

	static TList<TString> Labels(int count) {
		TList<TString> labels;
		for (int i = 0; i < count; ++i)
			labels.Append(TString::ToString(i));
		return labels;
	}

	TObservableBaseType<int> mValue{1};
	std::string mSteps;
};

TEST_F(TPopUpMenuTest, OpensAListAndTakesWhatIsReleasedOver) {
	TPopUpMenu& menu = ShowMenu({"Off", "Beat", "1/8th", "1/16th"});
	EXPECT_EQ(menu.ClosedText(), "Beat");
	Click(30, 20);
	ASSERT_TRUE(menu.IsOpen());
	EXPECT_EQ(ListWindow()->Position(), mpEditor->ClientToScreen({10, 30}));
	EXPECT_EQ(ListWindow()->ClientSize(), (TPointT<int>{90, 64}));
	EXPECT_EQ(List().FirstSelected(), 1);
	ClickRow(2);
	EXPECT_EQ(mValue.Get(), 2);
	EXPECT_FALSE(menu.IsOpen());
	menu.Open();
	ClickRow(0, TMouseButton::kRight);
	EXPECT_EQ(mValue.Get(), 0);
	EXPECT_EQ(mSteps, "01");
	menu.Open();
	Keys({kKeyDown});
	Keys({kKeyDown});
	EXPECT_EQ(mValue.Get(), 0);
	Keys({kKeyReturn});
	EXPECT_EQ(mValue.Get(), 2);
	menu.Open();
	Keys({kKeyEscape});
	EXPECT_FALSE(menu.IsOpen());
}

TEST_F(TPopUpMenuTest, TheClickThatClosesTheListDoesNotOpenItAgain) {
	TPopUpMenu& menu = ShowMenu({"a", "b"});
	Click(30, 20);
	Click(30, 20);
	EXPECT_FALSE(menu.IsOpen());
	Click(30, 20);
	EXPECT_TRUE(menu.IsOpen());
	Platform().Wheel({0, 1});
	Tick();
	EXPECT_EQ(mValue.Get(), 1) << "the wheel rests while the list is open";
	menu.SetVisible(false);
	EXPECT_EQ(ListWindow(), nullptr);
}

TEST_F(TPopUpMenuTest, StepsByWheelWithinAndByArrowsAround) {
	TPopUpMenu& menu = ShowMenu({"a", "b", "c"});
	menu.SetShowIncDecButtons(true);
	Move(60, 20);
	for (const int notch : {-1, -1, -1, 1}) {
		Platform().Wheel({0, notch});
		Tick();
	}
	EXPECT_EQ(mValue.Get(), 1);
	EXPECT_EQ(mSteps, "");
	Click(28, 20);
	Click(28, 20);
	EXPECT_EQ(mValue.Get(), 0);
	Click(17, 20);
	EXPECT_EQ(mValue.Get(), 2);
	EXPECT_EQ(mSteps, "000");
	mValue.Set(17);
	EXPECT_EQ(menu.ClosedText(), "None");
	Click(17, 20);
	EXPECT_EQ(mValue.Get(), 2);
	mValue.Set(-1);
	Click(28, 20);
	EXPECT_EQ(mValue.Get(), 0);
}

TEST_F(TPopUpMenuTest, WithoutEntriesThereIsNothingToChoose) {
	TPopUpMenu& menu = ShowMenu({});
	EXPECT_EQ(menu.ClosedText(), "None");
	menu.Open();
	EXPECT_EQ(List().NumberOfRows(), 1);
	ClickRow(0);
	EXPECT_FALSE(menu.IsOpen());
	menu.SetEntries({"001: Init", "002: Init"}, {"Init", ""});
	EXPECT_EQ(menu.ClosedText(), "");
	menu.Open();
	EXPECT_EQ(List().RowText(0), "001: Init");
	menu.SetEntries({"one", "two", "three"});
	EXPECT_EQ(List().NumberOfRows(), 3);
	EXPECT_EQ(List().FirstSelected(), 1);
	EXPECT_EQ(mValue.Get(), 1);
}

TEST_F(TPopUpMenuTest, OpensWhereThereIsRoomAndCutsALongList) {
	mValue.Set(100);
	TPopUpMenu& menu = ShowMenu(Labels(128));
	menu.Open();
	EXPECT_EQ(ListWindow()->Position().mY, mpEditor->ClientToScreen({0, 30}).mY);
	EXPECT_EQ(ListWindow()->ClientSize().mY, ((1500 - 30) / 16 - 1) * 16);
	EXPECT_GT(List().FirstRow(), 0);
	menu.CloseList();
	mpEditor->SetPosition({2330, 1300});
	menu.Open();
	const TPointT<int> corner = ListWindow()->Position() + ListWindow()->ClientSize();
	EXPECT_EQ(corner, (TPointT<int>{2400, 1310}));
	EXPECT_EQ(ListWindow()->ClientSize().mY, (1310 / 16 - 1) * 16);
}

TEST_F(TPopUpMenuTest, ALabelThatIsTooLongIsTheToolTip) {
	TPopUpMenu& menu = ShowMenu({"a", "Splendid Joyous Cuboids and more"});
	EXPECT_EQ(menu.ToolTipText(), "Splendid Joyous Cuboids and more");
	mValue.Set(0);
	EXPECT_EQ(menu.ToolTipText(), "");
	menu.Open();
	EXPECT_GT(ListWindow()->ClientSize().mX, 90);
}

} // namespace
