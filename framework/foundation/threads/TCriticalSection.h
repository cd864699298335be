// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <mutex>

/// A recursive mutex, held through TCriticalSection::TGuard.
class TCriticalSection {
public:
	using TGuard = std::lock_guard<TCriticalSection>;

	void lock() { mMutex.lock(); }

	void unlock() { mMutex.unlock(); }

	bool try_lock() { return mMutex.try_lock(); }

private:
	std::recursive_mutex mMutex;
};
