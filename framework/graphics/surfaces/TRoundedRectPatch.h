// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/surfaces/TSurface.h"

#include <cstdint>
#include <vector>

class TAggWorkspace;

/// What tells one rounded rectangle from another beside its place and size.
struct TRoundedRectShape {
	double mInset = 0.0; // on all sides
	TCornerRadii mRadii;
	double mStrokeWidth = 0.0; // 0: filled

	/// How far the corners reach into the rectangle, in whole pixels.
	int CornerSize() const;

	friend bool operator==(const TRoundedRectShape&, const TRoundedRectShape&) = default;
};

/// How much of each pixel a rounded rectangle covers, for all sizes: the four corners, with one row and one column
/// between them that stand for as many as there are. Most of what an interface draws is of this kind; from here it
/// costs little more than plain rectangles.
class TRoundedRectPatch {
public:
	/// A row in parts. Columns count from the left, those of the right part from the first behind the middle.
	struct TRow {
		std::vector<uint8_t> mLeft;
		std::vector<uint8_t> mRight;
		int mLeftStart = 0; // the left part goes from here to mMiddleStart, as far as there are covers
		int mMiddleStart = 0;
		int mMiddleEnd = 0; // columns behind the middle that are covered like it
		uint8_t mMiddle = 0;
	};

	TRoundedRectPatch(const TRoundedRectShape& shape, TAggWorkspace& workspace);

	const TRoundedRectShape& Shape() const noexcept { return mShape; }

	int CornerSize() const noexcept { return mCornerSize; }

	/// The rows of the upper corners, the middle one, those of the lower corners.
	const std::vector<TRow>& Rows() const noexcept { return mRows; }

private:
	TRoundedRectShape mShape;
	int mCornerSize;
	std::vector<TRow> mRows;
};
