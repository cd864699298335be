// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObservableBaseType.h"
#include "framework/foundation/memory/TList.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TFunctionPtr.h"

#include <cstdint>

/// One state of an edit, to go back to.
struct TTextFieldHistory {
	TString mText;
	int32_t mCaret = 0;
	int32_t mFirstVisible = 0;
	int32_t mAnchor = 0;
};

/// What a text field edits: the private text, the caret, the selection between caret and anchor, the first character
/// shown, and the way back. Indices count UTF-16 units and never stand within a character of two units. Knows neither
/// keys nor drawing; a field lends it the width of texts. Main thread.
class TTextFieldModel {
public:
	/// In pixels.
	using TTextWidth = TFunctionPtr<int32_t, const TString&>;

	struct TRange {
		int32_t mFrom;
		int32_t mTo;

		bool IsEmpty() const noexcept { return mFrom == mTo; }

		friend bool operator==(const TRange&, const TRange&) = default;
	};

	TObservableBaseType<TString>& EditText() noexcept { return mEditText; }

	const TString& Text() const { return mEditText.Get(); }

	int32_t Caret() const noexcept { return mCaret; }

	int32_t Anchor() const noexcept { return mAnchor; }

	int32_t FirstVisible() const noexcept { return mFirstVisible; }

	/// From the smaller end to the larger.
	TRange Selection() const noexcept;
	TString SelectedText() const;

	/// A new text to edit, without history. Caret and first character stay, as far as the text reaches.
	void Begin(const TString& text);
	void ForgetHistory();
	/// The text with the caret behind it and nothing selected.
	void SetText(const TString& text);
	/// Another's state, as it stands.
	void CopyFrom(const TTextFieldModel& other);
	/// Brings the indices into the text, after it was set from outside.
	void Clamp();

	void SelectAll(bool rightToLeft);
	void SetSelection(int32_t anchor, int32_t caret);
	/// The word, or the run of separators, around an index.
	void SelectWordAt(int32_t index, bool rightToLeft);
	void CollapseSelection() noexcept { mAnchor = mCaret; }

	/// The anchor stays. Without `extends` a selection is collapsed to its end on that side instead, unless words are
	/// skipped.
	void MoveLeft(bool byWord, bool extends);
	void MoveRight(bool byWord, bool extends);
	void MoveCaret(int32_t index);

	/// Each takes the selection, if there is one.
	void DeleteForward(bool byWord);
	void DeleteBack(bool byWord);
	void RemoveSelection();
	/// Instead of the selection. The anchor stays in front.
	void Insert(const TString& text, bool caretGoesBehind);
	void Clear();
	/// Line breaks become blanks.
	void Paste(const TString& clipboard);
	/// As Paste, but the number that the text begins with becomes the whole text.
	void PasteNumber(const TString& clipboard);

	/// Before an edit: keeps what has changed since the last time. After it: what to come back to from the last undo.
	void RecordState();
	void StoreCurrentState();
	/// False when there was nothing to do. `original` is what the first undo of all leads to.
	bool Undo(const TString& original, bool rightToLeft);
	bool Redo();

	/// Behind the last character that is shown.
	int32_t VisibleEnd(const TTextWidth& widthOf, int32_t available) const;
	/// The index for the pointer, in pixels from the first character shown: in the right half of a character the one
	/// behind it.
	int32_t CharacterAt(const TTextWidth& widthOf, int32_t available, int32_t x) const;
	void ScrollToCaret(const TTextWidth& widthOf, int32_t available);
	void ScrollTo(int32_t firstVisible);
	/// False at the end of the way.
	bool ScrollByOne(const TTextWidth& widthOf, int32_t available, bool forward);

	/// Shows U+26AB for each unit.
	void SetMasked(bool masked) { mMasked = masked; }

	/// A part of the text as it is shown.
	TString Shown(int32_t from, int32_t to) const;

	/// The borders of the characters before and behind an index.
	static int32_t CharacterBefore(const TString& text, int32_t index);
	static int32_t CharacterBehind(const TString& text, int32_t index);

private:
	TTextFieldHistory State() const { return {Text(), mCaret, mFirstVisible, mAnchor}; }

	void Store(const TString& text, int32_t caret, int32_t anchor);
	void Restore(const TTextFieldHistory& state);
	int32_t Aligned(int32_t index) const;
	int32_t WordBoundary(bool backwards) const;
	void Remove(int32_t from, int32_t to);
	bool FitsIn(const TTextWidth& widthOf, int32_t from, int32_t to, int32_t pixels) const;

	TObservableBaseType<TString> mEditText;
	int32_t mCaret = 0;
	int32_t mFirstVisible = 0;
	int32_t mAnchor = 0;
	bool mMasked = false;
	TList<TTextFieldHistory> mHistory;
	TTextFieldHistory mLastRecorded;
	TTextFieldHistory mCurrentState;
	int32_t mHistoryIndex = 0;
};
