// SPDX-License-Identifier: GPL-3.0-or-later
// Frames that cost nothing: without a change nothing is allocated, nor by a key that is held.

#include "framework/gui/views/TLinkedViewValueBase.h"
#include "tests/support/TGuiFixture.h"
#include "tests/support/TRealTimeWatch.h"

namespace {

class TQuietValue final : public TLinkedViewValueBase {
public:
	explicit TQuietValue(TView& view) : TLinkedViewValueBase(view) {}

	void Poll(int /*index*/) override {}
};

class TCountingValue final : public TLinkedViewValueBase {
public:
	TCountingValue(TView& view, int& polls) : TLinkedViewValueBase(view), mPolls(polls) {}

	void Poll(int /*index*/) override { ++mPolls; }

private:
	int& mPolls;
};

class TFrameView final : public TView {
public:
	void OnFrame() override { ++mFrames; }

	int mFrames = 0;
};

class TQuietView final : public TFocusRootView {
public:
	bool HandleKey(const TKeyboardKey& /*key*/, bool /*isRelease*/, bool /*isRepeat*/) override {
		++mKeys;
		return true;
	}

	int mKeys = 0;
};

class IdleFrameTest : public TGuiFixture {
protected:
	void SetUp() override {
		TGuiFixture::SetUp();
		TMainFrameView& frame = OpenEditor();
		for (int index = 0; index < 100; ++index) {
			const auto view = MakePtr<TView>();
			view->SetRect({index % 10 * 20, index / 10 * 10, 20, 10});
			frame.AddChild(view);
			new TQuietValue(*view);
		}
		Move(50, 50);
		Wait(1000);
	}

	std::string OffenceDuring(int milliseconds) {
		const std::size_t before = TRealTimeWatch::NumberOfOffences();
		{
			const TRealTimeWatch watch;
			Wait(milliseconds);
		}
		return TRealTimeWatch::NumberOfOffences() == before ? "" : TRealTimeWatch::FirstOffence();
	}
};

TEST_F(IdleFrameTest, FramesWithoutChangeAllocateNothing) {
	EXPECT_EQ(OffenceDuring(500), "");
}

TEST_F(IdleFrameTest, WorkThatComesToAQuietTreeIsDone) {
	TMainFrameView& frame = *Editor().MainFrame();
	const auto outer = MakePtr<TView>();
	const auto inner = MakePtr<TView>();
	outer->AddChild(inner);
	frame.AddChild(outer);
	Wait(50); // everybody has turned out to have nothing to do
	int polls = 0;
	auto* value = new TCountingValue(*inner, polls);
	const auto worker = MakePtr<TFrameView>();
	inner->AddChild(worker);
	Tick();
	EXPECT_EQ(polls, 1);
	EXPECT_EQ(worker->mFrames, 1);
	frame.RemoveChild(outer.Get());
	Tick();
	EXPECT_EQ(polls + worker->mFrames, 2) << "outside of the tree";
	frame.AddChild(inner);
	Tick();
	EXPECT_EQ(polls + worker->mFrames, 4) << "moved with what is in it";
	inner->SetVisible(false);
	Tick();
	EXPECT_EQ(polls + worker->mFrames, 4) << "hidden";
	inner->SetVisible(true);
	EXPECT_EQ(polls + worker->mFrames, 6) << "never stale when it appears";
	inner->RemoveLinkedValue(value);
	Tick();
	EXPECT_EQ(polls, 3);
	EXPECT_EQ(worker->mFrames, 4);
	outer->AddChild(worker); // which is not shown
	Tick();
	EXPECT_EQ(worker->mFrames, 4);
	frame.AddChild(outer);
	Tick();
	EXPECT_EQ(worker->mFrames, 5);
}

TEST_F(IdleFrameTest, AKeyThatRepeatsAllocatesNothing) {
	const auto view = MakePtr<TQuietView>();
	view->SetSize(10, 10);
	Editor().MainFrame()->AddChild(view);
	view->GrabFocus();
	KeyDown(kKeyA);
	Wait(1000);
	const int keys = view->mKeys;
	EXPECT_EQ(OffenceDuring(500), "");
	EXPECT_GT(view->mKeys, keys + 10);
}

} // namespace
