// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/skin/TVortelSkin.h"

#include "editor/skin/TVortelSkinColors.h"
#include "framework/graphics/surfaces/TClipGuard.h"

#include <algorithm>

namespace {

using C = TVortelSkinColors;

// Corners, in logical pixels at scale 1: those of a button's frame are rounder than what lies inside it.
constexpr float kCorner = 2.0f;
constexpr float kFrameCorner = 3.0f;

// How strong outlines of white are at the usual contrast, so that they do not outshine the pattern.
constexpr float kPanelOutline = 0.09f;
constexpr float kBoxOutline = 0.16f;
constexpr float kButtonFrame = 0.07f;
constexpr float kUsualContrast = 1.25f;

constexpr float kHover = 1.25f;
constexpr float kDisabled = 0.35f;

/// Without the frame. Neighbours in a group share one pixel of frame, which is the later one's.
TRectT<int> WithoutFrame(const TRectT<int>& rect, TButtonLook::TGroupPosition position) {
	TRectT<int> inner = rect.Shrunk(1);
	if (position == TButtonLook::kLeftPiece || position == TButtonLook::kMiddlePiece)
		++inner.mWidth;
	if (position == TButtonLook::kTopPiece || position == TButtonLook::kMiddleOfColumn)
		++inner.mHeight;
	return inner;
}

} // namespace

void TVortelSkin::Create() {
	TSkin::Create([] { return static_cast<TSkin*>(new TVortelSkin); }, [](TSkin* skin) { delete skin; });
}

TVortelSkin* TVortelSkin::Instance() {
	return static_cast<TVortelSkin*>(TSkin::Instance());
}

TVortelSkinColors& TVortelSkin::VortelColors() {
	return *TVortelSkinColors::Instance();
}

TColor TVortelSkin::PanelColor() {
	return MainColor(C::kBodyBack) * 0.9f;
}

float TVortelSkin::OutlineOpacity(float usual) {
	const float contrast = VortelColors().ContrastAdjustment().Get() / kUsualContrast;
	return std::clamp(usual * contrast * contrast, 0.0f, 1.0f);
}

// Grounds

void TVortelSkin::DrawPanel(TSurface& port, const TRectT<int>& rect, TState state) {
	port.FillRect(rect, StateColor(PanelColor(), state), 1.0f);
	// The pixel outside of each corner belongs to the body, so that the panel covers all of its rectangle.
	const TColor body = MainColor(C::kBodyBack);
	for (const int x : {rect.mLeft, rect.Right() - 1})
		for (const int y : {rect.mTop, rect.Bottom() - 1})
			port.FillRect({x, y, 1, 1}, body, 1.0f);
	StrokeOutline(
	    port, rect, VortelColors().VortelColor(C::kBodyPanelOutline), TCornerRadii::All(ScaledBevel(port, kCorner)),
	    OutlineOpacity(kPanelOutline));
}

void TVortelSkin::DrawRoundedPanel(TSurface& port, const TRectT<int>& rect, const TColor& color) {
	const TCornerRadii radii = TCornerRadii::All(ScaledBevel(port, kCorner));
	FillInOutline(port, rect, color, radii);
	StrokeOutline(port, rect, VortelColors().VortelColor(C::kControlOutline), radii, OutlineOpacity(kBoxOutline));
}

void TVortelSkin::DrawControlBar(TSurface& port, const TRectT<int>& rect, TState state) {
	port.FillRect(rect, StateColor(PanelColor(), state), 1.0f);
	StrokeOutline(port, rect, VortelColors().VortelColor(C::kBodyPanelOutline), {}, OutlineOpacity(kPanelOutline));
}

void TVortelSkin::DrawTabArea(TSurface& port, const TRectT<int>& rect) {
	port.FillRect(rect, PanelColor(), 1.0f);
}

void TVortelSkin::DrawToolTipBackground(TSurface& port, const TRectT<int>& rect) {
	port.FillRect(rect, MainColor(C::kToolTipBack), 1.0f);
}

void TVortelSkin::DrawTextBoxFrame(TSurface& port, const TRectT<int>& rect, bool isEnabled, bool isEditing) {
	const TCornerRadii radii = TCornerRadii::All(ScaledBevel(port, kCorner));
	const TRectT<int> inner = rect.Shrunk(1);
	TColor back = MainColor(C::kValueBoxBack);
	float opacity = OutlineOpacity(kBoxOutline);
	if (!isEnabled) {
		back = Mix(back, PanelColor(), kDisabled);
		opacity *= 0.5f;
	}
	if (!inner.IsEmpty()) {
		port.FillRect(inner, back, 1.0f);
		FillGradient(port, {inner.mLeft, inner.mTop, inner.mWidth, rect.mHeight / 3}, back * 0.66f, back);
	}
	if (isEditing)
		StrokeOutline(port, rect, MainColor(C::kSelectionBack), radii, 1.0f);
	else
		StrokeOutline(port, rect, VortelColors().VortelColor(C::kControlOutline), radii, opacity);
}

