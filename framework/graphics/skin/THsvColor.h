// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TColor.h"

/// A colour as hue, saturation and value, each 0 to 1. There and back gives the same TColor.
struct THsvColor {
	float mHue = 0.0f;
	float mSaturation = 0.0f;
	float mValue = 0.0f;

	static THsvColor From(const TColor& color);
	TColor ToColor() const;
};
