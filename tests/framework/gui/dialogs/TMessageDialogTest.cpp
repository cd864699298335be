// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/dialogs/TMessageDialog.h"

#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/gui/controls/TButton.h"
#include "framework/gui/text/TMultilineTextView.h"
#include "tests/support/TControlFixture.h"
#include "tests/support/TStringPrinter.h"

namespace {

class TMessageDialogTest : public TControlFixture {
protected:
	void SetUp() override {
		TControlFixture::SetUp();
		OpenEditor();
	}

	/// Shows the message, does the work in its loop and gives the answer.
	TString Answer(const TList<TString>& buttons, const std::function<void()>& work) {
		bool isDone = false;
		Platform().SetOnWait([&] {
			if (isDone)
				return false;
			work();
			return isDone = true;
		});
		return ShowMessageDialog(true, nullptr, "Title", "Text", buttons);
	}

	template <class T>
	static T* Find(TView& view) {
		if (auto* found = dynamic_cast<T*>(&view))
			return found;
		for (const TPtr<TView>& child : view.Children())
			if (T* found = Find<T>(*child))
				return found;
		return nullptr;
	}
};

TEST_F(TMessageDialogTest, KeysAndButtonsAnswer) {
	const auto key = [](int code) {
		return [code] {
			Platform().KeyDown(code);
			Platform().KeyUp(code);
		};
	};
	EXPECT_EQ(Answer({"OK"}, key(kKeyEscape)), "OK");
	EXPECT_EQ(Answer({"Yes", "No"}, key(kKeyEscape)), "No");
	EXPECT_EQ(Answer({"Yes", "No"}, key(kKeyReturn)), "Yes");
	EXPECT_EQ(Answer({"Yes", "No", "Never"}, key(kKeyA + 13)), "No") << "the first with that letter";
	EXPECT_EQ(Answer({"Yes", "No", "Never"}, key(kKeyReturn)), "Cancel") << "with more than two, only letters";
	EXPECT_EQ(
	    Answer(
	        {"Save", "Discard"},
	        [this] {
		        TViewWindow& dialog = *Editor().ModalChild()->AsViewWindow();
		        const TRectT<int> rect = Find<TButton>(*dialog.MainFrame())->AbsoluteRect();
		        const TPointT<int> point = dialog.ClientToScreen({rect.mLeft + 5, rect.mTop + 5});
		        Platform().MovePointer(point);
		        Platform().Press(TMouseButton::kLeft);
		        Platform().Release(TMouseButton::kLeft);
	        }),
	    "Save");
	EXPECT_EQ(Answer({"OK"}, [] {}), "Cancel");
}

TEST_F(TMessageDialogTest, CommandCCopiesTheText) {
	Answer({"Copy that", "No"}, [this] {
		Platform().KeyDown(kKeyLeftCommand);
		Platform().KeyDown(kKeyA + 2);
		Tick();
		EXPECT_NE(Editor().ModalChild(), nullptr);
	});
	EXPECT_EQ(Platform().Clipboard().Text(), "Text");
}

TEST_F(TMessageDialogTest, ALongTextIsLimitedByTheScreen) {
	const auto dialog = MakePtr<TMessageDialog>(
	    false, nullptr, "Title", TString("many words ").Repeat(4000), TList<TString>{"OK"}, TString());
	const auto* text = Find<TMultilineTextView>(*dialog->MainFrame());
	EXPECT_EQ(text->Height(), 1000);
	EXPECT_EQ(text->WrapWidth(), 420);
	EXPECT_LT(dialog->ClientSize().mY, 1500);
	dialog->Close();
}

TEST_F(TMessageDialogTest, MessagesFromBelowShowWhileTheEditorIsSeen) {
	std::string shown;
	Platform().SetOnWait([&] {
		TWindow* dialog = Editor().ModalChild();
		shown += dialog->Title().CString();
		dialog->RequestClose();
		return true;
	});
	TSystemGlobals::Instance()->ShowMessage("The texture set is broken.", kWarningMessage);
	EXPECT_EQ(shown, "Warning");
	Platform().ShowHost(false);
	testing::internal::CaptureStderr();
	TSystemGlobals::Instance()->ShowMessage("Nobody looks.", kErrorMessage);
	EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error: Nobody looks.\n");
	EXPECT_EQ(shown, "Warning");
}

} // namespace
