// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/options/TOptionText.h"

#include "tools/vortel2/files/ToolErrors.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

std::string Complaint(const std::function<void(const TOptionText&)>& read, const std::string& text) {
	try {
		read({"--option", text});
	} catch (const TUsageError& error) {
		return error.what();
	}
	return "";
}

TEST(TOptionTextTest, NumbersAreReadWholeOrNotAtAll) {
	const auto read = [](const TOptionText& text) { text.Number(-2.0, 5.0); };
	for (const char* text : {"0", "-2", "5", "+4.5", "1e-3", ".5", "5."})
		EXPECT_EQ(Complaint(read, text), "") << text;
	for (const char* text : {"", " 1", "1 ", "1x", "1,5", "x", "+", "+-1", "nan", "inf", "-inf", "1e999", "0x1"})
		EXPECT_NE(Complaint(read, text).find("is not a number"), std::string::npos) << text;
	EXPECT_EQ(Complaint(read, "5.01"), "--option: \"5.01\" is not between -2 and 5");
}

TEST(TOptionTextTest, WholeNumbersHaveNoFractionAndDoNotWrap) {
	const auto read = [](const TOptionText& text) { text.Integer(0, 209); };
	for (const char* text : {"0", "209", "007"})
		EXPECT_EQ(Complaint(read, text), "") << text;
	for (const char* text : {"-1", "210", "4294967296", "18446744073709551617", "1.0", "1e2", ""})
		EXPECT_NE(Complaint(read, text), "") << text;
}

TEST(TOptionTextTest, DevicesGoByIndexOrPrefix) {
	EXPECT_EQ(TOptionText("--steps", "0").Device(), 0);
	EXPECT_EQ(TOptionText("--steps", "RND").Device(), 0);
	EXPECT_EQ(TOptionText("--steps", "RET").Device(), 3);
	EXPECT_EQ(TOptionText("--steps", "ret").Device(), 3);
	EXPECT_EQ(TOptionText("--steps", "10").Device(), 10);
	for (const char* text : {"MST", "RETR", "11", "-1", "03", ""})
		EXPECT_NE(Complaint([](const TOptionText& device) { device.Device(); }, text), "") << text;
}

TEST(TOptionTextTest, ListsKeepTheirEmptyParts) {
	EXPECT_EQ(TOptionText("--block", "1,2").List().size(), 2u);
	EXPECT_EQ(TOptionText("--block", "").List().size(), 1u);
	const auto parts = TOptionText("--block", ",3,").List();
	ASSERT_EQ(parts.size(), 3u);
	EXPECT_EQ(parts[1].Text(), "3");
	EXPECT_EQ(parts[2].Text(), "");
}

TEST(TOptionTextTest, MinusOfAnExponentDoesNotEndATime) {
	const auto [seconds, rest] = TOptionText("--note", "25e-2-1").LeadingSeconds();
	EXPECT_EQ(seconds, 0.25);
	EXPECT_EQ(rest, "-1");
}

} // namespace
