// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/gui/layout/LayoutDistribution.h"

#include <algorithm>
#include <cmath>

namespace {

bool CanGrow(const TLayoutItem& item) {
	return item.mMaximum < 0 || item.mLength < item.mMaximum;
}

/// An equal share for everyone who can grow. Fractions add up along the items, so that each whole pixel of them goes to
/// the item at which it is complete. Returns what was handed out.
int ShareOut(std::span<TLayoutItem> items, int free, int growable) {
	constexpr float kTolerance = 0.0001f;
	const float share = static_cast<float>(free) / static_cast<float>(growable);
	const int whole = static_cast<int>(share);
	const float fraction = share - static_cast<float>(whole);
	float gathered = 0.0f;
	int handedOut = 0;
	for (TLayoutItem& item : items) {
		if (!CanGrow(item))
			continue;
		gathered += fraction;
		int extra = 0;
		if (gathered >= 1.0f - kTolerance) {
			extra = 1;
			gathered -= 1.0f;
		}
		const int wanted = item.mLength + whole + extra;
		const int length = item.mMaximum < 0 ? wanted : std::min(wanted, item.mMaximum);
		handedOut += length - item.mLength;
		item.mLength = length;
	}
	return handedOut;
}

void PlaceInRow(std::span<TLayoutItem> items, int start, int gap) {
	for (TLayoutItem& item : items) {
		item.mPosition = start;
		start += item.mLength + gap;
	}
}

void PlaceFromEnd(std::span<TLayoutItem> items, const TLayoutAxis& axis, bool reversed) {
	int end = axis.mLength - axis.mEndMargin;
	const auto place = [&](TLayoutItem& item) {
		item.mPosition = end - item.mLength;
		end = item.mPosition - axis.mSpacing;
	};
	if (reversed)
		std::for_each(items.begin(), items.end(), place);
	else
		std::for_each(items.rbegin(), items.rend(), place);
}

/// The free pixels between the items, without a remainder at the far end.
void PlaceJustified(std::span<TLayoutItem> items, const TLayoutAxis& axis, int free) {
	const int gaps = static_cast<int>(items.size()) - 1;
	int start = axis.mStartMargin;
	for (int i = 0; i <= gaps; ++i) {
		TLayoutItem& item = items[static_cast<std::size_t>(i)];
		item.mPosition = start + (gaps > 0 ? free * i / gaps : 0);
		start += item.mLength + axis.mSpacing;
	}
}

void PlaceAtSteps(std::span<TLayoutItem> items, const TLayoutAxis& axis) {
	const int step = axis.Available() / (static_cast<int>(items.size()) + 1);
	int center = axis.mStartMargin;
	for (TLayoutItem& item : items) {
		center += step;
		item.mPosition = center - item.mLength / 2;
	}
}

} // namespace

int FreeLength(std::span<const TLayoutItem> items, const TLayoutAxis& axis) {
	int free = axis.Available() - (static_cast<int>(items.size()) - 1) * axis.mSpacing;
	for (const TLayoutItem& item : items)
		free -= item.mLength;
	return free;
}

void DistributeLengths(std::span<TLayoutItem> items, const TLayoutAxis& axis) {
	for (TLayoutItem& item : items)
		item.mLength = item.mMinimum;
	int free = items.empty() ? 0 : FreeLength(items, axis);
	while (free >= 1) {
		const int growable = static_cast<int>(std::count_if(items.begin(), items.end(), CanGrow));
		const int handedOut = growable > 0 ? ShareOut(items, free, growable) : 0;
		// Nothing goes out when nobody can grow, or when the fractions of very many items were lost in rounding.
		if (handedOut == 0)
			break;
		free -= handedOut;
	}
}

void PlaceItems(std::span<TLayoutItem> items, const TLayoutAxis& axis, int alignment) {
	if (items.empty())
		return;
	const int free = std::max(FreeLength(items, axis), 0);
	const int count = static_cast<int>(items.size());
	switch (alignment) {
	case kLayoutEnd:
	case kLayoutEndReversed:
		return PlaceFromEnd(items, axis, alignment == kLayoutEndReversed);
	case kLayoutJustified:
		return PlaceJustified(items, axis, free);
	case kLayoutCenter:
		return PlaceInRow(items, axis.mStartMargin + free / 2, axis.mSpacing);
	case kLayoutSpread: {
		const int gap = free / (count + 1);
		return PlaceInRow(items, axis.mStartMargin + gap, axis.mSpacing + gap);
	}
	case kLayoutCenterSteps:
		return PlaceAtSteps(items, axis);
	default:
		return PlaceInRow(items, axis.mStartMargin, axis.mSpacing);
	}
}
