// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

#include <cstdint>
#include <string_view>

/// "[index]", the step from a list to its element in a path.
namespace ListPath {

TString Step(int32_t index);
/// Cuts "[index]" off the front; -1 if there is none, the path then is empty.
int32_t TakeIndex(std::u16string_view& path);

} // namespace ListPath
