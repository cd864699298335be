// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

/// Measures elapsed time in milliseconds; runs from construction or the last restart. Any thread.
class TStopwatch {
public:
	/// The time since a start that never changes; never goes back.
	using TSource = std::chrono::nanoseconds (*)();

	/// Where all stopwatches of the process read the time, for programs whose time is part of a script; null is the
	/// system's steady clock. Set while none runs.
	static void UseSource(TSource source) noexcept { sSource.store(source, std::memory_order_relaxed); }

	void Restart() { mStart = Now(); }

	float ElapsedMilliseconds() const { return std::chrono::duration<float, std::milli>(Now() - mStart).count(); }

private:
	static std::chrono::nanoseconds Now() {
		const TSource source = sSource.load(std::memory_order_relaxed);
		return source ? source() : std::chrono::steady_clock::now().time_since_epoch();
	}

	static inline std::atomic<TSource> sSource{nullptr};

	std::chrono::nanoseconds mStart = Now();
};

/// The clock that random generators are seeded from.
inline uint64_t MicrosecondClock() {
	using namespace std::chrono;
	return static_cast<uint64_t>(duration_cast<microseconds>(system_clock::now().time_since_epoch()).count());
}
