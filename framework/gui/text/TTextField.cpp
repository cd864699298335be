// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/text/TTextField.h"

#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/gui/layout/TextMetrics.h"
#include "framework/gui/text/TTextFieldWindow.h"
#include "framework/gui/views/TMainFrameView.h"
#include "framework/gui/windows/TCursor.h"
#include "platform/TPlatform.h"

const TTypeRecord TTextField::kTypeRecord{"TTextField", &TFocusRootView::kTypeRecord};

namespace {

constexpr TPointT<int> kDefaultSize{80, 18};
constexpr char16_t kMaskCharacter = 0x26AB;
constexpr int kTimerMilliseconds = 10;

} // namespace

TTextField::TTextField(TValue<TString>* value, int labelKind)
    : mLabel(MakePtr<TBackgroundView>(labelKind)),
      mValue(value) {
	// The edit is drawn on the label's ground.
	SetDrawOrder(kChildrenFirst);
	SetCursor(kEditTextCursor);
	AddChild(mLabel);
	SetSize(kDefaultSize.mX, kDefaultSize.mY);
	if (value)
		value->AddObserver({this, &TTextField::OnValueChanged});
	mModel.EditText().AddObserver({this, &TTextField::OnEditTextChanged});
}

TTextField::~TTextField() {
	if (!mEditWindow)
		return;
	mEditWindow->ClearField();
	mEditWindow->Close();
}

// Settings

void TTextField::SetPassword(bool password) {
	mPassword = password;
	mModel.SetMasked(password);
	RefreshLabel();
}

void TTextField::SetCutMiddle(bool cutMiddle) {
	mCutMiddle = cutMiddle;
	RefreshLabel();
}

void TTextField::SetPrefix(const TString& prefix) {
	mPrefix = prefix;
	RefreshLabel();
	Invalidate();
}

void TTextField::SetHint(const TString& hint) {
	mHint = hint;
	Invalidate();
}

void TTextField::SetInsets(int left, int right) {
	mLeftInset = left;
	mRightInset = right;
	mLabel->SetTextInsets(left, right);
	RefreshLabel();
}

void TTextField::SetFont(int font) {
	mLabel->SetFont(font);
	RefreshLabel();
}

void TTextField::SetLabelKind(int kind) {
	mLabel->SetKind(kind);
	RefreshLabel();
}

void TTextField::SetLabelTextAlignment(TTextAlign alignment) {
	mLabel->SetTextAlignment(alignment);
}

void TTextField::SetTextColor(std::optional<TColor> color) {
	mLabel->SetTextColor(color);
}

bool TTextField::IsRightToLeft() const {
	if (mRightToLeft != kByKeyboardLanguage)
		return mRightToLeft == kRightToLeft;
	TPlatform* platform = TPlatform::Instance();
	return platform && platform->Keyboard().IsRightToLeft();
}

// Value and text

TString TTextField::ValueText() const {
	return mValue ? mValue->Get() : mLastValueText;
}

// Also an equal text is a write: who watches the value learns that the edit has come to an end.
void TTextField::WriteValue(const TString& text) {
	if (mValue)
		mValue->ForceSet(text);
}

TString TTextField::Text() const {
	return IsEditing() ? mModel.Text() : ValueText();
}

TTextField& TTextField::EditedField() {
	return HasShownEditWindow() ? mEditWindow->InnerField() : *this;
}

void TTextField::SetText(const TString& text) {
	TTextField& field = EditedField();
	if (!field.IsEditing())
		return WriteValue(text);
	field.mModel.SetText(text);
	field.Invalidate();
}

void TTextField::OnValueChanged(TObservable* /*value*/, int32_t reason) {
	if (reason != kObserverAdded && reason != kDidChange)
		return;
	mLastValueText = mValue->Get();
	if (!IsEditing())
		RefreshLabel();
	else if (reason == kDidChange && !HasShownEditWindow() && !(mModel.Text() == mLastValueText)) {
		mModel.EditText().Set(mLastValueText);
		Invalidate();
	}
}

void TTextField::OnEditTextChanged(TObservable* /*text*/, int32_t reason) {
	if (reason == kDidChange)
		mModel.Clamp();
}

void TTextField::RefreshLabel() {
	if (IsEditing())
		return;
	TString text = ValueText();
	if (mPassword)
		text = TString(std::u16string(static_cast<std::size_t>(text.Length()), kMaskCharacter));
	text = mPrefix + text;
	mLabelIsCut = false;
	if (IsShown()) {
		const int room = mLabel->TextRect().mWidth - 2;
		const TString cut = mCutMiddle ? TextMetrics::CutInMiddle(text, mLabel->Font(), room)
		                               : TextMetrics::CutAtEnd(text, mLabel->Font(), room);
		mLabelIsCut = !(cut == text);
		text = cut;
	}
	mLabel->SetText(text);
	Invalidate();
}

