// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/dialogs/TDialog.h"

#include "framework/gui/events/TKeptAlive.h"
#include "framework/gui/keyboard/TKeyboardKey.h"
#include "framework/gui/windows/TDesktop.h"
#include "framework/gui/windows/TEditorFrame.h"
#include "platform/TPlatform.h"

#include <algorithm>
#include <string_view>

namespace {

bool EqualIgnoringCase(char16_t a, char16_t b) {
	return a != 0 && b != 0 &&
	       TString(std::u16string_view(&a, 1)).CompareIgnoringCase(TString(std::u16string_view(&b, 1))) == 0;
}

/// False when nothing can come any more.
bool WaitForTick() {
	TPlatform* platform = TPlatform::Instance();
	return platform && platform->WaitForTick();
}

} // namespace

TWindow* TDialog::ParentFor(TWindow* parent) {
	if (parent)
		return parent;
	TWindow* main = MainWindow();
	TWindow* modal = main ? main->ModalChild() : nullptr;
	return modal ? modal : main;
}

TDialog::TDialog(TWindow* parent, int32_t kind, int32_t captionButtons, bool hasCaption)
    : TViewWindow(ParentFor(parent), kind),
      mKeyHandler(this, &TDialog::HandleDialogKey) {
	SetMainFrame(MakePtr<TDialogMainFrameView>(*this, captionButtons, hasCaption).Get());
}

void TDialog::SetContent(const TPtr<TView>& view, const TString& title) {
	SetTitle(title);
	Frame().SetContent(view, title, HasNativeDecorations());
	const TPointT<int> size = FrameSizeFor(view->Size());
	const TPointT<int> minimum{std::max(size.mX, Frame().MinimumWidthFor(title)), size.mY};
	SetMinimumSize(minimum);
	SetClientSize(minimum);
}

void TDialog::SetActions(const TFunctionPtr<void>& ok, const TFunctionPtr<void>& cancel) {
	mOkAction = ok;
	mCancelAction = cancel;
}

void TDialog::SetHotKeys(char16_t accept, char16_t cancel) {
	mAcceptHotKey = accept;
	mCancelHotKey = cancel;
}

bool TDialog::HandleDialogKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) {
	if (isRelease || isRepeat)
		return false;
	const bool isPlain = (key.Modifiers() & ~kCommandModifier) == 0;
	const char16_t character = key.TextCharacter();
	const bool cancels = (key.Code() == kKeyEscape && isPlain) || EqualIgnoringCase(character, mCancelHotKey);
	const bool accepts = ((key.Code() == kKeyReturn || key.Code() == kKeySpace) && isPlain) ||
	                     EqualIgnoringCase(character, mAcceptHotKey);
	const TFunctionPtr<void> action = cancels ? mCancelAction : accepts ? mOkAction : nullptr;
	if (!action)
		return false;
	action();
	return true;
}

// The loop

void TDialog::RunModal() {
	const TKeptAlive kept(this);
	CenterInParent();
	Show();
	TEditorFrame frame;
	// Whatever a tick or another thread has done meanwhile: the dialog may be closed, its window or the instance gone.
	while (IsVisible() && WaitForTick() && TDesktop::Instance() && IsOpen())
		frame.EditorFrameTick(Root());
	if (TDesktop::Instance())
		Close();
}

// What is kept of the window

void TDialog::BindValues(TValue<TPointT<int>>* position, TValue<TPointT<int>>* size, TValue<bool>* maximized) {
	mPositionValue = position;
	mSizeValue = size;
	mMaximizedValue = maximized;
}

void TDialog::StoreRect() {
	if (IsMaximized() || IsMinimized())
		return;
	if (mPositionValue)
		mPositionValue->Set(Position());
	if (mSizeValue)
		mSizeValue->Set(ClientSize());
}

void TDialog::OnClosing() {
	StoreRect();
	if (mMaximizedValue)
		mMaximizedValue->Set(IsMaximized());
	TViewWindow::OnClosing();
}

void TDialog::OnBeforeMinimize() {
	StoreRect();
}

void TDialog::OnBeforeMaximize() {
	StoreRect();
}
