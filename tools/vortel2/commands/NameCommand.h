// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// `names`: generated program names, a line each. seed is what the general generator is set to first.
std::string MakeNames(int32_t count, std::optional<uint32_t> seed);
