// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cmath>
#include <cstdint>

/// The general random generator, for what need not repeat. One state for the whole process, drawn from by any thread;
/// an interleaved draw only changes which numbers come next.
class TRandom {
public:
	static void SetState(uint32_t state) noexcept { sState.store(state, std::memory_order_relaxed); }

	/// Uniform in 0 to 1.
	static double Next() noexcept {
		const uint32_t state = (sState.load(std::memory_order_relaxed) * 1103515245u + 12345u) & 0x7FFFFFFFu;
		sState.store(state, std::memory_order_relaxed);
		return state * 4.656612875245797e-10; // 1 / (2^31 - 1)
	}

private:
	static inline std::atomic<uint32_t> sState{0};
};

/// The nearest whole number, halves away from zero. The value must fit.
inline int RoundHalfAway(double value) noexcept {
	return static_cast<int>(value + std::copysign(0.5, value));
}
