// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cmath>
#include <cstdint>

/// The general random generator, for what need not repeat. One state for the whole process, drawn from by any thread;
/// an interleaved draw only changes which numbers come next. Where runs side by side have to repeat, each gives its
/// threads a state of their own.
class TRandom {
public:
	using TState = std::atomic<uint32_t>;

	/// While it lives, its thread draws from that state, which outlives it; null is the one of the process. Ends in
	/// the reverse order of its making.
	class [[nodiscard]] TScope {
	public:
		explicit TScope(TState* state) noexcept : mpOuter(stpState) { stpState = state; }

		~TScope() { stpState = mpOuter; }

		TScope(const TScope&) = delete;
		TScope& operator=(const TScope&) = delete;

	private:
		TState* mpOuter;
	};

	/// That of the calling thread's innermost scope, for a further thread of the same run.
	static TState* StateOfThread() noexcept { return stpState; }

	static void SetState(uint32_t state) noexcept { State().store(state, std::memory_order_relaxed); }

	/// Uniform in 0 to 1.
	static double Next() noexcept {
		TState& current = State();
		const uint32_t state = (current.load(std::memory_order_relaxed) * 1103515245u + 12345u) & 0x7FFFFFFFu;
		current.store(state, std::memory_order_relaxed);
		return state * 4.656612875245797e-10; // 1 / (2^31 - 1)
	}

private:
	static TState& State() noexcept { return stpState ? *stpState : sState; }

	static inline TState sState{0};
	static inline constinit thread_local TState* stpState = nullptr;
};

/// The nearest whole number, halves away from zero. The value must fit.
inline int RoundHalfAway(double value) noexcept {
	return static_cast<int>(value + std::copysign(0.5, value));
}