// Buttons

void TVortelSkin::DrawFlatButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look, const TColor& back) {
	const TColor body = look.IsHighlighted() ? back * kHover : back;
	TColor fill = body * 1.25f;
	TColor line = body * 2.0f;
	if (!look.mIsEnabled) {
		fill = Mix(fill, PanelColor(), kDisabled);
		line = Mix(line, PanelColor(), kDisabled);
	}
	const TRectT<int> inner = WithoutFrame(rect, look.mGroupPosition);
	{
		const TClipGuard clip(port, rect, TClipGuard::kIntersect);
		StrokeOutline(
		    port, {rect.mLeft, rect.mTop, inner.mWidth + 2, inner.mHeight + 2},
		    VortelColors().VortelColor(C::kControlOutline),
		    CornersOf(look.mGroupPosition, ScaledBevel(port, kFrameCorner)), OutlineOpacity(kButtonFrame));
	}
	const TCornerRadii radii = CornersOf(look.mGroupPosition, ScaledBevel(port, kCorner));
	FillInOutline(port, inner, fill, radii);
	StrokeOutline(port, inner, line, radii, 1.0f);
	DrawButtonContent(port, rect, look, ButtonTextColor(look, fill));
}

void TVortelSkin::DrawButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look) {
	DrawFlatButton(port, rect, look, MainColor(look.IsSelected() ? C::kSelectedButtonBack : C::kButtonBack));
}

void TVortelSkin::DrawRoundButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look) {
	const TColor back = MainColor(look.IsSelected() ? C::kSelectedButtonBack : C::kButtonBack);
	TColor fill = (look.IsHighlighted() ? back * kHover : back) * 1.25f;
	if (!look.mIsEnabled)
		fill = Mix(fill, PanelColor(), kDisabled);
	const float radius = static_cast<float>(std::min(rect.mWidth, rect.mHeight)) / 2.0f;
	const TPointT<float> center{
	    static_cast<float>(rect.mLeft) + static_cast<float>(rect.mWidth) / 2.0f,
	    static_cast<float>(rect.mTop) + static_cast<float>(rect.mHeight) / 2.0f};
	port.FillCircle(center, radius, VortelColors().VortelColor(C::kControlOutline), OutlineOpacity(kButtonFrame));
	port.FillCircle(center, radius - 1.0f, fill * 1.6f, 1.0f);
	port.FillCircle(center, radius - 2.0f, fill, 1.0f);
	DrawButtonContent(port, rect, look, ButtonTextColor(look, fill));
}

void TVortelSkin::DrawColoredButton(
    TSurface& port, const TRectT<int>& rect, const TButtonLook& look, const TColor& back) {
	constexpr float kLine = 0.12f; // of white
	TColor fill = look.IsHighlighted() ? back * kHover : back;
	if (!look.mIsEnabled)
		fill = Mix(fill, PanelColor(), kDisabled);
	// A pixel is kept free, so that the buttons of neighbouring rows stay apart.
	const TRectT<int> inner = rect.Shrunk(1);
	const TCornerRadii radii = CornersOf(look.mGroupPosition, ScaledBevel(port, kCorner));
	FillInOutline(port, inner, fill, radii);
	StrokeOutline(port, inner, Mix({255, 255, 255}, fill, kLine), radii, 1.0f);
	DrawButtonContent(port, rect, look, ButtonTextColor(look, fill));
}

void TVortelSkin::DrawBitmapButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look) {
	TColor color = look.mTextColor.value_or(MainColor(C::kStrongBodyFont));
	if (look.IsHighlighted())
		color = color * kHover;
	if (!look.mIsEnabled)
		color = DisabledTextColor(color, PanelColor());
	DrawButtonContent(port, rect, look, color);
}

// Scroll bars

void TVortelSkin::DrawScrollBarTrack(
    TSurface& port, const TRectT<int>& rect, TOrientation /*orientation*/, bool /*isEnabled*/) {
	port.FillRect(rect, ScrollBarGround(), 1.0f);
}

