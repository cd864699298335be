// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

/// A recursive lock for work that may be long. Who waits is served in the order of asking, a thread that comes back at
/// once included; waiting can be limited, and all levels given up and taken again together.
class TTurnLock {
public:
	using TLimit = std::chrono::milliseconds;

	/// False when the time has passed; 0 asks without waiting.
	bool Take(TLimit longestWait);
	void GiveBack();

	bool IsMine() const;

	/// Gives back all levels of the calling thread and returns how many there were.
	int32_t GiveUp();
	/// Waits as long as it takes.
	void TakeAgain(int32_t levels);

private:
	struct TWaiter {
		std::thread::id mThread;
		TWaiter* mpNext = nullptr;
	};

	bool IsHeldBy(std::thread::id thread) const noexcept { return mLevels > 0 && mOwner == thread; }

	bool TakeAtOnce() noexcept;
	void Enqueue(TWaiter& waiter) noexcept;
	void Leave(const TWaiter& waiter) noexcept;
	void PassOn() noexcept;

	mutable std::mutex mMutex; // of all below
	std::condition_variable mPassed;
	std::thread::id mOwner;
	int32_t mLevels = 0;
	TWaiter* mpFirst = nullptr; // in the order of asking; the lock is passed to the first
};
