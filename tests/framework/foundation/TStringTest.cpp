// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TString.h"

#include "framework/foundation/MemoryHeap.h"
#include "framework/foundation/TReadableException.h"
#include "tests/support/TStringPrinter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

using testing::ElementsAre;

namespace {

bool ShareBuffer(const TString& a, const TString& b) {
	return a.Units() == b.Units();
}

/// What `change` makes of a text whose buffer is its own, and whose buffer is shared; the sharer must not notice.
template <class F>
TString Changed(const char* text, F change) {
	TString own = text;
	change(own);
	const TString original = text;
	TString shared = original;
	change(shared);
	EXPECT_EQ(own, shared);
	EXPECT_EQ(original, text);
	return own;
}

} // namespace

TEST(TStringTest, CopiesShareUntilOneIsWritten) {
	TString a = "scene";
	TString b = a;
	EXPECT_TRUE(ShareBuffer(a, b));
	b.SetChar(0, u'S');
	EXPECT_FALSE(ShareBuffer(a, b));
	EXPECT_EQ(a, "scene");
	EXPECT_EQ(b, "Scene");
	const char16_t* own = b.Units();
	b.SetChar(1, u'C');
	EXPECT_EQ(b.Units(), own);
}

TEST(TStringTest, EmptyTextsShareOneBufferAndAreNeverWritten) {
	TString text;
	EXPECT_TRUE(ShareBuffer(text, ""));
	text.SetChar(0, u'x');
	text.ReplaceChar(u'\0', u'x');
	text.ToUpper();
	text.Trim();
	text.Remove(0, -1);
	EXPECT_TRUE(text.IsEmpty());
	EXPECT_TRUE(TString().IsEmpty());
}

TEST(TStringTest, MovedFromTextIsEmptyAndUsable) {
	TString from = "abc";
	const TString to = std::move(from);
	EXPECT_EQ(to, "abc");
	EXPECT_EQ(from.Length(), 0);
	EXPECT_EQ(from, TString());
	TString copy = from;
	copy.ToLower();
	copy.Append("x");
	from.Insert(5, copy);
	EXPECT_EQ(from, "x");
}

TEST(TStringTest, ConstructionFromUnitsAndCharacters) {
	EXPECT_EQ(TString(u"abcdef", 6), "abc");
	EXPECT_EQ(TString(static_cast<const char*>(nullptr)).Length(), 0);
	EXPECT_EQ(TString("\xE4")[0], 0xE4);
	const TString wide(U"a\U0001F600z");
	EXPECT_EQ(wide.Length(), 4);
	EXPECT_EQ(wide[1], 0xD83D);
	EXPECT_EQ(wide[2], 0xDE00);
}

TEST(TStringTest, SubStringBounds) {
	const TString text = "abcdef";
	EXPECT_TRUE(ShareBuffer(text.SubString(0, -1), text));
	EXPECT_TRUE(ShareBuffer(text.SubString(-3, 99), text));
	EXPECT_EQ(text.SubString(2, 4), "cd");
	EXPECT_EQ(text.SubString(4), "ef");
	EXPECT_EQ(text.SubString(3, 3), "");
	EXPECT_EQ(text.SubString(4, 2), "");
	EXPECT_EQ(text.SubString(7, -1), "");
}

TEST(TStringTest, FindFromBothSides) {
	const TString text = "abcABCabc";
	EXPECT_EQ(text.Find("abc"), 0);
	EXPECT_EQ(text.Find("abc", 1), 6);
	EXPECT_EQ(text.Find("abc", 8, true), 6);
	EXPECT_EQ(text.Find("abc", 5, true), 0);
	EXPECT_EQ(text.FindIgnoringCase("aBc", 5, true), 3);
	EXPECT_EQ(text.FindIgnoringCase("CABCABC"), 2);
	EXPECT_EQ(text.FindChar(u'C'), 5);
	EXPECT_EQ(text.FindChar(u'a', 5, true), 0);
	for (const int32_t outside : {-1, 9, 100})
		EXPECT_EQ(text.Find("a", outside) + text.Find("a", outside, true), -2);
	EXPECT_EQ(text.Find(""), -1);
	EXPECT_EQ(TString().Find(""), -1);
	EXPECT_EQ(text.Find("abcd"), -1);
}