void TVortelSkin::DrawScrollBarThumb(
    TSurface& port, const TRectT<int>& rect, TOrientation orientation, bool isHighlighted, bool isEnabled) {
	constexpr int kSideMargin = 3;
	const TColor thumb = MainColor(C::kScrollbar);
	const float strength = !isEnabled ? kDisabled : isHighlighted ? 1.0f : 0.75f;
	const TRectT<int> slim =
	    orientation == kVertical
	        ? TRectT<int>{rect.mLeft + kSideMargin, rect.mTop, rect.mWidth - 2 * kSideMargin, rect.mHeight}
	        : TRectT<int>{rect.mLeft, rect.mTop + kSideMargin, rect.mWidth, rect.mHeight - 2 * kSideMargin};
	const TColor color = Mix(thumb, ScrollBarGround(), strength);
	const TCornerRadii radii = TCornerRadii::All(ScaledBevel(port, kCorner));
	FillInOutline(port, slim, color, radii);
	StrokeOutline(port, slim, color, radii, 1.0f);
}

void TVortelSkin::DrawScrollBarButton(TSurface& port, const TRectT<int>& rect, const TButtonLook& look) {
	const TColor back = ScrollBarGround();
	port.FillRect(rect, back, 1.0f);
	const TColor icon = look.mTextColor.value_or(MainColor(C::kValueBoxFontIcons));
	const bool isLit = look.IsHighlighted() || look.IsSelected();
	DrawButtonContent(
	    port, rect, look,
	    !look.mIsEnabled ? DisabledTextColor(icon, back)
	    : isLit          ? icon * kHover
	                     : icon);
}

TColor TVortelSkin::ScrollBarGround() {
	return MainColor(C::kMainBack) * 0.75f;
}

// The program's own shapes

void TVortelSkin::DrawRotary(
    TSurface& port, const TRectT<int>& rect, float position, bool isHighlighted, bool isEnabled, bool fromMiddle) {
	constexpr float kMiddle = 0.5f;
	const TVortelSkinColors& colors = VortelColors();
	const auto shade = [&](int32_t index) {
		const TColor color = colors.VortelColor(index);
		return isEnabled ? color : Mix(color, PanelColor(), kDisabled);
	};
	const float lift = isHighlighted && isEnabled ? kHover : 1.0f;
	const float radius = static_cast<float>(std::min(rect.mWidth, rect.mHeight)) / 2.0f;
	const TPointT<float> center{
	    static_cast<float>(rect.mLeft) + static_cast<float>(rect.mWidth) / 2.0f,
	    static_cast<float>(rect.mTop) + static_cast<float>(rect.mHeight) / 2.0f};
	port.FillCircle(center, radius, shade(C::kKnobBackground), 1.0f);
	const float outer = radius - 2.0f;
	const float inner = outer * 0.6f;
	const auto ring = [&](float from, float to, int32_t index) {
		const TColor color = lift == 1.0f ? shade(index) : shade(index) * lift;
		FillRingSegment(port, rect, from, to, inner, outer, color);
	};
	position = std::clamp(position, 0.0f, 1.0f);
	const float start = fromMiddle ? std::min(position, kMiddle) : 0.0f;
	const float end = fromMiddle ? std::max(position, kMiddle) : position;
	ring(0.0f, start, C::kKnobInactive);
	ring(end, 1.0f, C::kKnobInactive);
	ring(start, end, C::kKnobActive);
	if (fromMiddle && start == end) {
		// At rest in the middle there is no value to see: a mark says where it begins.
		const float top = center.mY - outer;
		const float bottom = center.mY - inner;
		const std::array<TPointT<float>, 4> mark{
		    {{center.mX - 1.0f, top}, {center.mX + 1.0f, top}, {center.mX + 1.0f, bottom}, {center.mX - 1.0f, bottom}}};
		port.FillPolygon(mark, shade(C::kKnobActive), 1.0f);
	}
}

void TVortelSkin::DrawBlock(TSurface& port, const TRectT<int>& rect, const TColor& color, float opacity) {
	const TRectT<int> inner = rect.Shrunk(1);
	if (!inner.IsEmpty()) {
		const int upper = inner.mHeight / 2;
		const float strength = opacity * 0.8f;
		port.FillRect({inner.mLeft, inner.mTop, inner.mWidth, upper}, color, strength);
		port.FillRect(
		    {inner.mLeft, inner.mTop + upper, inner.mWidth, inner.mHeight - upper}, Mix(color, {0, 0, 0}, 0.9f),
		    strength);
	}
	StrokeOutline(port, rect, color, TCornerRadii::All(ScaledBevel(port, kCorner)), opacity);
}
