// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/text/TMultilineTextView.h"

#include "framework/graphics/skin/TSkinColors.h"
#include "framework/graphics/surfaces/TSurface.h"
#include "framework/gui/layout/TextMetrics.h"
#include "platform/TPlatform.h"

#include <algorithm>

namespace {

constexpr int kAroundText = 4; // of which half on each side

/// The longest beginning that fits, in units, at least one character.
int32_t FittingLength(const TString& text, int font, int room) {
	const int32_t length = text.Length();
	int32_t fits = 0;
	int32_t tooMany = std::min(length, 2 * std::max(room, 1)) + 1;
	while (tooMany - fits > 1) {
		const int32_t middle = fits + (tooMany - fits) / 2;
		if (TextMetrics::Width(text.SubString(0, middle), font) <= room)
			fits = middle;
		else
			tooMany = middle;
	}
	const auto isCutCharacter = [&] { return fits < length && (text[fits] & 0xFC00) == 0xDC00; };
	if (isCutCharacter())
		--fits;
	if (fits == 0)
		fits = 1;
	return isCutCharacter() ? fits + 1 : fits;
}

} // namespace

TMultilineTextView::TMultilineTextView(const TString& text, int wrapWidth, int font)
    : mText(text),
      mWrapWidth(wrapWidth),
      mFont(font) {
	SetFocusMode(kFocusNever);
	BreakIntoLines();
}

void TMultilineTextView::SetText(const TString& text) {
	if (mText == text)
		return;
	mText = text;
	mAllSelected = false;
	BreakIntoLines();
}

void TMultilineTextView::SetWrapWidth(int width) {
	if (mWrapWidth == width)
		return;
	mWrapWidth = width;
	BreakIntoLines();
}

void TMultilineTextView::SetFont(int font) {
	if (mFont == font)
		return;
	mFont = font;
	BreakIntoLines();
}

void TMultilineTextView::SetMaximumHeight(int height) {
	if (mMaximumHeight == height)
		return;
	mMaximumHeight = height;
	TakeSizeOfLines();
}

void TMultilineTextView::SetColor(const TColor& color) {
	mColor = color;
	Invalidate();
}

void TMultilineTextView::BreakIntoLines() {
	mLines.Clear();
	const int room = std::max(mWrapWidth - kAroundText, 1);
	for (const TString& paragraph : mText.SplitLines())
		if (mWrapWidth <= 0)
			mLines.Append(paragraph);
		else
			AppendWrapped(paragraph, room);
	TakeSizeOfLines();
}

// At the last blank that still fits, which ends the line unseen; a word longer than the line is cut.
void TMultilineTextView::AppendWrapped(const TString& paragraph, int room) {
	TString rest = paragraph;
	while (true) {
		const int32_t fits = FittingLength(rest, mFont, room);
		if (fits >= rest.Length()) {
			mLines.Append(rest);
			return;
		}
		const int32_t blank = rest.FindChar(' ', fits, true);
		const int32_t end = blank > 0 ? blank : fits;
		mLines.Append(rest.SubString(0, end));
		rest = rest.SubString(blank > 0 ? blank + 1 : fits);
	}
}

void TMultilineTextView::TakeSizeOfLines() {
	int width = 0;
	for (const TString& line : mLines)
		width = std::max(width, TextMetrics::Width(line, mFont));
	const int height = mLines.Count() * TextMetrics::LineHeight(mFont) + kAroundText;
	SetSize(width + kAroundText, mMaximumHeight > 0 ? std::min(height, mMaximumHeight) : height);
	Invalidate();
}

void TMultilineTextView::SelectAll() {
	mAllSelected = true;
	Invalidate();
}

void TMultilineTextView::ClearSelection() {
	mAllSelected = false;
	Invalidate();
}

void TMultilineTextView::Copy() const {
	if (TPlatform* platform = TPlatform::Instance())
		platform->Clipboard().SetText(mText);
}

void TMultilineTextView::Draw(TSurface& port) {
	const TSkinColors& colors = *TSkinColors::Instance();
	const TColor color = mAllSelected ? colors.MainColor(TSkinColors::kSelectionFont) : mColor;
	const int lineHeight = TextMetrics::LineHeight(mFont);
	const int x = AbsolutePosition().mX + kAroundText / 2;
	int y = AbsolutePosition().mY + kAroundText / 2;
	for (const TString& line : mLines) {
		if (mAllSelected)
			port.FillRect(
			    {x, y, TextMetrics::Width(line, mFont), lineHeight}, colors.MainColor(TSkinColors::kSelectionBack),
			    1.0f);
		port.DrawText({x, y}, line, color, mFont);
		y += lineHeight;
	}
}

void TMultilineTextView::OnUiScaleChanged() {
	BreakIntoLines();
}
