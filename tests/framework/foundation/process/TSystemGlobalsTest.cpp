// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/process/TSystemGlobals.h"

#include "framework/foundation/threads/TThreadManager.h"
#include "framework/foundation/values/ProductInfo.h"
#include "tests/support/TFrameworkFixture.h"
#include "tests/support/TLogFolder.h"

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
using testing::StartsWith;

struct TSystemGlobalsTest : TFrameworkFixture {
	void SetUp() override {
		TFrameworkFixture::SetUp();
		sDialogs.clear();
		mpGlobals = TSystemGlobals::Instance();
		mpGlobals->SetMessageDialogFunction([](const TString& title, const TString& text, TMessageKind) {
			sDialogs.push_back((title + "|" + text).CString());
		});
		testing::internal::CaptureStderr();
	}

	std::string Printed() { return testing::internal::GetCapturedStderr(); }

	static inline std::vector<std::string> sDialogs;

	TLogFolder mFolder;
	TSystemGlobals* mpGlobals = nullptr;
};

} // namespace

TEST_F(TSystemGlobalsTest, MainThreadOpensDialogsForWarningsAndErrors) {
	mpGlobals->ShowMessage("a warning", kWarningMessage);
	mpGlobals->ShowMessage("an error\n\nof two lines", kErrorMessage);
	mpGlobals->ShowMessage("a note", kInformationMessage);
	EXPECT_THAT(sDialogs, ElementsAre("Warning|a warning", "Error|an error\n\nof two lines"));
	EXPECT_EQ(Printed(), "a note\n");
	EXPECT_THAT(mFolder.Logged(), EndsWith("\nError: an error\nError: of two lines\n"));
}

TEST_F(TSystemGlobalsTest, OtherThreadsOpenNoDialog) {
	{
		const TThreadManager::TScope audio(kAudioThread);
		mpGlobals->ShowMessage("a warning", kWarningMessage);
		mpGlobals->ShowMessage("an error", kErrorMessage);
	}
	EXPECT_THAT(sDialogs, IsEmpty());
	EXPECT_EQ(Printed(), "a warning\nan error\n");
	EXPECT_THAT(mFolder.Logged(), EndsWith("\nSystem: Warning: a warning\nSystem: Error: an error\n"));
}

TEST_F(TSystemGlobalsTest, QuietMessagesGoToTheLogLineByLine) {
	{
		const TSystemGlobals::TQuietMessages quiet;
		{ const TSystemGlobals::TQuietMessages nested; }
		mpGlobals->ShowMessage("one\n \t\r\ntwo", kWarningMessage);
		mpGlobals->ShowMessage("three", kErrorMessage);
		EXPECT_THAT(
		    mFolder.Logged(), EndsWith("\nWarning Message: one\nWarning Message: two\n\nError Message: three\n"));
	}
	mpGlobals->ShowMessage("loud again", kWarningMessage);
	EXPECT_THAT(sDialogs, ElementsAre("Warning|loud again"));
	Printed();
}

TEST_F(TSystemGlobalsTest, ErrorDialogAsksForAReportOnDemand) {
	mpGlobals->ShowBugDialog("Oops", "it broke");
	const auto begins = StartsWith("Oops|it broke\n\nPlease report this problem by sending a mail with the Log.txt,\n");
	const auto ends = EndsWith(std::string(" to: ").append(ProductInfo::kBugReportEMailAddress));
	EXPECT_THAT(sDialogs, ElementsAre(AllOf(begins, ends)));
	EXPECT_THAT(mFolder.Logged(), Not(HasSubstr("Please report")));
	Printed();
}

TEST_F(TSystemGlobalsTest, WithoutDialogsTheAlertIsPrinted) {
	mpGlobals->SetMessageDialogFunction(nullptr);
	mpGlobals->ShowMessage("a warning", kWarningMessage);
	EXPECT_EQ(Printed(), "Warning: a warning\n");
}
