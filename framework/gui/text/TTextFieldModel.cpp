// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/text/TTextFieldModel.h"

#include <algorithm>
#include <string>

namespace {

constexpr char16_t kMaskCharacter = 0x26AB;

constexpr bool IsHighSurrogate(char16_t unit) {
	return unit >= 0xD800 && unit < 0xDC00;
}

constexpr bool IsLowSurrogate(char16_t unit) {
	return unit >= 0xDC00 && unit < 0xE000;
}

bool IsWithinCharacter(const TString& text, int32_t index) {
	return index > 0 && IsLowSurrogate(text[index]) && IsHighSurrogate(text[index - 1]);
}

/// One line without what cannot be shown: lines trimmed, the empty ones left out, joined by a blank.
TString AsOneLine(const TString& text) {
	TList<TString> lines;
	for (TString& line : text.SplitLines()) {
		line.Trim();
		std::u16string units(line.View());
		std::erase_if(units, [](char16_t unit) { return unit < 0x20 || unit == 0x7F; });
		if (!units.empty())
			lines.Append(TString(units));
	}
	return TString::Join(lines, " ");
}

} // namespace

int32_t TTextFieldModel::CharacterBefore(const TString& text, int32_t index) {
	const int32_t before = std::max(index - 1, 0);
	return IsWithinCharacter(text, before) ? before - 1 : before;
}

// The unit at the end is the terminating zero, so a pair is never looked for behind it.
int32_t TTextFieldModel::CharacterBehind(const TString& text, int32_t index) {
	if (text[index] == 0)
		return index;
	return IsWithinCharacter(text, index + 1) ? index + 2 : index + 1;
}

TTextFieldModel::TRange TTextFieldModel::Selection() const noexcept {
	return {std::min(mCaret, mAnchor), std::max(mCaret, mAnchor)};
}

TString TTextFieldModel::SelectedText() const {
	const auto [from, to] = Selection();
	return Text().SubString(from, to);
}

TString TTextFieldModel::Shown(int32_t from, int32_t to) const {
	if (mMasked)
		return TString(std::u16string(static_cast<std::size_t>(std::max(to - from, 0)), kMaskCharacter));
	return Text().SubString(from, std::max(from, to));
}

// Indices

int32_t TTextFieldModel::Aligned(int32_t index) const {
	const int32_t clamped = std::clamp(index, 0, Text().Length());
	return IsWithinCharacter(Text(), clamped) ? clamped - 1 : clamped;
}

void TTextFieldModel::Clamp() {
	mCaret = Aligned(mCaret);
	mAnchor = Aligned(mAnchor);
	mFirstVisible = Aligned(mFirstVisible);
}

void TTextFieldModel::MoveCaret(int32_t index) {
	mCaret = Aligned(index);
}

void TTextFieldModel::ScrollTo(int32_t firstVisible) {
	mFirstVisible = Aligned(firstVisible);
}

void TTextFieldModel::SetSelection(int32_t anchor, int32_t caret) {
	mAnchor = Aligned(anchor);
	mCaret = Aligned(caret);
}

void TTextFieldModel::SelectAll(bool rightToLeft) {
	const int32_t length = Text().Length();
	mCaret = rightToLeft ? 0 : length;
	mAnchor = rightToLeft ? length : 0;
}

void TTextFieldModel::SelectWordAt(int32_t index, bool rightToLeft) {
	TRange word{0, 0};
	if (index >= 1) {
		const TString& text = Text();
		const int32_t length = text.Length();
		const bool separators = TString::IsWordSeparator(text[index - 1]);
		word = {index, index};
		while (word.mFrom > 0 && TString::IsWordSeparator(text[word.mFrom - 1]) == separators)
			--word.mFrom;
		while (word.mTo < length && TString::IsWordSeparator(text[word.mTo]) == separators)
			++word.mTo;
	}
	if (Selection() == word)
		return;
	if (rightToLeft)
		SetSelection(word.mTo, word.mFrom);
	else
		SetSelection(word.mFrom, word.mTo);
}

