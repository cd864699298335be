// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>

/// Where children lie along an axis.
enum TLayoutAlignment : int {
	kLayoutStart = 0,
	kLayoutEnd = 1,
	kLayoutEndReversed = 2, // the first child at the end
	kLayoutJustified = 3,   // the first and the last at the margins
	kLayoutCenter = 4,
	kLayoutSpread = 5,     // equal gaps, also at the ends
	kLayoutCenterSteps = 6 // centres at equal steps
};

/// Margins inside the edges of a container.
struct TMargins {
	int mLeft = 0;
	int mRight = 0;
	int mTop = 0;
	int mBottom = 0;

	static constexpr TMargins All(int margin) { return {margin, margin, margin, margin}; }

	friend constexpr bool operator==(const TMargins&, const TMargins&) = default;
};

/// A child along one axis of a layout.
struct TLayoutItem {
	int mMinimum = 0;
	int mMaximum = -1; // below 0: none
	int mLength = 0;
	int mPosition = 0;
};

/// One axis of a container.
struct TLayoutAxis {
	int mLength = 0;
	int mStartMargin = 0;
	int mEndMargin = 0;
	int mSpacing = 0;

	int Available() const noexcept { return mLength - mStartMargin - mEndMargin; }
};

/// What the axis has left beside the items and the spacing between them; may be below 0.
int FreeLength(std::span<const TLayoutItem> items, const TLayoutAxis& axis);

/// Gives each item its minimum, then hands what is free to those that can grow, in equal shares and to the last pixel,
/// until nothing is free or nobody can grow.
void DistributeLengths(std::span<TLayoutItem> items, const TLayoutAxis& axis);

/// Places items of known lengths, by TLayoutAlignment.
void PlaceItems(std::span<TLayoutItem> items, const TLayoutAxis& axis, int alignment);
