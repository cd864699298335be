// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/ProductInfo.h"
#include "tests/support/TStringPrinter.h"
#include "tests/support/TTestLocale.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <clocale>
#include <cmath>
#include <limits>
#include <optional>
#include <random>

namespace {

/// A failed read leaves the value.
template <class T, class... TFormat>
std::optional<T> Read(const char* text, TFormat... format) {
	T value = T(77);
	if (TString::FromString(text, value, format...))
		return value;
	EXPECT_EQ(value, T(77)) << text;
	return std::nullopt;
}

} // namespace

TEST(TStringValuesTest, FloatsHaveTheirCommonTexts) {
	EXPECT_EQ(TString::ToString(-0.0f), "0.0");
	EXPECT_EQ(TString::ToString(1.0f), "1.0");
	EXPECT_EQ(TString::ToString(0.5), "0.5");
	EXPECT_EQ(TString::ToString(2.0f), "2");
	EXPECT_EQ(TString::ToString(0.1f, "%.9g"), "0.100000001");
	EXPECT_EQ(TString::ToString(1.0f, "%.3f"), "1.000");
}

TEST(TStringValuesTest, NonFiniteNumbersInEveryFormat) {
	constexpr float kInfinity = std::numeric_limits<float>::infinity();
	EXPECT_EQ(TString::ToString(std::nanf("")), "NaN");
	EXPECT_EQ(TString::ToString(kInfinity, "%.1f"), "INF");
	EXPECT_EQ(TString::ToString(-std::numeric_limits<double>::infinity()), "-INF");
	EXPECT_EQ(Read<float>("-INF"), -kInfinity);
	EXPECT_TRUE(std::isnan(Read<float>("NaN").value_or(0)));
}

TEST(TStringValuesTest, DefaultTextIsThatOfPrintfAndReadsBackExactly) {
	std::mt19937 random(1);
	for (int round = 0; round < 20'000; ++round) {
		const auto value = std::bit_cast<float>(static_cast<uint32_t>(random()));
		if (!std::isfinite(value) || value == 0)
			continue;
		std::array<char, 64> expected{};
		std::snprintf(expected.data(), expected.size(), "%.9g", static_cast<double>(value));
		const TString text = TString::ToString(value);
		ASSERT_EQ(text, expected.data());
		ASSERT_EQ(Read<float>(text.CString()), value);
		const double product = static_cast<double>(value) * 1.1;
		std::snprintf(expected.data(), expected.size(), "%.17lg", product);
		ASSERT_EQ(TString::ToString(product), expected.data());
		ASSERT_EQ(Read<double>(expected.data()), product);
	}
}

TEST(TStringValuesTest, FloatsAreReadFromTheBeginningOfTheText) {
	EXPECT_EQ(Read<float>("1,5"), 1.5f);
	EXPECT_EQ(Read<float>("-.5"), -0.5f);
	EXPECT_EQ(Read<float>(" +2.5 dB"), 2.5f);
	EXPECT_EQ(Read<float>("1.234.5"), 1.234f);
	EXPECT_EQ(Read<float>("0x10"), 16.0f);
	EXPECT_EQ(Read<double>("1e400"), std::numeric_limits<double>::infinity());
	EXPECT_EQ(Read<float>("1e-60"), 0.0f);
	EXPECT_EQ(Read<double>("0.1000000000000000055511151231257827021181583404541015625"), 0.1);
	for (const char* text : {"", " ", "-", ".", "e5", "abc", "\xE4"})
		EXPECT_EQ(Read<float>(text), std::nullopt) << text;
	EXPECT_EQ(Read<float>("3.75 Hz", "%f"), 3.75f);
	EXPECT_EQ(Read<float>("3.75", "%.1f"), 3.75f);
	EXPECT_EQ(Read<float>("+/- 3", "+/- %f"), 3.0f);
	EXPECT_EQ(TString::FromStringOrZero<float>("x"), 0.0f);
}

TEST(TStringValuesTest, IntegersOfEveryWidth) {
	EXPECT_EQ(TString::ToString(std::numeric_limits<unsigned>::max()), "4294967295");
	EXPECT_EQ(TString::ToString(std::numeric_limits<long long>::min()), "-9223372036854775808");
	EXPECT_EQ(TString::Format("%04d", 7), "0007");
	EXPECT_EQ(TString::Format("%llx", 255LL), "ff");
	EXPECT_EQ(Read<int>(" \t+42 bars"), 42);
	EXPECT_EQ(Read<int>("-2147483648"), std::numeric_limits<int>::min());
	EXPECT_EQ(Read<unsigned>("-1"), std::numeric_limits<unsigned>::max());
	EXPECT_EQ(Read<unsigned long>("18446744073709551615"), std::numeric_limits<unsigned long>::max());
	EXPECT_EQ(Read<int>("ff", "%x"), 255);
	for (const char* text : {"", "x", "-", "+", "+-1", "--1", "2147483648", "99999999999999999999"})
		EXPECT_EQ(Read<int>(text), std::nullopt) << text;
	EXPECT_EQ(Read<unsigned>("--1"), std::nullopt);
	EXPECT_EQ(Read<unsigned>("4294967296"), std::nullopt);
}

