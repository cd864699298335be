// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/text/TString.h"

#include "framework/foundation/text/TReadableException.h"
#include "tests/support/TFailingHeap.h"
#include "tests/support/TStringPrinter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

using testing::ElementsAre;

TEST(TStringTest, CopiesShareUntilOneIsWritten) {
	TString a = "scene";
	TString b = a;
	EXPECT_EQ(a.Units(), b.Units());
	b.SetChar(0, u'S');
	const char16_t* own = b.Units();
	b.SetChar(1, u'C');
	EXPECT_EQ(b.Units(), own);
	EXPECT_EQ(a, "scene");
	EXPECT_EQ(b, "SCene");
}

TEST(TStringTest, EmptyTextsShareOneBufferThatIsNeverWritten) {
	TString from = "abc";
	const TString to = std::move(from);
	EXPECT_EQ(to, "abc");
	EXPECT_EQ(from.Units(), TString().Units());
	from.SetChar(0, u'x');
	from.ReplaceChar(u'\0', u'x');
	from.ToUpper();
	from.Trim();
	from.Remove(0, -1);
	EXPECT_TRUE(from.IsEmpty() && TString().IsEmpty());
	from.Insert(5, "x");
	EXPECT_EQ(from, "x");
}

TEST(TStringTest, ConstructionFromUnitsAndCharacters) {
	EXPECT_EQ(TString(u"abcdef", 6), "abc");
	EXPECT_EQ(TString(static_cast<const char*>(nullptr)).Length(), 0);
	EXPECT_EQ(TString("\xE4")[0], 0xE4);
	EXPECT_EQ(TString(U"a\U0001F600z"), TString(u"a\xD83D\xDE00z"));
}

TEST(TStringTest, SubStringBounds) {
	const TString text = "abcdef";
	EXPECT_EQ(text.SubString(-3, 99).Units(), text.Units());
	EXPECT_EQ(text.SubString(2, 4), "cd");
	EXPECT_EQ(text.SubString(4), "ef");
	EXPECT_EQ(text.SubString(4, 2) + text.SubString(7, -1), "");
}

TEST(TStringTest, FindFromBothSides) {
	const TString text = "abcABCabc";
	EXPECT_EQ(text.Find("abc", 1), 6);
	EXPECT_EQ(text.Find("abc", 8, true), 6);
	EXPECT_EQ(text.Find("abc", 5, true), 0);
	EXPECT_EQ(text.FindIgnoringCase("aBc", 5, true), 3);
	EXPECT_EQ(text.FindIgnoringCase("CABCABC"), 2);
	EXPECT_EQ(text.FindChar(u'C'), 5);
	EXPECT_EQ(text.FindChar(u'a', 5, true), 0);
	for (const int32_t outside : {-1, 9, 100})
		EXPECT_EQ(text.Find("a", outside) + text.Find("a", outside, true), -2);
	EXPECT_EQ(text.Find("") + TString().Find("") + text.Find("abcd"), -3);
	EXPECT_EQ(TString("aaaa").Count("aa"), 2);
	EXPECT_EQ(TString("a,b,,").CountChar(u','), 3);
}

TEST(TStringTest, BeginningsAndEnds) {
	const TString text = "Bank.v2bnk";
	EXPECT_TRUE(text.StartsWith(text) && text.StartsWith("") && text.EndsWith(".v2bnk"));
	EXPECT_FALSE(text.StartsWith("bank") || text.StartsWith("Bank.v2bnk.old") || text.EndsWith("xBank.v2bnk"));
	EXPECT_TRUE(text.StartsWithIgnoringCase("bANK") && text.EndsWithIgnoringCase(".V2BNK"));
	EXPECT_TRUE(text.StartsWithChar(u'B') && text.EndsWithChar(u'k'));
	EXPECT_FALSE(TString().StartsWithChar(u'\0') || TString().EndsWithChar(u'\0'));
}

TEST(TStringTest, OrderIsByUnitsAndCaseCanBeIgnored) {
	EXPECT_TRUE(TString("Z") < "a" && TString("ab") < "abc" && TString("z") < TString(u"\uE000"));
	EXPECT_EQ(TString("RETrigger").CompareIgnoringCase("retRIGGER"), 0);
	EXPECT_LT(TString("a").CompareIgnoringCase("B"), 0);
	EXPECT_GT(TString("ab").CompareIgnoringCase("A"), 0);
	EXPECT_FALSE(TString("ab") == "abc" || TString("abc") == "ab");
}

