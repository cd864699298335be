// SPDX-License-Identifier: GPL-3.0-or-later
// What lists, menus, scroll bars and sliders are made of, and the pieces of all shapes.

#include "framework/graphics/bitmaps/TPanelTexture.h"
#include "framework/graphics/skin/TSkin.h"
#include "framework/graphics/skin/TSkinColors.h"
#include "framework/graphics/surfaces/TClipGuard.h"
#include "framework/graphics/surfaces/TDeviceAccess.h"
#include "framework/graphics/surfaces/TGraphPort.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace {

using C = TSkinColors;

} // namespace

// Boxes with text

void TSkin::DrawTextBoxFrame(TSurface& port, const TRectT<int>& rect, bool isEnabled, bool isEditing) {
	const TColor back = MainColor(C::kValueBoxBack);
	port.FillRect(rect.Shrunk(1), isEnabled ? back : Mix(back, MainColor(C::kBodyBack), 0.5f), 1.0f);
	StrokeOutline(port, rect, isEditing ? MainColor(C::kSelectionBack) : InnerFrameShadowColor(), {}, 1.0f);
}

void TSkin::DrawValueBox(
    TSurface& port, const TRectT<int>& rect, const TString& text, int32_t font, TTextAlign align, bool isEnabled) {
	DrawTextBoxFrame(port, rect, isEnabled, false);
	if (rect.mWidth < 3 || rect.mHeight < 3)
		return;
	const TColor color = MainColor(C::kValueBoxFont);
	const TClipGuard clip(port, rect.Shrunk(1), TClipGuard::kIntersect);
	DrawText(port, rect, text, isEnabled ? color : DisabledTextColor(color, MainColor(C::kValueBoxBack)), font, align);
}

void TSkin::DrawCaret(TSurface& port, const TRectT<int>& rect, const TColor& color) {
	port.FillRect({rect.mLeft, rect.mTop, std::min(rect.mWidth, 1), rect.mHeight}, color, 1.0f);
}

TPointT<int> TSkin::TextPosition(const TRectT<int>& rect, TPointT<int> textSize, TTextAlign align) {
	constexpr int kMargin = 2;
	int x = kMargin;
	if (align == kAlignRight)
		x = rect.mWidth - textSize.mX - kMargin;
	else if (align == kAlignCenter)
		x = (rect.mWidth - textSize.mX) / 2;
	return {rect.mLeft + x, rect.mTop + (rect.mHeight - textSize.mY) / 2};
}

void TSkin::DrawText(
    TSurface& port, const TRectT<int>& rect, const TString& text, const TColor& color, int32_t font, TTextAlign align) {
	const TPointT<int> size{port.TextWidth(text, font), port.TextHeight(text, font)};
	port.DrawText(TextPosition(rect, size, align), text, color, font);
}

// Scroll bars and sliders

void TSkin::DrawScrollBarTrack(
    TSurface& port, const TRectT<int>& rect, TOrientation /*orientation*/, bool /*isEnabled*/) {
	Texture(kInnerBodyTexture, kNormal).DrawRect(port, rect);
	StrokeOutline(port, rect, InnerFrameShadowColor(), {}, 1.0f);
}

void TSkin::DrawScrollBarThumb(
    TSurface& port, const TRectT<int>& rect, TOrientation orientation, bool isHighlighted, bool isEnabled) {
	const TTextureGroup group = orientation == kVertical ? kVerticalScrollBarTexture : kHorizontalScrollBarTexture;
	const TState state = !isEnabled ? kDimmed : isHighlighted ? kHighlighted : kNormal;
	Texture(group, state).DrawRect(port, rect);
	DrawBevel(port, rect, kSquareBevel, 0.25f);
	StrokeOutline(port, rect, ShadowEdgeColor(MainColor(C::kScrollbar)), {}, 1.0f);
}

