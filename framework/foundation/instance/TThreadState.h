// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

class TCommandPoolAllocator;
class TGlobalStorage;

/// What the framework remembers of the calling thread. It stands together, behind one function, because in a loaded
/// library each reach for a variable of the thread is a call: as the function is constant, compilers call it only once
/// where several things are wanted.
struct TThreadState {
	/// Where a manager has the thread's role; of eight managers, by their id.
	struct TRoleEntry {
		uint64_t mManagerId;
		const void* mpNode;
	};

	static constexpr std::size_t kRoleEntries = 8;

	[[gnu::const]] static TThreadState& OfThisThread() noexcept;

	TRoleEntry& RoleEntry(uint64_t managerId) noexcept { return mRoleEntries[managerId % kRoleEntries]; }

	/// Gives up the command pool that the thread has to itself, as it must when it changes its role or its storage.
	void LeaveCommandPool() noexcept {
		if (mpCommandPool)
			mpPoolOwner->store(nullptr, std::memory_order_relaxed);
		mpCommandPool = nullptr;
	}

	TGlobalStorage* mpStorage = nullptr;            // that the thread has entered
	TCommandPoolAllocator* mpCommandPool = nullptr; // that it alone allocates commands from, where that is known
	std::atomic<void*>* mpPoolOwner = nullptr;      // the pool's own note of the thread
	uint64_t mThreadId = 0;                         // of TThreadManager, never reused; 0 if it has none yet
	std::array<TRoleEntry, kRoleEntries> mRoleEntries{};
};
