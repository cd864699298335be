// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/menus/TContextMenu.h"

#include "framework/document/undo/TDocumentRoot.h"
#include "framework/gui/menus/TContextMenuScrollableContentView.h"
#include "framework/gui/windows/TDesktop.h"
#include "tests/support/TControlFixture.h"
#include "tests/support/TStringPrinter.h"

#include <string>

namespace {

class TRoot final : public TDocumentRoot {
public:
	TRoot() { FinishDeclaration(); }
};

class TContextMenuTest : public TControlFixture {
protected:
	using TEntries = TContextMenu::TEntries;

	void SetUp() override {
		TControlFixture::SetUp();
		OpenEditor();
		mOwner = MakePtr<TView>();
		Show(mOwner, {20, 10, 50, 20});
	}

	TPtr<TMenuEntry> Entry(const char* text, bool enabled = true) {
		const auto entry = MakePtr<TMenuEntry>(text, TFunctionPtr<void, int>(this, &TContextMenuTest::Run));
		entry->SetEnabled(enabled);
		return entry;
	}

	void Run(int id) {
		mRan += TMenuEntry::WithId(id)->Label().CString();
		mWindowsWhenRan = NumberOfMenus();
		mStepWhenRan = mpEditor->DocumentRoot() && mpEditor->DocumentRoot()->IsActionOpen();
	}

	TContextMenu::TResultAction ResultAction() { return {this, &TContextMenuTest::OnResult}; }

	static int NumberOfMenus() { return TDesktop::Instance()->OpenWindows().Count() - 1; }

	TPtr<TContextMenu> Open(const TEntries& entries) {
		const auto menu = TContextMenu::OpenBelow(*mOwner, entries);
		Tick();
		return menu;
	}

	/// The middle of a row on the screen.
	static TPointT<int> RowPoint(TContextMenu& menu, int row) {
		const TRectT<int> rect = menu.Frame().Content().RowRect(row);
		const TPointT<int> corner = menu.Frame().Content().AbsolutePosition();
		return menu.ClientToScreen({corner.mX + 20, corner.mY + rect.mTop + 9});
	}

	void ClickRow(TContextMenu& menu, int row) {
		const TPointT<int> point = RowPoint(menu, row);
		Click(point.mX, point.mY);
	}

	void OnResult(bool chosen) { mRan += chosen ? "+" : "-"; }

