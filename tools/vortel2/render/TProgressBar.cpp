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

TProgressBar::TProgressBar(int64_t total, bool isQuiet)
    : mTotal(total),
      mIsEnabled(!isQuiet && total > 0 && isatty(STDERR_FILENO) != 0) {}

TProgressBar::~TProgressBar() {
	if (mShownPercent >= 0)
		std::fputs("\r\033[K", stderr);
}

void TProgressBar::Show(int64_t done) {
	if (!mIsEnabled || std::chrono::steady_clock::now() - mStart < kPatience)
		return;
	const int percent = static_cast<int>(std::min(done, mTotal) * 100 / mTotal);
	if (percent == mShownPercent)
		return;
	mShownPercent = percent;
	const auto filled = static_cast<std::size_t>(percent * kWidth / 100);
	const std::string bar = std::string(filled, '#') + std::string(kWidth - filled, '.');
	std::fprintf(stderr, "\r%s %3d %%", bar.c_str(), percent);
	std::fflush(stderr);
}