TString TTextField::MakeToolTip() {
	return !IsEditing() && !mPassword && mLabelIsCut ? ValueText() : TString();
}

// Beginning and end of an edit

bool TTextField::HasShownEditWindow() const {
	return mEditWindow && mEditWindow->IsVisible();
}

bool TTextField::IsEditing() const {
	return mIsEditing || HasShownEditWindow();
}

// Only fields of the embedded editor itself: the host keeps the keyboard from that.
bool TTextField::UsesEditWindow() const {
	const TWindow* window = sUseEditWindow && MainFrame() ? MainFrame()->Window() : nullptr;
	return window && window->Kind() == kEmbeddedWindow && !window->Parent();
}

void TTextField::BeginEdit() {
	if (IsEditing() || mReadOnly)
		return;
	if (UsesEditWindow())
		return StartEditInWindow();
	GrabFocus();
	mSkipFirstClick = false;
}

void TTextField::EndEdit() {
	if (!IsEditing())
		return;
	if (HasShownEditWindow())
		FinishEdit();
	else
		ReleaseFocus();
}

void TTextField::CancelEdit() {
	if (!IsEditing())
		return;
	EditedField().mModel.EditText().Set(ValueText());
	EndEdit();
}

void TTextField::OnFocusChanged(TView* lost, TView* gained, bool /*focused*/) {
	if (lost == this && !UsesEditWindow())
		FinishEdit();
	else if (gained == this && UsesEditWindow()) {
		ReleaseFocus();
		StartEditInWindow();
	} else if (gained == this)
		StartEdit();
}

void TTextField::StartEdit() {
	const TPointT<int> mouse = MousePoint();
	const TCursor* cursor = TCursor::Instance();
	mSkipFirstClick = cursor && (cursor->IsLeftButtonDown() || cursor->IsRightButtonDown()) &&
	                  (IsMouseInside() || ContainsPoint(mouse.mX, mouse.mY));
	mIsEditing = true;
	mModel.Begin(ValueText());
	ShowIsEdited(true);
	if (mEditAction)
		mEditAction();
	if (!IsTimerRunning())
		StartTimer(kTimerMilliseconds);
	mModel.ScrollToCaret(WidthFunction(), AvailableWidth());
	SelectAll();
	ShowCaret();
	Invalidate();
}

void TTextField::StartEditInWindow() {
	if (mEditWindow || mReadOnly)
		return;
	const TPtr<TTextField> keepAlive(this);
	const TPtr<TTextFieldWindow> window = TTextFieldWindow::Open(MainFrame()->Window(), *this);
	mEditWindow = window.Get();
	mModel.Begin(ValueText());
	window->InnerField().mModel.EditText().AddObserver({this, &TTextField::OnInnerTextChanged});
	ShowIsEdited(true);
	if (mEditAction)
		mEditAction();
}

// The field below the window shows the same.
void TTextField::OnInnerTextChanged(TObservable* /*text*/, int32_t reason) {
	if ((reason != kObserverAdded && reason != kDidChange) || !mEditWindow)
		return;
	mModel.CopyFrom(mEditWindow->InnerField().mModel);
	Invalidate();
}

void TTextField::FinishEdit() {
	const TPtr<TTextField> keepAlive(this);
	if (HasShownEditWindow()) {
		// Closing it ends the edit of the inner field, and that writes the value.
		const TPtr<TTextFieldWindow> window(mEditWindow.Get());
		window->ClearField();
		mEditWindow = nullptr;
		window->Close();
	} else {
		mIsEditing = false;
		WriteValue(mModel.Text());
	}
	mMouseSelecting = false;
	mModel.ForgetHistory();
	StopTimer();
	ShowIsEdited(false);
	if (mEditAction)
		mEditAction();
	RefreshLabel();
}

void TTextField::ShowIsEdited(bool isEdited) {
	mLabel->SetIsEdited(isEdited);
	if (isEdited)
		mLabel->SetText(TString());
	else
		RefreshLabel();
	Invalidate();
}

void TTextField::OnVisibilityChanged() {
	if (!IsVisibleInTree())
		EndEdit();
	TFocusRootView::OnVisibilityChanged();
	RefreshLabel();
}

void TTextField::OnMainFrameChanged() {
	if (!MainFrame() && mEditWindow)
		FinishEdit();
	RefreshLabel();
}

void TTextField::OnUiScaleChanged() {
	RefreshLabel();
}

void TTextField::OnResized() {
	mLabel->SetRect({0, 0, Width(), Height()});
	RefreshLabel();
}