// What the words of TString do not know (an emoji, say) is passed one by one.
int32_t TTextFieldModel::WordBoundary(bool backwards) const {
	const int32_t boundary = Aligned(Text().NextWordBoundary(mCaret, backwards));
	if (backwards)
		return boundary < mCaret ? boundary : CharacterBefore(Text(), mCaret);
	return boundary > mCaret ? boundary : CharacterBehind(Text(), mCaret);
}

void TTextFieldModel::MoveLeft(bool byWord, bool extends) {
	if (!Selection().IsEmpty() && !byWord && !extends) {
		mCaret = Selection().mFrom;
		mAnchor = mCaret;
	} else
		mCaret = byWord ? WordBoundary(true) : CharacterBefore(Text(), mCaret);
}

void TTextFieldModel::MoveRight(bool byWord, bool extends) {
	if (!Selection().IsEmpty() && !byWord && !extends) {
		mCaret = Selection().mTo;
		mAnchor = mCaret;
	} else
		mCaret = byWord ? WordBoundary(false) : CharacterBehind(Text(), mCaret);
}

// Changes

// Who watches the text finds the indices that belong to it.
void TTextFieldModel::Store(const TString& text, int32_t caret, int32_t anchor) {
	mCaret = caret;
	mAnchor = anchor;
	mEditText.Set(text);
	Clamp();
}

void TTextFieldModel::Begin(const TString& text) {
	ForgetHistory();
	mLastRecorded = {};
	mCurrentState = {};
	Store(text, mCaret, mAnchor);
}

void TTextFieldModel::ForgetHistory() {
	mHistory.Clear();
	mHistoryIndex = 0;
}

void TTextFieldModel::SetText(const TString& text) {
	Store(text, text.Length(), text.Length());
}

void TTextFieldModel::CopyFrom(const TTextFieldModel& other) {
	Restore(other.State());
}

void TTextFieldModel::Restore(const TTextFieldHistory& state) {
	mFirstVisible = state.mFirstVisible;
	Store(state.mText, state.mCaret, state.mAnchor);
}

void TTextFieldModel::Remove(int32_t from, int32_t to) {
	TString text = Text();
	text.Remove(from, to);
	Store(text, from, from);
}

void TTextFieldModel::RemoveSelection() {
	const auto [from, to] = Selection();
	if (from != to)
		Remove(from, to);
}

void TTextFieldModel::DeleteForward(bool byWord) {
	if (!Selection().IsEmpty())
		RemoveSelection();
	else if (mCaret < Text().Length())
		Remove(mCaret, byWord ? WordBoundary(false) : CharacterBehind(Text(), mCaret));
}

void TTextFieldModel::DeleteBack(bool byWord) {
	if (!Selection().IsEmpty())
		RemoveSelection();
	else if (mCaret > 0)
		Remove(byWord ? WordBoundary(true) : CharacterBefore(Text(), mCaret), mCaret);
}

void TTextFieldModel::Insert(const TString& text, bool caretGoesBehind) {
	const auto [from, to] = Selection();
	TString changed = Text();
	if (from != to)
		changed.Remove(from, to);
	changed.Insert(from, text);
	Store(changed, caretGoesBehind ? from + text.Length() : from, from);
}

void TTextFieldModel::Clear() {
	Store(TString(), 0, 0);
}

void TTextFieldModel::Paste(const TString& clipboard) {
	mFirstVisible = 0;
	Insert(AsOneLine(clipboard), true);
}

void TTextFieldModel::PasteNumber(const TString& clipboard) {
	const TString text = AsOneLine(clipboard);
	const bool isReal = text.FindChar('.') >= 0;
	mFirstVisible = 0;
	SetText(
	    isReal ? TString::ToString(TString::FromStringOrZero<float>(text), "%.7g")
	           : TString::ToString(TString::FromStringOrZero<int>(text)));
}

