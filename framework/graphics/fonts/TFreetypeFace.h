// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"
#include "framework/graphics/fonts/TFreetypeUse.h"

#include <cstdint>

struct FT_FaceRec_;

/// A font file, opened at one size. GUI thread.
class TFreetypeFace final : public TReferenceCountable {
public:
	/// Logical pixels; kNotGiven takes the other one, or what the face brings.
	struct TSize {
		static constexpr float kNotGiven = -1.0f;

		float mWidth = kNotGiven;
		float mHeight = kNotGiven;
	};

	/// In 1/64 pixel.
	struct TKerning {
		int32_t mX = 0;
		int32_t mY = 0;
	};

	/// The size times the scale is what the face gets. Throws TReadableException.
	TFreetypeFace(const TString& file, int faceIndex, TSize size, float scale);
	~TFreetypeFace() override;

	/// With what was not given filled in.
	TSize Size() const noexcept { return mSize; }

	FT_FaceRec_* Face() const noexcept { return mpFace; }

	/// 0 for a character that the face does not have.
	uint32_t GlyphIndex(char16_t character) const;

	// Of the size, in surface pixels

	float Ascender() const;
	float LineSpacing() const;
	float MaxAdvance() const;
	/// Below the baseline, in units of the face / 64.
	float UnderlinePosition() const;

	bool HasKerning() const;
	/// Between two glyphs of this face.
	TKerning Kerning(uint32_t previousGlyph, uint32_t glyph) const;

private:
	void Open(const TString& path, int faceIndex);
	void Close() noexcept;
	void FillInSize();
	bool ApplySize(float scale);
	bool SelectStrike(float scale);

	TFreetypeUse mUse; // outlives the face
	FT_FaceRec_* mpFace = nullptr;
	TSize mSize;
};
