// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/scrolling/TListView.h"

#include "framework/gui/text/TTextField.h"
#include "framework/gui/views/TDragContent.h"
#include "tests/support/TControlFixture.h"
#include "tests/support/TStringPrinter.h"

#include <string>

namespace {

/// Writes down what it is told, and counts the rows that it draws.
class TProbeList final : public TListView {
public:
	void OnEntryClicked(int row, int) override { mJournal += "c" + std::to_string(row); }

	void OnEntryActivated(int row, int) override { mJournal += "a" + std::to_string(row); }

	void OnSelectionChanged() override { mJournal += "s"; }

	bool CanDrag(const TList<int>& rows) override {
		mJournal += "d" + std::to_string(rows.Count());
		return false;
	}

	void DrawRow(TSurface& port, int y, int row, const TColor& color, int font) override {
		++mDrawn;
		TListView::DrawRow(port, y, row, color, font);
	}

	std::string mJournal;
	int mDrawn = 0;
};

class TListViewTest : public TControlFixture {
protected:
	/// Ten rows of 10 in sight.
	TProbeList& ShowList(int entries) {
		const auto list = MakePtr<TProbeList>();
		list->SetRowHeight(10);
		TList<TString> texts;
		for (int i = 0; i < entries; ++i)
			texts.Append(TString::Format("entry %s", TString::ToString(i)));
		list->SetEntries(texts);
		return Show(list, {0, 0, 100, 100});
	}

	static std::string Selected(const TListView& list) {
		std::string rows;
		for (const int row : list.Selection())
			rows += std::to_string(row) + " ";
		return rows;
	}
};

TEST_F(TListViewTest, SelectsByMouse) {
	TProbeList& list = ShowList(20);
	Click(20, 25);
	EXPECT_EQ(list.mJournal, "sc2");
	Click(20, 25);
	EXPECT_EQ(list.mJournal, "sc2c2") << "a press on a selected row waits for the release";
	Press(TMouseButton::kLeft, 2);
	Release();
	EXPECT_EQ(list.mJournal, "sc2c2a2");
	list.mJournal.clear();
	Move(20, 35);
	Press();
	Move(20, 45);
	EXPECT_EQ(list.mJournal, "sc3d1");
	Release();
	Click(20, 150);
	EXPECT_EQ(Selected(list), "3 ");
}

TEST_F(TListViewTest, ExtendsAndTogglesWithModifiers) {
	TProbeList& list = ShowList(20);
	list.SetMultiSelect(true);
	Click(20, 25);
	KeyDown(kKeyLeftShift);
	Click(20, 55);
	EXPECT_EQ(Selected(list), "2 3 4 5 ");
	Click(20, 5);
	EXPECT_EQ(Selected(list), "0 1 2 ");
	KeyUp(kKeyLeftShift);
	KeyDown(kKeyLeftCommand);
	Move(20, 15);
	Press();
	EXPECT_EQ(Selected(list), "0 1 2 ");
	Release();
	Click(20, 85);
	KeyUp(kKeyLeftCommand);
	EXPECT_EQ(Selected(list), "0 2 8 ");
	Click(20, 85);
	EXPECT_EQ(Selected(list), "8 ");
}

TEST_F(TListViewTest, MovesByKeys) {
	TProbeList& list = ShowList(30);
	list.GrabFocus();
	Keys({kKeyDown});
	Keys({kKeyDown});
	EXPECT_EQ(Selected(list), "1 ");
	Keys({kKeyNext});
	EXPECT_EQ(Selected(list), "11 ");
	EXPECT_EQ(list.FirstRow(), 2);
	Keys({kKeyEnd});
	Keys({kKeyDown});
	EXPECT_EQ(Selected(list), "29 ");
	EXPECT_EQ(list.FirstRow(), 20);
	Keys({kKeyHome});
	Keys({kKeyPrior});
	EXPECT_EQ(Selected(list), "0 ");
	Keys({kKeyLeftShift, kKeyDown});
	EXPECT_EQ(Selected(list), "0 ");
	list.SetMultiSelect(true);
	Keys({kKeyLeftShift, kKeyDown});
	EXPECT_EQ(Selected(list), "0 1 ");
	list.mJournal.clear();
	Keys({kKeyReturn});
	EXPECT_EQ(list.mJournal, "a0");
}

TEST_F(TListViewTest, FiltersByItsSearchFieldAndKeepsTheSelection) {
	TProbeList& list = ShowList(0);
	list.SetEntries({"foam", "Ofen", "bar", "Foil"});
	list.ShowSearchField();
	list.Select(3);
	struct TCase {
		const char* mSearch;
		std::string mRows;
	};
	for (const TCase& test :
	     {TCase{"fo", "0 3 "}, TCase{"*fo", "0 3 "}, TCase{"F?", "0 1 3 "}, TCase{"x", ""}, TCase{"", "0 1 2 3 "}}) {
		list.SearchValue().Set(test.mSearch);
		std::string rows;
		for (int row = 0; row < list.NumberOfRows(); ++row)
			rows += std::to_string(list.EntryOfRow(row)) + " ";
		EXPECT_EQ(rows, test.mRows) << test.mSearch;
	}
	list.Select(3);
	Click(20, 10);
	Type("foi");
	EXPECT_EQ(list.NumberOfRows(), 1);
	EXPECT_EQ(Selected(list), "0 ");
	Keys({kKeyTab});
	EXPECT_TRUE(list.HasFocus());
	Click(90, 10);
	EXPECT_EQ(list.NumberOfRows(), 4);
	EXPECT_EQ(Selected(list), "3 ");
}

TEST_F(TListViewTest, DrawsAndScrollsNoMoreThanIsInSight) {
	TProbeList& list = ShowList(10000);
	list.mDrawn = 0;
	list.ScrollToRow(5000);
	Tick();
	EXPECT_EQ(list.mDrawn, 11);
	Move(20, 20);
	Platform().Wheel({0, -3});
	Tick();
	EXPECT_EQ(list.FirstRow(), 5003);
	list.ScrollToRow(20000);
	EXPECT_EQ(list.FirstRow(), 9990);
	EXPECT_EQ(list.RowAt(20, 95), 9999);
	list.SetEntries({"one"});
	EXPECT_EQ(list.FirstRow(), 0);
	EXPECT_EQ(list.RowAt(20, 15), -1);
	EXPECT_FALSE(list.HasRowsOutOfSight());
}

} // namespace