	TPtr<TView> mOwner;
	std::string mRan;
	int mWindowsWhenRan = -1;
	bool mStepWhenRan = false;
};

TEST_F(TContextMenuTest, RunsAnEntryAsOneStepWhenItHasGone) {
	const auto root = MakePtr<TRoot>();
	mpEditor->SetDocument(root.Get());
	const auto menu = Open({Entry("Init"), Entry("Copy", false), Entry("Paste")});
	EXPECT_EQ(menu->Position(), mpEditor->ClientToScreen({20, 30}));
	ClickRow(*menu, 1);
	EXPECT_EQ(mRan, "");
	ClickRow(*menu, 2);
	EXPECT_EQ(mRan, "Paste");
	EXPECT_EQ(mWindowsWhenRan, 0);
	EXPECT_TRUE(mStepWhenRan);
	Tick();
	EXPECT_FALSE(root->IsActionOpen());
}

TEST_F(TContextMenuTest, RowsAndColumnsHaveRoomForAllThatIsShown) {
	const auto plain = Entry("Copy");
	const auto separated = Entry("Paste");
	separated->SetSeparator(TMenuEntry::kSeparatorAbove);
	const auto titled = Entry("Mutate");
	titled->SetSeparator(TMenuEntry::kSeparatorAbove, "Title");
	const auto content = MakePtr<TContextMenuScrollableContentView>(TEntries{plain, separated, titled}, false);
	content->OnLayout();
	EXPECT_EQ(content->RowRect(1).mTop, 26);
	EXPECT_EQ(content->RowRect(2).mTop, 63);
	EXPECT_EQ(content->Size(), (TPointT<int>{36 + 22, 81}));
	plain->SetKey(TKeyboardKey(kKeyA, kCommandModifier));
	const auto withHints = MakePtr<TContextMenuScrollableContentView>(
	    TEntries{plain, MakePtr<TMenuEntry>("More", TEntries{titled})}, true);
	withHints->OnLayout();
	EXPECT_GT(withHints->Width(), 22 + 27 + 22 + 20 + 15);
}

TEST_F(TContextMenuTest, KeysGoAroundPastDisabledRows) {
	auto menu = Open({Entry("a", false), Entry("b"), Entry("c", false), Entry("d")});
	const auto highlighted = [&] { return menu->Frame().Content().HighlightedRow(); };
	Keys({kKeyUp});
	EXPECT_EQ(highlighted(), 3);
	Keys({kKeyDown});
	EXPECT_EQ(highlighted(), 1);
	Keys({kKeyDown});
	Keys({kKeyDown});
	EXPECT_EQ(highlighted(), 1);
	Keys({kKeyReturn});
	EXPECT_EQ(mRan, "b");
	EXPECT_EQ(NumberOfMenus(), 0);
	menu = Open({Entry("a", false), Entry("b", false)});
	Keys({kKeyDown});
	EXPECT_EQ(highlighted(), -1);
	Keys({kKeyReturn});
	Keys({kKeyEscape});
	EXPECT_EQ(NumberOfMenus(), 0);
	EXPECT_EQ(mRan, "b");
}

TEST_F(TContextMenuTest, SubMenuOpensAfterARestAndByKey) {
	const auto more = MakePtr<TMenuEntry>("More", TEntries{Entry("x"), Entry("y")});
	const auto menu = Open({Entry("a"), more});
	const TPointT<int> row = RowPoint(*menu, 1);
	Move(row.mX, row.mY);
	Wait(190);
	EXPECT_EQ(NumberOfMenus(), 1);
	Wait(30);
	ASSERT_NE(menu->Frame().SubMenu(), nullptr);
	EXPECT_EQ(menu->Frame().SubMenu()->Position().mX, menu->Position().mX + menu->ClientSize().mX - 3);
	const TPointT<int> other = RowPoint(*menu, 0);
	Move(other.mX, other.mY);
	Wait(220);
	EXPECT_EQ(menu->Frame().SubMenu(), nullptr);
	Keys({kKeyDown});
	Keys({kKeyRight});
	ASSERT_NE(menu->Frame().SubMenu(), nullptr);
	Keys({kKeyLeft});
	EXPECT_EQ(NumberOfMenus(), 1);
	Keys({kKeyRight});
	Keys({kKeyDown});
	Keys({kKeyReturn});
	EXPECT_EQ(mRan, "y");
	EXPECT_EQ(NumberOfMenus(), 0);
}

TEST_F(TContextMenuTest, StaysOnTheScreenAndScrollsWhereThatIsTooLow) {
	TEntries entries;
	for (int i = 0; i < 100; ++i)
		entries.Append(Entry("an entry"));
	mpEditor->SetPosition({2330, 1400});
	auto menu = Open({entries[0], entries[1], entries[2], entries[3]});
	const TPointT<int> corner = menu->Position() + menu->ClientSize();
	EXPECT_EQ(corner, (TPointT<int>{2398, 1498}));
	menu->Close();
	menu = Open(entries);
	EXPECT_EQ(menu->ClientSize().mY, 1498 - 12 + 8);
	EXPECT_GE(menu->Position().mY, 0);
	Keys({kKeyUp});
	EXPECT_EQ(menu->Frame().Content().HighlightedRow(), 99);
	EXPECT_LT(menu->Frame().Content().Position().mY, -300);
	const TPointT<int> point = menu->Position() + TPointT<int>{20, 20};
	Move(point.mX, point.mY);
	const int before = menu->Frame().Content().Position().mY;
	Platform().Wheel({0, 1});
	Tick();
	EXPECT_EQ(menu->Frame().Content().Position().mY, before + 18);
}

TEST_F(TContextMenuTest, ClosesByAClickElsewhereAndDoesNothingWithoutItsOwner) {
	auto menu = TContextMenu::Open(*mOwner, {Entry("a")}, {30, 20}, false, ResultAction());
	EXPECT_EQ(menu->Position(), mpEditor->ClientToScreen({38, 28}));
	Click(5, 5);
	EXPECT_EQ(NumberOfMenus(), 0);
	EXPECT_EQ(mRan, "-");
	menu = TContextMenu::OpenBelow(*mOwner, {Entry("a")}, false, ResultAction());
	mpEditor->MainFrame()->RemoveChild(mOwner.Get());
	mOwner = nullptr;
	ClickRow(*menu, 0);
	EXPECT_EQ(mRan, "-+");
	EXPECT_EQ(NumberOfMenus(), 0);
}

TEST_F(TContextMenuTest, EditorThatClosesTakesItsMenusWithIt) {
	const auto menu = Open({Entry("a"), MakePtr<TMenuEntry>("More", TEntries{Entry("x")})});
	menu->Frame().OpenSubMenu(1);
	EXPECT_EQ(NumberOfMenus(), 2);
	mpEditor->Close();
	EXPECT_FALSE(menu->IsOpen());
	EXPECT_EQ(TDesktop::Instance()->OpenWindows().Count(), 0);
}

} // namespace
