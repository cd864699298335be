// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/TString.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Files read and written in one piece.
namespace WholeFile {

/// Larger files are refused: no document comes near.
inline constexpr int64_t kLargest = int64_t{1} << 29;

/// False, with the reason, for what is no regular file, cannot be read, or is larger than kLargest.
bool Read(const TString& path, std::string& bytes, TString& reason);

/// Written beside the target, brought to the disk and renamed over it, so that at any moment the target is either the
/// old file or the new one, also when the machine stops or two processes write at once. A target that is a symbolic
/// link keeps being one; a present file keeps its mode. False, with the reason, leaves the old file and nothing else.
bool Replace(const TString& path, std::string_view bytes, TString& reason);

} // namespace WholeFile
