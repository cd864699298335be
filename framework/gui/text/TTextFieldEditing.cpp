// SPDX-License-Identifier: GPL-3.0-or-later
// Keys, mouse and drawing of a text field that is being edited.

#include "framework/graphics/skin/TSkin.h"
#include "framework/graphics/skin/TSkinColors.h"
#include "framework/graphics/surfaces/TClipGuard.h"
#include "framework/gui/keyboard/TKeyboardKey.h"
#include "framework/gui/layout/TextMetrics.h"
#include "framework/gui/text/TTextField.h"
#include "platform/TPlatform.h"

#include <algorithm>

namespace {

constexpr float kBlinkMilliseconds = 400.0f;
constexpr float kScrollMilliseconds = 25.0f;
constexpr int kTextInset = 4;
constexpr int kAroundText = 7; // both sides and the caret
constexpr int kHintFont = 3;

TString LowerCase(char16_t unit) {
	TString text;
	text.Append(unit);
	text.ToLower();
	return text;
}

TString AsText(char16_t unit, bool upperCase) {
	TString text;
	text.Append(unit);
	if (upperCase)
		text.ToUpper();
	return text;
}

} // namespace

// Keys

bool TTextField::HandleKey(const TKeyboardKey& key, bool isRelease, bool isRepeat) {
	if (mReadOnly || !IsEditing())
		return false;
	mMouseSelecting = false;
	if (mKeyFilter) {
		const TWeakPtr<TTextField> self(this);
		const bool isHandled = mKeyFilter(key, isRelease, isRepeat);
		if (isHandled && self)
			ShowCaret();
		if (isHandled || !self)
			return true;
	}
	if (isRelease || key.IsModifierKey() || HandleUndoKey(key) || HandleEndKey(key, isRepeat))
		return true;
	const bool extends = key.IsNavigationKey() && (key.Modifiers() & kShiftModifier);
	mModel.RecordState();
	const bool keepsSelection = EditByKey(key, isRepeat, extends);
	mModel.Clamp();
	if (!extends)
		EditDone(keepsSelection);
	WriteLive();
	Invalidate();
	return true;
}

bool TTextField::HandleUndoKey(const TKeyboardKey& key) {
	const int modifiers = key.Modifiers();
	if (modifiers != kCommandModifier && modifiers != (kCommandModifier | kShiftModifier))
		return false;
	const TString letter = LowerCase(key.CharacterOf(true));
	const bool withShift = (modifiers & kShiftModifier) != 0;
	const bool isRedo = (letter == "y" && !withShift) || (letter == "z" && withShift);
	if (!isRedo && !(letter == "z"))
		return false;
	if (isRedo)
		mModel.Redo();
	else
		mModel.Undo(ValueText(), IsRightToLeft());
	WriteLive();
	ShowCaret();
	Invalidate();
	return true;
}

bool TTextField::HandleEndKey(const TKeyboardKey& key, bool isRepeat) {
	if (isRepeat || key.Modifiers() != 0)
		return false;
	switch (key.Code()) {
	case kKeyReturn:
	case kKeyNumpadEnter:
		EndEdit();
		return true;
	case kKeyEscape:
		CancelEdit();
		return true;
	default:
		return false;
	}
}

/// Returns whether the selection stays as it is.
bool TTextField::EditByKey(const TKeyboardKey& key, bool isRepeat, bool extends) {
	const bool command = (key.Modifiers() & kCommandModifier) != 0;
	switch (key.Code()) {
	case kKeyLeft:
		mModel.MoveLeft(command, extends);
		return extends;
	case kKeyRight:
		mModel.MoveRight(command, extends);
		return extends;
	case kKeyHome:
		mModel.MoveCaret(0);
		return extends;
	case kKeyEnd:
		mModel.MoveCaret(mModel.Text().Length());
		return extends;
	case kKeyDelete:
	case kKeyBack:
		if (isRepeat && mIgnoreKeyRepeat)
			return true;
		if (key.Code() == kKeyDelete)
			mModel.DeleteForward(command);
		else
			mModel.DeleteBack(command);
		return false;
	default:
		if (command && !(key.Modifiers() & kOptionModifier) && key.HasCharacter())
			return EditByCommand(key, isRepeat);
		return TypeKey(key, isRepeat) || extends;
	}
}

bool TTextField::EditByCommand(const TKeyboardKey& key, bool isRepeat) {
	const TString letter = LowerCase(key.CharacterOf(true));
	const bool hasSelection = !mModel.Selection().IsEmpty();
	if (letter == "a") {
		SelectAll();
		return true;
	}
	if (letter == "c") {
		if (hasSelection)
			CopyToClipboard(mModel.SelectedText());
		return true;
	}
	if (letter == "k") {
		CopyToClipboard(mModel.Text());
		mModel.Clear();
		return false;
	}
	if (letter == "v") {
		if (!isRepeat || !mIgnoreKeyRepeat)
			Paste();
		return false;
	}
	if (letter == "x" && hasSelection) {
		CopyToClipboard(mModel.SelectedText());
		mModel.RemoveSelection();
		return false;
	}
	return true;
}

