// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TValue.h"
#include "framework/foundation/values/TFunctionPtr.h"
#include "framework/foundation/values/TStopwatch.h"
#include "framework/gui/layout/TBackgroundView.h"
#include "framework/gui/text/TTextFieldModel.h"
#include "framework/gui/views/TFocusRootView.h"

class TKeyboardKey;
class TTextFieldWindow;

/// Shows a value as a text and becomes a one-line editor at a click. The edit works on a text of its own, which goes to
/// the value when the edit ends (or at each key, see SetLiveUpdate). A field of the embedded editor edits in a small
/// window that lies over it, a TTextFieldWindow, since the host keeps the keyboard from the editor. Main thread.
class TTextField : public TFocusRootView {
public:
	static const TTypeRecord kTypeRecord;

	using TKeyFilter = TFunctionPtr<bool, const TKeyboardKey&, bool, bool>; // key, is-release, is-repeat

	enum TDirection : int32_t { kByKeyboardLanguage = -1, kLeftToRight = 0, kRightToLeft = 1 };

	/// The value may go before the field, which then shows what it showed last. labelKind: TSkin::TBackground.
	explicit TTextField(TValue<TString>* value, int labelKind = TSkin::kTextBoxBackground);
	~TTextField() override;

	/// Whether fields of the embedded editor may edit in a window of their own.
	static void SetUseEditWindow(bool use) noexcept { sUseEditWindow = use; }

	void BeginEdit();
	/// Writes the text to the value.
	void EndEdit();
	/// Writes the value's own text to it.
	void CancelEdit();
	bool IsEditing() const;

	/// The edited text, else that of the value.
	TString Text() const;
	void SetText(const TString& text);
	/// At the caret, while editing.
	void InsertText(const TString& text, bool keepSelected);
	void SelectAll();
	void SetSelection(TTextFieldModel::TRange range);
	/// In coordinates of the window.
	TRectT<int> CaretRect() const;

	const TTextFieldModel& Model() const noexcept { return mModel; }

	/// Called when an edit begins and when it ends.
	void SetEditAction(const TFunctionPtr<void>& action) { mEditAction = action; }

	/// Sees each key before the field does, and may destroy the field.
	void SetKeyFilter(const TKeyFilter& filter) { mKeyFilter = filter; }

	void SetNumericOnly(bool numericOnly) { mNumericOnly = numericOnly; }

	void SetUpperCaseOnly(bool upperCaseOnly) { mUpperCaseOnly = upperCaseOnly; }

	void SetPassword(bool password);
	/// What does not fit is taken out of the middle, and an edit begins at the end.
	void SetCutMiddle(bool cutMiddle);

	void SetIgnoreKeyRepeat(bool ignore) { mIgnoreKeyRepeat = ignore; }

	/// The value follows each key.
	void SetLiveUpdate(bool liveUpdate) { mLiveUpdate = liveUpdate; }

	void SetReadOnly(bool readOnly) { mReadOnly = readOnly; }

	/// TDirection.
	void SetRightToLeft(int direction) { mRightToLeft = direction; }

	/// In front of the text, not part of it.
	void SetPrefix(const TString& prefix);
	/// Shown while the value is empty and no edit runs.
	void SetHint(const TString& hint);
	void SetInsets(int left, int right);
	void SetFont(int font);
	void SetLabelKind(int kind);
	void SetLabelTextAlignment(TTextAlign alignment);
	/// Instead of that of the skin, until nothing is given.
	void SetTextColor(std::optional<TColor> color);

	/// Shows the text while nothing is edited.
	TBackgroundView& Label() const noexcept { return *mLabel; }

	const TTypeRecord& FocusTypeName() const override { return kTypeRecord; }

	bool WantsFocusAt(int x, int y, int modifiers) override;

	/// Where the edit goes on in a window, the click that opens it must not be the one that closes it.
	bool WantsMouseCaptureOnFocus(int /*x*/, int /*y*/, int /*modifiers*/) override { return UsesEditWindow(); }

