// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TRectT.h"

#include <algorithm>

/// Where a window of this size lies in the middle of `over`, but inside `area`; its corner stays inside in any case.
constexpr TPointT<int> CenteredPosition(TPointT<int> size, const TRectT<int>& over, const TRectT<int>& area) {
	const TPointT<int> middle{over.mLeft + (over.mWidth - size.mX) / 2, over.mTop + (over.mHeight - size.mY) / 2};
	return {
	    std::max(area.mLeft, std::min(middle.mX, area.Right() - size.mX)),
	    std::max(area.mTop, std::min(middle.mY, area.Bottom() - size.mY))};
}
