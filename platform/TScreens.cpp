// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TScreens.h"

#include <cstdint>
#include <limits>

namespace {

int Outside(int value, int from, int to) {
	return value < from ? from - value : value >= to ? value - to + 1 : 0;
}

int64_t SquaredDistance(const TRectT<int>& rect, TPointT<int> point) {
	const int64_t x = Outside(point.mX, rect.mLeft, rect.Right());
	const int64_t y = Outside(point.mY, rect.mTop, rect.Bottom());
	return x * x + y * y;
}

} // namespace

TScreen TScreens::At(TPointT<int> point) const {
	TScreen nearest;
	int64_t smallest = std::numeric_limits<int64_t>::max();
	for (const TScreen& screen : All()) {
		const int64_t distance = SquaredDistance(screen.mBounds, point);
		if (distance < smallest) {
			smallest = distance;
			nearest = screen;
		}
	}
	return nearest;
}
