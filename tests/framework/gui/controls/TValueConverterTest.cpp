// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/controls/TValueConverter.h"

#include <gtest/gtest.h>

namespace {

constexpr TValueRange kUnit{0.0f, 1.0f};

TEST(TValueConverterTest, GivesStepsByTheScaleOfBothRanges) {
	TValueConverter<float> linear({0.0f, 100.0f}, "%");
	EXPECT_FLOAT_EQ(linear.DragAmountAt(kUnit, 0.5f), 0.01f);
	EXPECT_EQ(linear.DragAmountAt({0.0f, 100.0f}, 50.0f), 1.0f);
	EXPECT_EQ(TValueConverter<float>({3.0f, 3.0f}).DragAmountAt(kUnit, 0.5f), 0.0f);

	TValueConverter<float> logarithmic({0.0f, 1000.0f});
	logarithmic.SetLogarithmic(true);
	logarithmic.SetScale(10.0f);
	EXPECT_FLOAT_EQ(logarithmic.DragAmountAt(kUnit, 0.0f), 0.01f);
	EXPECT_FLOAT_EQ(logarithmic.DragAmountAt(kUnit, 0.5f), 10.0f * 9.0f / 99.0f);
	EXPECT_FLOAT_EQ(logarithmic.DragAmount(kUnit), 10.0f);
}

TEST(TValueConverterTest, WritesAndReadsTheDisplayedValue) {
	TValueConverter<float> percent({0.0f, 100.0f}, "%");
	EXPECT_EQ(percent.ToString(kUnit, 0.35f), "35 %");
	float value = 0.25f;
	EXPECT_TRUE(percent.FromString(kUnit, "50 %", value));
	EXPECT_EQ(value, 0.5f);
	for (const char* text : {"", "none", "INF", "NaN"})
		EXPECT_FALSE(percent.FromString(kUnit, text, value)) << text;
	EXPECT_EQ(value, 0.5f);

	TValueConverter<float> beats({0.0f, 4.0f}, "beats");
	beats.SetDropPluralS(true);
	EXPECT_EQ(beats.ToString({0.0f, 4.0f}, 1.0f), "1 beat");
	EXPECT_EQ(beats.ToString({0.0f, 4.0f}, 2.0f), "2 beats");
	EXPECT_EQ(beats.ToString({0.0f, 4.0f}, 0.5f), "0.5 beats");

	// What a float could not hold.
	TValueConverter<int> seed({1.0f, 99999999.0f});
	EXPECT_EQ(seed.ToString({1.0f, 99999999.0f}, 99999999), "99999999");
}

TEST(TValueConverterTest, MapsPositionsWithinTheRange) {
	TValueConverter<float> converter({0.0f, 1.0f});
	EXPECT_EQ(converter.ValueFromPosition(5.0f, 10.0f, {2.0f, 4.0f}), 3.0f);
	EXPECT_EQ(converter.ValueFromPosition(50.0f, 10.0f, {2.0f, 4.0f}), 4.0f);
	EXPECT_EQ(converter.PositionFromValue({2.0f, 4.0f}, 10.0f, 3.0f), 5.0f);
	EXPECT_EQ(converter.PositionFromValue({2.0f, 4.0f}, 10.0f, 9.0f), 10.0f);
	EXPECT_EQ(converter.PositionFromValue({2.0f, 2.0f}, 10.0f, 2.0f), 0.0f);
	EXPECT_EQ(converter.DeltaFromPixels(25.0f, 250.0f, {0.0f, 2.0f}), 0.2f);
	EXPECT_EQ(converter.DeltaFromPixels(25.0f, 0.0f, kUnit), 0.0f);
	EXPECT_EQ(converter.ToDisplay({3.0f, 3.0f}, 3.0f), 0.0f);
}

} // namespace
