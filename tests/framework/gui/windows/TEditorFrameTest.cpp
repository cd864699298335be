// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/windows/TEditorFrame.h"

#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/gui/events/TApplicationEventListener.h"
#include "tests/support/TGuiFixture.h"

namespace {

class TFrameCounter final : public TApplicationEventListener {
public:
	bool HandleEvent(TApplicationEvent* event) override {
		mFrames += IsApplicationEvent(event, TApplicationEventType::kBeginOfNewFrame);
		mIdles += IsApplicationEvent(event, TApplicationEventType::kGuiIdle);
		return true;
	}

	int mFrames = 0;
	int mIdles = 0;
};

class TEditorFrameTest : public TGuiFixture {
protected:
	void SetUp() override {
		TGuiFixture::SetUp();
		OpenEditor();
		mpCounter = MakePtr<TFrameCounter>();
	}

	void TearDown() override {
		mpCounter = nullptr;
		TGuiFixture::TearDown();
	}

	TPtr<TFrameCounter> mpCounter;
};

TEST_F(TEditorFrameTest, TicksAreFramesByThePace) {
	Preferences().mApplyFrameRate.Set(true);
	Wait(200);
	EXPECT_EQ(mpCounter->mFrames, 20) << "10 ms are more than half of a sixtieth";
	Preferences().mMaxFrameRate.Set(30);
	Wait(200);
	EXPECT_EQ(mpCounter->mFrames, 30);
	EXPECT_EQ(mpCounter->mIdles, 3);
	Preferences().mApplyFrameRate.Set(false);
	Tick();
	EXPECT_EQ(mpCounter->mFrames, 31);
}

TEST_F(TEditorFrameTest, CommandsRunWithAndWithoutAWindow) {
	int runs = 0;
	for (TWindow* window : {static_cast<TWindow*>(&Editor()), static_cast<TWindow*>(nullptr)}) {
		TThreadCommunicator::Instance()->Post(kMainThread, [&runs] { ++runs; });
		mFrame.EditorFrameTick(window);
	}
	EXPECT_EQ(runs, 2);
	EXPECT_EQ(mpCounter->mFrames, 1);
}

} // namespace
