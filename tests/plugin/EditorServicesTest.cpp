// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/EditorServices.h"

#include "framework/foundation/files/Folders.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/surfaces/TGraphPort.h"
#include "framework/gui/windows/TDesktop.h"
#include "framework/gui/windows/TWindow.h"
#include "platform/headless/THeadlessPlatform.h"
#include "plugin/TProgramInstance.h"
#include "shell/TEditorWindow.h"

#include <gtest/gtest.h>

namespace {

class EditorServicesTest : public testing::Test {
protected:
	void SetUp() override {
		Folders::UseResources(TDirectory(VORTEL_TEST_RESOURCES));
		EditorServices::SetPlatformFactory([]() -> TPlatform* {
			if (sHasDisplay)
				return new THeadlessPlatform;
			throw TReadableException("no display");
		});
	}

	void TearDown() override { sHasDisplay = true; }

	static inline bool sHasDisplay = true;
};

TEST_F(EditorServicesTest, MessagesOfAnInstanceBecomeDialogsOfItsEditor) {
	const auto first = TProgramInstance::Create();
	const auto second = TProgramInstance::Create();
	std::string shown;
	first->Shell().AsGui([&] {
		{
			const TEditorWindow editor(*first->Shell().Gui(), 1);
			static_cast<THeadlessPlatform&>(*TPlatform::Instance()).SetOnWait([&] {
				TWindow* dialog = TDesktop::Instance()->MainWindow()->ModalChild();
				shown += dialog->Title().CString();
				dialog->RequestClose();
				return true;
			});
			TSystemGlobals::Instance()->ShowMessage("The bank is damaged.", kWarningMessage);
		}
		EditorServices::End();
		EXPECT_EQ(TGraphPort::Instance(), nullptr);
	});
	EXPECT_EQ(shown, "Warning");
	testing::internal::CaptureStderr();
	for (const auto* instance : {&first, &second})
		(*instance)->Shell().AsGui([] { TSystemGlobals::Instance()->ShowMessage("Nobody looks.", kWarningMessage); });
	EXPECT_EQ(testing::internal::GetCapturedStderr(), "Warning: Nobody looks.\nWarning: Nobody looks.\n");
}

TEST_F(EditorServicesTest, AFailedStartLeavesNothingAndMayBeRepeated) {
	const auto instance = TProgramInstance::Create();
	instance->Shell().AsGui([] {
		sHasDisplay = false;
		EXPECT_THROW(EditorServices::Start(), TReadableException);
		EXPECT_EQ(TGraphPort::Instance(), nullptr);
		EXPECT_EQ(TDesktop::Instance(), nullptr);
		EditorServices::End();
		sHasDisplay = true;
		EditorServices::Start();
		EditorServices::Start();
		EXPECT_NE(TDesktop::Instance(), nullptr);
	});
}

} // namespace
