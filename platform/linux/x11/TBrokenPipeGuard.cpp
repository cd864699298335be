// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TBrokenPipeGuard.h"

#include <ctime>
#include <pthread.h>

namespace {

bool IsPipeSignalPending() {
	sigset_t pending{};
	return sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1;
}

} // namespace

TBrokenPipeGuard::TBrokenPipeGuard() noexcept : mWasPending(IsPipeSignalPending()) {
	sigemptyset(&mPipeOnly);
	sigaddset(&mPipeOnly, SIGPIPE);
	pthread_sigmask(SIG_BLOCK, &mPipeOnly, &mPrevious);
}

TBrokenPipeGuard::~TBrokenPipeGuard() {
	constexpr timespec kAtOnce{};
	if (!mWasPending && IsPipeSignalPending())
		sigtimedwait(&mPipeOnly, nullptr, &kAtOnce);
	pthread_sigmask(SIG_SETMASK, &mPrevious, nullptr);
}
