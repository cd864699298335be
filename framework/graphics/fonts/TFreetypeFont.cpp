// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/fonts/TFreetypeFont.h"

#include "framework/foundation/files/TLog.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/fonts/TCachedGlyph.h"
#include "framework/graphics/fonts/TFontSettings.h"
#include "framework/graphics/fonts/TGlyphPainter.h"
#include "framework/graphics/fonts/WholePixels.h"
#include "platform/TPlatform.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr const char* kLogCategory = "GraphPort";
constexpr char16_t kLineFeed = 10;

struct TFontNames {
	const char* mFamily;
	const char* mPostScript;
};

/// Fonts of this system that together have nearly every script.
constexpr TFontNames kFallbacks[] = {
    {"DejaVu Sans", "DejaVuSans"},
    {"Noto Sans CJK JP", "NotoSansCJKjp-Regular"},
    {"Droid Sans Fallback", "DroidSansFallback"},
    {"WenQuanYi Zen Hei", "WenQuanYiZenHei"},
    {"Unifont", "Unifont"},
};

void Log(const TString& text) {
	TLog::Instance()->LogString(kLogCategory, text);
}

bool IsWhole(float value) {
	return value == std::trunc(value);
}

TFontFile FindFile(const TFontInfo& info) {
	TPlatform* platform = TPlatform::Instance();
	const TFontFile file =
	    platform ? platform->Fonts().Find(info.mFamilyName, info.mPostScriptName, info.mBold, info.mItalic)
	             : TFontFile{};
	if (file.mPath.IsEmpty())
		throw TReadableException(TString::Format(
		    "Failed to resolve the font file for font '%s'.",
		    info.mPostScriptName.IsEmpty() ? info.mFamilyName : info.mPostScriptName));
	return file;
}

float ScaleOfNow(bool followsUiScale) {
	return followsUiScale ? ScaleValue(CurrentScale()) : 1.0f;
}

} // namespace

class TFreetypeFont::TFallbackFont final : public TReferenceCountable {
public:
	TFallbackFont(const TFontInfo& info, const TPtr<TFreetypeFace>& face) : mInfo(info), mFace(face) {}

	TFontInfo mInfo;
	TPtr<TFreetypeFace> mFace;
};

TFreetypeFont::TFreetypeFont(const TFontSettings& settings, bool followsUiScale)
    : mExtraHorizontalSpacing(settings.mExtraHorizontalSpacing.Get()),
      mExtraVerticalSpacing(settings.mExtraVerticalSpacing.Get()),
      mBaselineOffset(settings.mExtraBaselineOffset.Get()),
      mBold(settings.mBold.Get()),
      mItalic(settings.mItalic.Get()),
      mAntiAlias(settings.mAntiAlias.Get()),
      mAutoHint(settings.mAutoHint.Get()),
      mFollowsUiScale(followsUiScale) {
	const TFontFile file = FindFile({{}, settings.mFamilyName.Get(), settings.mPostScriptName.Get(), mBold, mItalic});
	TakeFace(MakePtr<TFreetypeFace>(
	    file.mPath, file.mFaceIndex, TFreetypeFace::TSize{settings.mWidth.Get(), settings.mHeight.Get()},
	    ScaleOfNow(followsUiScale)));
}

TFreetypeFont::TFreetypeFont(const TFontFileSettings& settings, bool followsUiScale)
    : mBaselineOffset(static_cast<float>(settings.mBaselineOffset.Get())),
      mAntiAlias(settings.mAntiAlias.Get()),
      mAutoHint(settings.mAutoHint.Get()),
      mFollowsUiScale(followsUiScale) {
	const TPointT<int> size = settings.mSize.Get();
	TakeFace(MakePtr<TFreetypeFace>(
	    settings.mFileName.Get(), 0, TFreetypeFace::TSize{static_cast<float>(size.mX), static_cast<float>(size.mY)},
	    ScaleOfNow(followsUiScale)));
}

TFreetypeFont::~TFreetypeFont() = default;

void TFreetypeFont::TakeFace(TPtr<TFreetypeFace> face) {
	mFace = std::move(face);
	mWidth = mFace->Size().mWidth;
	mHeight = mFace->Size().mHeight;
	mHasWholeAdvances = IsWhole(mWidth);
}

TUiScale TFreetypeFont::OwnScale() const {
	return mFollowsUiScale ? CurrentScale() : kUnscaled;
}

// Measuring

int TFreetypeFont::CharWidth(const TSurface& surface, char16_t character) {
	return CharWidth(surface.Scale(), character);
}

int TFreetypeFont::CharWidth(TUiScale scale, char16_t character) {
	return RoundedPixels((Glyph(character, 0).mAdvanceX + mExtraHorizontalSpacing) / ScaleValue(scale));
}

int TFreetypeFont::TextWidth(const TSurface& surface, const TString& text) {
	return TextWidth(surface.Scale(), text);
}

