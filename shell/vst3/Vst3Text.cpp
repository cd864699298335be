// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/vst3/Vst3Text.h"

#include <algorithm>
#include <cstddef>

void CopyText(std::u16string_view text, Steinberg::Vst::String128 target) {
	constexpr std::size_t kMost = 127;
	std::size_t length = std::min(text.size(), kMost);
	if (length < text.size() && text[length - 1] >= 0xD800 && text[length - 1] <= 0xDBFF)
		--length;
	std::copy_n(text.begin(), length, target);
	target[length] = 0;
}
