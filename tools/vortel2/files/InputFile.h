// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

/// A file descriptor that the caller closes. Throws a TWorkError that says what the system says; a folder is no file.
int OpenForReading(const std::string& path);

/// The same, but "-" is standard input, which is read to its end first, so that the descriptor can be moved about in.
int OpenForSeeking(const std::string& path);

/// The bytes of a regular file. Throws a TWorkError.
std::string ReadInputFile(const std::string& path);