bool TTextField::TypeKey(const TKeyboardKey& key, bool isRepeat) {
	const bool isTab = key.Code() == kKeyTab;
	const char16_t character = isTab ? u' ' : key.HasCharacter() ? key.TextCharacter() : u'\0';
	if (character < u' ' || (mNumericOnly && !key.IsNumericKey()) || (mIgnoreKeyRepeat && isRepeat))
		return true;
	mModel.Insert(isTab ? TString("  ") : AsText(character, mUpperCaseOnly), !IsRightToLeft());
	return false;
}

void TTextField::EditDone(bool keepsSelection) {
	if (!keepsSelection)
		mModel.CollapseSelection();
	mModel.ScrollToCaret(WidthFunction(), AvailableWidth());
	ShowCaret();
	mModel.StoreCurrentState();
}

void TTextField::WriteLive() {
	if (mLiveUpdate && mValue)
		mValue->Set(mModel.Text());
}

// Nothing of a password leaves the field.
void TTextField::CopyToClipboard(const TString& text) const {
	TPlatform* platform = TPlatform::Instance();
	if (platform && !mPassword)
		platform->Clipboard().SetText(text);
}

void TTextField::Paste() {
	TPlatform* platform = TPlatform::Instance();
	const TString text = platform && platform->Clipboard().HasText() ? platform->Clipboard().Text() : TString();
	if (mNumericOnly)
		mModel.PasteNumber(text);
	else
		mModel.Paste(text);
}

void TTextField::InsertText(const TString& text, bool keepSelected) {
	if (HasShownEditWindow())
		return EditedField().InsertText(text, keepSelected);
	if (mReadOnly || !IsEditing() || text.IsEmpty())
		return;
	TString line = text;
	line.LineBreaksToBlanks();
	if (mUpperCaseOnly)
		line.ToUpper();
	mModel.RecordState();
	const bool rightToLeft = IsRightToLeft();
	mModel.Insert(line, !rightToLeft);
	if (!keepSelected)
		mModel.CollapseSelection();
	else if (rightToLeft)
		mModel.SetSelection(mModel.Caret() + line.Length(), mModel.Caret());
	EditDone(true);
	WriteLive();
	Invalidate();
}

void TTextField::SelectAll() {
	if (HasShownEditWindow())
		return EditedField().SelectAll();
	const bool rightToLeft = IsRightToLeft();
	mModel.SelectAll(rightToLeft);
	if (mCutMiddle) {
		mModel.ScrollTo(rightToLeft ? 0 : mModel.Caret());
		mModel.ScrollToCaret(WidthFunction(), AvailableWidth());
	}
	Invalidate();
}

void TTextField::SetSelection(TTextFieldModel::TRange range) {
	if (HasShownEditWindow())
		return EditedField().SetSelection(range);
	mModel.SetSelection(range.mFrom, range.mTo);
	Invalidate();
}

// Mouse

bool TTextField::WantsFocusAt(int x, int y, int modifiers) {
	return !mReadOnly && TFocusRootView::WantsFocusAt(x, y, modifiers);
}

bool TTextField::WantsMouseCapture(int x, int y, int /*modifiers*/) {
	return !mReadOnly && ContainsPoint(x, y);
}

void TTextField::OnMouseCaptureReleased(int /*x*/, int /*y*/, int /*modifiers*/) {
	mMouseSelecting = false;
}

bool TTextField::OnLeftMouseDown(int x, int /*y*/, int modifiers) {
	if (!IsEditing())
		return false;
	if (!mSkipFirstClick && !mMouseSelecting && !HasShownEditWindow()) {
		mMouseSelecting = true;
		mModel.MoveCaret(CharacterAt(x));
		if (!(modifiers & kMouseShift))
			mModel.CollapseSelection();
		ShowCaret();
		Invalidate();
	}
	mSkipFirstClick = false;
	return true;
}

bool TTextField::OnMouseDrag(int x, int /*y*/, int /*modifiers*/) {
	if (!IsEditing())
		return false;
	if (mMouseSelecting) {
		mModel.MoveCaret(CharacterAt(x));
		Invalidate();
	}
	return true;
}

bool TTextField::OnLeftMouseUp(int /*x*/, int /*y*/, int modifiers) {
	if (!IsEditing())
		return false;
	if (!(modifiers & kMouseAutoRepeat))
		mMouseSelecting = false;
	return true;
}

bool TTextField::OnLeftDoubleClick(int x, int /*y*/, int /*modifiers*/) {
	if (!IsEditing())
		return false;
	mModel.SelectWordAt(CharacterAt(x), mRightToLeft == kRightToLeft);
	mMouseSelecting = false;
	mSkipFirstClick = false;
	Invalidate();
	return true;
}