TEST(TStringTest, ChangesAreTheSameWhetherTheBufferIsSharedOrNot) {
	struct TChange {
		const char* mBefore;
		void (*mChange)(TString& text);
		const char* mAfter;
	};

	const TChange changes[] = {
	    {"ad", [](TString& text) { text.Insert(1, "bc"); }, "abcd"},
	    {"ad", [](TString& text) { text.Insert(-1, text); }, "adad"},
	    {"abcd", [](TString& text) { text.Remove(1, 3); }, "ad"},
	    {"abcd", [](TString& text) { text.Remove(2, -1); }, "ab"},
	    {"abcd", [](TString& text) { text += text; }, "abcdabcd"},
	    {"aXbXc", [](TString& text) { text.ReplaceAll("X", "XX"); }, "aXXbXXc"},
	    {"aaa", [](TString& text) { text.ReplaceAll("aa", "a"); }, "aa"},
	    {"abab", [](TString& text) { text.ReplaceAll("ab", ""); }, ""},
	    {"abc", [](TString& text) { text.ReplaceAll("", "x"); }, "abc"},
	    {"a-a-a", [](TString& text) { text.ReplaceFirst("a", "long"); }, "long-a-a"},
	    {"a-a-a", [](TString& text) { text.ReplaceLast("a", "z"); }, "a-a-z"},
	    {"a/b/", [](TString& text) { text.ReplaceChar(u'/', u'.'); }, "a.b."},
	    {"xABaBbyab", [](TString& text) { text.RemoveAllIgnoringCase("ab"); }, "xby"},
	    {"ABxab", [](TString& text) { text.RemoveFirstIgnoringCase("Ab"); }, "xab"},
	    {"ABxab", [](TString& text) { text.RemoveLastIgnoringCase("Ab"); }, "ABx"},
	    {"ABab", [](TString& text) { text.RemoveAllIgnoringCase(text); }, ""},
	    {"Ab@[`{Yz1", [](TString& text) { text.ToLower(); }, "ab@[`{yz1"},
	    {"Ab@[`{Yz1", [](TString& text) { text.ToUpper(); }, "AB@[`{YZ1"},
	    {" \t a\tb \r\n", [](TString& text) { text.Trim(); }, "a  b"},
	    {" a ", [](TString& text) { text.TrimLeft(); }, "a "},
	    {" a ", [](TString& text) { text.TrimRight(); }, " a"},
	    {"a\tb", [](TString& text) { text.TabsToBlanks(0); }, "ab"},
	    {"a\r\nb\rc\nd", [](TString& text) { text.LineBreaksToBlanks(); }, "a b c d"},
	};
	for (const auto& [before, change, after] : changes) {
		const TString original = before;
		TString own = before;
		TString shared = original;
		change(own);
		change(shared);
		EXPECT_EQ(own, after) << before;
		EXPECT_EQ(shared, own) << before;
		EXPECT_EQ(original, before);
	}
}

TEST(TStringTest, InsertUsesRoomThatIsLeftOver) {
	TString text = "abcdef";
	text.Remove(1, 4);
	const char16_t* buffer = text.Units();
	text.Insert(1, "xyz");
	EXPECT_EQ(text, "axyzef");
	EXPECT_EQ(text.Units(), buffer);
}

TEST(TStringTest, SplittingKeepsEmptyPartsAndJoiningUndoesIt) {
	EXPECT_THAT(TString(",a,,b").Split(u','), ElementsAre("", "a", "", "b"));
	for (const char* text : {"", ",", "a", "a,,b,"})
		EXPECT_EQ(TString::Join(TString(text).Split(u','), ","), text);
	EXPECT_EQ(TString::Join({}, ","), "");
	EXPECT_THAT(TString("a->b-c").SplitAtAny({"->", "-", ""}), ElementsAre("a", "b", "c"));
	EXPECT_THAT(TString("a->b").SplitAtAny({"-", "->"}), ElementsAre("a", ">b"));
	EXPECT_EQ(TString("ab").Repeat(3), "ababab");
	EXPECT_EQ(TString("ab").Repeat(-1), "");
}

TEST(TStringTest, LinesAreCountedAsTheyAreSplit) {
	EXPECT_THAT(TString("a\r\nb\n\rc\n").SplitLines(), ElementsAre("a", "b", "", "c", ""));
	for (const char* text : {"", "a", "\r\n", "a\r\nb\n\rc\n", "\r\r\n\n"})
		EXPECT_EQ(TString(text).LineCount(), TString(text).SplitLines().Count()) << text;
}

TEST(TStringTest, FailedChangeLeavesTheText) {
	TString text = "abc";
	EXPECT_THROW(text = TString("ab").Repeat(std::numeric_limits<int32_t>::max()), TOutOfMemoryException);
	const std::string large(1'500'000, 'x');
	const TString replacement(large.c_str());
	TFailingHeap heap;
	heap->mFails = true;
	EXPECT_THROW(text.ReplaceAll("b", replacement), TOutOfMemoryException);
	EXPECT_THROW(text.FromBytes(large, kUtf8Encoding), TOutOfMemoryException);
	EXPECT_EQ(text, "abc");
}

TEST(TStringTest, SharedBuffersDieOnAnyThread) {
	const TString text = "shared between threads";
	const auto work = [&text] {
		for (int round = 0; round < 2000; ++round) {
			TString copy = text;
			const TString second = copy;
			copy.SetChar(0, u'S');
			EXPECT_EQ(second, "shared between threads");
		}
	};
	std::thread other(work);
	work();
	other.join();
}

TEST(TStringTest, Wildcards) {
	const auto matches = [](const char* text, const char* pattern) { return TString(text).WildcardMatches(pattern); };
	EXPECT_TRUE(matches("", "**") && matches("abcbc", "a*bc") && matches("abc", "?b?") && matches("a*", "a\\*"));
	EXPECT_FALSE(matches("abc", "ab") || matches("ab", "abc") || matches("abc", "a*b") || matches("ab", "a\\*"));
	EXPECT_FALSE(matches("", "?") || matches("abc", ""));
	EXPECT_TRUE(matches("b", "[a-c]") && matches("-", "[a-]") && matches("]", "[]a]") && matches("]", "[\\]]"));
	EXPECT_TRUE(matches("d", "[^a-c]") && matches("d", "[!a-c]") && matches("x1y", "x[0-9]y"));
	EXPECT_FALSE(matches("b", "[!a-c]") || matches("d", "[a-c]") || matches("[", "[") || matches("a", "[a"));
	EXPECT_TRUE(TString("BANK.XML").WildcardMatches("b[a-c]?k.*", true));
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
	EXPECT_EQ(text.NextWordBoundary(99), 17);
	EXPECT_EQ(TString("a\x01").NextWordBoundary(1), 2);
	EXPECT_TRUE(TString::IsWordSeparator(u'@') && TString::IsWordSeparator(u'\t'));
	EXPECT_FALSE(TString::IsWordSeparator(u'_') || TString::IsWordSeparator(u'-'));
}
