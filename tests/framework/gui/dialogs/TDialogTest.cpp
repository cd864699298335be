// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/dialogs/TDialog.h"

#include "framework/document/observables/TObservableBaseType.h"
#include "framework/gui/dialogs/TWindowResizeBorder.h"
#include "framework/gui/windows/TCursor.h"
#include "tests/support/TControlFixture.h"

namespace {

class TDialogTest : public TControlFixture {
protected:
	struct TActions {
		void Ok() { mText += "ok "; }

		void Cancel() { mText += "cancel "; }

		std::string mText;
	};

	void SetUp() override {
		TControlFixture::SetUp();
		OpenEditor();
	}

	/// With content of 300 by 100, shown at 500,500.
	TPtr<TDialog> OpenDialog(bool resizable = false) {
		mpContent = MakePtr<TProbeView>(mJournal, "c", TRectT<int>{0, 0, 300, 100});
		const auto dialog = MakePtr<TDialog>(nullptr, kModalDialogWindow, kCloseButton, true);
		dialog->SetResizable(resizable);
		dialog->SetContent(mpContent.Get(), "A title");
		dialog->SetPosition({500, 500});
		dialog->Show();
		Tick();
		return dialog;
	}

	std::string mJournal;
	TPtr<TProbeView> mpContent;
};

TEST_F(TDialogTest, BorderAndCaptionLieAroundTheContent) {
	const TPtr<TDialog> dialog = OpenDialog();
	EXPECT_EQ(dialog->Parent(), &Editor());
	EXPECT_EQ(dialog->ClientSize(), (TPointT<int>{302, 124}));
	EXPECT_EQ(mpContent->AbsoluteRect(), (TRectT<int>{1, 23, 300, 100}));
	mpContent->SetSize(310, 150);
	mpContent->SetSize(320, 140);
	Tick();
	EXPECT_EQ(dialog->ClientSize(), (TPointT<int>{322, 164}));
	dialog->Close();

	const TPtr<TDialog> wide = OpenDialog(true);
	EXPECT_EQ(wide->ClientSize(), (TPointT<int>{306, 128}));
	wide->SetClientSize({400, 200});
	EXPECT_EQ(mpContent->AbsoluteRect(), (TRectT<int>{3, 25, 394, 172}));
	wide->Close();
}

TEST_F(TDialogTest, KeysThatTheFocusDoesNotUseAcceptOrCancel) {
	const TPtr<TDialog> dialog = OpenDialog();
	TActions actions;
	dialog->SetActions({&actions, &TActions::Ok}, {&actions, &TActions::Cancel});
	dialog->SetHotKeys('y', 'n');
	for (const int code : {int{kKeyEscape}, int{kKeyReturn}, int{kKeySpace}, kKeyA + 24, kKeyA + 13, kKeyA + 1})
		Keys({code});
	Keys({kKeyLeftCommand, kKeyReturn});
	Keys({kKeyLeftShift, kKeyReturn});
	EXPECT_EQ(std::exchange(actions.mText, {}), "cancel ok ok ok cancel ok ");
	KeyDown(kKeyReturn);
	Wait(600);
	EXPECT_EQ(std::exchange(actions.mText, {}), "ok ") << "repeats do nothing";
	KeyUp(kKeyReturn);
	mpContent->mUses = true;
	mpContent->GrabFocus();
	Keys({kKeyReturn});
	EXPECT_EQ(actions.mText, "");
	dialog->Close();
}

TEST_F(TDialogTest, TheCaptionMovesTheWindowWithThePointer) {
	const TPtr<TDialog> dialog = OpenDialog();
	Move(600, 510);
	EXPECT_EQ(Platform().Cursor().Current(), kMoveCursor);
	Press();
	Drag(631, 497);
	EXPECT_EQ(dialog->Position(), (TPointT<int>{531, 487}));
	Release();
	Move(631, 600);
	EXPECT_EQ(dialog->Position(), (TPointT<int>{531, 487}));
	dialog->Close();
}

TEST_F(TDialogTest, TheEdgesResizeTheWindowAndTheFarEdgeStays) {
	const TPtr<TDialog> dialog = OpenDialog(true);
	Move(501, 560);
	EXPECT_EQ(Platform().Cursor().Current(), kResizeEdgeHorizontalCursor);
	Press();
	Drag(461, 560);
	Release();
	EXPECT_EQ(dialog->Position(), (TPointT<int>{460, 500}));
	EXPECT_EQ(dialog->ClientSize(), (TPointT<int>{346, 128}));
	Move(461, 501); // the corner
	EXPECT_EQ(Platform().Cursor().Current(), kResizeEdgeDiagonalLeftCursor);
	Press();
	Drag(900, 900);
	Release();
	EXPECT_EQ(dialog->ClientSize(), dialog->MinimumSize());
	EXPECT_EQ(dialog->Position(), (TPointT<int>{500, 500}));
	dialog->Close();
}

TEST_F(TDialogTest, ClosingTellsTheBoundValues) {
	TObservableBaseType<TPointT<int>> position;
	TObservableBaseType<TPointT<int>> size;
	TObservableBaseType<bool> maximized{true};
	const TPtr<TDialog> dialog = OpenDialog();
	dialog->BindValues(&position, &size, &maximized);
	dialog->Close();
	EXPECT_EQ(position.Get(), (TPointT<int>{500, 500}));
	EXPECT_EQ(size.Get(), (TPointT<int>{302, 124}));
	EXPECT_FALSE(maximized.Get());
}

TEST_F(TDialogTest, AModalLoopGoesOnWithFramesUntilTheDialogCloses) {
	const TPtr<TDialog> dialog = OpenDialog();
	int ticks = 0;
	Platform().SetOnWait([&] {
		mpContent->Invalidate();
		if (++ticks == 5)
			dialog->RequestClose();
		return true;
	});
	mpContent->mTellsDraws = true;
	mJournal.clear();
	dialog->RunModal();
	EXPECT_EQ(ticks, 5);
	EXPECT_EQ(mJournal, "c:draw c:draw c:draw c:draw ");
	EXPECT_FALSE(dialog->IsOpen());
}

TEST_F(TDialogTest, AModalLoopEndsWithTheEditorAndWithTheSystem) {
	TPtr<TDialog> dialog = OpenDialog();
	Platform().SetOnWait([this] {
		Editor().Close(); // as a host does
		return true;
	});
	dialog->RunModal();
	EXPECT_FALSE(dialog->IsOpen());

	mpEditor = nullptr;
	OpenEditor();
	Platform().SetOnWait(nullptr); // nothing comes any more
	dialog = OpenDialog();
	dialog->RunModal();
	EXPECT_FALSE(dialog->IsOpen());
	EXPECT_TRUE(Editor().IsOpen());
}

} // namespace
