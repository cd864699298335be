// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/commands/TCommandPoolAllocator.h"
#include "framework/foundation/memory/TReferenceCountable.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

class TCommand;

/// What strings commands together. Whoever strings them writes what it reads.
class TCommandLink {
private:
	friend class TCommand;
	friend class TCommandQueue;
	friend class TCommandScheduler;

	TCommandLink() = default;

	TCommand* Command() noexcept;

	TCommandLink* mpNext;
	int64_t mExecuteTime;      // samples, in the scheduler's time
	TCommandLink* mpLastOfRun; // of the first of those with the same time
	int32_t mRank = 0;         // among those with the same time; 0: behind all that have one
};

/// A unit of work that travels through the queues of TThreadCommunicator or waits in a TCommandScheduler; never both.
/// new and delete use the command pools, so commands can be made on the audio thread; when a pool cannot grow, new
/// throws TOutOfMemoryException. A command dies where its last reference goes.
class TCommand : public TReferenceCountable, private TCommandLink {
public:
	/// Runs on the receiving thread. What it throws is swallowed there.
	virtual void Execute() = 0;

	/// Instead of Execute, from a queue that gives its commands up.
	virtual void OnDropped() noexcept {}

	bool IsDeletedOnMainThread() const final { return false; }

	bool PrepareForDeletion() final { return true; }

	static void* operator new(std::size_t smallestSize) {
		const std::size_t size = std::max(smallestSize, kUsualSize);
		TCommandPoolAllocator* pool = TCommandPoolAllocator::OfThisThread();
		void* memory = pool ? pool->AllocateFreed(size) : nullptr;
		return memory ? memory : AllocateElsewhere(size);
	}

	static void operator delete(void* memory) noexcept { TCommandPoolAllocator::Free(memory); }

private:
	friend class TCommandLink;
	friend class TCommandQueue;
	friend class TCommandScheduler;

	// Most commands fit it. As they are all given the same, what one has freed serves the next.
	static constexpr std::size_t kUsualSize = 64;

	static void* AllocateElsewhere(std::size_t size);

	/// Release for queue and schedule. Theirs mostly is the only reference; then nobody can add one, and no locked
	/// instruction is needed.
	void Discharge() {
		if (ReferenceCount() == 1) [[likely]]
			delete this;
		else
			ReleaseShared();
	}

	void ReleaseShared();
};

inline TCommand* TCommandLink::Command() noexcept {
	return static_cast<TCommand*>(this);
}

/// Predicate over commands.
class TCommandMatch {
public:
	virtual ~TCommandMatch() = default;
	virtual bool Matches(const TCommand* command) const = 0;
};

/// Calls a function object, which lies in the command itself: `new TInvokeFunctionCommand([=] { ... })`.
template <class TFunction>
class TInvokeFunctionCommand final : public TCommand {
public:
	explicit TInvokeFunctionCommand(TFunction function) : mFunction(std::move(function)) {}

	void Execute() override { mFunction(); }

private:
	TFunction mFunction;
};
