// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// A file descriptor that the caller closes. Throws a TWorkError that says what the system says; a folder is no file.
int OpenForReading(const std::string& path);

std::vector<uint8_t> ReadWholeFile(const std::string& path);
