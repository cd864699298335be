// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/fonts/TGlyphPainter.h"

#include "framework/graphics/surfaces/TAlphaMask.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kDarkestLightText = 0.3f; // text up to this brightness counts as dark
constexpr float kNothing = 0.0000001f;
constexpr float kSolid = 0.99999f;

template <class TFill>
TGlyphPainter::TGammaTable FilledTable(const TFill& fill) {
	TGlyphPainter::TGammaTable table;
	for (std::size_t i = 0; i < table.size(); ++i)
		table[i] = static_cast<float>(fill(static_cast<double>(i) / 256.0));
	return table;
}

const TGlyphPainter::TGammaTable& TableFor(const TColor& color) {
	const float value = static_cast<float>(std::max({color.mRed, color.mGreen, color.mBlue})) / 255.0f;
	return value <= kDarkestLightText ? TGlyphPainter::DarkTable() : TGlyphPainter::LightTable();
}

/// Mix, on the three channels of a pixel at once. weight: 0 to 256.
uint32_t Blend(uint32_t color, uint32_t old, uint32_t weight) {
	constexpr uint32_t kRedAndBlue = 0x00FF00FF;
	constexpr uint32_t kGreen = 0x0000FF00;
	const uint32_t rest = 256 - weight;
	const uint32_t redAndBlue = ((old & kRedAndBlue) * rest + (color & kRedAndBlue) * weight) >> 8;
	const uint32_t green = ((old & kGreen) * rest + (color & kGreen) * weight) >> 8;
	return (redAndBlue & kRedAndBlue) | (green & kGreen) | 0xFF000000;
}

} // namespace

const TGlyphPainter::TGammaTable& TGlyphPainter::LightTable() {
	static const TGammaTable kTable = FilledTable([](double t) { return std::min(1.0, std::exp(t) - 1.0); });
	return kTable;
}

const TGlyphPainter::TGammaTable& TGlyphPainter::DarkTable() {
	static const TGammaTable kTable = FilledTable([](double t) { return std::pow(t, 1.25); });
	return kTable;
}

TGlyphPainter::TGlyphPainter(TSurface& surface, const TColor& color, int maskMode, float opacity)
    : TGlyphPainter(surface, color, maskMode, opacity, TableFor(color)) {}

TGlyphPainter::TGlyphPainter(TSurface& surface, const TColor& color, float opacity, const TGammaTable& table)
    : TGlyphPainter(surface, color, TFont::kLeaveMask, opacity, table) {}

TGlyphPainter::TGlyphPainter(
    TSurface& surface, const TColor& color, int maskMode, float opacity, const TGammaTable& table)
    : mSurface(surface),
      mAccess(surface),
      mClip(opacity > 0.0f ? surface.ClipRect() : TRectT<int>{}),
      mColor(color),
      mMaskMode(surface.AlphaMask() ? maskMode : TFont::kLeaveMask),
      mOpacity(opacity),
      mTable(table),
      mMappedColor(surface.MapColor(color)),
      mPixels(mMaskMode == TFont::kLeaveMask && surface.BitDepth() == 32 ? surface.Pixels() : nullptr),
      mRowBytes(surface.RowBytes()) {}

float TGlyphPainter::Coverage(const TGlyph& glyph, uint8_t value) const {
	const float step = static_cast<float>(value) / static_cast<float>(glyph.mGrayLevels - 1) * 256.0f;
	return mTable[std::min<std::size_t>(static_cast<std::size_t>(step), 256)] * mOpacity;
}

void TGlyphPainter::PrepareFor(const TGlyph& glyph) {
	if (!mPixels || glyph.mPixelMode != TGlyph::kOneByte || glyph.mGrayLevels == mGrayLevels)
		return;
	mGrayLevels = glyph.mGrayLevels;
	for (std::size_t value = 0; value < mWeights.size(); ++value)
		mWeights[value] =
		    static_cast<uint16_t>(std::min(Coverage(glyph, static_cast<uint8_t>(value)) * 256.0f, 256.0f));
}

/// put(point, byte) for the visible part of a bitmap with a byte for each pixel.
template <class TPut>
void TGlyphPainter::VisitGray(const TGlyph& glyph, TPointT<int> pen, const TPut& put) const {
	const TRectT<int> rect{pen.mX + glyph.mBitmapX, pen.mY + glyph.mBitmapY, glyph.mWidth, glyph.mRows};
	const TRectT<int> visible = rect.Intersected(mClip);
	for (int y = visible.mTop; y < visible.Bottom(); ++y) {
		const uint8_t* row = glyph.mBuffer + static_cast<std::ptrdiff_t>(y - rect.mTop) * glyph.mPitch;
		for (int x = visible.mLeft; x < visible.Right(); ++x)
			if (const uint8_t value = row[x - rect.mLeft])
				put(TPointT<int>{x, y}, value);
	}
}

