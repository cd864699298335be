// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

#include <array>

/// The prefix with each index from 0 on: "Scene0", "Scene1"... Nodes share these texts instead of building their own.
template <std::size_t count>
std::array<TString, count> MakeIndexedNames(const char* prefix) {
	std::array<TString, count> names;
	for (std::size_t i = 0; i < count; ++i)
		names[i] = TString(prefix) + TString::ToString(static_cast<int>(i));
	return names;
}
