// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/layout/TRackView.h"
#include "framework/gui/layout/TAlignerRack.h"
#include "tests/support/TGuiFixture.h"

#include <vector>

namespace {

class TRackViewTest : public TGuiFixture {
protected:
	template <class TRack>
	TPtr<TRack> Fill(const TPtr<TRack>& rack, std::initializer_list<TPointT<int>> sizes) {
		if (!mpEditor)
			OpenEditor();
		for (const TPointT<int>& size : sizes) {
			const auto child = MakePtr<TView>();
			child->SetSize(size.mX, size.mY);
			rack->AddChild(child);
		}
		// Only in a tree do they lay out.
		mpEditor->MainFrame()->AddChild(rack);
		return rack;
	}

	static std::vector<TPointT<int>> Places(const TView& rack) {
		std::vector<TPointT<int>> places;
		for (const TPtr<TView>& child : rack.Children())
			places.push_back(child->Position());
		return places;
	}
};

using TPlaces = std::vector<TPointT<int>>;

TEST_F(TRackViewTest, WrapsWhereTheNextChildWouldPassTheLimit) {
	const auto row = Fill(MakePtr<TRowRack>(true, 100), {{40, 10}, {40, 20}, {40, 10}});
	EXPECT_EQ(Places(*row), (TPlaces{{4, 4}, {44, 4}, {4, 24}}));
	EXPECT_EQ(row->Size(), (TPointT<int>{88, 38}));
	row->Children()[1]->SetVisible(false);
	EXPECT_EQ(row->Children()[2]->Position(), (TPointT<int>{44, 4}));
	EXPECT_EQ(row->Size(), (TPointT<int>{88, 18}));

	const auto column = Fill(MakePtr<TColumnRack>(true, 40), {{10, 20}, {30, 20}, {10, 20}});
	column->SetMargin(0);
	column->SetSpacing(2, 0);
	EXPECT_EQ(Places(*column), (TPlaces{{0, 0}, {0, 20}, {32, 0}}));
}

TEST_F(TRackViewTest, FollowsItsChildrenAndMakesThemUniform) {
	const auto rack = Fill(MakePtr<TUniformedColumnRack>(), {{10, 10}, {30, 10}});
	rack->SetMargins(1, 2, 3, 4);
	rack->SetSpacing(0, 5);
	EXPECT_EQ(rack->Children()[0]->Width(), 30);
	EXPECT_EQ(Places(*rack), (TPlaces{{1, 3}, {1, 18}}));
	EXPECT_EQ(rack->Size(), (TPointT<int>{33, 32}));
	rack->Children()[0]->SetSize(50, 20);
	EXPECT_EQ(rack->Children()[1]->Width(), 50);
	EXPECT_EQ(rack->Size(), (TPointT<int>{53, 42}));
	rack->RemoveChild(rack->Children()[0].Get());
	EXPECT_EQ(rack->Size(), (TPointT<int>{53, 17}));
}

TEST_F(TRackViewTest, AlignerPlacesByItsModeAndNeverShrinks) {
	const auto aligner = Fill(MakePtr<THorizontalAligner>(kLayoutStart), {{20, 10}, {10, 15}});
	aligner->SetMargins(5, 5, 2, 3);
	aligner->SetSpacing(5);
	EXPECT_EQ(aligner->Size(), (TPointT<int>{45, 20}));
	aligner->SetSize(100, 20);
	aligner->SetSize(10, 20);
	EXPECT_EQ(aligner->Width(), 45);
	aligner->SetSize(100, 20);

	const std::vector<std::pair<int, TPlaces>> modes{
	    {kLayoutStart, {{5, 2}, {30, 2}}},        {kLayoutEnd, {{60, 2}, {85, 2}}},
	    {kLayoutEndReversed, {{75, 2}, {60, 2}}}, {kLayoutJustified, {{5, 2}, {85, 2}}},
	    {kLayoutCenter, {{32, 2}, {57, 2}}},      {kLayoutSpread, {{25, 2}, {65, 2}}},
	    {kLayoutCenterSteps, {{25, 2}, {60, 2}}}};
	for (const auto& [mode, places] : modes) {
		aligner->SetMode(mode);
		EXPECT_EQ(Places(*aligner), places) << mode;
	}
	aligner->SetMode(kLayoutJustified);
	aligner->Children()[1]->SetVisible(false);
	EXPECT_EQ(aligner->Children()[0]->Position().mX, 40);
}

TEST_F(TRackViewTest, CountsAnAlignerWithWhatItNeeds) {
	const auto aligner = MakePtr<THorizontalAligner>(kLayoutStart);
	const auto row = Fill(MakePtr<TRowRack>(), {});
	Fill(aligner, {{20, 10}});
	aligner->SetSize(90, 10);
	row->AddChild(aligner);
	EXPECT_EQ(row->Size(), (TPointT<int>{28, 18}));
}

} // namespace
