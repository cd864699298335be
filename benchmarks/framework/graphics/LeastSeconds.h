// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>

/// The least of many, so that what else runs on the machine counts little.
template <class TWork>
double LeastSeconds(int times, const TWork& work) {
	double least = 1.0;
	for (int i = 0; i < times; ++i) {
		const auto start = std::chrono::steady_clock::now();
		work();
		benchmark::ClobberMemory();
		least = std::min(least, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
	}
	return least;
}
