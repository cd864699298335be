// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TValue.h"
#include "framework/foundation/files/TDirectory.h"
#include "framework/foundation/values/TColor.h"
#include "framework/graphics/skin/TButtonLook.h"
#include "framework/gui/views/TView.h"

/// Which colour a TTextView takes.
enum TTextStyle : int32_t {
	kMainText = 0,
	kBodyText = 1,
	kStrongBodyText = 2,
	kFaintBodyText = 3, // half way to the ground
	kColoredText = 4    // SetColor
};

/// How a text that does not fit is shortened.
enum TCutMode : int32_t {
	kCutByContent = 0, // a path in the middle, anything else at the end
	kCutMiddle = 1,
	kCutEnd = 2
};

/// Shows a text: a fixed one, or one that it follows. What does not fit is shortened, and the whole is then the tool
/// tip. Sizes itself by its text until somebody else sizes it. Main thread.
class TTextView : public TView {
public:
	static constexpr int kLineHeight = 18;

	/// TTextStyle, index of a font.
	explicit TTextView(const TString& text, int style = kBodyText, TTextAlign alignment = kAlignLeft, int font = 0);
	/// The source must outlive the view or be observable to its end.
	explicit TTextView(
	    TConstValue<TString>* source, int style = kBodyText, TTextAlign alignment = kAlignLeft, int font = 0);
	explicit TTextView(
	    TConstValue<TDirectory>* source, int style = kBodyText, TTextAlign alignment = kAlignLeft, int font = 0);

	/// The whole text, as it would be shown if there were room.
	TString Text() const;
	/// resize: the view sizes itself by its texts again.
	void SetText(const TString& text, bool resize = false);
	void SetStyle(int style);
	void SetFont(int font);

	int Font() const noexcept { return mFont; }

	void SetAlignment(TTextAlign alignment);
	/// Also sets the style that shows it.
	void SetColor(const TColor& color);
	void SetCutMode(int mode);
	void SetUpperCase(bool upperCase);
	/// Takes the size of the text, now and whenever it changes.
	void AutoSize();
	/// What fits into the view.
	TString DisplayedText() const;
	TColor TextColor() const;

	void Draw(TSurface& port) override;
	void OnResized() override;
	void OnMainFrameChanged() override;
	void OnVisibilityChanged() override;
	void OnUiScaleChanged() override;

private:
	void OnSourceChanged(TObservable* source, int32_t reason);
	void TextChanged();
	void UpdateToolTip();

	int mStyle = kBodyText;
	TTextAlign mAlignment = kAlignLeft;
	bool mAutoSize = true;
	bool mSizing = false;
	TWeakPtr<TConstValue<TString>> mLinkedText;
	TWeakPtr<TConstValue<TDirectory>> mPath;
	TString mText;
	int mFont = 0;
	TColor mColor{255, 255, 255};
	int mCutMode = kCutByContent;
	bool mUpperCase = false;
};
