// SPDX-License-Identifier: GPL-3.0-or-later
// What is drawn, in which order, and what is not.

#include "framework/foundation/text/TReadableException.h"
#include "framework/gui/views/TLinkedViewValueBase.h"
#include "tests/support/TGuiFixture.h"

#include <gmock/gmock.h>

namespace {

class TOpaqueView final : public TProbeView {
public:
	using TProbeView::TProbeView;

	bool IsRectCovered(const TRectT<int>& /*rect*/) const override { return true; }
};

class TColorView final : public TView {
public:
	explicit TColorView(const TColor& color) : mColor(color) {}

	void Draw(TSurface& port) override { port.FillRect(AbsoluteRect(), mColor, 1.0f); }

private:
	const TColor mColor;
};

class TViewDrawingTest : public TGuiFixture {
protected:
	using TRects = std::vector<TRectT<int>>;

	static TRects RectsOf(const TList<TRectT<int>>& list) { return TRects(list.begin(), list.end()); }

	template <class T = TProbeView>
	TPtr<T> AddProbe(TView& parent, const char* name, const TRectT<int>& rect) {
		auto probe = MakePtr<T>(mJournal, name, rect);
		probe->mTellsDraws = true;
		parent.AddChild(probe.Get());
		return probe;
	}

	std::string Frame() {
		mJournal.clear();
		Tick();
		return mJournal;
	}

	uint32_t PixelAt(int x, int y) {
		const auto& window = static_cast<const THeadlessWindow&>(*Editor().Glue());
		return window.Pixels()[static_cast<std::size_t>(y * window.ClientSize().mX + x)];
	}