TEST(TStringTest, BeginningsAndEnds) {
	const TString text = "Bank.v2bnk";
	EXPECT_TRUE(text.StartsWith("Bank") && text.StartsWith(text) && text.StartsWith(""));
	EXPECT_FALSE(text.StartsWith("bank") || text.StartsWith("Bank.v2bnk.old"));
	EXPECT_TRUE(text.StartsWithIgnoringCase("bANK") && text.EndsWithIgnoringCase(".V2BNK"));
	EXPECT_TRUE(text.EndsWith(".v2bnk") && text.StartsWithChar(u'B') && text.EndsWithChar(u'k'));
	EXPECT_FALSE(text.EndsWith("xBank.v2bnk") || TString().StartsWithChar(u'\0') || TString().EndsWithChar(u'\0'));
}

TEST(TStringTest, OrderIsByUnitsAndCaseCanBeIgnored) {
	EXPECT_LT(TString("Z"), TString("a"));
	EXPECT_LT(TString("ab"), TString("abc"));
	EXPECT_GT(TString(u"\uE000"), TString("z"));
	EXPECT_EQ(TString("RETrigger").CompareIgnoringCase("retRIGGER"), 0);
	EXPECT_LT(TString("a").CompareIgnoringCase("B"), 0);
	EXPECT_GT(TString("ab").CompareIgnoringCase("A"), 0);
	EXPECT_FALSE(TString("ab") == "abc" || TString("abc") == "ab");
}

TEST(TStringTest, Counting) {
	EXPECT_EQ(TString("aaaa").Count("aa"), 2);
	EXPECT_EQ(TString("aaaa").Count(""), 0);
	EXPECT_EQ(TString("a,b,,").CountChar(u','), 3);
	EXPECT_TRUE(TString("~").IsAscii());
	EXPECT_FALSE(TString("\x7F").IsAscii());
}

TEST(TStringTest, InsertAndRemove) {
	EXPECT_EQ(Changed("ad", [](TString& text) { text.Insert(1, "bc"); }), "abcd");
	EXPECT_EQ(Changed("ad", [](TString& text) { text.Insert(2, "e"); }), "ade");
	EXPECT_EQ(Changed("ad", [](TString& text) { text.Insert(-1, text); }), "adad");
	EXPECT_EQ(Changed("abcd", [](TString& text) { text.Remove(1, 3); }), "ad");
	EXPECT_EQ(Changed("abcd", [](TString& text) { text.Remove(2, -1); }), "ab");
	EXPECT_EQ(Changed("abcd", [](TString& text) { text.Remove(3, 1); }), "abcd");
	EXPECT_EQ(Changed("abcd", [](TString& text) { text += text; }), "abcdabcd");
}

TEST(TStringTest, InsertUsesRoomThatIsLeftOver) {
	TString text = "abcdef";
	text.Remove(1, 4);
	const char16_t* buffer = text.Units();
	text.Insert(1, "xyz");
	EXPECT_EQ(text, "axyzef");
	EXPECT_EQ(text.Units(), buffer);
	text.Insert(1, text);
	EXPECT_EQ(text, "aaxyzefxyzef");
}

