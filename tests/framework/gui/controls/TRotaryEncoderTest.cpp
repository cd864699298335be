// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/controls/TRotaryEncoder.h"

#include "framework/gui/controls/TValueBox.h"
#include "framework/gui/controls/TValueDragger.h"
#include "framework/gui/text/TTextField.h"
#include "framework/gui/windows/TCursor.h"
#include "tests/support/TControlFixture.h"
#include "tests/support/TStringPrinter.h"

namespace {

struct TNumber {
	int Get() { return mValue; }

	void Set(int value) { mValue = value; }

	int mValue = 4;
};

class TRotaryEncoderTest : public TControlFixture {
protected:
	using TEncoder = TRotaryEncoder<float>;

	void SetUp() override {
		TControlFixture::SetUp();
		TBaseViewsPrefs::Instance()->WarpCursorOnDrag().Set(false);
	}

	TEncoder& ShowEncoder(float value) {
		mValue.Set(value);
		return Show(MakePtr<TEncoder>(&mValue), {20, 20, 36, 36});
	}

	void DragUp(int pixels, int moves = 1) {
		Move(38, 38);
		Press();
		Drag(38, 38 - pixels, moves);
		Release();
	}

	TObservableBaseType<float> mValue;
	TNumber mNumber;
};

TEST_F(TRotaryEncoderTest, GoesItsWholeRangeIn250Pixels) {
	ShowEncoder(0.5f);
	DragUp(25);
	EXPECT_FLOAT_EQ(mValue.Get(), 0.6f);
	DragUp(-50, 5);
	EXPECT_NEAR(mValue.Get(), 0.4f, 1e-6);
	DragUp(-300, 3);
	EXPECT_EQ(mValue.Get(), 0.0f);
	// Too short a way is no drag, but ways add up.
	DragUp(3);
	EXPECT_EQ(mValue.Get(), 0.0f);
	DragUp(10, 10);
	EXPECT_FLOAT_EQ(mValue.Get(), 8.0f / 250.0f);
}

TEST_F(TRotaryEncoderTest, IsFineWithTheCommandKey) {
	ShowEncoder(0.5f);
	KeyDown(kKeyLeftCommand);
	DragUp(25);
	KeyUp(kKeyLeftCommand);
	EXPECT_NEAR(mValue.Get(), 0.5f + 0.1f / 25.0f, 1e-6);
}

TEST_F(TRotaryEncoderTest, CatchesInTheMiddleAndAtItsDefault) {
	TEncoder& encoder = ShowEncoder(0.463f);
	encoder.SetDrawMode(TEncoder::kFromMiddle);
	DragUp(10);
	EXPECT_EQ(mValue.Get(), 0.5f);
	encoder.SetDrawMode(TEncoder::kFromMinimum);
	encoder.SetDefault(0.302f);
	encoder.SetSnapToDefault(true);
	DragUp(-49);
	EXPECT_EQ(mValue.Get(), 0.302f);
	mValue.Set(0.9f);
	Move(38, 38);
	Press(TMouseButton::kLeft, 2);
	Release();
	EXPECT_EQ(mValue.Get(), 0.302f);
}

TEST_F(TRotaryEncoderTest, TakesThePointerAcrossAndBringsItBack) {
	TBaseViewsPrefs::Instance()->WarpCursorOnDrag().Set(true);
	ShowEncoder(0.0f);
	Move(38, 38);
	Press();
	EXPECT_EQ(TCursor::Instance()->Current(), kEmptyCursor);
	for (int i = 0; i < 10; ++i) {
		const TPointT<int> mouse = TCursor::Instance()->MousePosition();
		EXPECT_TRUE((TRectT<int>{20, 20, 36, 36}.Contains(mouse))) << mouse.mY;
		Move(mouse.mX, mouse.mY - 20);
	}
	EXPECT_NEAR(mValue.Get(), 200.0f / 250.0f, 1e-5);
	Release();
	EXPECT_EQ(TCursor::Instance()->MousePosition(), (TPointT<int>{38, 38}));
	EXPECT_EQ(TCursor::Instance()->Current(), kDefaultCursor);
}

TEST_F(TRotaryEncoderTest, LightsUpUnderThePointerUnlessAnotherIsTurned) {
	TEncoder& encoder = ShowEncoder(0.5f);
	const auto other = MakePtr<TEncoder>(&mValue);
	Show(other, {100, 20, 36, 36});
	Move(38, 38);
	EXPECT_TRUE(encoder.IsHighlighted());
	Press();
	Move(118, 38);
	EXPECT_TRUE(encoder.IsHighlighted());
	EXPECT_FALSE(other->IsHighlighted());
	Release();
	EXPECT_FALSE(encoder.IsHighlighted());
}

TEST_F(TRotaryEncoderTest, DraggerStepsByDragAndWheelWithinItsRange) {
	using TDragger = TValueDragger<int>;
	auto& dragger = Show(
	    MakePtr<TDragger>(
	        TDragger::TGetter(&mNumber, &TNumber::Get), TDragger::TSetter(&mNumber, &TNumber::Set), 2, 16),
	    {0, 0, 46, 16});
	Move(20, 50);
	Move(20, 8);
	Platform().Wheel({0, 2});
	Tick();
	EXPECT_EQ(mNumber.mValue, 6);
	Press();
	Drag(20, 20, 4);
	EXPECT_EQ(mNumber.mValue, 3);
	Drag(20, -200);
	EXPECT_EQ(dragger.DisplayedText(), "16");
	Release();
	dragger.SetClickMode(TDragger::kRightClick);
	Click(20, 8);
	Press(TMouseButton::kRight);
	Release(TMouseButton::kRight);
	EXPECT_EQ(mNumber.mValue, 15);
}

TEST_F(TRotaryEncoderTest, BoxStepsAndTakesWhatIsTyped) {
	using TBox = TValueBox<int>;
	auto& box = Show(
	    MakePtr<TBox>(TBox::TGetter(&mNumber, &TNumber::Get), TBox::TSetter(&mNumber, &TNumber::Set), 1, 99999999),
	    {0, 0, 120, 20});
	Click(6, 5);
	Click(114, 5);
	Click(114, 15);
	EXPECT_EQ(mNumber.mValue, 5);
	const auto type = [&](const char* text) {
		Click(30, 10);
		Type(text);
		Keys({kKeyReturn});
		EXPECT_FALSE(box.Field().IsEditing());
		return box.Field().Label().Text();
	};
	EXPECT_EQ(type("48211907"), "48211907");
	EXPECT_EQ(mNumber.mValue, 48211907);
	// A letter cannot be typed, and a number too large is brought into the range.
	EXPECT_EQ(type("99x9999999"), "99999999");
	EXPECT_EQ(mNumber.mValue, 99999999);
	EXPECT_EQ(type("-"), "99999999");
	mNumber.mValue = 7;
	Tick();
	EXPECT_EQ(box.Field().Label().Text(), "7");
	box.SetEnabled(false);
	Click(6, 5);
	Click(30, 10);
	EXPECT_FALSE(box.Field().IsEditing());
	EXPECT_EQ(mNumber.mValue, 7);
}

} // namespace
