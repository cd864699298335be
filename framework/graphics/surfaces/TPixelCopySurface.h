// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TPtr.h"
#include "framework/graphics/surfaces/TAlphaMask.h"
#include "framework/graphics/surfaces/TPixelFormat.h"
#include "framework/graphics/surfaces/TSurface.h"

#include <vector>

class TPixelCopy;
class TPixelCopyAggRenderer;

/// A surface whose drawing is done here, on whatever block of pixels the derived class maps. TPixelCopy moves plain
/// pixels, TPixelCopyAggRenderer does what needs coverage or scaling. All surfaces of the system are of this class.
class TPixelCopySurface : public TSurface {
public:
	~TPixelCopySurface() override;

	TPointT<int> Size() const override { return mSize; }

	int BitDepth() const override;

	TUiScale Scale() const override { return mScale; }

	void SetScale(TUiScale scale) override;

	TRectT<int> ClipRect() const override { return mClip; }

	void SetClipRect(const TRectT<int>& rect) override;
	void IntersectClipRect(const TRectT<int>& rect) override;

	bool HasKeyColor() const override { return mHasKeyColor; }

	TColor KeyColor() const override { return mKeyColor; }

	void SetKeyColor(const TColor& color) override;
	TPtr<TSurface> CopySurface() override;
	void SaveToFile(const TString& path, TFileFormat format) override;
	void SaveRectToFile(const TString& path, const TRectT<int>& rect, TFileFormat format) override;

	bool IsMapped() const override { return mPixels != nullptr; }

	TAlphaMask* AlphaMask() const override { return mAlphaMask.Get(); }

	void CreateAlphaMask(float opacity) override;
	void LoadAlphaMask(const TString& path) override;

	void CopyFrom(TPointT<int> point, TSurface& source, const TRectT<int>& sourceRect, bool useKey) override;
	void StretchFrom(const TRectT<int>& rect, TSurface& source, const TRectT<int>& sourceRect) override;
	void DrawBitmap(
	    TPointT<int> point, TSurface& source, const TRectT<int>& sourceRect, bool useKey, float opacity) override;
	void DrawMaskedBitmap(TPointT<int> point, TSurface& source, const TRectT<int>& sourceRect, float opacity) override;
	void
	StretchBitmap(const TRectT<int>& rect, TSurface& source, const TRectT<int>& sourceRect, float opacity) override;
	void StretchMaskedBitmap(
	    const TRectT<int>& rect, TSurface& source, const TRectT<int>& sourceRect, float opacity) override;
	void DrawStencil(
	    TPointT<int> point, const TColor& color, TSurface& source, const TRectT<int>& sourceRect,
	    float opacity) override;
	void DrawMaskedStencil(
	    TPointT<int> point, const TColor& color, TSurface& source, const TRectT<int>& sourceRect,
	    float opacity) override;

	void Clear(const TColor& color) override;
	TColor Pixel(TPointT<int> point) const override;
	void SetPixel(TPointT<int> point, const TColor& color, float opacity) override;
	void DrawLine(TPointT<int> from, TPointT<int> to, const TColor& color, float opacity) override;
	void DrawVerticalLine(TPointT<int> start, int length, const TColor& color, float opacity) override;
	void DrawHorizontalLine(TPointT<int> start, int length, const TColor& color, float opacity) override;
	void FrameRect(const TRectT<int>& rect, const TColor& color, float opacity) override;
	void FillRect(const TRectT<int>& rect, const TColor& color, float opacity) override;
	void TileBitmap(const TRectT<int>& rect, TPointT<int> origin, TSurface& source, float opacity) override;

	void
	StrokePolyline(std::span<const TPointT<float>> points, const TColor& color, float width, float opacity) override;
	void
	StrokePolygon(std::span<const TPointT<float>> points, const TColor& color, float width, float opacity) override;
	void FillPolygon(std::span<const TPointT<float>> points, const TColor& color, float opacity) override;
	void TexturePolygon(
	    std::span<const TPointT<float>> points, TPointT<int> origin, TSurface& source, float opacity) override;
	void StrokeRoundedRect(
	    const TRectT<int>& rect, const TColor& color, float width, const TCornerRadii& radii, float opacity) override;
	void
	FillRoundedRect(const TRectT<int>& rect, const TColor& color, const TCornerRadii& radii, float opacity) override;
	void TextureRoundedRect(
	    const TRectT<int>& rect, TPointT<int> origin, TSurface& source, const TCornerRadii& radii,
	    float opacity) override;
	void StrokeCircle(TPointT<float> center, float radius, const TColor& color, float width, float opacity) override;
	void FillCircle(TPointT<float> center, float radius, const TColor& color, float opacity) override;
	void
	TextureCircle(TPointT<float> center, float radius, TPointT<int> origin, TSurface& source, float opacity) override;
	void StrokeEllipse(
	    TPointT<float> center, float radiusX, float radiusY, const TColor& color, float width, float opacity) override;
	void FillEllipse(TPointT<float> center, float radiusX, float radiusY, const TColor& color, float opacity) override;
	void TextureEllipse(
	    TPointT<float> center, float radiusX, float radiusY, TPointT<int> origin, TSurface& source,
	    float opacity) override;

