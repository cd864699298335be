// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"

#include <cstdint>
#include <string>

/// Larger files are refused: no document comes near.
inline constexpr int64_t kLargestWholeFile = int64_t{1} << 29;

/// Reads a file in one piece. False, with the reason in the system's words, for what is no regular file, cannot be
/// read, or is larger than that. Writing in one piece: ReplaceFileContents.
bool ReadWholeFile(const TString& path, std::string& bytes, TString& reason);
/// For a path in the file system's own bytes, which need not be a text.
bool ReadWholeFile(const std::string& path, std::string& bytes, TString& reason);
