// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/commands/TCommandQueue.h"
#include "framework/foundation/instance/TSingleton.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/threads/TCriticalSection.h"
#include "framework/foundation/threads/TThreadManager.h"
#include "framework/foundation/values/TOwnerPtr.h"

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <utility>

/// Carries commands between the logical threads of this instance: one queue per pair of sender and receiver, and one
/// per receiver for senders without a role. Any thread may post, the audio thread included. Commands of one sender
/// run in the order posted; those of different senders have no mutual order.
///
/// Lock order: the receiver's role lock (TThreadManager), then its drain lock.
class TThreadCommunicator final : public TSingleton<TThreadCommunicator> {
public:
	TThreadCommunicator();

	/// Retains the command and queues it for the receiver. Does nothing at all for receiver kNoThread. No lock.
	void Post(int32_t receiver, TCommand* command) noexcept;

	/// Posts a call of the function. No allocation but that of the command from its pool.
	template <std::invocable TFunction>
	void Post(int32_t receiver, TFunction function) {
		if (receiver == kNoThread)
			return;
		TPtr<TCommand> command(new TInvokeFunctionCommand<TFunction>(std::move(function)));
		Post(receiver, command.Get());
	}

	/// Posts the object's deletion to the main thread; false where nobody could run it or the caller is that thread.
	static bool PostDeletion(TReferenceCountable* object);

	/// Runs everything that was posted to the calling thread's role. With nothing to do it only reads.
	void ProcessCommands();
	/// Whether anything waits for the receiver.
	bool HasCommandsFor(int32_t receiver) const noexcept;

	/// Returns when the commands that the caller has posted to the receiver have run; when nobody plays the receiver,
	/// the caller takes its role and runs them. Gives up after 10 s. A queue on hold counts as done.
	void WaitForThread(int32_t receiver);
	/// The same for all receivers of the sender's commands.
	void WaitForAllThreads(int32_t sender);

	/// Main thread, at an instance's end: runs the pending commands of all threads here. Commands may post further
	/// commands; after five passes the rest stays.
	void FlushAllCommands();
	/// Releases all pending commands without running them. Only while no other thread uses this instance.
	void DropAllCommands();

	/// Held while the receiver's commands run.
	TCriticalSection& DrainLock(int32_t receiver) { return mDrainLocks[static_cast<std::size_t>(receiver)]; }

	/// Counted; a held queue keeps its commands. No-ops if an index is kNoThread.
	void HoldQueues(int32_t sender, int32_t receiver);
	void ReleaseQueues(int32_t sender, int32_t receiver);

	bool IsHeld(int32_t sender, int32_t receiver) const noexcept { return Queue(sender, receiver).IsHeld(); }

private:
	static constexpr std::size_t kReceivers = kNumberOfThreads;
	static constexpr std::size_t kSenders = kReceivers + 1;
	static constexpr int32_t kSenderWithoutRole = kNumberOfThreads;

	using TQueues = std::array<TOwnerPtr<TCommandQueue>, kSenders>;

	const TQueues& QueuesTo(int32_t receiver) const noexcept { return mQueues[static_cast<std::size_t>(receiver)]; }

	TCommandQueue& Queue(int32_t sender, int32_t receiver) const noexcept {
		return *QueuesTo(receiver)[static_cast<std::size_t>(sender)];
	}

	bool IsDone(int32_t sender, int32_t receiver) const noexcept;
	bool RunInPlaceOf(int32_t sender, int32_t receiver);
	bool RunInPlaceOfAll();
	void WaitUntilDone(int32_t sender, int32_t receiver);
	bool DrainLocked(int32_t sender, int32_t receiver);

	std::array<TQueues, kReceivers> mQueues; // never changes; together lie those that ProcessCommands looks at
	std::array<TCriticalSection, kReceivers> mDrainLocks;
};

/// Holds all queues of a sender for the guard's life.
class [[nodiscard]] THoldCommands {
public:
	explicit THoldCommands(int32_t sender);
	~THoldCommands();

	THoldCommands(const THoldCommands&) = delete;
	THoldCommands& operator=(const THoldCommands&) = delete;

private:
	int32_t mSender;
};
