// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/bitmaps/TRecolorableBitmap.h"

#include "framework/graphics/surfaces/TAlphaMask.h"

void TRecolorableBitmap::SetColors(const TColor& foreground, const TColor& background) {
	mRecolor = true;
	mForeground = foreground;
	mBackground = background;
}

void TRecolorableBitmap::ClearColors() {
	mRecolor = false;
}

void TRecolorableBitmap::Draw(TSurface& surface, TPointT<int> point, const TRectT<int>& sourceRect, float opacity) {
	if (mRecolor)
		Paint(surface, point, sourceRect, mForeground, opacity);
	else
		TBitmap::Draw(surface, point, sourceRect, opacity);
}

void TRecolorableBitmap::DrawTinted(TSurface& surface, TPointT<int> point, const TColor& color, float opacity) {
	const TPointT<int> size = Size();
	Paint(surface, point, {0, 0, size.mX, size.mY}, color, opacity);
}

void TRecolorableBitmap::Paint(
    TSurface& surface, TPointT<int> point, const TRectT<int>& sourceRect, const TColor& color, float opacity) {
	TSurface& image = LoadedSurface();
	if (image.AlphaMask())
		surface.DrawMaskedStencil(point, color, image, sourceRect, opacity);
	else
		surface.DrawStencil(point, color, image, sourceRect, opacity);
}
