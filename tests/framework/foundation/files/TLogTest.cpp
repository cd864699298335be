// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/TLog.h"

#include "framework/foundation/text/TReadableException.h"
#include "framework/foundation/values/ProductInfo.h"
#include "tests/support/TLogFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

struct TLogTest : testing::Test {
	static inline int64_t sNow = 0;

	TPtr<TLog> MakeLog(bool writesHeader = true) {
		auto log = MakePtr<TLog>(mFolder.Directory(), "test.log", [] { return sNow; });
		log->SetWriteHeader(writesHeader);
		return log;
	}

	std::string Text() const { return mFolder.Read("test.log"); }

	std::vector<std::string> Lines() const {
		std::istringstream stream(Text());
		std::vector<std::string> lines;
		for (std::string line; std::getline(stream, line);)
			lines.push_back(line);
		return lines;
	}

	TLogFolder mFolder;
};

} // namespace

TEST_F(TLogTest, BlankLineSetsOffEachSubjectAndEachPause) {
	const TPtr<TLog> log = MakeLog(false);
	log->LogText("Vortel", "one");
	sNow += 2000;
	log->LogText("Vortel", "two");
	sNow += 3000;
	log->LogText("Vortel", "three");
	log->Log("Threads", "%s %d", "four", 4);
	log->LogString("", TString("f\xC3\xBCnf", kUtf8Encoding));
	EXPECT_EQ(Text(), "\nVortel: one\nVortel: two\n\nVortel: three\n\nThreads: four 4\n\nf\xC3\xBCnf\n");
}

TEST_F(TLogTest, EachRunBeginsWithAHeader) {
	MakeLog()->LogText("Vortel", "first run");
	MakeLog()->LogText("Vortel", TString("second run").CString(kPlatformEncoding)); // the opening makes CStrings too
	const std::string rule(60, '=');
	const auto version = "Version : Vortel2 V2.1.5 (" + std::string(ProductInfo::BuildDate()) + ")";
	const auto date = MatchesRegex("Date    : [0-9]{4}-[0-9]{2}-[0-9]{2}");
	const auto time = MatchesRegex("Time    : [0-9]{2}:[0-9]{2}:[0-9]{2}");
	const auto system = MatchesRegex("OS      : .*[^ ] [0-9.]+[^ ]* \\((x86_64|arm64)\\)");
	EXPECT_THAT(
	    Lines(),
	    ElementsAre(
	        rule, version, date, time, system, rule, "", "Vortel: first run", "", "Closing log file...", "", "", "", "",
	        rule, version, date, time, system, rule, "", "Vortel: second run", "", "Closing log file..."));
	EXPECT_THAT(ProductInfo::BuildDate(), MatchesRegex("[A-Z][a-z]{2} [ 1-3][0-9] 20[0-9]{2}"));
}

TEST_F(TLogTest, FileLargerThanTheLimitIsCutToItsEnd) {
	for (const std::size_t size : {0x400000u, 0x500000u}) {
		std::string content(size, 'a');
		content.replace(size - 0x100000, 3, "end");
		mFolder.Write("test.log", content);
		MakeLog()->LogText("", "next");
		const std::size_t cut = size > 0x400000 ? size - 0x100000 : 0;
		EXPECT_TRUE(Text().starts_with(content.substr(cut) + "\n\n\n\n=====")) << size;
	}
}

TEST_F(TLogTest, TruncatingLogStartsAFreshFileWithoutSeparator) {
	mFolder.Write("test.log", "old");
	const TPtr<TLog> log = MakeLog();
	log->SetTruncate(true);
	log->LogText("", "new");
	EXPECT_THAT(Text(), StartsWith("====="));
}

TEST_F(TLogTest, MessagesAreEchoedEvenWithoutAFile) {
	TLog::SetEchoToConsole(true);
	testing::internal::CaptureStdout();
	MakePtr<TLog>(TDirectory(), "test.log")->LogText("Vortel", "no folder yet");
	MakePtr<TLog>(TDirectory("/dev/null/below"), "test.log")->LogText("", "no folder possible");
	EXPECT_EQ(
	    testing::internal::GetCapturedStdout(),
	    "Vortel2 LOG> Vortel: no folder yet\nVortel2 LOG> no folder possible\n");
}

TEST_F(TLogTest, ProcessLogIsMadeAgainAfterItWasDropped) {
	TLog::SetDirectory(mFolder.Directory().Descend("a").Descend("b"));
	EXPECT_FALSE(TLog::Existing());
	TLog::Instance()->LogText("Vortel", "before");
	TLog::Drop();
	TLog::Instance()->LogText("Vortel", "after");
	const std::string text = mFolder.Read("a/b/Vortel2.log");
	EXPECT_THAT(text, HasSubstr("Vortel: before\n\nClosing log file...\n\n\n\n\n====="));
	EXPECT_THAT(text, HasSubstr("Vortel: after\n"));
}

TEST_F(TLogTest, ExceptionsLeaveTheirLineExceptThoseFromLogging) {
	const TReadableException unlogged("before there was a log");
	TLog::Instance()->LogText("Vortel", "a log");
	const auto full = MakePtr<TLog>(TDirectory("/dev"), "full");
	full->SetWriteHeader(false);
	full->LogText("Vortel", "does not fit");
	const TReadableException logged("Disk is on fire");
	EXPECT_STREQ(logged.what(), "Disk is on fire");
	EXPECT_THAT(mFolder.Logged(), HasSubstr("\nException: Disk is on fire\n"));
	EXPECT_THAT(mFolder.Logged(), Not(HasSubstr("before there was a log")));
	EXPECT_THAT(mFolder.Logged(), Not(HasSubstr("Failed to flush")));
}

TEST_F(TLogTest, FormattedTextIsCutToTheBuffer) {
	MakeLog(false)->Log("", "%s", std::string(5000, 'x').c_str());
	EXPECT_THAT(Lines(), ElementsAre(std::string(4095, 'x'), "Closing log file..."));
}

TEST_F(TLogTest, LinesOfSeveralThreadsDoNotTear) {
	constexpr int kLinesPerThread = 200;
	const TPtr<TLog> log = MakeLog(false);
	std::vector<std::thread> threads;
	for (const char* category : {"A", "B", "C"}) {
		threads.emplace_back([&, category] {
			for (int i = 0; i < kLinesPerThread; ++i)
				log->LogText(category, "some text of a length that could tear");
		});
	}
	for (std::thread& thread : threads)
		thread.join();
	std::vector<std::string> lines = Lines();
	std::erase(lines, "");
	EXPECT_THAT(lines, testing::SizeIs(3 * kLinesPerThread));
	EXPECT_THAT(lines, testing::Each(MatchesRegex("[ABC]: some text of a length that could tear")));
}
