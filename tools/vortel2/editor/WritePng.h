// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TPointT.h"

#include <cstdint>
#include <span>
#include <string>

/// Rows of 0x00RRGGBB from the top. Written beside the target and renamed. Throws a TWorkError that names the file.
void WritePng(const std::string& path, TPointT<int> size, std::span<const uint32_t> pixels);
