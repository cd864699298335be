// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/controls/TLinkedViewValue.h"

#include "framework/gui/controls/TControl.h"
#include "tests/support/TGuiFixture.h"
#include "tests/support/TRealTimeWatch.h"

#include <string>

namespace {

/// A value that others change, with a setter that allows no more than 1.
struct TSource {
	float Get() { return mValue; }

	void Set(float value) {
		++mSets;
		mValue = std::min(value, 1.0f);
	}

	bool IsOn() { return mIsOn; }

	float mValue = 0.5f;
	bool mIsOn = true;
	int mSets = 0;
};

class TLinkedViewValueTest : public TGuiFixture {
protected:
	TLinkedViewValue<float>& Link(TView& view) {
		return *new TLinkedViewValue<float>(&view, {&mSource, &TSource::Get}, {&mSource, &TSource::Set});
	}

	TSource mSource;
};

TEST_F(TLinkedViewValueTest, SeesInTheNextFrameWhatOthersHaveChanged) {
	TMainFrameView& frame = OpenEditor();
	TWeakPtr<TLinkedViewValue<float>> value(&Link(frame));
	std::string reasons;
	const auto observer = MakePtr<TForwardingStdObserver>(
	    kMainThread, [&](TObservable*, int32_t reason) { reasons += std::to_string(reason); });
	observer->Observe(value.Get());
	Tick();
	EXPECT_EQ(reasons, "0");
	mSource.mValue = 0.25f;
	EXPECT_EQ(value->Get(), 0.5f);
	Tick();
	EXPECT_EQ(value->Get(), 0.25f);
	EXPECT_EQ(reasons, "023");

	frame.RemoveLinkedValue(value.Get());
	EXPECT_FALSE(value);
	EXPECT_EQ(reasons, "0231");
}

TEST_F(TLinkedViewValueTest, ShowsWhatTheSetterHasMadeOfIt) {
	TMainFrameView& frame = OpenEditor();
	TLinkedViewValue<float>& value = Link(frame);
	value.Set(2.0f);
	EXPECT_EQ(value.Get(), 1.0f);
	// Equal to what was seen last, whatever it is by now.
	mSource.mValue = 0.0f;
	value.Set(1.0f);
	EXPECT_EQ(mSource.mSets, 1);
	value.ForceSet(1.0f);
	EXPECT_EQ(mSource.mSets, 2);

	TConstLinkedViewValue<bool>& constant = *new TConstLinkedViewValue<bool>(&frame, {&mSource, &TSource::IsOn});
	constant.Set(false);
	EXPECT_TRUE(constant.Get());
}

TEST_F(TLinkedViewValueTest, CostsNoMemoryWhileNothingChanges) {
	TMainFrameView& frame = OpenEditor();
	for (int i = 0; i < 300; ++i) {
		const auto view = MakePtr<TView>();
		Link(*view);
		frame.AddChild(view);
	}
	Tick();
	const std::size_t before = TRealTimeWatch::NumberOfOffences();
	{
		const TRealTimeWatch watch;
		mpEditor->DrawFrame();
	}
	EXPECT_EQ(TRealTimeWatch::NumberOfOffences(), before) << TRealTimeWatch::FirstOffence();
}

/// Counts presses.
class TPressed final : public TControl {
public:
	bool OnLeftMouseDown(int, int, int) override { return IsEnabled() && ++mPresses > 0; }

	void OnEnabledChanged() override { ++mChanges; }

	int mPresses = 0;
	int mChanges = 0;
};

TEST_F(TLinkedViewValueTest, DisabledControlLetsTheMouseThrough) {
	TMainFrameView& frame = OpenEditor();
	const auto below = MakePtr<TPressed>();
	const auto above = MakePtr<TPressed>();
	for (const TPtr<TPressed>& control : {below, above}) {
		control->SetSize(50, 50);
		frame.AddChild(control);
	}
	above->SetEnabledGetter({&mSource, &TSource::IsOn});
	Click(10, 10);
	mSource.mIsOn = false;
	Tick();
	EXPECT_EQ(above->mChanges, 1);
	Click(10, 10);
	EXPECT_EQ(above->mPresses, 1);
	EXPECT_EQ(below->mPresses, 1);
	// A content has an input of its own, and is reached all the same.
	const auto content = MakePtr<TPressed>();
	above->SetContentView(content);
	Click(10, 10);
	EXPECT_EQ(content->mPresses, 1);
	EXPECT_EQ(content->Size(), above->Size());
	above->SetEnabledGetter(nullptr);
	EXPECT_TRUE(above->IsEnabled());
	EXPECT_EQ(above->mChanges, 2);
}

} // namespace
