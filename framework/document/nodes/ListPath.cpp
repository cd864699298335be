// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/nodes/ListPath.h"

#include <cstddef>
#include <utility>

TString ListPath::Step(int32_t index) {
	return TString("[") + TString::ToString(index) + "]";
}

int32_t ListPath::TakeIndex(std::u16string_view& path) {
	constexpr std::size_t kMostDigits = 9; // fits into an int32_t
	const std::u16string_view whole = std::exchange(path, {});
	const std::size_t end = whole.find(u']');
	if (!whole.starts_with(u'[') || end == std::u16string_view::npos || end < 2 || end - 1 > kMostDigits)
		return -1;
	int32_t index = 0;
	for (const char16_t digit : whole.substr(1, end - 1)) {
		if (digit < u'0' || digit > u'9')
			return -1;
		index = index * 10 + (digit - u'0');
	}
	path = whole.substr(end + 1);
	return index;
}
