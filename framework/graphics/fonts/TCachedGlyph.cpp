// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/fonts/TCachedGlyph.h"

#include "framework/foundation/memory/Memory.h"
#include "framework/graphics/fonts/WholePixels.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_GLYPH_H
#include FT_STROKER_H

namespace {

/// A glyph of FreeType's own, freed at its end.
class TOwnedGlyph {
public:
	TOwnedGlyph() = default;

	~TOwnedGlyph() {
		if (mpGlyph)
			FT_Done_Glyph(mpGlyph);
	}

	TOwnedGlyph(const TOwnedGlyph&) = delete;
	TOwnedGlyph& operator=(const TOwnedGlyph&) = delete;

	bool Take(FT_GlyphSlot slot) { return FT_Get_Glyph(slot, &mpGlyph) == 0; }

	/// Draws the outline's line instead of its area.
	bool Stroke(int width) {
		FT_Stroker stroker = nullptr;
		if (FT_Stroker_New(TFreetypeUse::Library(), &stroker) != 0)
			return false;
		FT_Stroker_Set(stroker, FT_Fixed{width} * 64, FT_STROKER_LINECAP_BUTT, FT_STROKER_LINEJOIN_ROUND, 0);
		const bool isStroked = FT_Glyph_Stroke(&mpGlyph, stroker, 1) == 0;
		FT_Stroker_Done(stroker);
		return isStroked;
	}

	bool Render(FT_Render_Mode mode) { return FT_Glyph_To_Bitmap(&mpGlyph, mode, nullptr, 1) == 0; }

	const FT_BitmapGlyphRec_& Bitmap() const { return *reinterpret_cast<FT_BitmapGlyph>(mpGlyph); }

private:
	FT_Glyph mpGlyph = nullptr;
};

bool Render(TOwnedGlyph& glyph, const TFreetypeFont::TCachedGlyph::TStyle& style) {
	if (style.mOutline <= 0)
		return glyph.Render(style.mAntiAlias ? FT_RENDER_MODE_NORMAL : FT_RENDER_MODE_MONO);
	if (!glyph.Stroke(style.mOutline))
		return false;
	return (!style.mAntiAlias && glyph.Render(FT_RENDER_MODE_MONO)) || glyph.Render(FT_RENDER_MODE_NORMAL);
}

FT_Int32 LoadFlags(const TFreetypeFont::TCachedGlyph::TStyle& style) {
	return (style.mAntiAlias ? FT_LOAD_DEFAULT : FT_LOAD_TARGET_MONO) |
	       (style.mAutoHint ? FT_LOAD_FORCE_AUTOHINT : FT_LOAD_DEFAULT);
}

} // namespace

TFreetypeFont::TCachedGlyph::TCachedGlyph(
    const TPtr<TFreetypeFace>& face, char16_t character, const TStyle& style, TPointT<float> defaultAdvance)
    : mAdvanceX(defaultAdvance.mX),
      mAdvanceY(defaultAdvance.mY),
      mFace(face),
      mIndex(face->GlyphIndex(character)) {
	const auto lock = TFreetypeUse::Lock();
	Load(character, style);
}

TFreetypeFont::TCachedGlyph::~TCachedGlyph() {
	Memory::Free(mBuffer);
}

void TFreetypeFont::TCachedGlyph::Load(char16_t character, const TStyle& style) {
	FT_Face face = mFace->Face();
	TOwnedGlyph glyph;
	if (FT_Load_Char(face, character, LoadFlags(style)) != 0 || !glyph.Take(face->glyph) || !Render(glyph, style))
		return;
	TakeBitmap(glyph.Bitmap(), style);
	mAdvanceX = static_cast<float>(face->glyph->advance.x) / 64.0f;
	mAdvanceY = static_cast<float>(face->glyph->advance.y) / 64.0f;
}

void TFreetypeFont::TCachedGlyph::TakeBitmap(const FT_BitmapGlyphRec_& glyph, const TStyle& style) {
	const FT_Bitmap& bitmap = glyph.bitmap;
	const float ascender = mFace->Ascender();
	mBitmapX = style.mOutline + glyph.left;
	mBitmapY = style.mOutline + TruncatedPixels(ascender - static_cast<float>(glyph.top) + style.mBaselineOffset) + 1;
	mOriginX = style.mOutline;
	mOriginY = style.mOutline + TruncatedPixels(ascender + style.mBaselineOffset) + 1;
	const bool isMono = bitmap.pixel_mode == FT_PIXEL_MODE_MONO;
	const bool isGray = bitmap.pixel_mode == FT_PIXEL_MODE_GRAY && bitmap.num_grays > 1;
	if (!(isMono || isGray) || bitmap.pitch <= 0 || !bitmap.buffer)
		return;
	const std::size_t size = static_cast<std::size_t>(bitmap.rows) * static_cast<std::size_t>(bitmap.pitch);
	mBuffer = static_cast<uint8_t*>(Memory::Allocate("#FreeTypeGlyphCache", size));
	Memory::CopyMemory(mBuffer, bitmap.buffer, size);
	mRows = static_cast<int>(bitmap.rows);
	mWidth = static_cast<int>(bitmap.width);
	mPitch = bitmap.pitch;
	mGrayLevels = static_cast<short>(bitmap.num_grays);
	mPixelMode = isMono ? kOneBit : kOneByte;
}
