// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TPixelCopy.h"
#include "framework/graphics/surfaces/TPixelCopyAggRenderer.h"
#include "framework/graphics/surfaces/TPixelCopySurface.h"
#include "framework/graphics/surfaces/TSurfaceLock.h"

#include <algorithm>
#include <cstdint>

namespace {

// All surfaces are of this class.
TPixelCopySurface& PixelsOf(TSurface& surface) {
	return static_cast<TPixelCopySurface&>(surface);
}

TRectT<int> At(TPointT<int> point, const TRectT<int>& rect) {
	return {point.mX, point.mY, rect.mWidth, rect.mHeight};
}

bool HaveSameSize(const TRectT<int>& a, const TRectT<int>& b) {
	return a.mWidth == b.mWidth && a.mHeight == b.mHeight;
}

bool Holds(const TRectT<int>& outer, const TRectT<int>& inner) {
	return outer.Intersected(inner) == inner;
}

int PositiveRest(int value, int divisor) {
	const int rest = value % divisor;
	return rest < 0 ? rest + divisor : rest;
}

} // namespace

void TPixelCopySurface::CopyFrom(TPointT<int> point, TSurface& source, const TRectT<int>& sourceRect, bool useKey) {
	const TSurfaceLock lock(*this);
	const TSurfaceLock sourceLock(source);
	DrawBitmap(point, source, sourceRect, useKey, 1.0f);
}

void TPixelCopySurface::StretchFrom(const TRectT<int>& rect, TSurface& source, const TRectT<int>& sourceRect) {
	const TSurfaceLock lock(*this);
	const TSurfaceLock sourceLock(source);
	StretchBitmap(rect, source, sourceRect, 1.0f);
}

TPixelCopySurface::TImagePlaces TPixelCopySurface::PlacesOf(
    const TRectT<int>& rect, const TSurface& source, const TRectT<int>& sourceRect, float opacity) const {
	const TImagePlaces places{Scaled(rect, mScale), Scaled(sourceRect, source.Scale())};
	const bool isVisible =
	    opacity > 0.0f && !places.mSource.IsEmpty() && !places.mDest.Intersected(mDeviceClip).IsEmpty();
	return isVisible ? places : TImagePlaces{};
}

void TPixelCopySurface::DrawBitmap(
    TPointT<int> point, TSurface& source, const TRectT<int>& sourceRect, bool useKey, float opacity) {
	const TImagePlaces places = PlacesOf(At(point, sourceRect), source, sourceRect, opacity);
	if (places.mDest.IsEmpty())
		return;
	if (HaveSameSize(places.mDest, places.mSource))
		CopyPlain(places, PixelsOf(source), useKey, opacity);
	else
		DrawScaled(places, PixelsOf(source), useKey, opacity);
}

void TPixelCopySurface::CopyPlain(const TImagePlaces& places, TPixelCopySurface& source, bool useKey, float opacity) {
	const TRectT<int> dest = places.mDest.Intersected(mDeviceClip);
	const TRectT<int> from{
	    places.mSource.mLeft + dest.mLeft - places.mDest.mLeft, places.mSource.mTop + dest.mTop - places.mDest.mTop,
	    dest.mWidth, dest.mHeight};
	if (dest.IsEmpty())
		return;
	// What lies outside of the source takes the source's edge, which the renderer knows how to do.
	if (opacity < 1.0f || !Holds(source.Bounds(), from))
		mRenderer->DrawImage(places.mDest, source, places.mSource, useKey, opacity, source.mKeyColor);
	else if (useKey)
		mPixelCopy->CopyRectKeyed({dest.mLeft, dest.mTop}, source, from);
	else
		mPixelCopy->CopyRect({dest.mLeft, dest.mTop}, source, from);
	if (opacity >= 1.0f && mAlphaMask && source.mAlphaMask)
		mAlphaMask->CopyRect({dest.mLeft, dest.mTop}, *source.mAlphaMask, from);
}

void TPixelCopySurface::DrawScaled(const TImagePlaces& places, TPixelCopySurface& source, bool useKey, float opacity) {
	mRenderer->DrawImage(places.mDest, source, places.mSource, useKey, opacity, source.mKeyColor);
	StretchMask(places, source);
}

