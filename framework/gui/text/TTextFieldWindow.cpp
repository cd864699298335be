// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/text/TTextFieldWindow.h"

#include "framework/gui/views/TMainFrameView.h"

TPtr<TTextFieldWindow> TTextFieldWindow::Open(TWindow* parent, TTextField& field) {
	const TPtr<TTextFieldWindow> window(new TTextFieldWindow(parent, field));
	const TRectT<int> rect = field.AbsoluteRect();
	window->SetClientRect(parent->ClientToScreen({rect.mLeft, rect.mTop}), {rect.mWidth, rect.mHeight});
	window->Show();
	window->mInnerField->BeginEdit();
	return window;
}

TTextFieldWindow::TTextFieldWindow(TWindow* parent, TTextField& field)
    // The body is opaque: below there is nothing.
    : TViewWindow(parent, kEmbeddedWindow),
      mField(&field),
      mInnerField(MakePtr<TTextField>(field.mValue.Get(), TSkin::kBodyBackground)) {
	SetClosesOnClickOutside(true);
	TTextField& inner = *mInnerField;
	inner.Label().SetOutsets(field.Label().LeftOutset(), field.Label().RightOutset());
	inner.SetFont(field.Label().Font());
	inner.SetTextColor(field.Label().TextColor());
	inner.SetNumericOnly(field.mNumericOnly);
	inner.SetUpperCaseOnly(field.mUpperCaseOnly);
	inner.SetLiveUpdate(field.mLiveUpdate);
	inner.SetIgnoreKeyRepeat(field.mIgnoreKeyRepeat);
	inner.SetRightToLeft(field.mRightToLeft);
	inner.SetPassword(field.mPassword);
	inner.SetCutMiddle(field.mCutMiddle);
	inner.SetPrefix(field.mPrefix);
	inner.SetInsets(field.mLeftInset, field.mRightInset);
	inner.SetKeyFilter(field.mKeyFilter);
	inner.SetSize(field.Width(), field.Height());
	inner.SetEditAction({this, &TTextFieldWindow::OnInnerEditChanged});
	const TPtr<TMainFrameView> frame = MakePtr<TMainFrameView>();
	frame->SetSize(field.Width(), field.Height());
	frame->AddChild(mInnerField);
	SetMainFrame(frame);
}

void TTextFieldWindow::OnInnerEditChanged() {
	if (!mInnerField->IsEditing())
		Close();
}

// Whoever closes the window ends the edit.
void TTextFieldWindow::OnClosing() {
	const TPtr<TTextFieldWindow> keepAlive(this);
	mInnerField->EndEdit();
	if (TTextField* field = std::exchange(mField, TWeakPtr<TTextField>()).Get()) {
		field->mEditWindow = nullptr;
		field->FinishEdit();
	}
	TViewWindow::OnClosing();
}
