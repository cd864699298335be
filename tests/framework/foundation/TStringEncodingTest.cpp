// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TString.h"

#include "framework/foundation/TThreadManager.h"
#include "tests/support/TFrameworkFixture.h"
#include "tests/support/TStringPrinter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

using testing::ElementsAre;

namespace {

std::string Bytes(const TString& text, int encoding) {
	std::string bytes;
	text.ToBytes(bytes, encoding);
	return bytes;
}

TString FromUtf8(std::string_view bytes) {
	return {bytes, kUtf8Encoding};
}

std::vector<uint8_t> ToBytes(std::string_view text) {
	return {text.begin(), text.end()};
}

class TStringRolesTest : public TFrameworkFixture {};

} // namespace

TEST(TStringEncodingTest, AsciiKnowsNothingFrom127On) {
	EXPECT_STREQ(TString(u"a~\u007F\u00E4\u20AC").CString(kAsciiEncoding), "a~???");
	EXPECT_EQ(TString("a~\x7F\xE4", kAsciiEncoding), "a~??");
}

TEST(TStringEncodingTest, TextSurvivesInUnicodeEncodings) {
	const TString text(u"a\u00E4\u20AC\U0001F600\u07FF\u0800\uFFFF");
	for (const int encoding : {kPlatformEncoding, kFileSystemEncoding}) {
		EXPECT_EQ(TString(text.CString(encoding), encoding), text);
		EXPECT_EQ(TString(Bytes(text, encoding), encoding), text);
	}
	EXPECT_EQ(Bytes(text, kUtf8Encoding), "a\u00E4\u20AC\U0001F600\u07FF\u0800\uFFFF");
}

TEST(TStringEncodingTest, CStringEncodesEachHalfOfAPair) {
	EXPECT_STREQ(TString(u"\U0001F600").CString(), "\xED\xA0\xBD\xED\xB8\x80");
	const TString halves(u"\xDE00z\xD83D");
	EXPECT_EQ(Bytes(halves, kUtf8Encoding), "?z?");
	EXPECT_STREQ(halves.CString(kFileSystemEncoding), "?z?");
	EXPECT_EQ(TString(halves.CString(), kUtf8Encoding), halves);
}

TEST(TStringEncodingTest, Utf8IsReadLeniently) {
	EXPECT_EQ(FromUtf8("\xF0\x9F\x98\x80z"), "?z");
	EXPECT_EQ(FromUtf8("\xF8\x88\x80\x80\x80\xFC\x84\x80\x80\x80\x80z"), "??z");
	EXPECT_EQ(FromUtf8("\x80z\xFE\xFF"), "?z??");
	EXPECT_EQ(FromUtf8("\xC3z"), TString(u"\u00FA")); // the follower is not checked
	EXPECT_EQ(FromUtf8("a\xC3"), "a?");
	EXPECT_EQ(FromUtf8("\xE2\x82"), "??");
	EXPECT_EQ(FromUtf8("\xF0\x9F"), "?");
}

TEST(TStringEncodingTest, InvalidPlatformTextIsReplacedWhole) {
	for (const char* bytes :
	     {"ok\x80", "\xC3", "\xC0\x80", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2z "})
		EXPECT_EQ(TString(bytes, kPlatformEncoding), "???") << bytes;
}

TEST(TStringEncodingTest, FourResultsAreValidAtOnce) {
	std::vector<const char*> results;
	for (const char* text : {"one", "two", "three", "four"})
		results.push_back(TString(text).CString());
	EXPECT_STREQ(results[0], "one");
	EXPECT_STREQ(results[3], "four");
	const std::string large(100'000, 'x');
	EXPECT_EQ(TString(large.c_str()).CString(), large);
	EXPECT_STREQ(results[1], "two");
}

TEST_F(TStringRolesTest, EachRoleOfAThreadHasItsOwnFourResults) {
	const char* main = TString("main").CString();
	const TThreadManager::TScope scope(kAudioThread, -1);
	for (int round = 0; round < 8; ++round)
		TString("audio").CString();
	EXPECT_STREQ(main, "main");
}

TEST(TStringEncodingTest, ThreadsDoNotDisturbEachOther) {
	const auto work = [](const char* text) {
		for (int round = 0; round < 2000; ++round)
			ASSERT_STREQ(TString(text).CString(), text);
	};
	std::thread first(work, "first");
	std::thread second(work, "second");
	first.join();
	second.join();
}

TEST(TStringEncodingTest, Base64OfTheStandard) {
	const std::pair<const char*, const char*> known[] = {
	    {"", ""},
	    {"f", "Zg=="},
	    {"fo", "Zm8="},
	    {"foo", "Zm9v"},
	    {"foob", "Zm9vYg=="},
	    {"fooba", "Zm9vYmE="},
	    {"foobar", "Zm9vYmFy"},
	    {"\xFF\xEF\xBE", "/+++"}};
	for (const auto& [plain, encoded] : known) {
		TString text;
		TString::Base64Encode(ToBytes(plain), text);
		EXPECT_EQ(text, encoded);
		std::vector<uint8_t> bytes;
		EXPECT_TRUE(TString::Base64Decode(text, bytes));
		EXPECT_EQ(bytes, ToBytes(plain));
	}
	std::vector<uint8_t> bytes;
	EXPECT_TRUE(TString::Base64Decode("Zm\r\n9v\nYg==\r\n", bytes));
	EXPECT_EQ(bytes, ToBytes("foob"));
}

TEST(TStringEncodingTest, BadBase64IsRefused) {
	for (const char* text : {"Z", "Zg", "Zg=", "Z===", "====", "Zg==Zg==", "Z=g=", "Zm9 ", "Zm9-", "Zm9\xE1"}) {
		std::vector<uint8_t> bytes{1};
		EXPECT_FALSE(TString::Base64Decode(text, bytes)) << text;
		EXPECT_THAT(bytes, ElementsAre(1)) << text;
	}
}
