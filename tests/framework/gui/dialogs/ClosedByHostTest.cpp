// SPDX-License-Identifier: GPL-3.0-or-later
// A host takes the editor away while a dialog waits for an answer. Everything unwinds; nothing is done any more.

#include "framework/document/observables/TObservableBaseType.h"
#include "framework/gui/controls/TButton.h"
#include "framework/gui/dialogs/TFileDialog.h"
#include "framework/gui/dialogs/TMessageDialog.h"
#include "framework/gui/menus/TContextMenu.h"
#include "framework/gui/text/TTextField.h"
#include "tests/support/TControlFixture.h"
#include "tests/support/TTemporaryFolder.h"

#include <utility>

namespace {

/// Asks before it does something.
class TAskingView final : public TView {
public:
	explicit TAskingView(std::string& journal) : mJournal(journal), mButton(MakePtr<TButton>("Ask", kToolButton)) {
		AddChild(mButton);
		mButton->SetRect({10, 10, 60, 20});
		mButton->SetClickAction({this, &TAskingView::Ask});
		mButton->SetSecondaryAction({this, &TAskingView::OpenMenu});
	}

	void Ask() {
		mJournal += "asks ";
		std::string& journal = mJournal; // the view may be gone
		journal += ShowMessageDialog(true, MainFrame()->Window(), "Title", "Text", {"Yes", "No"}).CString();
	}

	void OpenMenu() {
		TList<TPtr<TMenuEntry>> entries;
		entries.Append(MakePtr<TMenuEntry>("Ask", TFunctionPtr<void>(this, &TAskingView::Ask)));
		TContextMenu::OpenBelow(*mButton, entries);
	}

	std::string& mJournal;
	const TPtr<TButton> mButton;
};

class ClosedByHostTest : public TControlFixture {
public:
	void SetUp() override {
		TControlFixture::SetUp();
		TTextField::SetUseEditWindow(true);
		OpenEditor();
		Platform().SetOnWait([this] {
			TakeEditor();
			return true;
		});
	}

	/// The window, and with it the only reference to its views.
	void TakeEditor() {
		const TPtr<TViewWindow> editor = std::exchange(mpEditor, nullptr);
		if (!editor)
			return;
		mJournal += "closed ";
		editor->Close();
		editor->SetMainFrame(nullptr);
		EXPECT_TRUE(Platform().Windows().empty());
	}

	void ShowAskingView() { Show(MakePtr<TAskingView>(mJournal), {0, 0, 200, 100}); }

	void OnAccepted(const TString& /*path*/) { mJournal += "accepted "; }

	/// For a file that is there already.
	TPtr<TFileDialog> OpenSaveDialog(TView& owner) {
		mFolder.Write("there.txt", "old");
		auto dialog = MakePtr<TFileDialog>(
		    owner,
		    TFileDialogSettings{
		        .mSave = true,
		        .mCaption = "Save",
		        .mFilter = "*.txt",
		        .mDirectory = mFolder.Directory(),
		        .mName = "there.txt"},
		    TFunctionPtr<void, const TString&>(this, &ClosedByHostTest::OnAccepted));
		dialog->Open();
		return dialog;
	}

	std::string mJournal;
	TTemporaryFolder mFolder;
};

TEST_F(ClosedByHostTest, InsideAMessageWhateverHasBroughtItUp) {
	ShowAskingView();
	Click(20, 20);
	EXPECT_EQ(std::exchange(mJournal, {}), "asks closed Cancel");

	OpenEditor();
	ShowAskingView();
	Move(20, 20);
	Press(TMouseButton::kRight);
	Release(TMouseButton::kRight);
	KeyDown(kKeyDown);
	KeyUp(kKeyDown);
	KeyDown(kKeyReturn);
	KeyUp(kKeyReturn);
	Wait(300);
	EXPECT_EQ(std::exchange(mJournal, {}), "asks closed Cancel") << "from a menu";
}

TEST_F(ClosedByHostTest, BeforeAFileIsReplaced) {
	Platform().SetHasDialogs(false); // so that the toolkit asks for the path, and whether it may replace the file
	const TPtr<TFileDialog> dialog = OpenSaveDialog(*Editor().MainFrame());
	Tick();
	for (int presses = 0; presses < 2; ++presses) { // the first ends the edit
		KeyDown(kKeyReturn);
		KeyUp(kKeyReturn);
	}
	Wait(100);
	EXPECT_EQ(mJournal, "closed ");
	EXPECT_FALSE(dialog->IsOpen());
	EXPECT_EQ(mFolder.Read("there.txt"), "old");
}

TEST_F(ClosedByHostTest, WhileANameIsEdited) {
	TObservableBaseType<TString> name{"old"};
	const auto field = MakePtr<TTextField>(&name);
	field->SetEditAction({this, &ClosedByHostTest::TakeEditor});
	Show(field, {10, 10, 100, 20});
	field->BeginEdit(); // whose action takes the editor at once
	Wait(50);
	EXPECT_EQ(std::exchange(mJournal, {}), "closed ");
	EXPECT_FALSE(field->IsEditing());

	field->SetEditAction(nullptr);
	OpenEditor();
	Show(field, {10, 10, 100, 20});
	field->BeginEdit();
	field->SelectAll();
	Type("n");
	TakeEditor();
	Wait(50);
	EXPECT_FALSE(field->IsEditing());
	EXPECT_EQ(name.Get(), "n") << "closing ends the edit as a click beside it does";
}

} // namespace