	bool IsEditingText() const override { return IsEditing(); }

	TRectT<int> TextInputRect() const override { return CaretRect(); }

	void InsertInputText(const TString& text) override { InsertText(text, false); }

	void EndTextEditing() override { EndEdit(); }

	bool WantsMouseCapture(int x, int y, int modifiers) override;
	void OnMouseCaptureReleased(int x, int y, int modifiers) override;
	bool OnLeftMouseDown(int x, int y, int modifiers) override;
	bool OnLeftMouseUp(int x, int y, int modifiers) override;
	bool OnLeftDoubleClick(int x, int y, int modifiers) override;
	bool OnMouseDrag(int x, int y, int modifiers) override;
	bool HandleKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) override;
	void OnTimer() override;
	void Draw(TSurface& port) override;
	void OnResized() override;
	void OnVisibilityChanged() override;
	void OnMainFrameChanged() override;
	void OnUiScaleChanged() override;
	TString MakeToolTip() override;
	void OnFocusChanged(TView* lost, TView* gained, bool focused) override;

private:
	friend class TTextFieldWindow;

	TString ValueText() const;
	void WriteValue(const TString& text);
	void OnValueChanged(TObservable* value, int32_t reason);
	void OnEditTextChanged(TObservable* text, int32_t reason);
	void OnInnerTextChanged(TObservable* text, int32_t reason);
	void RefreshLabel();

	bool UsesEditWindow() const;
	bool HasShownEditWindow() const;
	/// The one in the window, if there is one.
	TTextField& EditedField();
	void StartEdit();
	void StartEditInWindow();
	void FinishEdit();
	void ShowIsEdited(bool isEdited);

	bool HandleUndoKey(const TKeyboardKey& key);
	bool HandleEndKey(const TKeyboardKey& key, bool isRepeat);
	bool EditByKey(const TKeyboardKey& key, bool isRepeat, bool extends);
	bool EditByCommand(const TKeyboardKey& key, bool isRepeat);
	bool TypeKey(const TKeyboardKey& key, bool isRepeat);
	void Paste();
	void CopyToClipboard(const TString& text) const;
	void EditDone(bool keepsSelection);
	void WriteLive();
	void ShowCaret();
	void ScrollWithPointer();

	bool IsRightToLeft() const;
	int32_t TextWidth(const TString& text) const;
	TTextFieldModel::TTextWidth WidthFunction() const;
	int AvailableWidth() const;
	/// Of the first character shown.
	int TextLeft() const;
	TRectT<int> TextLineRect() const;
	int CharacterAt(int x) const;
	void DrawEdit(TSurface& port);
	void DrawHint(TSurface& port);

	static inline bool sUseEditWindow = false;

	TTextFieldModel mModel;
	TStopwatch mCaretStopwatch;
	TStopwatch mScrollStopwatch;
	bool mCaretOn = false;
	bool mNumericOnly = false;
	bool mUpperCaseOnly = false;
	bool mPassword = false;
	bool mCutMiddle = false;
	bool mIgnoreKeyRepeat = false;
	bool mLiveUpdate = false;
	bool mReadOnly = false;
	int mRightToLeft = kByKeyboardLanguage;
	TString mPrefix;
	TString mHint;
	int mLeftInset = 0;
	int mRightInset = 0;
	bool mMouseSelecting = false;
	bool mSkipFirstClick = false;
	bool mLabelIsCut = false;
	bool mIsEditing = false; // here, not in a window
	TPtr<TBackgroundView> mLabel;
	TWeakPtr<TValue<TString>> mValue;
	TString mLastValueText; // what is shown when the value is gone
	TFunctionPtr<void> mEditAction;
	TKeyFilter mKeyFilter;
	TWeakPtr<TTextFieldWindow> mEditWindow;
};
