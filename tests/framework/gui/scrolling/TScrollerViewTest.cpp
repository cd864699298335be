// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/scrolling/TScrollerView.h"

#include "framework/gui/scrolling/TScrollBarButton.h"
#include "tests/support/TControlFixture.h"

#include <string>

namespace {

/// Writes down its slides.
class TContent final : public TScrollableContentView {
public:
	explicit TContent(TPointT<int> size) { SetSize(size.mX, size.mY); }

	void OnMoveBegin(int, int) override { mJournal += "b"; }

	void OnMoveEnd(bool finished) override { mJournal += finished ? "f" : "e"; }

	std::string mJournal;
};

class TScrollerViewTest : public TControlFixture {
protected:
	/// A bar on numbers of its own.
	TScrollBar& ShowBar(int length, int range, int window) {
		mRange.Set(range);
		mWindow.Set(window);
		const auto bar = MakePtr<TScrollBar>(TScrollBar::kVertical);
		bar->SetRangeValue(&mRange);
		bar->SetWindowValue(&mWindow);
		bar->SetPositionValue(&mPosition);
		return Show(bar, {0, 0, 16, length});
	}

	TScrollerView& ShowScroller(TPointT<int> content, const TRectT<int>& rect) {
		const auto scroller = MakePtr<TScrollerView>(TScrollerView::kNoBar, TScrollerView::kBar);
		scroller->SetContent(MakePtr<TContent>(content));
		return Show(scroller, rect);
	}

	void Wheel(int notches) {
		Platform().Wheel({0, notches});
		Tick();
	}

