// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/commands/TCommand.h"

#include <atomic>
#include <cstdint>

/// The commands from one sender to one receiver. Any number of threads may push, without a lock and without failing;
/// one at a time drains, which the receiver's drain lock in TThreadCommunicator sees to.
class TCommandQueue {
public:
	TCommandQueue() = default;
	TCommandQueue(const TCommandQueue&) = delete;
	TCommandQueue& operator=(const TCommandQueue&) = delete;
	~TCommandQueue() = default;

	/// Retains the command.
	void Push(TCommand* command) noexcept;

	/// Runs what has arrived so far, in order of arrival. What a command throws is swallowed. Does nothing while the
	/// queue is held or already being drained, so a command may come back here.
	void Drain();
	/// Releases the commands without running them.
	void Drop();

	bool IsEmpty() const noexcept { return mHead.load() == nullptr; }

	/// Empty, and the last command taken from it has run to its end.
	bool HasFinished() const noexcept { return IsEmpty() && mProcessing.load() == 0; }

	bool IsHeld() const noexcept { return mHoldCount.load() > 0; }

	bool HasWork() const noexcept { return !IsEmpty() && !IsHeld(); }

	void Hold() noexcept { mHoldCount.fetch_add(1); }

	void Release() noexcept { mHoldCount.fetch_sub(1); }

private:
	TCommandLink* TakeAll() noexcept;

	std::atomic<int32_t> mProcessing{0};
	std::atomic<int32_t> mHoldCount{0};
	std::atomic<TCommandLink*> mHead{nullptr}; // the most recently pushed
};
