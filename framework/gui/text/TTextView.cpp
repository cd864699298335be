// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/text/TTextView.h"

#include "framework/graphics/skin/TSkin.h"
#include "framework/graphics/skin/TSkinColors.h"
#include "framework/gui/layout/TextMetrics.h"

namespace {

constexpr TPointT<int> kBoundSize{60, 18};
constexpr int kAroundText = 4;

} // namespace

TTextView::TTextView(const TString& text, int style, TTextAlign alignment, int font)
    : mStyle(style),
      mAlignment(alignment),
      mText(text),
      mFont(font) {
	AutoSize();
}

TTextView::TTextView(TConstValue<TString>* source, int style, TTextAlign alignment, int font)
    : mStyle(style),
      mAlignment(alignment),
      mAutoSize(false),
      mLinkedText(source),
      mFont(font) {
	SetSize(kBoundSize.mX, kBoundSize.mY);
	source->AddObserver({this, &TTextView::OnSourceChanged});
}

TTextView::TTextView(TConstValue<TDirectory>* source, int style, TTextAlign alignment, int font)
    : mStyle(style),
      mAlignment(alignment),
      mAutoSize(false),
      mPath(source),
      mFont(font) {
	SetSize(kBoundSize.mX, kBoundSize.mY);
	source->AddObserver({this, &TTextView::OnSourceChanged});
}

// Text

TString TTextView::Text() const {
	TString text = mLinkedText ? mLinkedText->Get() : mPath ? mPath->Get().Path() : mText;
	if (mUpperCase)
		text.ToUpper();
	return text;
}

void TTextView::SetText(const TString& text, bool resize) {
	mAutoSize |= resize;
	if (mText == text)
		return;
	mText = text;
	TextChanged();
}

// What is shown last stays when the source goes.
void TTextView::OnSourceChanged(TObservable* /*source*/, int32_t reason) {
	if (reason != kObserverAdded && reason != kDidChange)
		return;
	mText = mLinkedText ? mLinkedText->Get() : mPath->Get().Path();
	if (reason == kDidChange)
		TextChanged();
}

void TTextView::TextChanged() {
	if (mAutoSize)
		AutoSize();
	UpdateToolTip();
	Invalidate();
}

TString TTextView::DisplayedText() const {
	const TString text = Text();
	if (!IsShown())
		return text;
	const bool inMiddle = mCutMode == kCutMiddle || (mCutMode == kCutByContent && mPath && !mLinkedText);
	return inMiddle ? TextMetrics::CutInMiddle(text, mFont, Width()) : TextMetrics::CutAtEnd(text, mFont, Width());
}

void TTextView::UpdateToolTip() {
	const TString text = Text();
	SetToolTip(DisplayedText() == text ? TString() : text);
}

// Looks

void TTextView::SetStyle(int style) {
	if (mStyle == style)
		return;
	mStyle = style;
	UpdateToolTip();
	Invalidate();
}

void TTextView::SetFont(int font) {
	if (mFont == font)
		return;
	mFont = font;
	TextChanged();
}

void TTextView::SetAlignment(TTextAlign alignment) {
	if (mAlignment == alignment)
		return;
	mAlignment = alignment;
	Invalidate();
}

void TTextView::SetColor(const TColor& color) {
	mColor = color;
	mStyle = kColoredText;
	Invalidate();
}

void TTextView::SetCutMode(int mode) {
	mCutMode = mode;
	TextChanged();
}

void TTextView::SetUpperCase(bool upperCase) {
	mUpperCase = upperCase;
	TextChanged();
}

TColor TTextView::TextColor() const {
	const TSkinColors& colors = *TSkinColors::Instance();
	switch (mStyle) {
	case kMainText:
		return colors.MainColor(TSkinColors::kMainFont);
	case kStrongBodyText:
		return colors.MainColor(TSkinColors::kStrongBodyFont);
	case kFaintBodyText:
		return Mix(colors.MainColor(TSkinColors::kBodyFont), colors.MainColor(TSkinColors::kBodyBack), 0.5f);
	case kColoredText:
		return mColor;
	default:
		return colors.MainColor(TSkinColors::kBodyFont);
	}
}

void TTextView::Draw(TSurface& port) {
	TSkin::Instance()->DrawText(port, AbsoluteRect(), DisplayedText(), TextColor(), mFont, mAlignment);
}

// Size

void TTextView::AutoSize() {
	const TString text = Text();
	mAutoSize = true;
	if (text.IsEmpty())
		return;
	const bool isOneLine = text.LineCount() == 1;
	mSizing = true;
	SetSize(
	    TextMetrics::Width(text, mFont) + kAroundText,
	    isOneLine ? kLineHeight : TextMetrics::Height(text, mFont) + kAroundText);
	mSizing = false;
}

void TTextView::OnResized() {
	mAutoSize = mSizing;
	UpdateToolTip();
}

void TTextView::OnMainFrameChanged() {
	UpdateToolTip();
}

void TTextView::OnVisibilityChanged() {
	UpdateToolTip();
}

void TTextView::OnUiScaleChanged() {
	if (mAutoSize)
		AutoSize();
	UpdateToolTip();
}