TEST(TStringValuesTest, FormatsThatDoNotSuitTheTypeAreRefused) {
	for (const char* format : {"%s", "%n", "%", "", "plain", "%d %d", "%d%", "%*d", "%ld", "%f", "%hd", "%c", "%%d"}) {
		EXPECT_EQ(TString::ToString(5, format), "") << format;
		EXPECT_EQ(Read<int>("5", format), std::nullopt) << format;
	}
	for (const char* format : {"%d", "%s", "%lf", "%Lf", "%f%f"})
		EXPECT_EQ(Read<float>("5", format), std::nullopt) << format;
	EXPECT_EQ(TString::ToString(5.0f, "%lf"), "5.000000");
	EXPECT_EQ(Read<double>("5", "%f"), std::nullopt);
	EXPECT_EQ(TString::ToString(50, "%d%%"), "50%");
	EXPECT_EQ(TString::ToString(5, TString(u"%d \u00B5s")), "5 ~s");
	EXPECT_EQ(TString::ToString(1, "%1000d").Length(), 255);
}

TEST(TStringValuesTest, BooleansByName) {
	EXPECT_EQ(TString::ToString(true) + TString::ToString(false), "truefalse");
	for (const char* text : {"YES", "1", "tRuE"})
		EXPECT_EQ(Read<bool>(text), true) << text;
	for (const char* text : {"false", "0", "No"})
		EXPECT_EQ(Read<bool>(text), false) << text;
	for (const char* text : {"on", "", "01"})
		EXPECT_EQ(Read<bool>(text), std::nullopt) << text;
}

TEST(TStringValuesTest, ColoursAndPoints) {
	TColor color{1, 2, 3};
	for (const char* text : {"1,2", "1,2,3,4", "1,,3"})
		EXPECT_FALSE(TString::FromString(text, color)) << text;
	EXPECT_EQ(color, (TColor{1, 2, 3}));
	EXPECT_TRUE(TString::FromString("-5, 128,300", color));
	EXPECT_EQ(TString::ToString(color), "0,128,255");
	TPointT<int> point;
	EXPECT_TRUE(TString::FromString("-1,20", point));
	EXPECT_FALSE(TString::FromString("7,8,9", point) || TString::FromString("7", point));
	EXPECT_EQ(TString::ToString(point), "-1,20");
}

TEST(TStringValuesTest, CommonValuesShareOneTextWhileTheFrameworkRuns) {
	for (int nesting = 0; nesting < 2; ++nesting)
		TString::SetupStrings();
	TString::CleanupStrings();
	const TString shared = TString::ToString(0.5f);
	EXPECT_EQ(TString::ToString(0.5).Units(), shared.Units());
	EXPECT_EQ(TString::ToString(0).Units(), TString::ToString(0LL).Units());
	TString::CleanupStrings();
	EXPECT_NE(TString::ToString(0.5f).Units(), shared.Units());
}

TEST(TStringValuesTest, NumbersDoNotChangeWithTheLocale) {
	const TTestLocale locale("de_DE.UTF-8");
	EXPECT_EQ(TString::ToString(0.25f), "0.25");
	EXPECT_EQ(TString::ToString(0.25f, "%.1f"), "0.2");
	EXPECT_EQ(Read<float>("0.25"), 0.25f);
	EXPECT_EQ(Read<float>("0,25 s"), 0.25f);
	EXPECT_EQ(Read<float>(" 0.25 s", "%f"), 0.25f);
	EXPECT_STREQ(std::localeconv()->decimal_point, ",");
}

TEST(TStringValuesTest, FormatFillsFromTheFront) {
	EXPECT_EQ(TString::Format("%s %s", "%s", "x"), "x %s");
	EXPECT_EQ(TString::Format("%s%s%s%s%s%s", "1", "2", "3", "4", "5"), "12345%s");
	EXPECT_EQ(TString::Format("%s, %s, %s.", "a"), "a, , .");
	EXPECT_EQ(TString::Format("100%%, %d", "x"), "100%%, %d");
	EXPECT_EQ(TString::Format("restart $MProductString: %s", "$MProductString"), "restart Vortel2: $MProductString");
}

TEST(TStringValuesTest, MacrosAreExpanded) {
	const TString plain = "no macros, $m, $ M";
	EXPECT_EQ(TString::ExpandMacros(plain).Units(), plain.Units());
	EXPECT_EQ(TString::ExpandMacros("$MProductNameAndVersionString!"), "Vortel2 V2.1.5!");
	EXPECT_EQ(TString::ExpandMacros("[$MAlphaOrBetaVersionString]$MUnknown $M"), "[]$MUnknown $M");
	const TString built = TString("V2.1.5 (Built: ") + ProductInfo::BuildDate() + ")";
	EXPECT_EQ(TString::ExpandMacros("$MVersionString, $MBuildNumberString"), TString("V2.1.5, ") + built);
	const TString mail = TString::ExpandMacros("$MBugReportEMailAddress,$MSupportEMailAddress,$MProductHomeURL");
	EXPECT_EQ(mail.FindChar(u'$'), -1);
	EXPECT_EQ(mail.Count("@"), 2);
}
