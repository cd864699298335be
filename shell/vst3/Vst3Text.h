// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/vst3/Vst3Interfaces.h"

#include <pluginterfaces/vst/vsttypes.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

/// Into a text of the interface: at most 127 units, no half of a surrogate pair, and always a zero at the end.
inline void CopyText(std::u16string_view text, Steinberg::Vst::String128 target) {
	constexpr std::size_t kMost = 127;
	std::size_t length = std::min(text.size(), kMost);
	if (length < text.size() && text[length - 1] >= 0xD800 && text[length - 1] <= 0xDBFF)
		--length;
	std::copy_n(text.begin(), length, target);
	target[length] = 0;
}
