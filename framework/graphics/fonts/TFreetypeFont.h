// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TList.h"
#include "framework/foundation/memory/TStlAllocator.h"
#include "framework/graphics/fonts/TFontInfo.h"
#include "framework/graphics/fonts/TFreetypeFace.h"
#include "framework/graphics/surfaces/TFont.h"
#include "framework/graphics/surfaces/UiScale.h"

#include <unordered_map>

class TFontFileSettings;
class TFontSettings;

/// Text by FreeType. A character is rendered once for each outline width and kept as long as the font lives. What the
/// face lacks comes from the system's fallback fonts, opened when they are needed.
class TFreetypeFont final : public TFont {
public:
	class TCachedGlyph;
	class TFallbackFont;

	/// Both throw TReadableException. The size is fixed for the scale of now: another scale needs another font.
	TFreetypeFont(const TFontSettings& settings, bool followsUiScale);
	TFreetypeFont(const TFontFileSettings& settings, bool followsUiScale);
	~TFreetypeFont() override;

	bool FollowsUiScale() const override { return mFollowsUiScale; }

	float Height() const override { return mHeight; }

	float Width() const override { return mWidth; }

	bool IsBold() const override { return mBold; }

	bool IsItalic() const override { return mItalic; }

	float UnderlinePosition() const override { return mFace->UnderlinePosition(); }

	float MaxAdvance() const override { return mFace->MaxAdvance(); }

	float LineSpacing() const override { return mFace->LineSpacing(); }

	float ExtraHorizontalSpacing() const override { return mExtraHorizontalSpacing; }

	float ExtraVerticalSpacing() const override { return mExtraVerticalSpacing; }

	int CharWidth(char16_t character) override { return CharWidth(OwnScale(), character); }

	int CharWidth(const TSurface& surface, char16_t character) override;

	int TextWidth(const TString& text) override { return TextWidth(OwnScale(), text); }

	int TextWidth(const TSurface& surface, const TString& text) override;
	int TextHeight(const TString& text) override;
	int TextHeight(const TSurface& surface, const TString& text) override;

	int LineHeight() override { return LineHeight(OwnScale()); }

	int LineHeight(const TSurface& surface) override;

	TPointT<int> DrawThresholdText(
	    TSurface& surface, TPointT<int> point, const TString& text, const TColor& colorHigh, const TColor& colorLow,
	    TPair<float, float> thresholds, float opacity) override;
	TPointT<int> DrawText(
	    TSurface& surface, TPointT<int> point, const TString& text, const TColor& color, int maskMode,
	    float opacity) override;
	TPointT<int> DrawOutlinedText(
	    TSurface& surface, TPointT<int> point, const TString& text, const TColor& color, int outline, int maskMode,
	    float opacity) override;
	TPointT<int> DrawRotatedText(
	    TSurface& surface, TPointT<int> point, const TString& text, const TColor& color, int rotation, int maskMode,
	    float opacity) override;
	TPointT<int> DrawOutlinedRotatedText(
	    TSurface& surface, TPointT<int> point, const TString& text, const TColor& color, int outline, int rotation,
	    int maskMode, float opacity) override;

private:
	template <class TKey, class TValue>
	using TMap = std::unordered_map<
	    TKey, TValue, std::hash<TKey>, std::equal_to<>, TStlAllocator<std::pair<const TKey, TValue>>>;
	using TGlyphs = TMap<char16_t, TPtr<TCachedGlyph>>;

	enum TNeighbour : bool { kBefore, kAfter };

	/// In surface pixels, from the text's own corner.
	struct TPen {
		float mX;
		float mY;

		TPointT<int> PlaceFrom(TPointT<int> corner) const;
		/// Logical pixels.
		TPointT<int> End(int outline, TUiScale scale) const;
	};

	void TakeFace(TPtr<TFreetypeFace> face);
	TUiScale OwnScale() const;
	int CharWidth(TUiScale scale, char16_t character);
	int TextWidth(TUiScale scale, const TString& text);
	int LineHeight(TUiScale scale) const;

	const TCachedGlyph& Glyph(char16_t character, int outline);
	TPtr<TFreetypeFace> FaceFor(char16_t character);
	TPtr<TFallbackFont> TryFallback(const TFontInfo& info, char16_t character) const;
	/// To the next character.
	float Advance(const TCachedGlyph& glyph) const;
	TFreetypeFace::TKerning Kerning(const TCachedGlyph& glyph, char16_t neighbour, TNeighbour whichOne) const;
	template <class TDraw>
	TPointT<int> WalkText(TUiScale scale, TPointT<int> point, const TString& text, int outline, const TDraw& draw);

	TPtr<TFreetypeFace> mFace;
	float mWidth = 0.0f;
	float mHeight = 0.0f;
	float mExtraHorizontalSpacing = 0.0f;
	float mExtraVerticalSpacing = 0.0f;
	float mBaselineOffset = 0.0f;
	bool mBold = false;
	bool mItalic = false;
	bool mAntiAlias;
	bool mAutoHint;
	bool mFollowsUiScale;
	bool mHasWholeAdvances = false;
	TMap<int, TGlyphs> mGlyphs; // by the width of the outline
	TList<TPtr<TFallbackFont>> mFallbackFonts;
};
