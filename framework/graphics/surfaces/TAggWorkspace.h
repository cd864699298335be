// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TReferenceCountable.h"
#include "framework/foundation/values/TPointT.h"
#include "framework/foundation/values/TRectT.h"
#include "framework/graphics/surfaces/TRoundedRectPatch.h"
#include "framework/graphics/surfaces/TSurface.h"

#include <agg_color_rgba.h>
#include <agg_conv_stroke.h>
#include <agg_path_storage.h>
#include <agg_rasterizer_scanline_aa.h>
#include <agg_scanline_p.h>
#include <agg_scanline_u.h>
#include <agg_span_allocator.h>
#include <span>
#include <vector>

/// What rasterising takes beside the pixels, shared by the renderers of one thread: once warm, a shape allocates
/// nothing.
///
/// Shapes are rasterised whole, not cut to the clip: cutting moves an edge by fractions of a pixel, and what is
/// repainted in part must look as if painted whole. Only what lies far outside of the surface is cut off.
class TAggWorkspace final : public TReferenceCountable {
public:
	using TPoints = std::span<const TPointT<float>>;

	/// Forgets the last shape. For a surface of this size.
	void Begin(TPointT<int> surfaceSize);

	// One shape each, into the rasteriser

	void StrokePoints(TPoints points, bool closed, float width);
	void FillPoints(TPoints points);
	void AddRoundedRect(const TRectT<int>& rect, const TRoundedRectShape& shape);
	void AddEllipse(TPointT<float> center, double radiusX, double radiusY, double strokeWidth);
	void FillPath(agg::path_storage& path, TPointT<float> offset);

	/// Kept, for shapes that are small enough for that and rectangles that have room for all corners; else null. Valid
	/// until the next call. Takes the rasteriser.
	const TRoundedRectPatch* Patch(const TRectT<int>& rect, const TRoundedRectShape& shape);

	/// Calls renderer(scanline) for each line of the shape within the rows.
	template <class TScanline, class TRenderer>
	void Render(TScanline& scanline, int top, int bottom, TRenderer&& renderer) {
		if (!mRasterizer.rewind_scanlines() || !mRasterizer.navigate_scanline(std::max(top, mRasterizer.min_y())))
			return;
		scanline.reset(mRasterizer.min_x(), mRasterizer.max_x());
		while (mRasterizer.sweep_scanline(scanline) && scanline.y() < bottom)
			renderer(scanline);
	}

	agg::scanline32_p8 mRuns;                // for one colour
	agg::scanline32_u8 mPixels;              // for a colour for each pixel
	agg::span_allocator<agg::rgba8> mColors; // of one line
	std::vector<int> mSourceColumns;         // of the image being drawn

private:
	/// The vertices of one shape, in the form in which agg reads them. Keeps its memory.
	class TVertices {
	public:
		void Set(TPoints points, bool closed);
		template <class TSource>
		void Set(TSource& source);

		// What agg asks of a source of vertices

		void rewind(unsigned) { mNext = 0; }

		unsigned vertex(double* x, double* y);

	private:
		struct TVertex {
			double mX;
			double mY;
			unsigned mCommand;
		};

		std::vector<TVertex> mVertices;
		std::size_t mNext = 0;
	};

	void AddShape(double strokeWidth);
	void AddStroke(double width, agg::line_join_e join, agg::line_cap_e cap);

	std::vector<TRoundedRectPatch> mPatches;
	std::size_t mOldestPatch = 0;

	// Saturating, so that no coordinate overflows.
	agg::rasterizer_scanline_aa<agg::rasterizer_sl_clip_int_sat> mRasterizer;
	TVertices mVertices;
	agg::conv_stroke<TVertices> mStroke{mVertices};
};
