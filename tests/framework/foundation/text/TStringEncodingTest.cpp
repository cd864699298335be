// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/text/TString.h"

#include "framework/foundation/threads/TThreadManager.h"
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

std::vector<uint8_t> ToBytes(std::string_view text) {
	return {text.begin(), text.end()};
}

using TStringRolesTest = TFrameworkFixture;

} // namespace

TEST(TStringEncodingTest, AsciiKnowsNothingFrom127On) {
	EXPECT_STREQ(TString(u"a~\u007F\u00E4\u20AC").CString(kAsciiEncoding), "a~???");
	EXPECT_EQ(TString("a~\x7F\xE4", kAsciiEncoding), "a~??");
	EXPECT_TRUE(TString("~").IsAscii() && !TString("\x7F").IsAscii());
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

TEST(TStringEncodingTest, Utf8IsReadLenientlyAndPlatformTextReplacedWhole) {
	const std::pair<const char*, const char16_t*> lenient[] = {
	    {"\xF0\x9F\x98\x80z", u"?z"},
	    {"\xF8\x88\x80\x80\x80\xFC\x84\x80\x80\x80\x80z", u"??z"},
	    {"\x80z\xFE\xFF", u"?z??"},
	    {"\xC3z", u"\u00FA"}, // the follower is not checked
	    {"a\xC3", u"a?"},
	    {"\xE2\x82", u"??"},
	    {"\xF0\x9F", u"?"}};
	for (const auto& [bytes, text] : lenient)
		EXPECT_EQ(TString(std::string_view(bytes), kUtf8Encoding), TString(text)) << bytes;
	for (const char* bytes :
	     {"ok\x80", "\xC3", "\xC0\x80", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2z "})
		EXPECT_EQ(TString(bytes, kPlatformEncoding), "???") << bytes;
}

TEST(TStringEncodingTest, FourResultsAreValidAtOnce) {
	std::vector<const char*> results;
	for (const char* text : {"one", "two", "three", "four"})
		results.push_back(TString(text).CString());
	EXPECT_STREQ(results[0], "one");
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
	std::thread other(work, "other");
	work("own");
	other.join();
}

TEST(TStringEncodingTest, Base64OfTheStandard) {
	const char* known[][2] = {
	    {"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foobar", "Zm9vYmFy"}, {"\xFF\xEF\xBE", "/+++"}};
	std::vector<uint8_t> bytes;
	for (const auto& [plain, encoded] : known) {
		TString text;
		TString::Base64Encode(ToBytes(plain), text);
		EXPECT_EQ(text, encoded);
		EXPECT_TRUE(TString::Base64Decode(text, bytes));
		EXPECT_EQ(bytes, ToBytes(plain));
	}
	EXPECT_TRUE(TString::Base64Decode("Zm\r\n9v\nYg==\r\n", bytes));
	EXPECT_EQ(bytes, ToBytes("foob"));
	for (const char* text : {"Z", "Zg", "Zg=", "Z===", "====", "Zg==Zg==", "Z=g=", "Zm9 ", "Zm9-", "Zm9\xE1"}) {
		EXPECT_FALSE(TString::Base64Decode(text, bytes)) << text;
		EXPECT_EQ(bytes, ToBytes("foob")) << text;
	}
}
