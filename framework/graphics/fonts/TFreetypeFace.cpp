// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/fonts/TFreetypeFace.h"

#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TFile.h"
#include "framework/foundation/text/TReadableException.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <span>

namespace {

struct TErrorText {
	int mCode;
	const char* mText;
};

// The library's own list of its errors.
#undef FTERRORS_H_
#define FT_ERRORDEF(name, code, text) {code, text},
#define FT_ERROR_START_LIST {
#define FT_ERROR_END_LIST                                                                                              \
	{ 0, nullptr }                                                                                                     \
	}                                                                                                                  \
	;
constexpr TErrorText kErrorTexts[] =
#include FT_ERRORS_H

    constexpr int kLastKnownError = 91;

/// No text is larger; beyond it a glyph alone could take all memory.
constexpr float kLargestSize = 1000.0f;

TString FullPath(const TString& file) {
	TString path = file;
	path.ReplaceChar(u'\\', u'/');
	if (path.StartsWithChar(u'/'))
		return path;
	return Folders::ResourceBase().Descend("Skin").FilePath(path);
}

TReadableException CannotInitialize(const TString& path, int error) {
	if (error >= 0 && error <= kLastKnownError)
		for (const TErrorText& known : std::span(kErrorTexts))
			if (known.mCode == error && known.mText)
				return TReadableException(TString::Format(
				    "Failed to initialize the font file: '%s' (Error: %s)!", path, TString(known.mText)));
	return TReadableException(TString::Format("Failed to initialize the font file: '%s' (Unknown Error)!", path));
}

bool IsPossible(float size) {
	return size >= 0.0f && size <= kLargestSize;
}

unsigned Rounded(float pixels) {
	return static_cast<unsigned>(std::lround(pixels));
}

} // namespace

TFreetypeFace::TFreetypeFace(const TString& file, int faceIndex, TSize size, float scale) : mSize(size) {
	const TString path = FullPath(file);
	if (!TFile(path).Exists())
		throw TReadableException(TString::Format("The font file '%s' does not exist.", path));
	Open(path, faceIndex);
	const auto lock = TFreetypeUse::Lock();
	FillInSize();
	if (!ApplySize(scale)) {
		Close();
		throw TReadableException(TString::Format("Failed to set the font size for font: '%s'!", path));
	}
}

TFreetypeFace::~TFreetypeFace() {
	const auto lock = TFreetypeUse::Lock();
	Close();
}

void TFreetypeFace::Open(const TString& path, int faceIndex) {
	const auto lock = TFreetypeUse::Lock();
	if (const int error = FT_New_Face(TFreetypeUse::Library(), path.CString(kFileSystemEncoding), faceIndex, &mpFace)) {
		mpFace = nullptr;
		throw CannotInitialize(path, error);
	}
}

void TFreetypeFace::Close() noexcept {
	if (mpFace)
		FT_Done_Face(mpFace);
	mpFace = nullptr;
}

void TFreetypeFace::FillInSize() {
	if (mSize.mWidth == TSize::kNotGiven && mSize.mHeight == TSize::kNotGiven) {
		const bool hasStrikes = mpFace->num_fixed_sizes > 0;
		const FT_Bitmap_Size* strike = mpFace->available_sizes;
		const float height = static_cast<float>(mpFace->size->metrics.height) / 64.0f;
		mSize.mHeight = hasStrikes ? static_cast<float>(strike->height) : height;
		mSize.mWidth = hasStrikes ? static_cast<float>(strike->width) : height;
		if (!IsPossible(mSize.mWidth) || !IsPossible(mSize.mHeight))
			return;
		if (FT_Set_Pixel_Sizes(mpFace, Rounded(mSize.mWidth), Rounded(mSize.mHeight)) != 0 && hasStrikes) {
			mSize.mHeight = mSize.mWidth = static_cast<float>(strike->width);
			FT_Set_Pixel_Sizes(mpFace, Rounded(mSize.mWidth), Rounded(mSize.mHeight));
		}
	}
	if (mSize.mWidth == TSize::kNotGiven)
		mSize.mWidth = mSize.mHeight;
	if (mSize.mHeight == TSize::kNotGiven)
		mSize.mHeight = mSize.mWidth;
}

bool TFreetypeFace::ApplySize(float scale) {
	if (!IsPossible(mSize.mWidth) || !IsPossible(mSize.mHeight))
		return false;
	const float width = mSize.mWidth * scale;
	const float height = mSize.mHeight * scale;
	if (FT_IS_SCALABLE(mpFace))
		return FT_Set_Char_Size(mpFace, std::lround(width * 64.0f), std::lround(height * 64.0f), 0, 0) == 0;
	if (FT_HAS_FIXED_SIZES(mpFace))
		return SelectStrike(scale);
	return FT_Set_Pixel_Sizes(mpFace, Rounded(width), Rounded(height)) == 0;
}

bool TFreetypeFace::SelectStrike(float scale) {
	int bestWidth = 0;
	int bestHeight = 0;
	bool hasBest = false;
	for (const FT_Bitmap_Size& strike :
	     std::span(mpFace->available_sizes, static_cast<std::size_t>(mpFace->num_fixed_sizes))) {
		// The candidate is measured against the size at scale 1, the best one against the size that is wanted.
		const auto isNearer = [scale](int size, int best, float wanted) {
			return std::abs(static_cast<float>(size) - wanted) < std::abs(static_cast<float>(best) - wanted * scale);
		};
		if (hasBest && !isNearer(strike.height, bestHeight, mSize.mHeight) &&
		    !isNearer(strike.width, bestWidth, mSize.mWidth))
			continue;
		bestWidth = strike.width;
		bestHeight = strike.height;
		hasBest = true;
	}
	return FT_Set_Pixel_Sizes(mpFace, static_cast<unsigned>(bestWidth), static_cast<unsigned>(bestHeight)) == 0;
}

uint32_t TFreetypeFace::GlyphIndex(char16_t character) const {
	return FT_Get_Char_Index(mpFace, character);
}

float TFreetypeFace::Ascender() const {
	return static_cast<float>(mpFace->size->metrics.ascender) / 64.0f;
}

float TFreetypeFace::LineSpacing() const {
	return static_cast<float>(mpFace->size->metrics.height) / 64.0f;
}

float TFreetypeFace::MaxAdvance() const {
	return static_cast<float>(mpFace->size->metrics.max_advance) / 64.0f;
}

float TFreetypeFace::UnderlinePosition() const {
	return static_cast<float>(mpFace->underline_position) / -64.0f;
}

bool TFreetypeFace::HasKerning() const {
	return FT_HAS_KERNING(mpFace);
}

TFreetypeFace::TKerning TFreetypeFace::Kerning(uint32_t previousGlyph, uint32_t glyph) const {
	FT_Vector kerning{};
	if (FT_Get_Kerning(mpFace, previousGlyph, glyph, FT_KERNING_DEFAULT, &kerning) != 0)
		return {};
	return {static_cast<int32_t>(kerning.x), static_cast<int32_t>(kerning.y)};
}