int TFreetypeFont::TextWidth(TUiScale scale, const TString& text) {
	const std::u16string_view characters = text.View();
	float pen = 0.0f;
	float widest = 0.0f;
	for (std::size_t i = 0; i < characters.size(); ++i) {
		if (characters[i] == kLineFeed) {
			pen = 0.0f;
			continue;
		}
		const TCachedGlyph& glyph = Glyph(characters[i], 0);
		if (i > 0)
			pen += static_cast<float>((Kerning(glyph, characters[i - 1], kBefore).mX + 32) >> 6);
		pen += Advance(glyph);
		widest = std::max(widest, pen);
	}
	return RoundedPixels(widest / ScaleValue(scale));
}

int TFreetypeFont::TextHeight(const TString& text) {
	return text.LineCount() * LineHeight();
}

int TFreetypeFont::TextHeight(const TSurface& surface, const TString& text) {
	return text.LineCount() * LineHeight(surface);
}

int TFreetypeFont::LineHeight(const TSurface& surface) {
	return LineHeight(surface.Scale());
}

int TFreetypeFont::LineHeight(TUiScale scale) const {
	return RoundedPixels((LineSpacing() + mExtraVerticalSpacing) / ScaleValue(scale));
}

// Glyphs

const TFreetypeFont::TCachedGlyph& TFreetypeFont::Glyph(char16_t character, int outline) {
	TGlyphs& glyphs = mGlyphs[outline];
	if (const auto known = glyphs.find(character); known != glyphs.end())
		return *known->second;
	const TCachedGlyph::TStyle style{outline, mBaselineOffset, mAntiAlias, mAutoHint};
	const auto glyph = MakePtr<TCachedGlyph>(FaceFor(character), character, style, TPointT<float>{mWidth, mHeight});
	return *glyphs.emplace(character, glyph).first->second;
}

TPtr<TFreetypeFace> TFreetypeFont::FaceFor(char16_t character) {
	if (mFace->GlyphIndex(character) != 0)
		return mFace;
	for (const TPtr<TFallbackFont>& fallback : mFallbackFonts)
		if (fallback->mFace->GlyphIndex(character) != 0)
			return fallback->mFace;
	for (const TFontNames& names : kFallbacks)
		if (const TPtr<TFallbackFont> fallback =
		        TryFallback({{}, names.mFamily, names.mPostScript, mBold, mItalic}, character)) {
			mFallbackFonts.Append(fallback);
			return fallback->mFace;
		}
	return mFace;
}

/// Null for a font that is open already, that cannot be opened, or that does not have the character.
TPtr<TFreetypeFont::TFallbackFont> TFreetypeFont::TryFallback(const TFontInfo& info, char16_t character) const {
	if (std::ranges::any_of(mFallbackFonts, [&](const auto& open) { return open->mInfo == info; }))
		return nullptr;
	Log(TString::Format(
	    "Trying to load Fallbackfont: '%s' (PS-Name: '%s')...", info.mFamilyName, info.mPostScriptName));
	try {
		const TFontFile file = FindFile(info);
		const auto fallback = MakePtr<TFallbackFont>(
		    info, MakePtr<TFreetypeFace>(
		              file.mPath, file.mFaceIndex, TFreetypeFace::TSize{mWidth, mHeight}, ScaleOfNow(mFollowsUiScale)));
		if (fallback->mFace->GlyphIndex(character) != 0) {
			Log("Fallbackfont was successfully loaded.");
			return fallback;
		}
		Log("Fallbackfont was successfully loaded, but can not handle the requested character(s). Skipping...");
	} catch (const TReadableException&) {
		// It has written itself to the log.
	}
	return nullptr;
}

float TFreetypeFont::Advance(const TCachedGlyph& glyph) const {
	const float advance = glyph.mAdvanceX + mExtraHorizontalSpacing;
	return mHasWholeAdvances ? std::round(advance) : advance;
}

TFreetypeFace::TKerning
TFreetypeFont::Kerning(const TCachedGlyph& glyph, char16_t neighbour, TNeighbour whichOne) const {
	if (!glyph.mFace->HasKerning())
		return {};
	const uint32_t other = glyph.mFace->GlyphIndex(neighbour);
	return whichOne == kBefore ? glyph.mFace->Kerning(other, glyph.mIndex) : glyph.mFace->Kerning(glyph.mIndex, other);
}

// Drawing

TPointT<int> TFreetypeFont::DrawText(
    TSurface& surface, TPointT<int> point, const TString& text, const TColor& color, int maskMode, float opacity) {
	return DrawOutlinedText(surface, point, text, color, 0, maskMode, opacity);
}