TEST(TStringTest, ReplacedTextIsNotSearchedAgain) {
	const auto replaceAll = [](const char* text, const char* from, const char* to) {
		return Changed(text, [&](TString& changed) { changed.ReplaceAll(from, to); });
	};
	EXPECT_EQ(replaceAll("aXbXc", "X", "XX"), "aXXbXXc");
	EXPECT_EQ(replaceAll("aaa", "aa", "a"), "aa");
	EXPECT_EQ(replaceAll("abab", "ab", ""), "");
	EXPECT_EQ(replaceAll("abc", "", "x"), "abc");
	EXPECT_EQ(replaceAll("abc", "d", "x"), "abc");
	EXPECT_EQ(Changed("a-a-a", [](TString& text) { text.ReplaceFirst("a", "long"); }), "long-a-a");
	EXPECT_EQ(Changed("a-a-a", [](TString& text) { text.ReplaceLast("a", "z"); }), "a-a-z");
	EXPECT_EQ(Changed("a/b/", [](TString& text) { text.ReplaceChar(u'/', u'.'); }), "a.b.");
}

TEST(TStringTest, RemovalIgnoringCase) {
	EXPECT_EQ(Changed("xABaBbyab", [](TString& text) { text.RemoveAllIgnoringCase("ab"); }), "xby");
	EXPECT_EQ(Changed("ABxab", [](TString& text) { text.RemoveFirstIgnoringCase("Ab"); }), "xab");
	EXPECT_EQ(Changed("ABxab", [](TString& text) { text.RemoveLastIgnoringCase("Ab"); }), "ABx");
	EXPECT_EQ(Changed("ABab", [](TString& text) { text.RemoveAllIgnoringCase(text); }), "");
}

TEST(TStringTest, CaseOfLettersOnly) {
	EXPECT_EQ(Changed("Ab@[`{Yz1", [](TString& text) { text.ToLower(); }), "ab@[`{yz1");
	EXPECT_EQ(Changed("Ab@[`{Yz1", [](TString& text) { text.ToUpper(); }), "AB@[`{YZ1");
}

TEST(TStringTest, TrimmingAndBlanks) {
	EXPECT_EQ(Changed(" \t a\tb \r\n", [](TString& text) { text.Trim(); }), "a  b");
	EXPECT_EQ(Changed(" a ", [](TString& text) { text.TrimLeft(); }), "a ");
	EXPECT_EQ(Changed(" a ", [](TString& text) { text.TrimRight(); }), " a");
	EXPECT_EQ(Changed(" \t\n", [](TString& text) { text.Trim(); }), "");
	EXPECT_EQ(Changed("a\tb", [](TString& text) { text.TabsToBlanks(0); }), "ab");
	EXPECT_EQ(Changed("a\r\nb\rc\nd", [](TString& text) { text.LineBreaksToBlanks(); }), "a b c d");
}

TEST(TStringTest, SplittingKeepsEmptyParts) {
	EXPECT_THAT(TString("a,").Split(u','), ElementsAre("a", ""));
	EXPECT_THAT(TString(",a,,b").Split(u','), ElementsAre("", "a", "", "b"));
	EXPECT_THAT(TString().Split(u','), ElementsAre(""));
	EXPECT_THAT(TString("a->b-c").SplitAtAny({"->", "-", ""}), ElementsAre("a", "b", "c"));
	EXPECT_THAT(TString("a->b").SplitAtAny({"-", "->"}), ElementsAre("a", ">b"));
}

TEST(TStringTest, LinesAreCountedAsTheyAreSplit) {
	EXPECT_THAT(TString("a\r\nb\n\rc\n").SplitLines(), ElementsAre("a", "b", "", "c", ""));
	for (const char* text : {"", "a", "\n", "\r\n", "a\r\nb\n\rc\n", "\r\r\n\n"})
		EXPECT_EQ(TString(text).LineCount(), TString(text).SplitLines().Count()) << text;
}

TEST(TStringTest, JoiningUndoesSplitting) {
	for (const char* text : {"", ",", "a", "a,,b,"})
		EXPECT_EQ(TString::Join(TString(text).Split(u','), ","), text);
	EXPECT_EQ(TString::Join({}, ","), "");
	EXPECT_EQ(TString::Join({"a", "b"}, ""), "ab");
	EXPECT_EQ(TString("ab").Repeat(3), "ababab");
	EXPECT_EQ(TString("ab").Repeat(-1), "");
}

