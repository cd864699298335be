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
