// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/headless/THeadlessClock.h"

#include "framework/foundation/values/TStopwatch.h"

#include <atomic>

namespace {

std::atomic<std::chrono::nanoseconds::rep> sNow{0};

} // namespace

THeadlessClock::THeadlessClock() {
	TStopwatch::UseSource([] { return std::chrono::nanoseconds(sNow.load(std::memory_order_relaxed)); });
}

THeadlessClock::~THeadlessClock() {
	TStopwatch::UseSource(nullptr);
}

void THeadlessClock::Advance(std::chrono::nanoseconds time) {
	sNow.fetch_add(time.count(), std::memory_order_relaxed);
}