	TObservableBaseType<int> mRange;
	TObservableBaseType<int> mWindow;
	TObservableBaseType<int> mPosition;
};

TEST_F(TScrollerViewTest, BarGivesItsPartsTheRoomThereIs) {
	TScrollBar& bar = ShowBar(100, 100, 50);
	struct TCase {
		int mLength;
		int mArrow;
		int mTrack;
	};
	for (const TCase& test :
	     {TCase{100, 16, 68}, TCase{48, 16, 16}, TCase{47, 16, 0}, TCase{30, 15, 0}, TCase{20, 0, 0}}) {
		bar.SetSize(16, test.mLength);
		int shown = 0;
		int arrow = 0;
		for (const TPtr<TView>& child : bar.Children()) {
			if (!child->IsVisible() || child.Get() == &bar.Track())
				continue;
			++shown;
			arrow = child->Height();
		}
		EXPECT_EQ(shown, test.mArrow ? 2 : 0) << test.mLength;
		EXPECT_EQ(arrow, test.mArrow) << test.mLength;
		EXPECT_EQ(bar.Track().IsVisible() ? bar.Track().Height() : 0, test.mTrack) << test.mLength;
	}
}

TEST_F(TScrollerViewTest, BarScrollsByThumbTrackArrowsAndWheel) {
	TScrollBar& bar = ShowBar(132, 1000, 250);
	EXPECT_EQ(bar.Track().Thumb().mLength, 25);
	Move(8, 20);
	Press();
	Move(8, 30);
	EXPECT_EQ(mPosition.Get(), 100);
	EXPECT_EQ(bar.Track().Thumb().mStart, 10);
	Move(8, 400);
	EXPECT_EQ(mPosition.Get(), 750);
	Release();
	Click(8, 20);
	EXPECT_EQ(mPosition.Get(), 500);
	Click(8, 8);
	EXPECT_EQ(mPosition.Get(), 484);
	Wheel(-1);
	Wheel(-1);
	EXPECT_EQ(mPosition.Get(), 516);
	// The thumb stays large enough to be taken.
	mRange.Set(100000);
	EXPECT_EQ(bar.Track().Thumb().mLength, 16);
}

TEST_F(TScrollerViewTest, BarWithNothingToScrollGoesAway) {
	TScrollBar& bar = ShowBar(100, 100, 100);
	EXPECT_EQ(bar.Track().Thumb().mLength, bar.Track().Height());
	EXPECT_TRUE(bar.ContainsPoint(8, 50));
	bar.SetAutoHide(true);
	EXPECT_FALSE(bar.ContainsPoint(8, 50));
	EXPECT_FALSE(bar.Track().IsVisible());
	mRange.Set(101);
	EXPECT_TRUE(bar.ContainsPoint(8, 50));
	mRange.Set(-5);
	EXPECT_TRUE(bar.IsHidden());
}

TEST_F(TScrollerViewTest, ZoomBarChangesTheWindowByTheEndsOfItsThumb) {
	const auto bar = MakePtr<TZoomableScrollBar>(TScrollBar::kHorizontal);
	mRange.Set(100);
	mWindow.Set(50);
	bar->SetRangeValue(&mRange);
	bar->SetWindowValue(&mWindow);
	bar->SetPositionValue(&mPosition);
	bar->SetHasButtons(false);
	Show(bar, {0, 0, 100, 16});
	Move(49, 8);
	Press();
	Move(69, 8);
	Release();
	EXPECT_EQ(mWindow.Get(), 70);
	Move(1, 8);
	Press();
	Move(21, 8);
	Release();
	EXPECT_EQ(mPosition.Get(), 20);
	EXPECT_EQ(mWindow.Get(), 50);
	Move(45, 8);
	Press(TMouseButton::kLeft, 2);
	Release();
	EXPECT_EQ(mWindow.Get(), 100);
	EXPECT_EQ(mPosition.Get(), 0);
}

TEST_F(TScrollerViewTest, ContentFillsTheFrameAndStaysInside) {
	TScrollerView& scroller = ShowScroller({50, 300}, {0, 0, 100, 80});
	TScrollableContentView& content = *scroller.Content();
	EXPECT_EQ(content.Size(), (TPointT<int>{84, 300}));
	EXPECT_EQ(scroller.VerticalBar()->Range(), 300);
	content.SetScrollPositionY(1000, false);
	EXPECT_EQ(content.Position().mY, -220);
	content.SetSize(84, 200);
	EXPECT_EQ(content.Position().mY, -120);
	content.ScrollIntoView({0, 10, 10, 20}, false);
	EXPECT_EQ(content.ScrollPositionY(), 10);
	content.ScrollIntoView({0, 150, 10, 20}, false);
	EXPECT_EQ(content.ScrollPositionY(), 90);
	scroller.SetAutoHideBars(true);
	content.SetSize(84, 10);
	Tick();
	EXPECT_EQ(scroller.FrameSize(), (TPointT<int>{100, 80}));
	EXPECT_EQ(content.Position().mY, 0);
}

TEST_F(TScrollerViewTest, WheelGoesToTheInnermostUntilItsEnd) {
	TScrollerView& outer = ShowScroller({84, 300}, {0, 0, 100, 80});
	const auto inner = MakePtr<TScrollerView>(TScrollerView::kNoBar, TScrollerView::kBar);
	inner->SetContent(MakePtr<TContent>(TPointT<int>{20, 80}));
	inner->SetRect({0, 0, 60, 50});
	outer.Content()->AddChild(inner);
	Move(10, 10);
	Wheel(-1);
	EXPECT_EQ(inner->Content()->ScrollPositionY(), 16);
	Wheel(-1);
	Wheel(-1);
	EXPECT_EQ(inner->Content()->ScrollPositionY(), 30);
	EXPECT_EQ(outer.Content()->ScrollPositionY(), 0);
	Move(70, 10);
	Wheel(-1);
	EXPECT_EQ(outer.Content()->ScrollPositionY(), 16);
}

TEST_F(TScrollerViewTest, SlidesAFixedShareOfWhatIsLeft) {
	TScrollerView& scroller = ShowScroller({84, 1080}, {0, 0, 100, 80});
	auto& content = static_cast<TContent&>(*scroller.Content());
	content.ScrollTo({0, 400});
	EXPECT_TRUE(content.IsSliding());
	EXPECT_EQ(content.CurrentTargetPosition().mY, -400);
	Wait(10);
	EXPECT_EQ(content.ScrollPositionY(), 33);
	Wait(2000);
	EXPECT_EQ(content.ScrollPositionY(), 400);
	EXPECT_FALSE(content.IsSliding());
	EXPECT_EQ(content.mJournal, "be");
	content.ScrollTo({0, 0});
	content.FinishSlideNow();
	EXPECT_EQ(content.ScrollPositionY(), 0);
	EXPECT_EQ(content.mJournal, "bebf");
	content.SetPauseCount(1);
	content.SlideTo({0, -100});
	EXPECT_EQ(content.ScrollPositionY(), 100);
	EXPECT_EQ(content.mJournal, "bebf");
	content.SetPauseCount(0);
	content.SlideTo({0, 0});
	scroller.SetContent(nullptr);
	Wait(50);
}

} // namespace
