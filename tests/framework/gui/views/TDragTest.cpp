// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/views/TDragContent.h"
#include "framework/gui/windows/TCursor.h"
#include "tests/support/TGuiFixture.h"

#include <gmock/gmock.h>

namespace {

class TAnyContent final : public TDragContent {
public:
	using TDragContent::TDragContent;

	bool CanMove() const override { return true; }

	bool CanCopy() const override { return true; }

	bool CanClone() const override { return true; }
};

class TDropView final : public TProbeView {
public:
	using TProbeView::TProbeView;

	bool CanAcceptDrop(int, int, TDragContent&, int mode) override { return mAccepts && mode != kDropClone; }

	void OnDrop(int, int, TDragContent&, int mode) override { Note("drop" + std::to_string(mode)); }

	void OnDragEnter(int, int, TDragContent&) override { Note("in"); }

	void OnDragLeave(int, int, TDragContent&) override { Note("out"); }

	void OnDragOver(int, int, TDragContent&) override { Note("over"); }

	void OnDragFinished(TDragContent&, int mode) override { Note("finished" + std::to_string(mode)); }

	void OnDragCancelled(TDragContent&) override { Note("cancelled"); }

	bool mAccepts = false;
};

class TDragTest : public TGuiFixture {
protected:
	void SetUp() override {
		TGuiFixture::SetUp();
		TMainFrameView& frame = OpenEditor();
		mpSource = MakePtr<TDropView>(mJournal, "s", TRectT<int>{0, 0, 50, 50});
		mpTarget = MakePtr<TDropView>(mJournal, "t", TRectT<int>{50, 0, 50, 50});
		mpTarget->mAccepts = true;
		frame.AddChild(mpSource.Get());
		frame.AddChild(mpTarget.Get());
		mpImage = MakePtr<TView>();
		mpImage->SetSize(10, 10);
		mpSource->mWantsCapture = true;
		mpSource->mOnEvent = [this](const std::string& what) {
			const TPointT<int> point = mpSource->MousePoint();
			if (what == "drag" && TGuiEventTarget::ShouldBeginDrag(point.mX, point.mY))
				TGuiEventTarget::BeginDrag(
				    MakePtr<TAnyContent>("thing", mpSource.Get(), TList<TDragImage>{{mpImage, {2, 2}, false}}).Get());
		};
		Move(10, 10);
		Press();
		Move(14, 10);
		EXPECT_FALSE(TGuiEventTarget::IsDragging());
		Move(15, 10);
		EXPECT_TRUE(TGuiEventTarget::IsDragging());
		mJournal.clear();
	}

	std::string Told() { return std::exchange(mJournal, {}); }

	std::string mJournal;
	TPtr<TDropView> mpSource;
	TPtr<TDropView> mpTarget;
	TPtr<TView> mpImage;
};

TEST_F(TDragTest, TheTargetIsFollowedAndGetsTheDrop) {
	EXPECT_EQ(Platform().Cursor().Current(), kCanNotDropCursor);
	Move(60, 10);
	EXPECT_EQ(Platform().Cursor().Current(), kCanDropCursor);
	EXPECT_EQ(mpImage->AbsolutePosition(), (TPointT<int>{58, 8}));
	Move(61, 10);
	KeyDown(kKeyLeftCommand);
	EXPECT_EQ(Platform().Cursor().Current(), kCanCopyCursor);
	Release();
	EXPECT_THAT(Told(), testing::EndsWith("t:drop1 s:finished1 s:released "));
	EXPECT_EQ(Platform().Cursor().Current(), kDefaultCursor);
	EXPECT_FALSE(TGuiEventTarget::IsDragging());
	EXPECT_FALSE(TGuiEventTarget::HasMouseCapture());
	EXPECT_EQ(mpImage->Parent(), nullptr);
}

TEST_F(TDragTest, KeysChangeTheModeAtOnceAndEscapeEndsItAll) {
	Move(60, 10);
	EXPECT_EQ(Told(), "t:in ");
	KeyDown(kKeyLeftCommand);
	KeyDown(kKeyLeftShift);
	EXPECT_EQ(Platform().Cursor().Current(), kCanNotDropCursor) << "no clones here";
	EXPECT_THAT(Told(), testing::EndsWith("t:out "));
	KeyUp(kKeyLeftShift);
	Told();
	KeyDown(kKeyEscape);
	EXPECT_TRUE(TGuiEventTarget::IsDragging());
	KeyUp(kKeyEscape);
	EXPECT_EQ(Told(), "t:out s:cancelled s:released ");
	EXPECT_FALSE(TGuiEventTarget::IsDragging());
	Release();
}

TEST_F(TDragTest, ADropNowhereALostWindowAndADeadSourceCancel) {
	Move(150, 90);
	Release();
	EXPECT_EQ(Told(), "s:cancelled s:released ");

	Move(10, 10);
	Press();
	mClock.Advance(std::chrono::milliseconds(251));
	Move(11, 10); // long enough held
	EXPECT_TRUE(TGuiEventTarget::IsDragging());
	Platform().SetActive(false);
	EXPECT_FALSE(TGuiEventTarget::IsDragging());
	EXPECT_FALSE(TGuiEventTarget::HasMouseCapture());
	Release();
	Platform().SetActive(true);

	Move(10, 10);
	Press();
	Move(20, 10);
	EXPECT_TRUE(TGuiEventTarget::IsDragging());
	Editor().MainFrame()->RemoveChild(mpSource.Get());
	EXPECT_FALSE(TGuiEventTarget::IsDragging());
	Release();
}

} // namespace