void TSkin::DrawSliderBar(TSurface& port, const TRectT<int>& rect, TOrientation orientation, TState state) {
	Texture(orientation == kVertical ? kVerticalSliderBarTexture : kHorizontalSliderBarTexture, state)
	    .DrawRect(port, rect);
	StrokeOutline(port, rect, ShadowEdgeColor(MainColor(C::kSlider)), {}, 1.0f);
}

void TSkin::DrawSliderCap(TSurface& port, const TRectT<int>& rect, TOrientation orientation, TState state) {
	Texture(orientation == kVertical ? kVerticalSliderCapTexture : kHorizontalSliderCapTexture, state)
	    .DrawRect(port, rect);
	DrawBevel(port, rect, kSquareBevel, 0.25f);
	StrokeOutline(port, rect, ShadowEdgeColor(MainColor(C::kSlider)), {}, 1.0f);
}

void TSkin::DrawRotary(
    TSurface& port, const TRectT<int>& rect, float position, bool isHighlighted, bool isEnabled, bool fromMiddle) {
	const TState state = !isEnabled ? kDimmed : isHighlighted ? kHighlighted : kNormal;
	const float radius = static_cast<float>(std::min(rect.mWidth, rect.mHeight)) / 2.0f - 2.0f;
	const float start = fromMiddle ? std::min(position, 0.5f) : 0.0f;
	const float end = fromMiddle ? std::max(position, 0.5f) : position;
	FillRingSegment(port, rect, 0.0f, 1.0f, radius * 0.6f, radius, InnerFrameShadowColor());
	FillRingSegment(port, rect, start, end, radius * 0.6f, radius, StateColor(MainColor(C::kSlider), state));
}

// Lists, menus and what floats

void TSkin::DrawListEntryBackground(TSurface& port, const TRectT<int>& rect, TEntryState state) {
	switch (state) {
	case kEntryAtRest:
		return;
	case kEntryHovered:
		return port.FillRect(rect, MainColor(C::kStrongBodyFont), 0.06f);
	case kEntrySelected:
		return port.FillRect(rect, MainColor(C::kSelectionBack), 1.0f);
	case kEntrySelectedStandBy:
		return port.FillRect(rect, MainColor(C::kStandBySelectionBack), 1.0f);
	}
}

TColor TSkin::ListEntryTextColor(TEntryState state) const {
	switch (state) {
	case kEntrySelected:
		return MainColor(C::kSelectionFont);
	case kEntrySelectedStandBy:
		return MainColor(C::kStandBySelectionFont);
	case kEntryHovered:
		return MainColor(C::kValueBoxFont) * 1.2f;
	case kEntryAtRest:
		break;
	}
	return MainColor(C::kValueBoxFont);
}

void TSkin::DrawMenuEntryBackground(TSurface& port, const TRectT<int>& rect, bool isHighlighted) {
	if (isHighlighted)
		port.FillRect(rect, MainColor(C::kSelectionBack), 1.0f);
}

void TSkin::DrawMenuSeparator(TSurface& port, const TRectT<int>& rect) {
	const TColor color = Mix(MainColor(C::kStrongBodyFont), MainColor(C::kBodyBack), 0.2f);
	port.FillRect({rect.mLeft, rect.mTop + rect.mHeight / 2, rect.mWidth, 1}, color, 1.0f);
}

void TSkin::DrawCheckMark(TSurface& port, const TRectT<int>& rect, const TColor& color) {
	constexpr float kWidth = 1.75f;
	const float left = static_cast<float>(rect.mLeft) + static_cast<float>(rect.mWidth) / 2.0f;
	const float top = static_cast<float>(rect.mTop) + static_cast<float>(rect.mHeight) / 2.0f;
	const std::array<TPointT<float>, 3> tick{
	    {{left - 3.5f, top + 0.25f}, {left - 1.0f, top + 2.75f}, {left + 3.75f, top - 2.75f}}};
	port.StrokePolyline(tick, color, kWidth * LineWidth(port), 1.0f);
}

