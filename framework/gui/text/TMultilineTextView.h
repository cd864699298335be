// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TList.h"
#include "framework/foundation/values/TColor.h"
#include "framework/gui/views/TFocusRootView.h"

/// Shows a text in lines that are no wider than asked: it breaks at line breaks, else between words, else within one.
/// Takes the size of what it shows. The text can be selected and copied when that is allowed. Main thread.
class TMultilineTextView : public TFocusRootView {
public:
	/// wrapWidth: of the view; 0 breaks nowhere but at line breaks.
	TMultilineTextView(const TString& text, int wrapWidth, int font = 0);

	const TString& Text() const noexcept { return mText; }

	void SetText(const TString& text);

	int WrapWidth() const noexcept { return mWrapWidth; }

	void SetWrapWidth(int width);
	void SetColor(const TColor& color);
	void SetFont(int font);
	/// What does not fit is hidden. 0: no limit.
	void SetMaximumHeight(int height);

	int NumberOfLines() const noexcept { return mLines.Count(); }

	/// Selects all of it, for a copy.
	void SelectAll();
	void ClearSelection();

	bool IsAllSelected() const noexcept { return mAllSelected; }

	/// Puts the whole text into the clipboard.
	void Copy() const;

	/// A reader, not a field.
	bool WantsFocusAt(int /*x*/, int /*y*/, int /*modifiers*/) override { return false; }

	void Draw(TSurface& port) override;
	void OnUiScaleChanged() override;

private:
	void BreakIntoLines();
	void AppendWrapped(const TString& paragraph, int room);
	void TakeSizeOfLines();

	TString mText;
	int mWrapWidth;
	int mFont;
	int mMaximumHeight = 0;
	TColor mColor{255, 255, 255};
	bool mAllSelected = false;
	TList<TString> mLines;
};
