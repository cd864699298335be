// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakReferenceable.h"
#include "framework/foundation/memory/TArray.h"
#include "framework/foundation/memory/TReferenceCountable.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TColor.h"
#include "framework/foundation/values/TFunctionPtr.h"
#include "framework/foundation/values/TPointT.h"
#include "framework/foundation/values/TRectT.h"
#include "framework/graphics/surfaces/UiScale.h"

#include <cstdint>
#include <span>

class TAlphaMask;

/// The radii of a rectangle's corners, in surface pixels.
struct TCornerRadii {
	float mTopLeft = 0.0f;
	float mTopRight = 0.0f;
	float mBottomLeft = 0.0f;
	float mBottomRight = 0.0f;

	static constexpr TCornerRadii All(float radius) { return {radius, radius, radius, radius}; }

	friend constexpr bool operator==(const TCornerRadii&, const TCornerRadii&) = default;
};

/// What views draw on: a block of pixels with a clip, a scale and an optional alpha mask. Made by TGraphPort.
///
/// Points and rectangles are logical pixels, which the surface multiplies by its scale; stroke widths and corner radii
/// are surface pixels and are not scaled. Opacity is 0 to 1: at 0 or below nothing is drawn. All drawing stops at the
/// clip. Pixels hold colour alone, transparency stands in the alpha mask.
/// Drawing needs a mapped surface. GUI thread.
class TSurface : public TReferenceCountable, public TWeakReferenceable {
public:
	using TLostCallback = TFunctionPtr<void>;

	enum TFileFormat : int32_t { kBmp = 0, kTiff = 1, kPng = 2, kPalettePng = 3, kJpeg = 4 };

	/// In surface pixels.
	virtual TPointT<int> Size() const = 0;
	virtual int BitDepth() const = 0;
	virtual TUiScale Scale() const = 0;
	virtual void SetScale(TUiScale scale) = 0;

	virtual TRectT<int> ClipRect() const = 0;
	/// Cut to the surface. Callers that restore the clip later use a TClipGuard.
	virtual void SetClipRect(const TRectT<int>& rect) = 0;
	virtual void IntersectClipRect(const TRectT<int>& rect) = 0;

	/// The colour that copying with useKey leaves out.
	virtual bool HasKeyColor() const = 0;
	virtual TColor KeyColor() const = 0;
	virtual void SetKeyColor(const TColor& color) = 0;

	/// The platform's drawing context; null where there is none.
	virtual void* NativeContext() = 0;

	/// Not offered: throws TReadableException.
	virtual TPtr<TSurface> CopySurface() = 0;
	/// Throw TReadableException; the file then stays as it was.
	virtual void SaveToFile(const TString& path, TFileFormat format) = 0;
	virtual void SaveRectToFile(const TString& path, const TRectT<int>& rect, TFileFormat format) = 0;

	virtual bool IsMapped() const = 0;
	virtual void MapPixels() = 0;
	virtual void UnmapPixels() = 0;
	virtual bool Lock() = 0;
	virtual bool IsLocked() const = 0;
	virtual void Unlock() = 0;
	/// For the platform to call if the pixels are lost.
	virtual void SetLostCallback(const TLostCallback& callback) = 0;

	/// Null unless the surface has one.
	virtual TAlphaMask* AlphaMask() const = 0;
	virtual void CreateAlphaMask(float opacity) = 0;
	/// From the alpha of an image file, or from its brightness if it has none. Throws TReadableException.
	virtual void LoadAlphaMask(const TString& path) = 0;

	// Images. sourceRect is in the source's logical pixels.

	virtual void CopyFrom(TPointT<int> point, TSurface& source, const TRectT<int>& sourceRect, bool useKey) = 0;
	virtual void StretchFrom(const TRectT<int>& rect, TSurface& source, const TRectT<int>& sourceRect) = 0;
	/// Without regard to the source's alpha mask. If both surfaces have one, the mask is copied along.
	virtual void
	DrawBitmap(TPointT<int> point, TSurface& source, const TRectT<int>& sourceRect, bool useKey, float opacity) = 0;
	virtual void
	DrawMaskedBitmap(TPointT<int> point, TSurface& source, const TRectT<int>& sourceRect, float opacity) = 0;
	virtual void
	StretchBitmap(const TRectT<int>& rect, TSurface& source, const TRectT<int>& sourceRect, float opacity) = 0;
	virtual void
	StretchMaskedBitmap(const TRectT<int>& rect, TSurface& source, const TRectT<int>& sourceRect, float opacity) = 0;
	/// The colour, as solid as the source is bright.
	virtual void DrawStencil(
	    TPointT<int> point, const TColor& color, TSurface& source, const TRectT<int>& sourceRect, float opacity) = 0;
	virtual void DrawMaskedStencil(
	    TPointT<int> point, const TColor& color, TSurface& source, const TRectT<int>& sourceRect, float opacity) = 0;

	// Points, lines and rectangles