	std::string mJournal;
};

TEST_F(TViewDrawingTest, TheDirtyListHoldsNoRectangleInsideAnother) {
	TMainFrameView& frame = OpenEditor();
	frame.AddDirtyRect({10, 10, 10, 10});
	frame.AddDirtyRect({12, 12, 2, 2});
	frame.AddDirtyRect({0, 0, 0, 50});
	frame.AddDirtyRect({50, 50, 5, 5});
	EXPECT_EQ(RectsOf(frame.DirtyRects()), (TRects{{10, 10, 10, 10}, {50, 50, 5, 5}}));
	frame.AddDirtyRect({0, 0, 100, 60}); // takes the first one's place; the second goes when drawing begins
	TList<TRectT<int>> drawn;
	frame.TakeDirtyRects(drawn);
	EXPECT_EQ(RectsOf(drawn), (TRects{{0, 0, 100, 60}}));
	EXPECT_TRUE(frame.DirtyRects().IsEmpty());
}

TEST_F(TViewDrawingTest, InvalidatingClipsToWhatIsShownAndDrawsOnlyThat) {
	TMainFrameView& frame = OpenEditor();
	const auto parent = AddProbe(frame, "p", {10, 10, 50, 50});
	const auto child = AddProbe(*parent, "c", {40, 40, 50, 50});
	const auto other = AddProbe(frame, "o", {100, 10, 20, 20});
	EXPECT_EQ(Frame(), "p:draw c:draw o:draw ");
	EXPECT_EQ(Frame(), "");
	child->Invalidate({5, 5, 10, 10});
	EXPECT_EQ(RectsOf(frame.DirtyRects()), (TRects{{55, 55, 5, 5}}));
	EXPECT_EQ(Frame(), "p:draw c:draw ");
	parent->SetVisible(false);
	Tick();
	child->Invalidate();
	EXPECT_TRUE(frame.DirtyRects().IsEmpty());
	parent->SetVisible(true);
	child->SetSize(0, 50);
	EXPECT_EQ(Frame(), "p:draw ");
	EXPECT_FALSE(child->ContainsPoint(50, 60));
	EXPECT_TRUE(child->VisibleRect().IsEmpty());
}

TEST_F(TViewDrawingTest, AnInvalidationLockAsksForOneWholeRepaintAtItsEnd) {
	TMainFrameView& frame = OpenEditor();
	const auto view = AddProbe(frame, "v", {0, 0, 10, 10});
	Tick();
	{
		const TViewInvalidationLock outer(&frame);
		const TViewInvalidationLock inner(&frame);
		view->Invalidate();
		EXPECT_TRUE(frame.DirtyRects().IsEmpty());
	}
	EXPECT_EQ(RectsOf(frame.DirtyRects()), (TRects{{0, 0, 200, 100}}));
}

TEST_F(TViewDrawingTest, ChildrenAreDrawnOnTopUnlessTheViewWantsToBe) {
	TMainFrameView& frame = OpenEditor();
	const auto parent = AddProbe(frame, "p", {0, 0, 50, 50});
	AddProbe(*parent, "a", {0, 0, 50, 50});
	AddProbe(*parent, "b", {0, 0, 50, 50});
	EXPECT_EQ(Frame(), "p:draw a:draw b:draw ");
	parent->SetDrawOrder(kChildrenFirst);
	parent->Invalidate();
	EXPECT_EQ(Frame(), "a:draw b:draw p:draw ");
}

TEST_F(TViewDrawingTest, WhatAnOpaqueChildCoversIsNotDrawn) {
	TMainFrameView& frame = OpenEditor();
	const auto parent = AddProbe(frame, "p", {0, 0, 50, 50});
	const auto holder = AddProbe(*parent, "h", {0, 0, 40, 50});
	const auto cover = AddProbe<TOpaqueView>(*holder, "c", {0, 0, 40, 50});
	EXPECT_EQ(Frame(), "p:draw c:draw ") << "the parent shows at the right, the holder nowhere";
	parent->Invalidate({0, 0, 20, 20});
	EXPECT_EQ(Frame(), "c:draw ");
	cover->SetVisible(false);
	EXPECT_EQ(Frame(), "p:draw h:draw ");
}

TEST_F(TViewDrawingTest, LinkedValuesArePolledOfShownViewsAndWhenAViewAppears) {
	struct TCounter : TLinkedViewValueBase {
		TCounter(TView& view, int& polls) : TLinkedViewValueBase(view), mPolls(polls) {}

		void Poll(int index) override {
			++mPolls;
			mLastIndex = index;
			if (mEndsItself)
				View().RemoveLinkedValue(this);
		}

		int& mPolls;
		int mLastIndex = -1;
		bool mEndsItself = false;
	};

	TMainFrameView& frame = OpenEditor();
	const auto view = AddProbe(frame, "v", {0, 0, 10, 10});
	int polls = 0;
	auto* first = new TCounter(*view, polls);
	auto* second = new TCounter(*view, polls);
	Tick();
	EXPECT_EQ(polls, 2);
	EXPECT_EQ(second->mLastIndex, 1);
	view->SetVisible(false);
	Tick();
	EXPECT_EQ(polls, 2);
	view->SetVisible(true);
	EXPECT_EQ(polls, 4);
	first->mEndsItself = true;
	Tick();
	polls = 0;
	Tick();
	EXPECT_EQ(polls, 1);
}

TEST_F(TViewDrawingTest, PixelsReachTheWindowAtBothScalesAndDimUnderAModalWindow) {
	TMainFrameView& frame = OpenEditor();
	const auto view = MakePtr<TColorView>(TColor{200, 100, 50});
	frame.AddChild(view.Get());
	view->SetRect({10, 10, 20, 20});
	Tick();
	EXPECT_EQ(PixelAt(10, 10), 0xC86432u);
	EXPECT_EQ(PixelAt(9, 10), 0u);
	EXPECT_EQ(PixelAt(29, 29), 0xC86432u);
	EXPECT_EQ(PixelAt(30, 30), 0u);

	const auto dialog = OpenWindow(&Editor(), kModalDialogWindow, {300, 300, 50, 50});
	Tick();
	EXPECT_EQ(PixelAt(10, 10), 0x783C1Eu) << "black at 101 of 255 over it";
	dialog->Close();
	Tick();
	EXPECT_EQ(PixelAt(10, 10), 0xC86432u);

	Preferences().mUIScaleFactor.Set(TGraphPort::kScale200);
	Editor().SetClientSize({200, 100});
	Tick();
	EXPECT_EQ(PixelAt(20, 20), 0xC86432u);
	EXPECT_EQ(PixelAt(59, 59), 0xC86432u);
	EXPECT_EQ(PixelAt(60, 60), 0u);
}

TEST_F(TViewDrawingTest, AViewThatFailsToDrawCostsTheFrameAndIsTriedAgain) {
	struct TBroken : TView {
		void Draw(TSurface&) override {
			++mTries;
			throw TReadableException("A picture is damaged.");
		}

		int mTries = 0;
	};

	TMainFrameView& frame = OpenEditor();
	const auto broken = MakePtr<TBroken>();
	frame.AddChild(broken.Get());
	broken->SetSize(10, 10);
	Tick();
	Tick();
	EXPECT_EQ(broken->mTries, 1);
	frame.RemoveChild(broken.Get());
	const auto view = AddProbe(frame, "v", {0, 0, 10, 10});
	for (int frames = 0; frames < 60; ++frames)
		Tick();
	EXPECT_EQ(mJournal, "v:draw ");
}

TEST_F(TViewDrawingTest, AFrameWithoutChangePresentsNothing) {
	OpenEditor();
	const auto& window = static_cast<const THeadlessWindow&>(*Editor().Glue());
	const int presented = window.PresentedRects();
	Wait(500);
	EXPECT_EQ(window.PresentedRects(), presented);
}

} // namespace
