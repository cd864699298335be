// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/fonts/TCachedGlyph.h"
#include "framework/graphics/surfaces/TDeviceAccess.h"

#include <array>
#include <cstdint>

/// Puts glyphs onto a surface: the coverage of a pixel goes through a table that fits the brightness of the text and
/// blends the colour into what is there. For its life it has the surface in surface pixels.
class TGlyphPainter {
public:
	/// Fills from coverage: 256 steps and the full one. Light text grows by e^t - 1, dark text by t^1.25.
	using TGammaTable = std::array<float, 257>;

	static const TGammaTable& LightTable();
	static const TGammaTable& DarkTable();

	TGlyphPainter(TSurface& surface, const TColor& color, int maskMode, float opacity);
	/// For threshold text, which goes by another measure of brightness.
	TGlyphPainter(TSurface& surface, const TColor& color, float opacity, const TGammaTable& table);

	/// The scale that the surface has outside.
	TUiScale Scale() const noexcept { return mAccess.Scale(); }

	void Draw(const TFreetypeFont::TCachedGlyph& glyph, TPointT<int> pen);
	/// Turned: the place of the glyph's pixel (0, 0) and which way the turned axes run are the caller's.
	void
	DrawRotated(const TFreetypeFont::TCachedGlyph& glyph, TPointT<int> pen, int rotation, int advance, int lineSpacing);
	/// Without blending, see TFont::DrawThresholdText. Glyphs of one bit are drawn as by Draw.
	void DrawThreshold(
	    const TFreetypeFont::TCachedGlyph& glyph, TPointT<int> pen, const TColor& low, TPair<float, float> thresholds);

private:
	using TGlyph = TFreetypeFont::TCachedGlyph;

	TGlyphPainter(TSurface& surface, const TColor& color, int maskMode, float opacity, const TGammaTable& table);

	float Coverage(const TGlyph& glyph, uint8_t value) const;
	void PrepareFor(const TGlyph& glyph);
	template <class TPut>
	void VisitGray(const TGlyph& glyph, TPointT<int> pen, const TPut& put) const;
	template <class TPlace, class TPut>
	void VisitPlaced(const TGlyph& glyph, const TPlace& place, const TPut& put) const;
	void PutGray(const TGlyph& glyph, TPointT<int> point, uint8_t value);
	void PutMono(TPointT<int> point);
	bool PutIntoMask(TPointT<int> point, float coverage);

	TSurface& mSurface;
	TDeviceAccess mAccess;
	const TRectT<int> mClip; // surface pixels
	const TColor mColor;
	const int mMaskMode;
	const float mOpacity;
	const TGammaTable& mTable;
	const uint32_t mMappedColor;
	uint8_t* const mPixels; // of 32 bits, where they may be written straight
	const int mRowBytes;
	// By the glyph's byte, for bitmaps of mGrayLevels: how much of the colour, in 256ths.
	std::array<uint16_t, 256> mWeights;
	int mGrayLevels = 0;
};
