// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/fonts/TFreetypeFont.h"

#include <cstdint>

struct FT_BitmapGlyphRec_;

/// A rendered character: where it lies from the pen, and its coverage. Without a bitmap it is only an advance.
class TFreetypeFont::TCachedGlyph final : public TReferenceCountable {
public:
	enum TPixelMode : uint8_t { kNoPixels = 0, kOneBit = 1, kOneByte = 2 };

	struct TStyle {
		int mOutline = 0; // width in pixels
		float mBaselineOffset = 0.0f;
		bool mAntiAlias = false;
		bool mAutoHint = false;
	};

	/// A character that cannot be rendered keeps the advance given, without a bitmap.
	TCachedGlyph(
	    const TPtr<TFreetypeFace>& face, char16_t character, const TStyle& style, TPointT<float> defaultAdvance);
	~TCachedGlyph() override;

	int mBitmapX = 0;
	int mBitmapY = 0;
	int mOriginX = 0;
	int mOriginY = 0;
	float mAdvanceX;
	float mAdvanceY;
	int mRows = 0;
	int mWidth = 0;
	int mPitch = 0; // bytes of a row
	uint8_t* mBuffer = nullptr;
	short mGrayLevels = 0;
	TPixelMode mPixelMode = kNoPixels;
	TPtr<TFreetypeFace> mFace;
	uint32_t mIndex; // in the face

private:
	void Load(char16_t character, const TStyle& style);
	void TakeBitmap(const FT_BitmapGlyphRec_& glyph, const TStyle& style);
};
