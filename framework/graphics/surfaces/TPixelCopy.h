// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/values/TPointT.h"
#include "framework/foundation/values/TRectT.h"

#include <cstdint>

class TPixelCopySurface;

/// Moves pixels without smoothing: plain rectangles, lines and images. All in surface pixels; the caller has cut
/// everything to the surface. Lives while its surface is mapped.
class TPixelCopy : public TReferenceCountable {
public:
	/// For the surface's pixel format.
	static TPtr<TPixelCopy> Create(TPixelCopySurface& surface);

	virtual uint32_t Pixel(TPointT<int> point) const = 0;
	virtual void SetPixel(TPointT<int> point, uint32_t value) = 0;
	virtual void VerticalLine(TPointT<int> point, int length, uint32_t value) = 0;
	virtual void HorizontalLine(TPointT<int> point, int length, uint32_t value) = 0;
	virtual void FillRect(const TRectT<int>& rect, uint32_t value) = 0;
	/// Each channel becomes (value's * a + pixel's * (255 - a)) >> 8, a being opacity in steps of 1/255.
	virtual void BlendRect(const TRectT<int>& rect, uint32_t value, float opacity) = 0;
	virtual void CopyRect(TPointT<int> destPoint, const TPixelCopySurface& source, const TRectT<int>& sourceRect) = 0;
	/// The nearest pixel; first and last pixels of both rectangles lie on each other.
	virtual void
	StretchRect(const TRectT<int>& destRect, const TPixelCopySurface& source, const TRectT<int>& sourceRect) = 0;
	/// Leaves out what has the source's key colour.
	virtual void
	CopyRectKeyed(TPointT<int> destPoint, const TPixelCopySurface& source, const TRectT<int>& sourceRect) = 0;
};
