// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>

/// The command line was wrong: exit status 2. The text names the option.
class TUsageError final : public std::runtime_error {
public:
	using std::runtime_error::runtime_error;
};

/// The work failed: exit status 1. The text names the file.
class TWorkError final : public std::runtime_error {
public:
	using std::runtime_error::runtime_error;
};
