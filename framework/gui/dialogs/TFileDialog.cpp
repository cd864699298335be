// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/dialogs/TFileDialog.h"

#include "framework/foundation/files/FileOperations.h"
#include "framework/foundation/files/TFile.h"
#include "framework/gui/dialogs/TMessageDialog.h"
#include "framework/gui/dialogs/TPathDialog.h"
#include "framework/gui/events/TTimerDispatcher.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/windows/TWindow.h"
#include "platform/TPlatform.h"

#include <utility>

namespace {

/// How often a system's dialog is asked whether it has been answered.
constexpr int kPollMilliseconds = 30;

/// Of a filter with one pattern, with the dot; empty for others.
TString ExtensionOf(const TString& filter) {
	const bool isOnePattern = filter.StartsWith("*.") && filter.FindChar(u';') < 0;
	return isOnePattern ? filter.SubString(1) : TString();
}

} // namespace

TFileDialog::TFileDialog(TView& owner, const TFileDialogSettings& settings, const TAccepted& accepted)
    : mOwner(&owner),
      mSettings(settings),
      mAccepted(accepted) {}

TFileDialog::~TFileDialog() {
	End();
}

void TFileDialog::Open() {
	if (mIsOpen || !IsOwnerInWindow())
		return;
	mIsOpen = true;
	mSystemDialog = TPlatform::Instance()->StartFileDialog(mSettings, mOwner->MainFrame()->Window()->Glue());
	TTimerDispatcher::Instance()->AddTimer({this, &TFileDialog::OnTimer}, kPollMilliseconds);
	OnTimer();
}

bool TFileDialog::IsOwnerInWindow() const {
	const TWindow* window = mOwner && mOwner->MainFrame() ? mOwner->MainFrame()->Window() : nullptr;
	return window && window->IsOpen();
}

void TFileDialog::OnTimer() {
	if (!IsOwnerInWindow())
		return End();
	if (!mSystemDialog)
		return;
	switch (mSystemDialog->Poll()) {
	case TFileDialogImpl::TState::kOpen:
		return;
	case TFileDialogImpl::TState::kAccepted:
		return Accept(mSystemDialog->Path(), mSystemDialog->HasAskedToOverwrite());
	case TFileDialogImpl::TState::kCancelled:
		return End();
	case TFileDialogImpl::TState::kUnavailable:
		mSystemDialog = nullptr;
		return OpenPathDialog();
	}
}

void TFileDialog::OpenPathDialog() {
	const TString path = mSettings.mDirectory.FilePath(mSettings.mName);
	mPathDialog = MakePtr<TPathDialog>(
	    mOwner->MainFrame()->Window(), mSettings.mCaption, path, TFunctionPtr<void>(this, &TFileDialog::OnPathDecided));
	mPathDialog->Show();
}

void TFileDialog::OnPathDecided() {
	const TPtr<TPathDialog> dialog = std::exchange(mPathDialog, nullptr);
	if (!dialog || dialog->Path().IsEmpty())
		End();
	else
		Accept(dialog->Path(), false);
}

void TFileDialog::Accept(TString path, bool hasAskedToOverwrite) {
	const TPtr<TFileDialog> self(this);
	const TString extension = mSettings.mSave ? ExtensionOf(mSettings.mFilter) : TString();
	if (!extension.IsEmpty() && !path.EndsWithIgnoringCase(extension)) {
		path += extension;
		hasAskedToOverwrite = false; // that was about another name
	}
	mSystemDialog = nullptr;
	const bool mayWrite = !mSettings.mSave || hasAskedToOverwrite || MayReplace(path);
	End();
	if (mayWrite && IsOwnerInWindow())
		mAccepted(path);
}

bool TFileDialog::MayReplace(const TString& path) const {
	if (!TFile(path).Exists())
		return true;
	const TString text = TString::Format("\"%s\" already exists. Do you want to replace it?", path);
	return ShowMessageDialog(true, mOwner->MainFrame()->Window(), mSettings.mCaption, text, {"Replace", "Cancel"}) ==
	       TString("Replace");
}

void TFileDialog::End() {
	if (!std::exchange(mIsOpen, false))
		return;
	if (TTimerDispatcher* timers = TTimerDispatcher::Instance())
		timers->RemoveTimer({this, &TFileDialog::OnTimer});
	mSystemDialog = nullptr;
	if (const TPtr<TPathDialog> dialog = std::exchange(mPathDialog, nullptr))
		dialog->Close();
}