void TPixelCopySurface::StretchMask(const TImagePlaces& places, const TPixelCopySurface& source) {
	if (!mAlphaMask || !source.mAlphaMask)
		return;
	const TRectT<int>& whole = places.mDest;
	const TRectT<int> dest = whole.Intersected(mDeviceClip);
	const auto across = [&](int x) {
		return places.mSource.mLeft + static_cast<int>(int64_t{x - whole.mLeft} * places.mSource.mWidth / whole.mWidth);
	};
	const auto down = [&](int y) {
		return places.mSource.mTop + static_cast<int>(int64_t{y - whole.mTop} * places.mSource.mHeight / whole.mHeight);
	};
	const TPointT<int> start{across(dest.mLeft), down(dest.mTop)};
	const TPointT<int> end{across(dest.Right()), down(dest.Bottom())};
	mAlphaMask->StretchRect(dest, *source.mAlphaMask, {start.mX, start.mY, end.mX - start.mX, end.mY - start.mY});
}

void TPixelCopySurface::DrawMaskedBitmap(
    TPointT<int> point, TSurface& source, const TRectT<int>& sourceRect, float opacity) {
	const TImagePlaces places = PlacesOf(At(point, sourceRect), source, sourceRect, opacity);
	if (!places.mDest.IsEmpty())
		mRenderer->DrawMaskedImage(places.mDest, PixelsOf(source), places.mSource, opacity);
}

void TPixelCopySurface::StretchBitmap(
    const TRectT<int>& rect, TSurface& source, const TRectT<int>& sourceRect, float opacity) {
	const TImagePlaces places = PlacesOf(rect, source, sourceRect, opacity);
	if (!places.mDest.IsEmpty())
		DrawScaled(places, PixelsOf(source), false, opacity);
}

void TPixelCopySurface::StretchMaskedBitmap(
    const TRectT<int>& rect, TSurface& source, const TRectT<int>& sourceRect, float opacity) {
	const TImagePlaces places = PlacesOf(rect, source, sourceRect, opacity);
	if (places.mDest.IsEmpty())
		return;
	mRenderer->DrawMaskedImage(places.mDest, PixelsOf(source), places.mSource, opacity);
	StretchMask(places, PixelsOf(source));
}

void TPixelCopySurface::DrawStencil(
    TPointT<int> point, const TColor& color, TSurface& source, const TRectT<int>& sourceRect, float opacity) {
	const TImagePlaces places = PlacesOf(At(point, sourceRect), source, sourceRect, opacity);
	if (!places.mDest.IsEmpty())
		mRenderer->DrawStencilImage(places.mDest, color, PixelsOf(source), places.mSource, opacity);
}

void TPixelCopySurface::DrawMaskedStencil(
    TPointT<int> point, const TColor& color, TSurface& source, const TRectT<int>& sourceRect, float opacity) {
	const TImagePlaces places = PlacesOf(At(point, sourceRect), source, sourceRect, opacity);
	if (!places.mDest.IsEmpty())
		mRenderer->DrawMaskedStencilImage(places.mDest, color, PixelsOf(source), places.mSource, opacity);
}

void TPixelCopySurface::TileBitmap(const TRectT<int>& rect, TPointT<int> origin, TSurface& source, float opacity) {
	TPixelCopySurface& tile = PixelsOf(source);
	const TRectT<int> area = Scaled(rect, mScale).Intersected(mDeviceClip);
	const TPointT<int> start = Scaled(origin, mScale);
	if (!(opacity > 0.0f))
		return;
	for (int x = area.mLeft, width = 0; x < area.Right(); x += width) {
		const int column = PositiveRest(x - start.mX, tile.mSize.mX);
		width = std::min(tile.mSize.mX - column, area.Right() - x);
		for (int y = area.mTop, height = 0; y < area.Bottom(); y += height) {
			const int row = PositiveRest(y - start.mY, tile.mSize.mY);
			height = std::min(tile.mSize.mY - row, area.Bottom() - y);
			CopyPlain({{x, y, width, height}, {column, row, width, height}}, tile, false, opacity);
		}
	}
}
