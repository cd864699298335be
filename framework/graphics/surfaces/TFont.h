// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TColor.h"
#include "framework/foundation/values/TPair.h"
#include "framework/foundation/values/TPointT.h"

class TSurface;

/// Measures and draws text. The forms without a surface measure at the current UI scale if the font follows it, else
/// unscaled; the others at the surface's scale. Points and widths are logical pixels; a point is the top left corner of
/// the text. Drawing returns where the pen has come to. GUI thread.
class TFont : public TReferenceCountable {
public:
	enum TMaskMode : int32_t {
		kLeaveMask = 0,
		kBlendIntoMask = 1, // text over text keeps what lies below, text on empty ground brings its own coverage
		kReplaceMask = 2
	};
	enum TRotation : int32_t { kNoRotation = 0, kClockwise = 1, kMirrored = 2, kCounterClockwise = 3 };

	virtual bool FollowsUiScale() const = 0;
	virtual float Height() const = 0;
	virtual float Width() const = 0;
	virtual bool IsBold() const = 0;
	virtual bool IsItalic() const = 0;
	/// Pixels below the baseline.
	virtual float UnderlinePosition() const = 0;
	virtual float MaxAdvance() const = 0;
	virtual float LineSpacing() const = 0;
	virtual float ExtraHorizontalSpacing() const = 0;
	virtual float ExtraVerticalSpacing() const = 0;

	virtual int CharWidth(char16_t character) = 0;
	virtual int CharWidth(const TSurface& surface, char16_t character) = 0;
	/// The widest line's.
	virtual int TextWidth(const TString& text) = 0;
	virtual int TextWidth(const TSurface& surface, const TString& text) = 0;
	virtual int TextHeight(const TString& text) = 0;
	virtual int TextHeight(const TSurface& surface, const TString& text) = 0;
	virtual int LineHeight() = 0;
	virtual int LineHeight(const TSurface& surface) = 0;

	/// Without blending: colorHigh where the coverage reaches the second threshold, colorLow where it reaches the
	/// first.
	virtual TPointT<int> DrawThresholdText(
	    TSurface& surface, TPointT<int> point, const TString& text, const TColor& colorHigh, const TColor& colorLow,
	    TPair<float, float> thresholds, float opacity) = 0;
	virtual TPointT<int> DrawText(
	    TSurface& surface, TPointT<int> point, const TString& text, const TColor& color, int maskMode,
	    float opacity) = 0;
	virtual TPointT<int> DrawOutlinedText(
	    TSurface& surface, TPointT<int> point, const TString& text, const TColor& color, int outline, int maskMode,
	    float opacity) = 0;
	virtual TPointT<int> DrawRotatedText(
	    TSurface& surface, TPointT<int> point, const TString& text, const TColor& color, int rotation, int maskMode,
	    float opacity) = 0;
	virtual TPointT<int> DrawOutlinedRotatedText(
	    TSurface& surface, TPointT<int> point, const TString& text, const TColor& color, int outline, int rotation,
	    int maskMode, float opacity) = 0;
};

/// A font by name. A size of -1 takes the other, or that of the face.
struct TFontDescription {
	TString mFamilyName;
	TString mPostScriptName;
	float mWidth = 10.0f;
	float mHeight = 10.0f;
	float mExtraHorizontalSpacing = 0.0f;
	float mExtraVerticalSpacing = 0.0f;
	bool mAntiAlias = false;
	bool mBold = false;
	bool mItalic = false;
};

/// Where the port gets its fonts from: the font engine, which enters itself with TGraphPort::SetFontSource.
class TFontSource {
public:
	static constexpr int kNumberOfFonts = 5;

	/// Null for a font that could not be built.
	virtual TFont* Font(int index) = 0;
	/// Throw TReadableException.
	virtual TPtr<TFont> CreateFont(const TFontDescription& description, bool followsUiScale) = 0;
	virtual TPtr<TFont>
	CreateFontFromFile(const TString& path, TPointT<int> size, bool antiAlias, bool followsUiScale) = 0;

protected:
	~TFontSource() = default;
};
