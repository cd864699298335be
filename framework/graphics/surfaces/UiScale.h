// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TPointT.h"
#include "framework/foundation/values/TRectT.h"

#include <algorithm>
#include <cstdint>

/// The scale of the interface: surface pixels for each logical pixel, as a fraction: mX the numerator, mY the
/// denominator, above 0. Views count in logical pixels; surfaces multiply.
using TUiScale = TPointT<int>;

inline constexpr TUiScale kUnscaled{1, 1};
inline constexpr TUiScale kScaleOf100{4, 4};
inline constexpr TUiScale kScaleOf200{8, 4};

/// What "Auto" makes of a display.
constexpr TUiScale ScaleForDpi(int dpi) {
	return dpi < 168 ? kScaleOf100 : kScaleOf200;
}

/// 4/4 or 8/4, by the preference or, if that says "Auto", by the display. Main thread; needs a TGraphPort.
TUiScale CurrentScale();

constexpr float ScaleValue(TUiScale scale) {
	return static_cast<float>(scale.mX) / static_cast<float>(scale.mY);
}

/// Truncated toward zero. What no window can have is limited, so that edges can be added.
constexpr int Scaled(int value, TUiScale scale) {
	constexpr int64_t kLimit = 1 << 29;
	if (scale == kUnscaled)
		return value;
	return static_cast<int>(std::clamp(int64_t{value} * scale.mX / scale.mY, -kLimit, kLimit));
}

constexpr TPointT<int> Scaled(TPointT<int> point, TUiScale scale) {
	return {Scaled(point.mX, scale), Scaled(point.mY, scale)};
}

/// By the edges, so that neighbours stay neighbours.
constexpr TRectT<int> Scaled(const TRectT<int>& rect, TUiScale scale) {
	if (scale == kUnscaled)
		return rect;
	const TPointT<int> start = Scaled(TPointT<int>{rect.mLeft, rect.mTop}, scale);
	const TPointT<int> end = Scaled(TPointT<int>{rect.Right(), rect.Bottom()}, scale);
	return {start.mX, start.mY, end.mX - start.mX, end.mY - start.mY};
}

/// Back from surface pixels to logical ones, truncated toward zero.
constexpr TPointT<int> Unscaled(TPointT<int> point, TUiScale scale) {
	return Scaled(point, TUiScale{scale.mY, scale.mX});
}
