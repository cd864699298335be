// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>

namespace MouseDrags {

/// How far the mouse goes before the system calls it a drag. Logical pixels.
inline constexpr int kSystemThreshold = 4;

/// The same for controls that are turned by dragging.
constexpr int Threshold() noexcept {
	return std::max(kSystemThreshold, 2);
}

} // namespace MouseDrags