void TSkin::DrawToolTipBackground(TSurface& port, const TRectT<int>& rect) {
	port.FillRect(rect, MainColor(C::kToolTipBack), 1.0f);
}

void TSkin::DrawFocusFrame(TSurface& port, const TRectT<int>& rect, float opacity) {
	StrokeOutline(port, rect, MainColor(C::kSelectionBack), TCornerRadii::All(ScaledBevel(port, 2.0f)), opacity);
}

void TSkin::DrawDragText(TSurface& port, const TRectT<int>& rect, const TString& text, int32_t font, float opacity) {
	port.FillRect(rect, MainColor(C::kSelectionBack), opacity);
	if (TFont* face = TGraphPort::Instance()->Font(font)) {
		const TPointT<int> size{face->TextWidth(port, text), face->TextHeight(port, text)};
		face->DrawText(
		    port, TextPosition(rect, size, kAlignCenter), text, MainColor(C::kSelectionFont), TFont::kLeaveMask,
		    opacity);
	}
}

void TSkin::DrawShadow(TSurface& port, const TRectT<int>& rect, int32_t size, float opacity) {
	const TRectT<int> lower{rect.mLeft, rect.mTop + size / 2, rect.mWidth, rect.mHeight};
	for (int32_t distance = 1; distance <= size; ++distance) {
		const float share = 1.0f - (static_cast<float>(distance) - 0.5f) / static_cast<float>(size);
		StrokeOutline(
		    port, lower.Shrunk(-distance), {}, TCornerRadii::All(static_cast<float>(distance) * LineWidth(port)),
		    opacity * share * share);
	}
	port.FillRect({rect.mLeft, rect.Bottom(), rect.mWidth, size / 2}, {}, opacity);
}

// Pieces

void TSkin::DrawBevel(TSurface& port, const TRectT<int>& rect, TBevelStyle style, float amount) {
	constexpr TColor kBright{255, 255, 255};
	constexpr TColor kDark{0, 0, 0};
	const float opacity = std::min(ScaledBevel(port, amount), 1.0f);
	const int corner = static_cast<int>(std::lround(ScaledBevel(port, 3.0f))) - 1;
	const int left = style == kSquareBevel || style == kRightRoundBevel ? 0 : corner;
	const int right = style == kSquareBevel || style == kLeftRoundBevel ? 0 : corner;
	const TRectT<int> inner = rect.Shrunk(1);
	if (inner.IsEmpty())
		return;
	const int width = std::max(0, inner.mWidth - left - right);
	const auto fillSide = [&](int x, int trim, const TColor& color) {
		port.FillRect(
		    {x, inner.mTop + std::max(1, trim), 1, std::max(0, inner.mHeight - 2 * std::max(1, trim))}, color, opacity);
	};
	port.FillRect({inner.mLeft + left, inner.mTop, width, 1}, kBright, opacity);
	port.FillRect({inner.mLeft + left, inner.Bottom() - 1, width, 1}, kDark, opacity);
	fillSide(inner.mLeft, left, kBright);
	fillSide(inner.Right() - 1, right, kDark);
}

void TSkin::FillGradient(TSurface& port, const TRectT<int>& rect, const TColor& top, const TColor& bottom) {
	TRectT<int> rows = rect;
	const TDeviceAccess access(port, &rows);
	for (int y = 0; y < rows.mHeight; ++y) {
		const float share = rows.mHeight > 1 ? static_cast<float>(y) / static_cast<float>(rows.mHeight - 1) : 0.0f;
		port.FillRect({rows.mLeft, rows.mTop + y, rows.mWidth, 1}, Mix(top, bottom, 1.0f - share), 1.0f);
	}
}

