// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// A colour without alpha; each part is 0 to 255.
struct TColor {
	int mRed = 0;
	int mGreen = 0;
	int mBlue = 0;

	friend constexpr bool operator==(const TColor&, const TColor&) = default;
};