/// put(point, byte) for all pixels of a bitmap that are set and fall into the clip; the byte is 255 for those of one
/// bit. place: from a pixel of the bitmap to one of the surface.
template <class TPlace, class TPut>
void TGlyphPainter::VisitPlaced(const TGlyph& glyph, const TPlace& place, const TPut& put) const {
	for (int y = 0; y < glyph.mRows; ++y) {
		const uint8_t* row = glyph.mBuffer + static_cast<std::ptrdiff_t>(y) * glyph.mPitch;
		for (int x = 0; x < glyph.mWidth; ++x) {
			const bool isMono = glyph.mPixelMode == TGlyph::kOneBit;
			const uint8_t value = isMono ? static_cast<uint8_t>((row[x / 8] << (x % 8) & 0x80) ? 255 : 0) : row[x];
			if (value == 0)
				continue;
			const TPointT<int> point = place(x, y);
			if (mClip.Contains(point))
				put(point, value);
		}
	}
}

void TGlyphPainter::Draw(const TGlyph& glyph, TPointT<int> pen) {
	const TPointT<int> corner{pen.mX + glyph.mBitmapX, pen.mY + glyph.mBitmapY};
	if (TRectT<int>{corner.mX, corner.mY, glyph.mWidth, glyph.mRows}.Intersected(mClip).IsEmpty())
		return;
	PrepareFor(glyph);
	if (glyph.mPixelMode == TGlyph::kOneBit)
		VisitPlaced(
		    glyph,
		    [&](int x, int y) {
			    return corner + TPointT<int>{x, y};
		    },
		    [&](TPointT<int> point, uint8_t) { PutMono(point); });
	else
		VisitGray(glyph, pen, [&](TPointT<int> point, uint8_t value) { PutGray(glyph, point, value); });
}

void TGlyphPainter::DrawRotated(const TGlyph& glyph, TPointT<int> pen, int rotation, int advance, int lineSpacing) {
	const int width = glyph.mWidth;
	const int height = glyph.mRows;
	PrepareFor(glyph);
	const auto draw = [&](TPointT<int> offset, const auto& turn) {
		const TPointT<int> corner = pen + offset;
		const auto place = [&](int x, int y) { return corner + turn(x, y); };
		if (glyph.mPixelMode == TGlyph::kOneBit)
			VisitPlaced(glyph, place, [&](TPointT<int> point, uint8_t) { PutMono(point); });
		else
			VisitPlaced(glyph, place, [&](TPointT<int> point, uint8_t value) { PutGray(glyph, point, value); });
	};
	using TPoint = TPointT<int>;
	if (rotation == TFont::kClockwise)
		draw({lineSpacing - height - glyph.mBitmapY, glyph.mBitmapX}, [&](int x, int y) {
			return TPoint{height - y, x};
		});
	else if (rotation == TFont::kMirrored)
		draw({advance - width - glyph.mBitmapX, glyph.mBitmapY}, [&](int x, int y) { return TPoint{width - x, y}; });
	else
		draw({glyph.mBitmapY, advance - width - glyph.mBitmapX}, [&](int x, int y) { return TPoint{y, width - x}; });
}

void TGlyphPainter::DrawThreshold(
    const TGlyph& glyph, TPointT<int> pen, const TColor& low, TPair<float, float> thresholds) {
	if (glyph.mPixelMode == TGlyph::kOneBit)
		return Draw(glyph, pen);
	VisitGray(glyph, pen, [&](TPointT<int> point, uint8_t value) {
		const float coverage = Coverage(glyph, value);
		if (coverage >= thresholds.mSecond)
			mSurface.SetPixel(point, mColor, 1.0f);
		else if (coverage >= thresholds.mFirst)
			mSurface.SetPixel(point, low, 1.0f);
	});
}

void TGlyphPainter::PutGray(const TGlyph& glyph, TPointT<int> point, uint8_t value) {
	if (mPixels) {
		// SetPixel with the same coverage would do the same.
		uint8_t* row = mPixels + static_cast<std::ptrdiff_t>(point.mY) * mRowBytes;
		uint32_t& pixel = reinterpret_cast<uint32_t*>(row)[point.mX];
		pixel = Blend(mMappedColor, pixel, mWeights[value]);
		return;
	}
	const float coverage = Coverage(glyph, value);
	if (coverage > kNothing && !PutIntoMask(point, coverage))
		mSurface.SetPixel(point, mColor, coverage);
}

void TGlyphPainter::PutMono(TPointT<int> point) {
	const float coverage = mOpacity >= kSolid ? 1.0f : mOpacity;
	if (!PutIntoMask(point, coverage))
		mSurface.SetPixel(point, mColor, coverage);
}

/// False without a mask that wants it: the pixel is then still to be drawn.
bool TGlyphPainter::PutIntoMask(TPointT<int> point, float coverage) {
	if (mMaskMode == TFont::kLeaveMask)
		return false;
	TAlphaMask& mask = *mSurface.AlphaMask();
	const float below = mMaskMode == TFont::kBlendIntoMask ? mask.Value(point) : 0.0f;
	mSurface.SetPixel(point, mColor, below > 0.0f ? coverage : 1.0f);
	mask.SetValue(point, std::min(1.0f, below + coverage));
	return true;
}