void TSkin::FillFade(
    TSurface& port, const TRectT<int>& rect, const TColor& color, float startOpacity, float endOpacity,
    TOrientation orientation) {
	TRectT<int> area = rect;
	const TDeviceAccess access(port, &area);
	const int steps = orientation == kVertical ? area.mHeight : area.mWidth;
	for (int i = 0; i < steps; ++i) {
		const float share = steps > 1 ? static_cast<float>(i) / static_cast<float>(steps - 1) : 0.0f;
		const TRectT<int> step = orientation == kVertical ? TRectT<int>{area.mLeft, area.mTop + i, area.mWidth, 1}
		                                                  : TRectT<int>{area.mLeft + i, area.mTop, 1, area.mHeight};
		port.FillRect(step, color, startOpacity + (endOpacity - startOpacity) * share);
	}
}

void TSkin::StrokeOutline(
    TSurface& port, const TRectT<int>& rect, const TColor& color, const TCornerRadii& radii, float opacity) {
	if (rect.IsEmpty())
		return;
	if (radii != TCornerRadii{}) {
		port.StrokeRoundedRect(rect, color, LineWidth(port), radii, opacity);
		return;
	}
	port.FillRect({rect.mLeft, rect.mTop, rect.mWidth, 1}, color, opacity);
	if (rect.mHeight < 2)
		return;
	port.FillRect({rect.mLeft, rect.Bottom() - 1, rect.mWidth, 1}, color, opacity);
	port.FillRect({rect.mLeft, rect.mTop + 1, 1, rect.mHeight - 2}, color, opacity);
	if (rect.mWidth > 1)
		port.FillRect({rect.Right() - 1, rect.mTop + 1, 1, rect.mHeight - 2}, color, opacity);
}

void TSkin::FillInOutline(TSurface& port, const TRectT<int>& rect, const TColor& color, const TCornerRadii& radii) {
	const auto within = [](float radius) { return std::max(radius - 1.0f, 0.0f); };
	port.FillRoundedRect(
	    rect, color,
	    {within(radii.mTopLeft), within(radii.mTopRight), within(radii.mBottomLeft), within(radii.mBottomRight)}, 1.0f);
}

void TSkin::FillRingSegment(
    TSurface& port, const TRectT<int>& rect, float from, float to, float inner, float outer, const TColor& color) {
	constexpr float kStart = 0.35f; // of a turn, clockwise from the right
	constexpr float kSweep = 0.79999995f;
	constexpr int kMostSegments = 400;
	const int segments = std::min(std::max(2, static_cast<int>(outer * std::numbers::pi_v<float>)) & ~1, kMostSegments);
	const auto place = [segments](float position) {
		const float onRing = position > 0.0f ? std::min(position, 1.0f) : 0.0f; // what is no number lies at the start
		return static_cast<int>(std::lround(onRing * static_cast<float>(segments)));
	};
	const int first = place(from);
	const int last = place(to);
	if (first >= last || outer <= 0.0f)
		return;
	const TPointT<float> center{
	    static_cast<float>(rect.mLeft) + static_cast<float>(rect.mWidth) / 2.0f,
	    static_cast<float>(rect.mTop) + static_cast<float>(rect.mHeight) / 2.0f};
	// One outline instead of a quad for each segment, so that no seams show.
	std::array<TPointT<float>, 2 * (kMostSegments + 1)> points;
	const int corners = last - first + 1;
	for (int i = 0; i < corners; ++i) {
		const float turn = kStart + kSweep * static_cast<float>(first + i) / static_cast<float>(segments);
		const float angle = turn * 2.0f * std::numbers::pi_v<float>;
		const TPointT<float> direction{std::cos(angle), std::sin(angle)};
		points[static_cast<std::size_t>(i)] = {center.mX + direction.mX * outer, center.mY + direction.mY * outer};
		points[static_cast<std::size_t>(2 * corners - 1 - i)] = {
		    center.mX + direction.mX * inner, center.mY + direction.mY * inner};
	}
	port.FillPolygon(std::span(points).first(static_cast<std::size_t>(2 * corners)), color, 1.0f);
}
