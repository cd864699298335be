// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>

/// While it lives, all stopwatches of the process show a time that stands still but for Advance. One at a time; made
/// before what it times.
class THeadlessClock {
public:
	THeadlessClock();
	~THeadlessClock();

	THeadlessClock(const THeadlessClock&) = delete;
	THeadlessClock& operator=(const THeadlessClock&) = delete;

	void Advance(std::chrono::nanoseconds time);
};