	virtual void Clear(const TColor& color) = 0;
	/// The point must lie inside the surface.
	virtual TColor Pixel(TPointT<int> point) const = 0;
	/// Ignored outside the clip.
	virtual void SetPixel(TPointT<int> point, const TColor& color, float opacity) = 0;
	virtual void DrawLine(TPointT<int> from, TPointT<int> to, const TColor& color, float opacity) = 0;
	/// One surface pixel wide.
	virtual void DrawVerticalLine(TPointT<int> start, int length, const TColor& color, float opacity) = 0;
	virtual void DrawHorizontalLine(TPointT<int> start, int length, const TColor& color, float opacity) = 0;
	/// One surface pixel wide, inside the rectangle. Below full opacity the corners are blended twice.
	virtual void FrameRect(const TRectT<int>& rect, const TColor& color, float opacity) = 0;
	virtual void FillRect(const TRectT<int>& rect, const TColor& color, float opacity) = 0;
	/// The source repeated from the origin on in both directions, through the window that the rectangle is.
	virtual void TileBitmap(const TRectT<int>& rect, TPointT<int> origin, TSurface& source, float opacity) = 0;

	// Smooth shapes

	virtual void
	StrokePolyline(std::span<const TPointT<float>> points, const TColor& color, float width, float opacity) = 0;
	virtual void
	StrokePolygon(std::span<const TPointT<float>> points, const TColor& color, float width, float opacity) = 0;
	virtual void FillPolygon(std::span<const TPointT<float>> points, const TColor& color, float opacity) = 0;
	/// Filled with the source, repeated from the origin on; so for all that are named Texture.
	virtual void
	TexturePolygon(std::span<const TPointT<float>> points, TPointT<int> origin, TSurface& source, float opacity) = 0;
	/// Inside the rectangle.
	virtual void StrokeRoundedRect(
	    const TRectT<int>& rect, const TColor& color, float width, const TCornerRadii& radii, float opacity) = 0;
	/// One pixel smaller than the rectangle on each side: made to lie in a frame.
	virtual void
	FillRoundedRect(const TRectT<int>& rect, const TColor& color, const TCornerRadii& radii, float opacity) = 0;
	virtual void TextureRoundedRect(
	    const TRectT<int>& rect, TPointT<int> origin, TSurface& source, const TCornerRadii& radii, float opacity) = 0;
	virtual void StrokeCircle(TPointT<float> center, float radius, const TColor& color, float width, float opacity) = 0;
	virtual void FillCircle(TPointT<float> center, float radius, const TColor& color, float opacity) = 0;
	virtual void
	TextureCircle(TPointT<float> center, float radius, TPointT<int> origin, TSurface& source, float opacity) = 0;
	/// Around the ellipse: the radii are those of the stroke's inner edge.
	virtual void StrokeEllipse(
	    TPointT<float> center, float radiusX, float radiusY, const TColor& color, float width, float opacity) = 0;
	virtual void
	FillEllipse(TPointT<float> center, float radiusX, float radiusY, const TColor& color, float opacity) = 0;
	virtual void TextureEllipse(
	    TPointT<float> center, float radiusX, float radiusY, TPointT<int> origin, TSurface& source, float opacity) = 0;

	// Text, in the fonts of the font engine. See TFont.

	virtual int TextWidth(const TString& text, int font) const = 0;
	virtual int CharWidth(char16_t character, int font) const = 0;
	virtual int TextHeight(const TString& text, int font) const = 0;
	virtual int LineHeight(int font) const = 0;
	/// The point is the top left corner. Returns where the pen has come to.
	virtual TPointT<int> DrawText(TPointT<int> point, const TString& text, const TColor& color, int font) = 0;
	/// rotation: see TFont::DrawRotatedText.
	virtual TPointT<int>
	DrawRotatedText(TPointT<int> point, const TString& text, const TColor& color, int rotation, int font) = 0;

	// Work on pixels

	/// Gives each pixel a mix of both colours by its brightness; A where it is bright. rect is in surface pixels.
	virtual void Recolor(const TRectT<int>& rect, const TColor& colorA, const TColor& colorB, float amount) = 0;
	/// The same, without the pixels of the colour skip.
	virtual void RecolorExcept(
	    const TRectT<int>& rect, const TColor& colorA, const TColor& colorB, const TColor& skip, float amount) = 0;
	/// How many pixels have which brightness (256 bins), and the mean brightness.
	virtual void Histogram(TArray<double>& bins, double& outMean) const = 0;

	/// From here to EndDeviceAccess all coordinates are surface pixels. The rectangle, if given, is converted. The
	/// caller keeps Scale() and ClipRect() from before and hands them back.
	virtual void BeginDeviceAccess(TRectT<int>* inOutRect) = 0;
	virtual void EndDeviceAccess(TUiScale scale, const TRectT<int>& clip) = 0;

	/// Null while not mapped.
	virtual uint8_t* Pixels() const = 0;
	virtual int RowBytes() const = 0;
	virtual uint32_t MapColor(const TColor& color) const = 0;
	virtual TColor UnmapColor(uint32_t value) const = 0;
};
