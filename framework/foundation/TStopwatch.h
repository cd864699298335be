// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>

/// Measures elapsed time in milliseconds; runs from construction or the last restart.
class TStopwatch {
public:
	void Restart() { mStart = TClock::now(); }

	float ElapsedMilliseconds() const {
		return std::chrono::duration<float, std::milli>(TClock::now() - mStart).count();
	}

private:
	using TClock = std::chrono::steady_clock;

	TClock::time_point mStart = TClock::now();
};

/// The clock that random generators are seeded from.
inline uint64_t MicrosecondClock() {
	using namespace std::chrono;
	return static_cast<uint64_t>(duration_cast<microseconds>(system_clock::now().time_since_epoch()).count());
}
