// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
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

	TGlobalStorage* mpStorage = nullptr;            // that the thread has entered
	TCommandPoolAllocator* mpCommandPool = nullptr; // that it allocates commands from, where that is known
	uint64_t mThreadId = 0;                         // of TThreadManager, never reused; 0 if it has none yet
	std::array<TRoleEntry, kRoleEntries> mRoleEntries{};
};
