// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/values/TColor.h"
#include "framework/foundation/values/TPointT.h"
#include "framework/foundation/values/TRectT.h"
#include "framework/graphics/surfaces/TSurface.h"

#include <agg_path_storage.h>
#include <span>

class TAggWorkspace;
class TPixelCopySurface;

/// Rasterises smooth shapes and scaled images. All in surface pixels; stops at the surface's device clip. Lives while
/// its surface is mapped.
///
/// The pixels of a shape do not depend on the clip, so that what is repainted in part looks as if painted whole.
class TPixelCopyAggRenderer : public TReferenceCountable {
public:
	using TPoints = std::span<const TPointT<float>>;

	/// For the surface's pixel format. The workspace is shared by all renderers of a thread.
	static TPtr<TPixelCopyAggRenderer> Create(TPixelCopySurface& surface, const TPtr<TAggWorkspace>& workspace);

	virtual void StrokePolyline(TPoints points, const TColor& color, float width, float opacity) = 0;
	virtual void StrokeRoundedRect(
	    const TRectT<int>& rect, const TColor& color, float width, const TCornerRadii& radii, float opacity) = 0;
	virtual void
	FillRoundedRect(const TRectT<int>& rect, const TColor& color, const TCornerRadii& radii, float opacity) = 0;
	virtual void StrokePolygon(TPoints points, const TColor& color, float width, float opacity) = 0;
	virtual void FillPolygon(TPoints points, const TColor& color, float opacity) = 0;
	virtual void StrokeEllipse(
	    TPointT<float> center, float radiusX, float radiusY, const TColor& color, float width, float opacity) = 0;
	virtual void
	FillEllipse(TPointT<float> center, float radiusX, float radiusY, const TColor& color, float opacity) = 0;
	/// Also with curves.
	virtual void FillPath(agg::path_storage& path, TPointT<float> offset, const TColor& color, float opacity) = 0;
	virtual void TextureRoundedRect(
	    const TRectT<int>& rect, TPointT<int> origin, const TPixelCopySurface& source, const TCornerRadii& radii,
	    float opacity) = 0;
	virtual void
	TexturePolygon(TPoints points, TPointT<int> origin, const TPixelCopySurface& source, float opacity) = 0;
	virtual void TextureEllipse(
	    TPointT<float> center, float radiusX, float radiusY, TPointT<int> origin, const TPixelCopySurface& source,
	    float opacity) = 0;

	/// The source pixel in which the middle of each pixel falls, cut to the source's edges.
	virtual void DrawImage(
	    const TRectT<int>& destRect, const TPixelCopySurface& source, const TRectT<int>& sourceRect, bool useKey,
	    float opacity, const TColor& keyColor) = 0;
	virtual void DrawMaskedImage(
	    const TRectT<int>& destRect, const TPixelCopySurface& source, const TRectT<int>& sourceRect, float opacity) = 0;
	virtual void DrawStencilImage(
	    const TRectT<int>& destRect, const TColor& color, const TPixelCopySurface& source,
	    const TRectT<int>& sourceRect, float opacity) = 0;
	virtual void DrawMaskedStencilImage(
	    const TRectT<int>& destRect, const TColor& color, const TPixelCopySurface& source,
	    const TRectT<int>& sourceRect, float opacity) = 0;
};