TPointT<int> TFreetypeFont::DrawOutlinedText(
    TSurface& surface, TPointT<int> point, const TString& text, const TColor& color, int outline, int maskMode,
    float opacity) {
	TGlyphPainter painter(surface, color, maskMode, opacity);
	return WalkText(painter.Scale(), point, text, outline, [&](const TCachedGlyph& glyph, TPointT<int> pen) {
		painter.Draw(glyph, pen);
	});
}

TPointT<int> TFreetypeFont::DrawThresholdText(
    TSurface& surface, TPointT<int> point, const TString& text, const TColor& colorHigh, const TColor& colorLow,
    TPair<float, float> thresholds, float opacity) {
	const int mean = (colorHigh.mRed + colorHigh.mGreen + colorHigh.mBlue) / 3;
	const bool isDark = static_cast<float>(mean) / 255.0f <= 0.3f;
	TGlyphPainter painter(
	    surface, colorHigh, opacity, isDark ? TGlyphPainter::DarkTable() : TGlyphPainter::LightTable());
	return WalkText(painter.Scale(), point, text, 0, [&](const TCachedGlyph& glyph, TPointT<int> pen) {
		painter.DrawThreshold(glyph, pen, colorLow, thresholds);
	});
}

/// draw(glyph, pen) for each character, in surface pixels.
template <class TDraw>
TPointT<int>
TFreetypeFont::WalkText(TUiScale scale, TPointT<int> point, const TString& text, int outline, const TDraw& draw) {
	const TPointT<int> corner = Scaled(point, scale);
	const std::u16string_view characters = text.View();
	TPen pen{static_cast<float>(-outline), static_cast<float>(-outline)};
	for (std::size_t i = 0; i < characters.size(); ++i) {
		if (characters[i] == kLineFeed) {
			pen.mX = 0.0f;
			pen.mY += LineSpacing() + mExtraVerticalSpacing;
			continue;
		}
		const TCachedGlyph& glyph = Glyph(characters[i], outline);
		if (i > 0) {
			const TFreetypeFace::TKerning kerning = Kerning(glyph, characters[i - 1], kBefore);
			pen.mX += static_cast<float>(kerning.mX) / 64.0f;
			pen.mY += static_cast<float>(kerning.mY) / 64.0f;
		}
		draw(glyph, pen.PlaceFrom(corner));
		pen.mX += Advance(glyph);
	}
	return pen.End(outline, scale);
}

TPointT<int> TFreetypeFont::DrawRotatedText(
    TSurface& surface, TPointT<int> point, const TString& text, const TColor& color, int rotation, int maskMode,
    float opacity) {
	return DrawOutlinedRotatedText(surface, point, text, color, 0, rotation, maskMode, opacity);
}

TPointT<int> TFreetypeFont::DrawOutlinedRotatedText(
    TSurface& surface, TPointT<int> point, const TString& text, const TColor& color, int outline, int rotation,
    int maskMode, float opacity) {
	if (rotation < kClockwise || rotation > kCounterClockwise)
		return DrawOutlinedText(surface, point, text, color, outline, maskMode, opacity);
	TGlyphPainter painter(surface, color, maskMode, opacity);
	const TPointT<int> corner = Scaled(point, painter.Scale());
	const std::u16string_view characters = text.View();
	const bool isUpright = rotation == kMirrored;
	const bool isBackwards = rotation != kClockwise;
	const TNeighbour partner = rotation == kCounterClockwise ? kAfter : kBefore;
	TPen pen{static_cast<float>(-outline), static_cast<float>(-outline)};
	float& along = isUpright ? pen.mX : pen.mY;
	float& across = isUpright ? pen.mY : pen.mX;
	for (std::size_t step = 0; step < characters.size(); ++step) {
		const std::size_t i = isBackwards ? characters.size() - 1 - step : step;
		if (characters[i] == kLineFeed) {
			along = 0.0f;
			across += LineSpacing() + mExtraVerticalSpacing;
			continue;
		}
		const TCachedGlyph& glyph = Glyph(characters[i], outline);
		const std::size_t other = partner == kAfter ? i + 1 : i - 1;
		if (other < characters.size())
			along += static_cast<float>(Kerning(glyph, characters[other], partner).mX) / 64.0f;
		painter.DrawRotated(
		    glyph, pen.PlaceFrom(corner), rotation, RoundedPixels(glyph.mAdvanceX + mExtraHorizontalSpacing),
		    TruncatedPixels(LineSpacing()));
		along += Advance(glyph);
	}
	return pen.End(outline, painter.Scale());
}

TPointT<int> TFreetypeFont::TPen::PlaceFrom(TPointT<int> corner) const {
	return corner + TPointT<int>{TruncatedPixels(mX), TruncatedPixels(mY)};
}

TPointT<int> TFreetypeFont::TPen::End(int outline, TUiScale scale) const {
	const float scaleValue = ScaleValue(scale);
	const auto width = static_cast<float>(outline);
	return {TruncatedPixels((mX + width) / scaleValue), TruncatedPixels((mY + width) / scaleValue)};
}