TEST(TStringTest, FailedChangeLeavesTheText) {
	TString text = "abc";
	EXPECT_THROW(text = TString("ab").Repeat(std::numeric_limits<int32_t>::max()), TOutOfMemoryException);
	const Memory::THeap& system = Memory::SystemHeap();
	static const Memory::THeap sFull{
	    [](std::size_t size) -> void* { return size < 2'000'000 ? Memory::SystemHeap().mAllocate(size) : nullptr; },
	    system.mReallocate, system.mFree, system.mReservePages, system.mReleasePages};
	const std::string large(1'500'000, 'x');
	const Memory::THeap& before = Memory::ExchangeHeap(sFull);
	EXPECT_THROW(text.ReplaceAll("b", TString(large.c_str())), TOutOfMemoryException);
	EXPECT_THROW(text.FromBytes(large, kUtf8Encoding), TOutOfMemoryException);
	Memory::ExchangeHeap(before);
	EXPECT_EQ(text, "abc");
}

TEST(TStringTest, SharedBuffersDieOnAnyThread) {
	const TString text = "shared between threads";
	const auto work = [&text] {
		for (int round = 0; round < 2000; ++round) {
			TString copy = text;
			const TString second = copy;
			copy.SetChar(0, u'S');
			EXPECT_EQ(copy[1], second[1]);
		}
	};
	std::thread other(work);
	work();
	other.join();
	EXPECT_EQ(text, "shared between threads");
}

TEST(TStringTest, Wildcards) {
	const auto matches = [](const char* text, const char* pattern) { return TString(text).WildcardMatches(pattern); };
	EXPECT_TRUE(matches("", "") && matches("", "**") && matches("abc", "a*c") && matches("abc", "*"));
	EXPECT_TRUE(matches("abcbc", "a*bc") && matches("abc", "?b?") && matches("a*", "a\\*"));
	EXPECT_FALSE(matches("abc", "ab") || matches("ab", "abc") || matches("abc", "a*b") || matches("ab", "a\\*"));
	EXPECT_FALSE(matches("", "?") || matches("abc", ""));
	EXPECT_TRUE(matches("b", "[a-c]") && matches("-", "[a-]") && matches("]", "[]a]") && matches("]", "[\\]]"));
	EXPECT_TRUE(matches("d", "[^a-c]") && matches("d", "[!a-c]") && matches("x1y", "x[0-9]y"));
	EXPECT_FALSE(matches("b", "[!a-c]") || matches("d", "[a-c]") || matches("[", "[") || matches("a", "[a"));
	EXPECT_TRUE(TString("BANK.XML").WildcardMatches("b[a-c]?k.*", true));
	EXPECT_FALSE(TString("BANK.XML").WildcardMatches("b*", false));
	// Many stars on a long text must not take exponential time.
	EXPECT_FALSE(TString("a").Repeat(2000).WildcardMatches(TString("*a").Repeat(20) + "b"));
}

TEST(TStringTest, WordBoundaries) {
	const TString text = "foo_1 ++ (bar), x";
	const auto walk = [&](int32_t position, bool backwards) {
		std::vector<int32_t> stops;
		while (position != (backwards ? 0 : text.Length()))
			stops.push_back(position = text.NextWordBoundary(position, backwards));
		return stops;
	};
	EXPECT_THAT(walk(0, false), ElementsAre(6, 9, 10, 13, 14, 16, 17));
	EXPECT_THAT(walk(17, true), ElementsAre(16, 14, 13, 10, 9, 6, 4, 0));
	EXPECT_EQ(text.NextWordBoundary(1, true), 0);
	EXPECT_EQ(text.NextWordBoundary(99), 17);
	EXPECT_EQ(TString("a\x01").NextWordBoundary(1), 2);
	EXPECT_TRUE(TString::IsWordSeparator(u'@') && TString::IsWordSeparator(u'\t'));
	EXPECT_FALSE(TString::IsWordSeparator(u'_') || TString::IsWordSeparator(u'-'));
}