// History

void TTextFieldModel::RecordState() {
	const bool changed = !(Text() == mLastRecorded.mText);
	mLastRecorded = State();
	if (!changed)
		return;
	while (mHistory.Count() > mHistoryIndex)
		mHistory.RemoveAt(mHistory.Count() - 1);
	mHistory.Append(mLastRecorded);
	++mHistoryIndex;
}

void TTextFieldModel::StoreCurrentState() {
	mCurrentState = State();
}

bool TTextFieldModel::Undo(const TString& original, bool rightToLeft) {
	if (mHistory.IsEmpty())
		return false;
	if (mHistoryIndex >= 1)
		Restore(mHistory[--mHistoryIndex]);
	else {
		Store(original, mCaret, mAnchor);
		SelectAll(rightToLeft);
	}
	return true;
}

bool TTextFieldModel::Redo() {
	if (mHistoryIndex >= mHistory.Count())
		return false;
	++mHistoryIndex;
	Restore(mHistoryIndex < mHistory.Count() ? mHistory[mHistoryIndex] : mCurrentState);
	return true;
}

// Geometry

// A text much longer than the room is not measured to its end; two units of a character are at least a pixel wide.
bool TTextFieldModel::FitsIn(const TTextWidth& widthOf, int32_t from, int32_t to, int32_t pixels) const {
	if (to - from > 2 * std::max(pixels, 0))
		return false;
	return widthOf(Shown(from, to)) < pixels;
}

int32_t TTextFieldModel::VisibleEnd(const TTextWidth& widthOf, int32_t available) const {
	int32_t fits = mFirstVisible;
	int32_t tooFar = Text().Length() + 1;
	while (tooFar - fits > 1) {
		const int32_t middle = fits + (tooFar - fits) / 2;
		if (FitsIn(widthOf, mFirstVisible, middle, available + 1))
			fits = middle;
		else
			tooFar = middle;
	}
	return Aligned(fits);
}

int32_t TTextFieldModel::CharacterAt(const TTextWidth& widthOf, int32_t available, int32_t x) const {
	int32_t index = VisibleEnd(widthOf, available);
	while (index > mFirstVisible) {
		const int32_t before = CharacterBefore(Text(), index);
		const int32_t width = widthOf(Shown(before, index));
		if (widthOf(Shown(mFirstVisible, before)) + width / 2 < x)
			break;
		index = before;
	}
	return index;
}

void TTextFieldModel::ScrollToCaret(const TTextWidth& widthOf, int32_t available) {
	const TString& text = Text();
	const int32_t length = text.Length();
	// No room is left empty at the end.
	while (mFirstVisible >= 1 && FitsIn(widthOf, CharacterBefore(text, mFirstVisible), length, available))
		mFirstVisible = CharacterBefore(text, mFirstVisible);
	if (mFirstVisible >= mCaret) {
		mFirstVisible = mCaret;
		return;
	}
	if (FitsIn(widthOf, mFirstVisible, mCaret, available))
		return;
	mFirstVisible = mCaret;
	while (mFirstVisible > 0 && FitsIn(widthOf, CharacterBefore(text, mFirstVisible), mCaret, available))
		mFirstVisible = CharacterBefore(text, mFirstVisible);
}

bool TTextFieldModel::ScrollByOne(const TTextWidth& widthOf, int32_t available, bool forward) {
	if (!forward) {
		if (mFirstVisible < 1)
			return false;
		mFirstVisible = CharacterBefore(Text(), mFirstVisible);
		return true;
	}
	const int32_t length = Text().Length();
	const bool showsAll = mFirstVisible == 0 && VisibleEnd(widthOf, available) == length;
	if (showsAll || FitsIn(widthOf, mFirstVisible, length, available))
		return false;
	mFirstVisible = CharacterBehind(Text(), mFirstVisible);
	return true;
}