	int TextWidth(const TString& text, int font) const override;
	int CharWidth(char16_t character, int font) const override;
	int TextHeight(const TString& text, int font) const override;
	int LineHeight(int font) const override;
	TPointT<int> DrawText(TPointT<int> point, const TString& text, const TColor& color, int font) override;
	TPointT<int>
	DrawRotatedText(TPointT<int> point, const TString& text, const TColor& color, int rotation, int font) override;

	void Recolor(const TRectT<int>& rect, const TColor& colorA, const TColor& colorB, float amount) override;
	void RecolorExcept(
	    const TRectT<int>& rect, const TColor& colorA, const TColor& colorB, const TColor& skip, float amount) override;
	void Histogram(TArray<double>& bins, double& outMean) const override;
	void BeginDeviceAccess(TRectT<int>* inOutRect) override;
	void EndDeviceAccess(TUiScale scale, const TRectT<int>& clip) override;

	uint8_t* Pixels() const override { return mPixels; }

	int RowBytes() const override { return mRowBytes; }

	uint32_t MapColor(const TColor& color) const override { return mFormat.MapColor(color); }

	TColor UnmapColor(uint32_t value) const override { return mFormat.UnmapColor(value); }

	// For those who work on the pixels themselves

	/// In surface pixels; all drawing stops here.
	const TRectT<int>& DeviceClip() const noexcept { return mDeviceClip; }

	const TPixelFormat& Format() const noexcept { return mFormat; }

	/// The first pixel of a row.
	uint8_t* Row(int y) const noexcept { return mPixels + static_cast<std::ptrdiff_t>(y) * mRowBytes; }

	TPixelCopy& Copy() const noexcept { return *mPixelCopy; }

protected:
	TPixelCopySurface(TPointT<int> size, const TPixelFormat& format);

	TPointT<int> mSize;
	TRectT<int> mDeviceClip;
	TRectT<int> mClip;
	uint8_t* mPixels = nullptr;
	int mRowBytes = 0;
	bool mHasKeyColor = false;
	TColor mKeyColor;
	TUiScale mScale = kUnscaled;
	TPtr<TPixelCopy> mPixelCopy;
	TPtr<TPixelCopyAggRenderer> mRenderer;
	TPtr<TAlphaMask> mAlphaMask;
	const TPixelFormat& mFormat;

private:
	/// An image's way, in surface pixels of either side.
	struct TImagePlaces {
		TRectT<int> mDest; // empty: nothing to draw
		TRectT<int> mSource;
	};

	struct TEllipse {
		TPointT<float> mCenter;
		float mRadiusX; // below 0: nothing to draw
		float mRadiusY;
	};

	TRectT<int> Bounds() const noexcept { return {0, 0, mSize.mX, mSize.mY}; }

	void FillDeviceRect(const TRectT<int>& rect, const TColor& color, float opacity);
	void RecolorPixels(
	    const TRectT<int>& rect, const TColor& colorA, const TColor& colorB, const TColor* skip, float amount);

	void SaveDeviceRect(const TString& path, const TRectT<int>& rect, TFileFormat format);

	TImagePlaces
	PlacesOf(const TRectT<int>& rect, const TSurface& source, const TRectT<int>& sourceRect, float opacity) const;
	void CopyPlain(const TImagePlaces& places, TPixelCopySurface& source, bool useKey, float opacity);
	void DrawScaled(const TImagePlaces& places, TPixelCopySurface& source, bool useKey, float opacity);
	void StretchMask(const TImagePlaces& places, const TPixelCopySurface& source);

	bool IsVisible(const TRectT<int>& rect, float opacity) const;
	std::span<const TPointT<float>> ScaledPoints(std::span<const TPointT<float>> points);
	/// In surface pixels; empty if there is nothing to draw.
	std::span<const TPointT<float>> VisiblePoints(std::span<const TPointT<float>> points, float grownBy, float opacity);
	TEllipse VisibleEllipse(TPointT<float> center, float radiusX, float radiusY, float grownBy, float opacity) const;

	std::vector<TPointT<float>> mScaledPoints; // keeps its memory
};
