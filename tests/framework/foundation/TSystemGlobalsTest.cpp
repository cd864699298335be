// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TSystemGlobals.h"

#include "framework/foundation/ProductInfo.h"
#include "framework/foundation/TLog.h"
#include "framework/foundation/TThreadManager.h"
#include "tests/support/TFrameworkFixture.h"
#include "tests/support/TTemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

struct TSystemGlobalsTest : TFrameworkFixture {
	void SetUp() override {
		TFrameworkFixture::SetUp();
		sDialogs.clear();
		TLog::Drop();
		TLog::SetDirectory(mFolder.Directory());
		TLog::SetEchoToConsole(false);
		mpGlobals = TSystemGlobals::Instance();
		mpGlobals->SetMessageDialogFunction([](const TString& title, const TString& text, TMessageKind) {
			sDialogs.push_back((title + "|" + text).CString());
		});
		testing::internal::CaptureStderr();
	}

	void TearDown() override {
		TFrameworkFixture::TearDown();
		TLog::SetDirectory(TDirectory());
		TLog::SetEchoToConsole(true);
	}

	std::string Printed() { return testing::internal::GetCapturedStderr(); }

	std::string Logged() { return mFolder.Read("Vortel2.log"); }

	static inline std::vector<std::string> sDialogs;

	TTemporaryFolder mFolder;
	TSystemGlobals* mpGlobals = nullptr;
};

} // namespace

TEST_F(TSystemGlobalsTest, MainThreadOpensDialogsForWarningsAndErrors) {
	mpGlobals->ShowMessage("a warning", kWarningMessage);
	mpGlobals->ShowMessage("an error\n\nof two lines", kErrorMessage);
	mpGlobals->ShowMessage("a note", kInformationMessage);
	EXPECT_THAT(sDialogs, ElementsAre("Warning|a warning", "Error|an error\n\nof two lines"));
	EXPECT_EQ(Printed(), "a note\n");
	EXPECT_THAT(Logged(), EndsWith("\nError: an error\nError: of two lines\n"));
}

TEST_F(TSystemGlobalsTest, OtherThreadsOpenNoDialog) {
	{
		const TThreadManager::TScope audio(kAudioThread);
		mpGlobals->ShowMessage("a warning", kWarningMessage);
		mpGlobals->ShowMessage("an error", kErrorMessage);
	}
	EXPECT_THAT(sDialogs, IsEmpty());
	EXPECT_EQ(Printed(), "a warning\nan error\n");
	EXPECT_THAT(Logged(), EndsWith("\nSystem: Warning: a warning\nSystem: Error: an error\n"));
}

TEST_F(TSystemGlobalsTest, QuietMessagesGoToTheLogLineByLine) {
	{
		const TSystemGlobals::TQuietMessages quiet;
		{ const TSystemGlobals::TQuietMessages nested; }
		mpGlobals->ShowMessage("one\n \t\r\ntwo", kWarningMessage);
		mpGlobals->ShowMessage("three", kErrorMessage);
		EXPECT_THAT(sDialogs, IsEmpty());
		EXPECT_THAT(Logged(), EndsWith("\nWarning Message: one\nWarning Message: two\n\nError Message: three\n"));
	}
	mpGlobals->ShowMessage("loud again", kWarningMessage);
	EXPECT_THAT(sDialogs, ElementsAre("Warning|loud again"));
	Printed();
}

TEST_F(TSystemGlobalsTest, ErrorDialogAsksForAReportOnDemand) {
	mpGlobals->ShowErrorDialog("Oops", "it broke", true);
	ASSERT_EQ(sDialogs.size(), 1u);
	EXPECT_THAT(
	    sDialogs[0], HasSubstr("Oops|it broke\n\nPlease report this problem by sending a mail with the Log.txt,\n"));
	EXPECT_THAT(sDialogs[0], EndsWith(std::string(" to: ").append(ProductInfo::kBugReportEMailAddress)));
	EXPECT_THAT(Logged(), Not(HasSubstr("Please report")));
	Printed();
}

TEST_F(TSystemGlobalsTest, WithoutDialogsTheAlertIsPrinted) {
	mpGlobals->SetMessageDialogFunction(nullptr);
	mpGlobals->ShowMessage("a warning", kWarningMessage);
	EXPECT_EQ(Printed(), "Warning: a warning\n");
}
