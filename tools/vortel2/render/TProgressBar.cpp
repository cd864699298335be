// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/render/TProgressBar.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace {

constexpr std::chrono::milliseconds kPatience{500};
constexpr int kWidth = 40;

} // namespace

TProgressBar::TProgressBar(bool isQuiet) : mIsEnabled(!isQuiet && isatty(STDERR_FILENO) != 0) {}

TProgressBar::~TProgressBar() {
	Clear();
}

void TProgressBar::Expect(int64_t frames) {
	mTotal.fetch_add(frames, std::memory_order_relaxed);
}

void TProgressBar::Clear() {
	const std::lock_guard lock(mLock);
	if (mShownPercent >= 0)
		std::fputs("\r\033[K", stderr);
	mShownPercent = -1;
	mIsEnabled = false;
}

void TProgressBar::Advance(int64_t frames) {
	const int64_t done = mDone.fetch_add(frames, std::memory_order_relaxed) + frames;
	const std::unique_lock lock(mLock, std::try_to_lock);
	if (lock.owns_lock())
		Show(done);
}

void TProgressBar::Show(int64_t done) {
	if (!mIsEnabled || std::chrono::steady_clock::now() - mStart < kPatience)
		return;
	const int64_t total = mTotal.load(std::memory_order_relaxed);
	const int percent = total > 0 ? static_cast<int>(std::min(done, total) * 100 / total) : 0;
	if (percent <= mShownPercent)
		return;
	mShownPercent = percent;
	const auto filled = static_cast<std::size_t>(percent * kWidth / 100);
	const std::string bar = std::string(filled, '#') + std::string(kWidth - filled, '.');
	std::fprintf(stderr, "\r%s %3d %%", bar.c_str(), percent);
	std::fflush(stderr);
}
