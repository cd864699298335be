// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <csignal>

/// Around calls that may write to a socket whose other end has gone: this thread gets no SIGPIPE, and nobody else's
/// handling of signals is touched.
class TBrokenPipeGuard {
public:
	TBrokenPipeGuard() noexcept;
	~TBrokenPipeGuard();

	TBrokenPipeGuard(const TBrokenPipeGuard&) = delete;
	TBrokenPipeGuard& operator=(const TBrokenPipeGuard&) = delete;

private:
	sigset_t mPipeOnly{};
	sigset_t mPrevious{};
	bool mWasPending;
};
