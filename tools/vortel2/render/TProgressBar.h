// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>

/// A bar on standard error while a render takes its time: only on a terminal, not for short work, gone at the end.
class TProgressBar {
public:
	TProgressBar(int64_t total, bool isQuiet);
	~TProgressBar();
	TProgressBar(const TProgressBar&) = delete;
	TProgressBar& operator=(const TProgressBar&) = delete;

	void Show(int64_t done);

private:
	int64_t mTotal;
	bool mIsEnabled;
	int mShownPercent = -1;
	std::chrono::steady_clock::time_point mStart = std::chrono::steady_clock::now();
};
