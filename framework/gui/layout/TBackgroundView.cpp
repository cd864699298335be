// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/layout/TBackgroundView.h"

#include "framework/graphics/skin/TSkinColors.h"

namespace {

TSkin::TBackground KnownKind(int kind) {
	return kind >= 0 && kind < TSkin::kNumberOfBackgrounds ? static_cast<TSkin::TBackground>(kind)
	                                                       : TSkin::kTextBoxBackground;
}

} // namespace

TBackgroundView::TBackgroundView(int kind) : mKind(kind) {}

void TBackgroundView::SetKind(int kind) {
	if (mKind == kind)
		return;
	mKind = kind;
	Invalidate();
}

void TBackgroundView::SetText(const TString& text) {
	if (mText == text)
		return;
	mText = text;
	Invalidate();
}

void TBackgroundView::SetFont(int font) {
	if (mFont == font)
		return;
	mFont = font;
	Invalidate();
}

TColor TBackgroundView::TextColor() const {
	if (mTextColor)
		return *mTextColor;
	const TSkinColors* colors = TSkinColors::Instance();
	return colors ? colors->MainColor(IsTextBox() ? TSkinColors::kValueBoxFont : TSkinColors::kBodyFont) : TColor{};
}

void TBackgroundView::SetTextColor(std::optional<TColor> color) {
	if (mTextColor == color)
		return;
	mTextColor = color;
	Invalidate();
}

void TBackgroundView::SetTextAlignment(TTextAlign alignment) {
	if (mTextAlignment == alignment)
		return;
	mTextAlignment = alignment;
	Invalidate();
}

void TBackgroundView::SetTextInsets(int left, int right) {
	mLeftInset = left;
	mRightInset = right;
	Invalidate();
}

void TBackgroundView::SetOutsets(int left, int right) {
	mLeftOutset = left;
	mRightOutset = right;
	Invalidate();
}

void TBackgroundView::SetIsEdited(bool isEdited) {
	if (mIsEdited == isEdited)
		return;
	mIsEdited = isEdited;
	Invalidate();
}

TRectT<int> TBackgroundView::TextRect() const {
	const int inset = IsTextBox() ? 2 : 0;
	const TRectT<int> rect = AbsoluteRect();
	return {
	    rect.mLeft + inset + mLeftInset, rect.mTop + inset, rect.mWidth - 2 * inset - mLeftInset - mRightInset,
	    rect.mHeight - 2 * inset};
}

bool TBackgroundView::IsOpaque() const {
	TSkin* skin = TSkin::Instance();
	return skin && skin->IsOpaque(KnownKind(mKind));
}

bool TBackgroundView::IsRectCovered(const TRectT<int>& rect) const {
	return IsOpaque() || TView::IsRectCovered(rect);
}

void TBackgroundView::DrawBackground(TSurface& port, const TRectT<int>& rect) const {
	TSkin* skin = TSkin::Instance();
	if (!skin || mKind == TSkin::kNoBackground)
		return;
	if (!mIsEdited || !IsTextBox())
		skin->DrawBackground(port, rect, KnownKind(mKind));
	if (mIsEdited)
		skin->DrawTextBoxFrame(port, rect, true, true);
}

void TBackgroundView::Draw(TSurface& port) {
	const TRectT<int> rect = AbsoluteRect();
	DrawBackground(port, {rect.mLeft - mLeftOutset, rect.mTop, rect.mWidth + mLeftOutset + mRightOutset, rect.mHeight});
	if (!mText.IsEmpty() && TSkin::Instance())
		TSkin::Instance()->DrawText(port, TextRect(), mText, TextColor(), mFont, mTextAlignment);
}