void TTextField::OnTimer() {
	if (!IsVisibleInTree() || !IsEditing())
		return;
	if (mCaretStopwatch.ElapsedMilliseconds() > kBlinkMilliseconds) {
		mCaretStopwatch.Restart();
		mCaretOn = !mCaretOn;
		Invalidate();
	}
	if (mScrollStopwatch.ElapsedMilliseconds() > kScrollMilliseconds) {
		mScrollStopwatch.Restart();
		if (mMouseSelecting)
			ScrollWithPointer();
	}
}

void TTextField::ScrollWithPointer() {
	const int x = MousePoint().mX;
	const bool isLeft = x < TextLeft();
	if (!isLeft && x < TextLeft() + AvailableWidth())
		return;
	if (!mModel.ScrollByOne(WidthFunction(), AvailableWidth(), !isLeft))
		return;
	mModel.MoveCaret(CharacterAt(x));
	Invalidate();
}

void TTextField::ShowCaret() {
	mCaretOn = true;
	mCaretStopwatch.Restart();
}

// Geometry

int32_t TTextField::TextWidth(const TString& text) const {
	return TextMetrics::Width(text, mLabel->Font());
}

TTextFieldModel::TTextWidth TTextField::WidthFunction() const {
	return {this, &TTextField::TextWidth};
}

int TTextField::AvailableWidth() const {
	return Width() - mLeftInset - mRightInset - TextWidth(mPrefix) - kAroundText;
}

int TTextField::TextLeft() const {
	return AbsolutePosition().mX + mLeftInset + kTextInset + TextWidth(mPrefix);
}

int TTextField::CharacterAt(int x) const {
	return mModel.CharacterAt(WidthFunction(), AvailableWidth(), x - TextLeft());
}

// One pixel above and below the letters.
TRectT<int> TTextField::TextLineRect() const {
	const TRectT<int> box = mLabel->TextRect();
	const int lineHeight = TextMetrics::LineHeight(mLabel->Font());
	return {TextLeft(), box.mTop + (box.mHeight - lineHeight) / 2 - 1, AvailableWidth() + 1, lineHeight + 2};
}

TRectT<int> TTextField::CaretRect() const {
	const TRectT<int> line = TextLineRect();
	const int32_t first = mModel.FirstVisible();
	const int32_t caret = std::max(mModel.Caret(), first);
	const int x = std::min(TextWidth(mModel.Shown(first, caret)), line.mWidth - 1);
	return {line.mLeft + x, line.mTop, 1, line.mHeight};
}

// Drawing

void TTextField::Draw(TSurface& port) {
	if (IsEditing())
		DrawEdit(port);
	else if (!mHint.IsEmpty() && ValueText().IsEmpty())
		DrawHint(port);
}

void TTextField::DrawHint(TSurface& port) {
	const TColor color = Mix(mLabel->TextColor(), TSkinColors::Instance()->MainColor(TSkinColors::kMainBack), 0.5f);
	const TRectT<int> box = mLabel->TextRect();
	const TString text = TextMetrics::CutAtEnd(mHint, kHintFont, box.mWidth - 2);
	TSkin::Instance()->DrawText(port, box, text, color, kHintFont, mLabel->TextAlignment());
}

void TTextField::DrawEdit(TSurface& port) {
	const TRectT<int> line = TextLineRect();
	const TClipGuard clip(
	    port, {line.mLeft - TextWidth(mPrefix), line.mTop, line.Right(), line.mHeight}, TClipGuard::kIntersect);
	const TColor color = mLabel->TextColor();
	const int font = mLabel->Font();
	const int top = line.mTop + 1;
	if (!mPrefix.IsEmpty())
		port.DrawText({line.mLeft - TextWidth(mPrefix), top}, mPrefix, color, font);

	const int32_t first = mModel.FirstVisible();
	const int32_t end = mModel.VisibleEnd(WidthFunction(), AvailableWidth());
	const auto selection = mModel.Selection();
	const int32_t from = std::clamp(selection.mFrom, first, end);
	const int32_t to = std::clamp(selection.mTo, first, end);
	const auto xOf = [&](int32_t index) { return line.mLeft + TextWidth(mModel.Shown(first, index)); };
	port.DrawText({line.mLeft, top}, mModel.Shown(first, from), color, font);
	if (from != to) {
		const TSkinColors& colors = *TSkinColors::Instance();
		const bool isActive = IsFocused();
		port.FillRect(
		    {xOf(from), line.mTop, xOf(to) - xOf(from), line.mHeight},
		    colors.MainColor(isActive ? TSkinColors::kSelectionBack : TSkinColors::kStandBySelectionBack), 1.0f);
		port.DrawText(
		    {xOf(from), top}, mModel.Shown(from, to),
		    colors.MainColor(isActive ? TSkinColors::kSelectionFont : TSkinColors::kStandBySelectionFont), font);
	}
	port.DrawText({xOf(to), top}, mModel.Shown(to, end), color, font);
	if (mCaretOn && mModel.Caret() >= first && mModel.Caret() <= end)
		TSkin::Instance()->DrawCaret(port, CaretRect(), color);
}
