// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/skin/THsvColor.h"

#include <algorithm>
#include <cmath>

THsvColor THsvColor::From(const TColor& color) {
	const auto red = static_cast<float>(color.mRed);
	const auto green = static_cast<float>(color.mGreen);
	const auto blue = static_cast<float>(color.mBlue);
	const float largest = std::max({red, green, blue});
	const float range = largest - std::min({red, green, blue});
	if (range <= 0.0f)
		return {0.0f, 0.0f, largest / 255.0f};
	float sector = 4.0f + (red - green) / range;
	if (largest == red)
		sector = (green - blue) / range + (green < blue ? 6.0f : 0.0f);
	else if (largest == green)
		sector = 2.0f + (blue - red) / range;
	return {sector / 6.0f, range / largest, largest / 255.0f};
}

TColor THsvColor::ToColor() const {
	const float sector = (mHue - std::floor(mHue)) * 6.0f;
	// Full within a sixth of its own place on the wheel on both sides, nothing within a sixth of the opposite one.
	const auto part = [&](float place) {
		const float distance = std::abs(std::remainder(sector - place, 6.0f));
		const float share = std::clamp(2.0f - distance, 0.0f, 1.0f);
		const float value = mValue * (1.0f - mSaturation * (1.0f - share));
		return std::clamp(static_cast<int>(std::lround(value * 255.0f)), 0, 255);
	};
	return {part(0.0f), part(2.0f), part(4.0f)};
}
