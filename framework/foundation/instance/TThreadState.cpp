// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/instance/TThreadState.h"

namespace {

constinit thread_local TThreadState sState{};

} // namespace

TThreadState& TThreadState::OfThisThread() noexcept {
	return sState;
}
