// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>

/// A bar on standard error while a render takes its time: only on a terminal, not for short work, gone at the end.
/// Several threads may get on at once.
class TProgressBar {
public:
	explicit TProgressBar(bool isQuiet);
	~TProgressBar();
	TProgressBar(const TProgressBar&) = delete;
	TProgressBar& operator=(const TProgressBar&) = delete;

	/// So much more is to be done: once for the same frames, whoever says it.
	void Expect(int64_t frames);
	/// So much more of the total is done.
	void Advance(int64_t frames);
	/// Takes the bar away for good.
	void Clear();

private:
	void Show(int64_t done);

	std::atomic<int64_t> mTotal{0};
	bool mIsEnabled;
	std::atomic<int64_t> mDone{0};
	std::mutex mLock; // for showing
	int mShownPercent = -1;
	std::chrono::steady_clock::time_point mStart = std::chrono::steady_clock::now();
};
