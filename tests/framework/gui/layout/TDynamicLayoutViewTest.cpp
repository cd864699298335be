// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/layout/TDynamicLayoutView.h"

#include "tests/support/TGuiFixture.h"

#include <algorithm>
#include <vector>

namespace {

TPtr<TLengthPolicy> Dynamic(int minimum, int maximum = TLengthPolicy::kNoLimit) {
	return MakePtr<TDynamicLength>(minimum, maximum);
}

TPtr<TLengthPolicy> Fixed(int length) {
	return MakePtr<TFixedLength>(length);
}

class TDynamicLayoutViewTest : public TGuiFixture {
protected:
	struct TLimits {
		int mMinimum;
		int mMaximum = TLengthPolicy::kNoLimit;
	};

	template <class TLayout = TDynamicRowLayoutView>
	TPtr<TLayout> Row(std::initializer_list<TLimits> widths) {
		const auto row = MakePtr<TLayout>();
		for (const auto& [minimum, maximum] : widths)
			Add(*row, Dynamic(minimum, maximum), Dynamic(0));
		return row;
	}

	static TPtr<TView> Add(TView& parent, const TPtr<TLengthPolicy>& width, const TPtr<TLengthPolicy>& height) {
		const auto child = MakePtr<TView>();
		child->SetSizePolicy(width, height);
		parent.AddChild(child);
		return child;
	}

	/// Shows it and gives left and width of each child.
	std::vector<int> LayOut(const TPtr<TDynamicLayoutView>& layout, int width, int height = 20) {
		if (!mpEditor)
			OpenEditor();
		mpEditor->MainFrame()->AddChild(layout);
		layout->SetSize(width, height);
		std::vector<int> places;
		for (const TPtr<TView>& child : layout->Children())
			places.insert(places.end(), {child->Position().mX, child->Width()});
		return places;
	}
};

TEST_F(TDynamicLayoutViewTest, SharesFreePixelsToTheLastOne) {
	using TPlaces = std::vector<int>;
	EXPECT_EQ(LayOut(Row({{0}, {0}, {0}}), 10), (TPlaces{0, 3, 3, 3, 6, 4}));
	EXPECT_EQ(LayOut(Row({{30, 30}, {0}}), 100), (TPlaces{0, 30, 30, 70}));
	// What one cannot take goes to the others.
	EXPECT_EQ(LayOut(Row({{10, 20}, {0}, {0}}), 100), (TPlaces{0, 20, 20, 40, 60, 40}));
	// Where nobody can take it, it stays free; where there is too little, the minima stand.
	EXPECT_EQ(LayOut(Row({{10, 20}, {0, 5}}), 100), (TPlaces{0, 20, 20, 5}));
	EXPECT_EQ(LayOut(Row({{60}, {60}}), 100), (TPlaces{0, 60, 60, 60}));
}

TEST_F(TDynamicLayoutViewTest, AlignsWhatIsLeft) {
	struct TCase {
		int mAlignment;
		std::vector<int> mTwo;
		int mOne;
	};

	const TCase cases[]{{kLayoutStart, {5, 30}, 5},         {kLayoutEnd, {60, 85}, 75},
	                    {kLayoutEndReversed, {75, 60}, 75}, {kLayoutJustified, {5, 85}, 40},
	                    {kLayoutCenter, {32, 57}, 40},      {kLayoutSpread, {23, 66}, 40},
	                    {kLayoutCenterSteps, {25, 60}, 40}};
	for (const TCase& test : cases) {
		const auto row = Row({{20, 20}, {10, 10}});
		row->SetMargins(5);
		row->SetSpacing(5);
		row->SetHorizontalAlignment(test.mAlignment);
		const std::vector<int> two = LayOut(row, 100);
		EXPECT_EQ((std::vector<int>{two[0], two[2]}), test.mTwo) << test.mAlignment;
		row->Children()[1]->SetVisible(false);
		EXPECT_EQ(row->Children()[0]->Position().mX, test.mOne) << test.mAlignment;
	}
}

TEST_F(TDynamicLayoutViewTest, PlacesAcrossByTheOtherAlignment) {
	const auto column = MakePtr<TDynamicColumnLayoutView>();
	column->SetMargins(4, 6, 0, 0);
	const TPtr<TView> child = Add(*column, Dynamic(0, 30), Fixed(10));
	const TPtr<TView> wide = Add(*column, Dynamic(0), Fixed(10));
	column->SetVerticalAlignment(kLayoutEnd);
	LayOut(column, 100, 50);
	EXPECT_EQ(child->AbsoluteRect(), (TRectT<int>{4, 30, 30, 10}));
	EXPECT_EQ(wide->AbsoluteRect(), (TRectT<int>{4, 40, 90, 10}));
	column->SetHorizontalAlignment(kLayoutCenter);
	EXPECT_EQ(child->Position().mX, 34);
	column->SetHorizontalAlignment(kLayoutEnd);
	EXPECT_EQ(child->Position().mX, 64);
}

TEST_F(TDynamicLayoutViewTest, HandsTheLimitsOfNestedLayoutsOutward) {
	const auto outer = MakePtr<TDynamicColumnLayoutView>();
	const auto inner = MakePtr<TDynamicRowLayoutView>();
	outer->SetMargins(1);
	outer->AddChild(inner);
	inner->SetSpacing(3);
	Add(*inner, Fixed(20), Dynamic(5));
	const TPtr<TView> second = Add(*inner, Dynamic(10), Fixed(8));
	EXPECT_EQ(outer->MinimumSize(), (TPointT<int>{35, 10}));
	EXPECT_EQ(outer->MaximumSize(), (TPointT<int>{TLengthPolicy::kNoLimit, TLengthPolicy::kNoLimit}));
	second->SetSizePolicy(Fixed(10), Fixed(8));
	EXPECT_EQ(outer->MaximumSize(), (TPointT<int>{35, TLengthPolicy::kNoLimit}));
	second->SetVisible(false);
	EXPECT_EQ(outer->MinimumSize(), (TPointT<int>{22, 7}));
}

TEST_F(TDynamicLayoutViewTest, LeavesManualSizesAndFollowsThem) {
	const auto row = MakePtr<TDynamicRowLayoutView>();
	const auto manual = MakePtr<TView>();
	manual->SetSize(30, 12);
	row->AddChild(manual);
	const TPtr<TView> rest = Add(*row, Dynamic(0), Dynamic(0));
	LayOut(row, 100);
	EXPECT_EQ(manual->Size(), (TPointT<int>{30, 12}));
	EXPECT_EQ(rest->AbsoluteRect(), (TRectT<int>{30, 0, 70, 20}));
	manual->SetSize(40, 12);
	EXPECT_EQ(rest->AbsoluteRect(), (TRectT<int>{40, 0, 60, 20}));
}

/// Makes itself as high as it is wide.
class TSquareView final : public TView {
public:
	void OnResized() override { SetSize(Width(), Width()); }
};

TEST_F(TDynamicLayoutViewTest, EndsWhenChildrenResizeThemselvesInTheMidst) {
	const auto column = MakePtr<TDynamicColumnLayoutView>();
	const auto square = MakePtr<TSquareView>();
	square->SetSizePolicy(Dynamic(0), MakePtr<TManualLength>());
	column->AddChild(square);
	const TPtr<TView> rest = Add(*column, Dynamic(0), Dynamic(0));
	LayOut(column, 30, 100);
	EXPECT_EQ(square->Size(), (TPointT<int>{30, 30}));
	EXPECT_EQ(rest->AbsoluteRect(), (TRectT<int>{0, 30, 30, 70}));
}

} // namespace
