// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>

/// The path that means standard input or output.
inline constexpr const char* kStandardStream = "-";

/// A new file without a name in the folder for temporary files, open for reading and writing; the caller closes it. -1
/// if there can be none, with errno.
int MakeSpoolFile();
/// False if not all could be written, with errno.
bool WriteBytes(int to, std::span<const uint8_t> bytes);
/// From the present places of both to the end of the first. False if one fails, with errno.
bool CopyBytes(int from, int to);
