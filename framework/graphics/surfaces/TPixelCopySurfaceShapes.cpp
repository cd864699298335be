// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TPixelCopyAggRenderer.h"
#include "framework/graphics/surfaces/TPixelCopySurface.h"

#include <algorithm>
#include <cmath>

namespace {

/// No window comes near; what is no number is caught by it, too.
constexpr float kLargestCoordinate = 1.0e6f;

bool IsSensible(float value) {
	return std::abs(value) <= kLargestCoordinate;
}

bool AreSensible(std::span<const TPointT<float>> points) {
	return std::all_of(points.begin(), points.end(), [](const TPointT<float>& point) {
		return IsSensible(point.mX) && IsSensible(point.mY);
	});
}

/// The pixels that lie wholly or partly between the edges.
TRectT<int> PixelsBetween(float left, float top, float right, float bottom) {
	const auto from = [](float value) { return static_cast<int>(std::floor(value)); };
	const auto to = [](float value) { return static_cast<int>(std::ceil(value)); };
	return {from(left), from(top), to(right) - from(left), to(bottom) - from(top)};
}

TRectT<int> BoundsOf(std::span<const TPointT<float>> points, float grownBy) {
	const auto [left, right] =
	    std::minmax_element(points.begin(), points.end(), [](const auto& a, const auto& b) { return a.mX < b.mX; });
	const auto [top, bottom] =
	    std::minmax_element(points.begin(), points.end(), [](const auto& a, const auto& b) { return a.mY < b.mY; });
	return PixelsBetween(left->mX - grownBy, top->mY - grownBy, right->mX + grownBy, bottom->mY + grownBy);
}

/// On all sides; by a negative number it shrinks.
TRectT<int> Grown(const TRectT<int>& rect, int by) {
	return {rect.mLeft - by, rect.mTop - by, rect.mWidth + 2 * by, rect.mHeight + 2 * by};
}

float LargestOf(const TCornerRadii& radii) {
	return std::max({radii.mTopLeft, radii.mTopRight, radii.mBottomLeft, radii.mBottomRight});
}

bool AreSensible(const TCornerRadii& radii) {
	return IsSensible(radii.mTopLeft) && IsSensible(radii.mTopRight) && IsSensible(radii.mBottomLeft) &&
	       IsSensible(radii.mBottomRight);
}

bool IsStroke(float width) {
	return width > 0.0f && IsSensible(width);
}

} // namespace

std::span<const TPointT<float>> TPixelCopySurface::ScaledPoints(std::span<const TPointT<float>> points) {
	if (mScale.mX == mScale.mY)
		return points;
	const float scale = ScaleValue(mScale);
	mScaledPoints.clear();
	for (const TPointT<float>& point : points)
		mScaledPoints.push_back({point.mX * scale, point.mY * scale});
	return mScaledPoints;
}

bool TPixelCopySurface::IsVisible(const TRectT<int>& rect, float opacity) const {
	return opacity > 0.0f && !rect.Intersected(mDeviceClip).IsEmpty();
}

std::span<const TPointT<float>>
TPixelCopySurface::VisiblePoints(std::span<const TPointT<float>> points, float grownBy, float opacity) {
	const auto scaled = ScaledPoints(points);
	if (scaled.size() < 2 || !AreSensible(scaled) || !IsVisible(BoundsOf(scaled, grownBy), opacity))
		return {};
	return scaled;
}

void TPixelCopySurface::StrokePolyline(
    std::span<const TPointT<float>> points, const TColor& color, float width, float opacity) {
	if (!IsStroke(width))
		return;
	if (const auto visible = VisiblePoints(points, width, opacity); !visible.empty())
		mRenderer->StrokePolyline(visible, color, width, opacity);
}

void TPixelCopySurface::StrokePolygon(
    std::span<const TPointT<float>> points, const TColor& color, float width, float opacity) {
	if (!IsStroke(width))
		return;
	if (const auto visible = VisiblePoints(points, width, opacity); !visible.empty())
		mRenderer->StrokePolygon(visible, color, width, opacity);
}

void TPixelCopySurface::FillPolygon(std::span<const TPointT<float>> points, const TColor& color, float opacity) {
	if (const auto visible = VisiblePoints(points, 0.0f, opacity); !visible.empty())
		mRenderer->FillPolygon(visible, color, opacity);
}

void TPixelCopySurface::TexturePolygon(
    std::span<const TPointT<float>> points, TPointT<int> origin, TSurface& source, float opacity) {
	if (const auto visible = VisiblePoints(points, 0.0f, opacity); !visible.empty())
		mRenderer->TexturePolygon(visible, Scaled(origin, mScale), static_cast<TPixelCopySurface&>(source), opacity);
}

