// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/bitmaps/TBitmap.h"
#include "framework/graphics/bitmaps/TPanelTexture.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/graphics/skin/TSkinColors.h"

#include <algorithm>
#include <cmath>

namespace {

using C = TSkinColors;

TSkin::TState TextureState(const TButtonLook& look) {
	if (!look.mIsEnabled)
		return TSkin::kDimmed;
	return look.IsHighlighted() ? TSkin::kHighlighted : TSkin::kNormal;
}

TSkin::TBevelStyle BevelStyle(TButtonLook::TGroupPosition position) {
	switch (position) {
	case TButtonLook::kLeftPiece:
		return TSkin::kLeftRoundBevel;
	case TButtonLook::kRightPiece:
		return TSkin::kRightRoundBevel;
	case TButtonLook::kTopPiece:
	case TButtonLook::kBottomPiece:
	case TButtonLook::kMiddlePiece:
	case TButtonLook::kMiddleOfColumn:
		return TSkin::kSquareBevel;
	case TButtonLook::kAlone:
	case TButtonLook::kAloneInGroup:
		break;
	}
	return TSkin::kRoundBevel;
}

} // namespace

TCornerRadii TSkin::CornersOf(TButtonLook::TGroupPosition position, float radius) {
	switch (position) {
	case TButtonLook::kLeftPiece:
		return {radius, 0.0f, radius, 0.0f};
	case TButtonLook::kRightPiece:
		return {0.0f, radius, 0.0f, radius};
	case TButtonLook::kTopPiece:
		return {radius, radius, 0.0f, 0.0f};
	case TButtonLook::kBottomPiece:
		return {0.0f, 0.0f, radius, radius};
	case TButtonLook::kMiddlePiece:
	case TButtonLook::kMiddleOfColumn:
		return {};
	case TButtonLook::kAlone:
	case TButtonLook::kAloneInGroup:
		break;
	}
	return TCornerRadii::All(radius);
}

TColor TSkin::ButtonTextColor(const TButtonLook& look, const TColor& back) const {
	const int32_t own = look.IsSelected()          ? C::kSelectedButtonFont
	                    : look.mIsLabelHighlighted ? C::kButtonHighlightFont
	                                               : C::kButtonFont;
	const TColor color = look.mTextColor.value_or(MainColor(own));
	if (look.mIsEnabled)
		return color;
	return look.IsSelected() ? Mix(color, back, 0.45f) : DisabledTextColor(color, back);
}

void TSkin::DrawButtonContent(TSurface& port, const TRectT<int>& rect, const TButtonLook& look, const TColor& color) {
	const TPointT<int> iconSize = look.mpBitmap ? look.mpBitmap->Size() : TPointT<int>{};
	const bool hasLabel = !look.mLabel.IsEmpty();
	const int textWidth = hasLabel ? port.TextWidth(look.mLabel, look.mFont) : 0;
	const int gap = look.mpBitmap && hasLabel ? look.mLabelGap : 0;
	const TRectT<int> place{
	    rect.mLeft + look.mTextOffset, rect.mTop + (look.mIsHeld ? 1 : 0), rect.mWidth, rect.mHeight};
	const TPointT<int> corner = TextPosition(place, {iconSize.mX + gap + textWidth, iconSize.mY}, look.mTextAlign);
	if (look.mpBitmap)
		look.mpBitmap->DrawTinted(
		    port, {corner.mX + (look.mIconIsRight ? textWidth + gap : 0), corner.mY}, color, 1.0f);
	if (hasLabel) {
		const int top = TextPosition(place, {textWidth, port.TextHeight(look.mLabel, look.mFont)}, look.mTextAlign).mY;
		port.DrawText({corner.mX + (look.mIconIsRight ? 0 : iconSize.mX + gap), top}, look.mLabel, color, look.mFont);
	}
}

void TSkin::DrawTexturedButton(
    TSurface& port, const TRectT<int>& rect, const TButtonLook& look, const TColor& back, TTexture& texture) {
	const TCornerRadii radii = CornersOf(look.mGroupPosition, std::round(ScaledBevel(port, 3.0f)));
	texture.DrawRoundedRect(port, rect, radii.mTopLeft, radii.mTopRight, radii.mBottomLeft, radii.mBottomRight);
	DrawBevel(port, rect, BevelStyle(look.mGroupPosition), 0.25f);
	StrokeOutline(port, rect, Darken(back, 0.25f), radii, 1.0f);
	DrawButtonContent(port, rect, look, ButtonTextColor(look, back));
}

