// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TAggWorkspace.h"

#include <agg_conv_curve.h>
#include <agg_conv_transform.h>
#include <agg_ellipse.h>
#include <agg_rounded_rect.h>
#include <agg_trans_affine.h>
#include <algorithm>

void TAggWorkspace::TVertices::Set(TPoints points, bool closed) {
	mVertices.clear();
	unsigned command = agg::path_cmd_move_to;
	for (const TPointT<float>& point : points) {
		mVertices.push_back({point.mX, point.mY, command});
		command = agg::path_cmd_line_to;
	}
	if (closed)
		mVertices.push_back({0.0, 0.0, unsigned{agg::path_cmd_end_poly} | agg::path_flags_close});
}

template <class TSource>
void TAggWorkspace::TVertices::Set(TSource& source) {
	mVertices.clear();
	double x = 0.0;
	double y = 0.0;
	source.rewind(0);
	for (unsigned command = source.vertex(&x, &y); !agg::is_stop(command); command = source.vertex(&x, &y))
		mVertices.push_back({x, y, command});
}

unsigned TAggWorkspace::TVertices::vertex(double* x, double* y) {
	if (mNext == mVertices.size())
		return agg::path_cmd_stop;
	const TVertex& vertex = mVertices[mNext++];
	*x = vertex.mX;
	*y = vertex.mY;
	return vertex.mCommand;
}

void TAggWorkspace::Begin(TPointT<int> surfaceSize) {
	constexpr int kMargin = 1024;
	mRasterizer.clip_box(-kMargin, -kMargin, surfaceSize.mX + kMargin, surfaceSize.mY + kMargin);
}

void TAggWorkspace::StrokePoints(TPoints points, bool closed, float width) {
	mVertices.Set(points, closed);
	AddStroke(width, agg::round_join, agg::square_cap);
}

void TAggWorkspace::FillPoints(TPoints points) {
	mVertices.Set(points, true);
	AddShape(0.0);
}

void TAggWorkspace::AddRoundedRect(const TRectT<int>& rect, const TRoundedRectShape& shape) {
	const double inset = shape.mInset;
	const TCornerRadii& radii = shape.mRadii;
	if (rect.mWidth <= 2.0 * inset || rect.mHeight <= 2.0 * inset)
		return;
	agg::rounded_rect path(rect.mLeft + inset, rect.mTop + inset, rect.Right() - inset, rect.Bottom() - inset, 0.0);
	// agg goes round clockwise.
	path.radius(
	    radii.mTopLeft, radii.mTopLeft, radii.mTopRight, radii.mTopRight, radii.mBottomRight, radii.mBottomRight,
	    radii.mBottomLeft, radii.mBottomLeft);
	path.normalize_radius();
	mVertices.Set(path);
	AddShape(shape.mStrokeWidth);
}

const TRoundedRectPatch* TAggWorkspace::Patch(const TRectT<int>& rect, const TRoundedRectShape& shape) {
	constexpr int kLargestCorner = 64;
	constexpr std::size_t kMostPatches = 32;
	const int corner = shape.CornerSize();
	if (corner > kLargestCorner || std::min(rect.mWidth, rect.mHeight) <= 2 * corner)
		return nullptr;
	const auto found = std::find_if(
	    mPatches.begin(), mPatches.end(), [&](const TRoundedRectPatch& patch) { return patch.Shape() == shape; });
	if (found != mPatches.end())
		return &*found;
	if (mPatches.size() < kMostPatches)
		return &mPatches.emplace_back(shape, *this);
	mOldestPatch = (mOldestPatch + 1) % kMostPatches;
	return &(mPatches[mOldestPatch] = TRoundedRectPatch(shape, *this));
}

void TAggWorkspace::AddEllipse(TPointT<float> center, double radiusX, double radiusY, double strokeWidth) {
	agg::ellipse shape(center.mX, center.mY, radiusX, radiusY);
	mVertices.Set(shape);
	AddShape(strokeWidth);
}

void TAggWorkspace::FillPath(agg::path_storage& path, TPointT<float> offset) {
	agg::conv_curve<agg::path_storage> curves(path);
	curves.approximation_scale(4.0);
	agg::trans_affine_translation shift(offset.mX, offset.mY);
	agg::conv_transform<agg::conv_curve<agg::path_storage>> shifted(curves, shift);
	mVertices.Set(shifted);
	AddShape(0.0);
}

void TAggWorkspace::AddShape(double strokeWidth) {
	if (strokeWidth > 0.0)
		AddStroke(strokeWidth, agg::miter_join, agg::butt_cap);
	else
		mRasterizer.add_path(mVertices);
}

void TAggWorkspace::AddStroke(double width, agg::line_join_e join, agg::line_cap_e cap) {
	mStroke.width(width);
	mStroke.line_join(join);
	mStroke.line_cap(cap);
	mRasterizer.add_path(mStroke);
}