void TPixelCopySurface::StrokeRoundedRect(
    const TRectT<int>& rect, const TColor& color, float width, const TCornerRadii& radii, float opacity) {
	const TRectT<int> place = Scaled(rect, mScale);
	if (!IsStroke(width) || !AreSensible(radii))
		return;
	const int outside = static_cast<int>(std::ceil(width));
	// A clip within the outline has nothing to draw; the outline reaches inward as far as its corners do.
	const int inside = static_cast<int>(std::ceil(std::max(width, LargestOf(radii))));
	const bool isAllInside = Grown(place, -inside).Intersected(mDeviceClip) == mDeviceClip;
	if (IsVisible(Grown(place, outside), opacity) && !isAllInside)
		mRenderer->StrokeRoundedRect(place, color, width, radii, opacity);
}

void TPixelCopySurface::FillRoundedRect(
    const TRectT<int>& rect, const TColor& color, const TCornerRadii& radii, float opacity) {
	const TRectT<int> place = Scaled(rect, mScale);
	if (AreSensible(radii) && IsVisible(place, opacity))
		mRenderer->FillRoundedRect(place, color, radii, opacity);
}

void TPixelCopySurface::TextureRoundedRect(
    const TRectT<int>& rect, TPointT<int> origin, TSurface& source, const TCornerRadii& radii, float opacity) {
	const TRectT<int> place = Scaled(rect, mScale);
	if (AreSensible(radii) && IsVisible(place, opacity))
		mRenderer->TextureRoundedRect(
		    place, Scaled(origin, mScale), static_cast<TPixelCopySurface&>(source), radii, opacity);
}

void TPixelCopySurface::StrokeCircle(
    TPointT<float> center, float radius, const TColor& color, float width, float opacity) {
	StrokeEllipse(center, radius, radius, color, width, opacity);
}

void TPixelCopySurface::FillCircle(TPointT<float> center, float radius, const TColor& color, float opacity) {
	FillEllipse(center, radius, radius, color, opacity);
}

void TPixelCopySurface::TextureCircle(
    TPointT<float> center, float radius, TPointT<int> origin, TSurface& source, float opacity) {
	TextureEllipse(center, radius, radius, origin, source, opacity);
}

TPixelCopySurface::TEllipse TPixelCopySurface::VisibleEllipse(
    TPointT<float> center, float radiusX, float radiusY, float grownBy, float opacity) const {
	constexpr TEllipse kNothing{{}, -1.0f, -1.0f};
	const float scale = ScaleValue(mScale);
	const TEllipse ellipse{{center.mX * scale, center.mY * scale}, radiusX * scale, radiusY * scale};
	if (!(radiusX >= 0.0f && radiusY >= 0.0f) || !IsSensible(ellipse.mCenter.mX) || !IsSensible(ellipse.mCenter.mY) ||
	    !IsSensible(ellipse.mRadiusX) || !IsSensible(ellipse.mRadiusY))
		return kNothing;
	const TPointT<float> reach{ellipse.mRadiusX + grownBy, ellipse.mRadiusY + grownBy};
	const TRectT<int> bounds = PixelsBetween(
	    ellipse.mCenter.mX - reach.mX, ellipse.mCenter.mY - reach.mY, ellipse.mCenter.mX + reach.mX,
	    ellipse.mCenter.mY + reach.mY);
	return IsVisible(bounds, opacity) ? ellipse : kNothing;
}

void TPixelCopySurface::StrokeEllipse(
    TPointT<float> center, float radiusX, float radiusY, const TColor& color, float width, float opacity) {
	if (!IsStroke(width))
		return;
	const TEllipse ellipse = VisibleEllipse(center, radiusX, radiusY, width, opacity);
	if (ellipse.mRadiusX >= 0.0f)
		mRenderer->StrokeEllipse(ellipse.mCenter, ellipse.mRadiusX, ellipse.mRadiusY, color, width, opacity);
}

void TPixelCopySurface::FillEllipse(
    TPointT<float> center, float radiusX, float radiusY, const TColor& color, float opacity) {
	const TEllipse ellipse = VisibleEllipse(center, radiusX, radiusY, 0.0f, opacity);
	if (ellipse.mRadiusX >= 0.0f)
		mRenderer->FillEllipse(ellipse.mCenter, ellipse.mRadiusX, ellipse.mRadiusY, color, opacity);
}

void TPixelCopySurface::TextureEllipse(
    TPointT<float> center, float radiusX, float radiusY, TPointT<int> origin, TSurface& source, float opacity) {
	const TEllipse ellipse = VisibleEllipse(center, radiusX, radiusY, 0.0f, opacity);
	if (ellipse.mRadiusX >= 0.0f)
		mRenderer->TextureEllipse(
		    ellipse.mCenter, ellipse.mRadiusX, ellipse.mRadiusY, Scaled(origin, mScale),
		    static_cast<TPixelCopySurface&>(source), opacity);
}