namespace {

/// The ground of a button in the base look.
TColor BodyColor(const TSkin& skin, const TSkinColors& colors, const TButtonLook& look) {
	const TColor normal = colors.MainColor(C::kButtonBack);
	TColor body = look.IsSelected() ? colors.MainColor(C::kSelectedButtonBack) : normal;
	if (look.IsHighlighted())
		body = skin.Darken(body, 1.5f);
	return look.mIsEnabled ? body : Mix(body, normal, 0.35f);
}

} // namespace

void TSkin::DrawButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look) {
	const TTextureGroup group = look.IsSelected() ? kPressedButtonTexture : kButtonTexture;
	DrawTexturedButton(port, rect, look, BodyColor(*this, Colors(), look), Texture(group, TextureState(look)));
}

void TSkin::DrawRoundButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look) {
	const TTextureGroup group = look.IsSelected() ? kPressedRoundButtonTexture : kRoundButtonTexture;
	const float radius = static_cast<float>(std::min(rect.mWidth, rect.mHeight)) / 2.0f;
	const TPointT<float> center{
	    static_cast<float>(rect.mLeft) + static_cast<float>(rect.mWidth) / 2.0f,
	    static_cast<float>(rect.mTop) + static_cast<float>(rect.mHeight) / 2.0f};
	const TColor back = BodyColor(*this, Colors(), look);
	Texture(group, TextureState(look)).DrawCircle(port, center, radius);
	port.StrokeCircle(center, radius - 1.0f, Darken(back, 0.25f), LineWidth(port), 1.0f);
	DrawButtonContent(port, rect, look, ButtonTextColor(look, back));
}

void TSkin::DrawBitmapButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look) {
	TColor color = look.mTextColor.value_or(MainColor(C::kBodyFont));
	if (look.IsHighlighted())
		color = Darken(color, 1.5f);
	if (!look.mIsEnabled)
		color = DisabledTextColor(color, MainColor(C::kBodyBack));
	DrawButtonContent(port, rect, look, color);
}

void TSkin::DrawColoredButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look, const TColor& back) {
	const TCornerRadii radii = CornersOf(look.mGroupPosition, std::round(ScaledBevel(port, 3.0f)));
	const TColor body = look.IsHighlighted() ? Darken(back, 1.5f) : back;
	FillInOutline(port, rect, body, radii);
	DrawBevel(port, rect, BevelStyle(look.mGroupPosition), 0.25f);
	StrokeOutline(port, rect, Darken(body, 0.25f), radii, 1.0f);
	DrawButtonContent(port, rect, look, ButtonTextColor(look, body));
}

void TSkin::DrawListEntryButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look) {
	const TEntryState state = look.IsSelected() ? kEntrySelected : look.IsHighlighted() ? kEntryHovered : kEntryAtRest;
	DrawListEntryBackground(port, rect, state);
	const TColor color = look.mTextColor.value_or(ListEntryTextColor(state));
	DrawButtonContent(
	    port, rect, look, look.mIsEnabled ? color : DisabledTextColor(color, MainColor(C::kValueBoxBack)));
}

void TSkin::DrawMenuButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look) {
	const bool isOpen = look.mIsEnabled && (look.IsSelected() || look.IsHighlighted());
	if (isOpen)
		DrawMenuEntryBackground(port, rect, true);
	const TColor color = look.mTextColor.value_or(MainColor(isOpen ? C::kSelectionFont : C::kStrongBodyFont));
	DrawButtonContent(port, rect, look, look.mIsEnabled ? color : Mix(color, MainColor(C::kBodyBack), 0.4f));
}

void TSkin::DrawScrollBarButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look) {
	const TTextureGroup group = look.IsSelected() ? kPressedScrollBarButtonTexture : kScrollBarButtonTexture;
	const TColor back = Darken(MainColor(C::kScrollbar), 1.4f);
	DrawTexturedButton(port, rect, look, back, Texture(group, TextureState(look)));
}
