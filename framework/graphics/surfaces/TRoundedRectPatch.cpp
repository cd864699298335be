// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TRoundedRectPatch.h"

#include "framework/graphics/surfaces/TAggWorkspace.h"

#include <algorithm>
#include <cmath>

namespace {

/// In columns: what is left of the middle, the middle, what is right of it.
TRoundedRectPatch::TRow RowOf(const std::vector<uint8_t>& covers, int cornerSize) {
	const auto middle = covers.begin() + cornerSize;
	const auto isCovered = [](uint8_t cover) { return cover != 0; };
	const auto differs = [&](uint8_t cover) { return cover != *middle; };

	TRoundedRectPatch::TRow row;
	row.mMiddle = *middle;
	const auto leftStart = std::find_if(covers.begin(), middle, isCovered);
	const auto leftEnd =
	    std::find_if(std::make_reverse_iterator(middle), std::make_reverse_iterator(leftStart), differs).base();
	const auto rightStart = std::find_if(middle + 1, covers.end(), differs);
	const auto rightEnd = std::find_if(covers.rbegin(), std::make_reverse_iterator(rightStart), isCovered).base();
	row.mLeft.assign(leftStart, leftEnd);
	row.mLeftStart = static_cast<int>(leftStart - covers.begin());
	row.mMiddleStart = static_cast<int>(leftEnd - covers.begin());
	row.mMiddleEnd = static_cast<int>(rightStart - (middle + 1));
	row.mRight.assign(rightStart, rightEnd);
	return row;
}

} // namespace

/// The line lies on the edge that the arcs belong to, half of it on either side.
int TRoundedRectShape::CornerSize() const {
	const float radius = std::max({mRadii.mTopLeft, mRadii.mTopRight, mRadii.mBottomLeft, mRadii.mBottomRight, 0.0f});
	return static_cast<int>(std::ceil(mInset + std::max<double>(radius, mStrokeWidth / 2.0))) + 1;
}

TRoundedRectPatch::TRoundedRectPatch(const TRoundedRectShape& shape, TAggWorkspace& workspace)
    : mShape(shape),
      mCornerSize(shape.CornerSize()) {
	const int size = 2 * mCornerSize + 1;
	std::vector<std::vector<uint8_t>> covers(
	    static_cast<std::size_t>(size), std::vector<uint8_t>(static_cast<std::size_t>(size)));
	workspace.Begin({size, size});
	workspace.AddRoundedRect({0, 0, size, size}, shape);
	workspace.Render(workspace.mPixels, 0, size, [&](const agg::scanline32_u8& scanline) {
		std::vector<uint8_t>& row = covers[static_cast<std::size_t>(scanline.y())];
		auto span = scanline.begin();
		for (unsigned i = 0; i < scanline.num_spans(); ++i, ++span)
			for (int x = std::max(span->x, 0); x < std::min(span->x + span->len, size); ++x)
				row[static_cast<std::size_t>(x)] = span->covers[x - span->x];
	});
	for (const std::vector<uint8_t>& row : covers)
		mRows.push_back(RowOf(row, mCornerSize));
}
