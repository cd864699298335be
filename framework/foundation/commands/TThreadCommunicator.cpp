// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/commands/TThreadCommunicator.h"

#include "framework/foundation/commands/TDecRefCommand.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/text/TReadableException.h"

#include <chrono>
#include <memory>
#include <thread>

namespace {

constexpr std::chrono::milliseconds kLongestWaitForAudio{100};
constexpr std::chrono::milliseconds kLongestWait{10000};
constexpr std::chrono::milliseconds kAudioPollInterval{1};
constexpr std::chrono::milliseconds kPollInterval{10};
constexpr int kFlushPasses = 5;

/// Looks at least once. False when the time has passed, by the clock by which other threads live.
template <class TCondition>
bool PollUntil(std::chrono::milliseconds longest, std::chrono::milliseconds interval, TCondition condition) {
	const auto start = std::chrono::steady_clock::now();
	while (!condition()) {
		if (std::chrono::steady_clock::now() - start >= longest)
			return false;
		std::this_thread::sleep_for(interval);
	}
	return true;
}

} // namespace

TThreadCommunicator::TThreadCommunicator() {
	for (auto& queues : mQueues)
		for (auto& queue : queues)
			queue = std::make_unique<TCommandQueue>();
}

bool TThreadCommunicator::PostDeletion(TReferenceCountable* object) {
	const TThreadManager* manager = TThreadManager::Instance();
	TThreadCommunicator* communicator = Instance();
	if (!manager || !communicator || manager->IsCurrentThread(kMainThread))
		return false;
	try {
		communicator->Post(kMainThread, new TDeleteCommand<TReferenceCountable>(object));
		return true;
	} catch (const TOutOfMemoryException&) {
		return false; // better deleted on the wrong thread than never
	}
}

void TThreadCommunicator::Post(int32_t receiver, TCommand* command) noexcept {
	if (receiver == kNoThread)
		return;
	const int32_t sender = TThreadManager::Instance()->CurrentThread();
	Queue(sender == kNoThread ? kSenderWithoutRole : sender, receiver).Push(command);
}

bool TThreadCommunicator::HasCommandsFor(int32_t receiver) const noexcept {
	bool hasCommands = false; // without a branch: mostly all are empty
	for (const TOwnerPtr<TCommandQueue>& queue : QueuesTo(receiver))
		hasCommands |= !queue->IsEmpty();
	return hasCommands;
}

void TThreadCommunicator::ProcessCommands() {
	const int32_t receiver = TThreadManager::Instance()->CurrentThread();
	if (receiver == kNoThread || !HasCommandsFor(receiver))
		return;
	// Whoever drains already, does it for this thread as well. It may be a command that lets others play the main role
	// while it waits for them.
	const std::unique_lock lock(DrainLock(receiver), std::try_to_lock);
	if (!lock)
		return;
	for (const TOwnerPtr<TCommandQueue>& queue : QueuesTo(receiver))
		if (queue->HasWork())
			queue->Drain();
}

void TThreadCommunicator::WaitForThread(int32_t receiver) {
	TThreadManager* manager = TThreadManager::Instance();
	const int32_t sender = manager->CurrentThread();
	if (sender == kNoThread || receiver == kNoThread || sender == receiver || IsDone(sender, receiver))
		return;
	if (manager->IsAttached(receiver) || !RunInPlaceOf(sender, receiver))
		WaitUntilDone(sender, receiver);
}

void TThreadCommunicator::WaitForAllThreads(int32_t sender) {
	if (sender == kNoThread)
		return;
	TThreadManager* manager = TThreadManager::Instance();
	const int32_t current = manager->CurrentThread();
	for (int32_t receiver = 0; receiver < kNumberOfThreads; ++receiver) {
		if (receiver == sender || IsDone(sender, receiver))
			continue;
		if (receiver == current)
			DrainLocked(sender, receiver);
		else if (current != sender || manager->IsAttached(receiver) || !RunInPlaceOf(sender, receiver))
			WaitUntilDone(sender, receiver);
	}
}

bool TThreadCommunicator::IsDone(int32_t sender, int32_t receiver) const noexcept {
	const TCommandQueue& queue = Queue(sender, receiver);
	return queue.IsHeld() || queue.HasFinished();
}

/// True when nothing is left to wait for.
bool TThreadCommunicator::RunInPlaceOf(int32_t sender, int32_t receiver) {
	TThreadManager* manager = TThreadManager::Instance();
	if (receiver == kAudioThread) {
		// A host that runs comes by within a block or two and had better run its commands itself.
		PollUntil(kLongestWaitForAudio, kAudioPollInterval, [&] {
			return manager->IsAttached(receiver) || IsDone(sender, receiver);
		});
		if (IsDone(sender, receiver))
			return true;
	}
	TCriticalSection::TGuard guard(manager->Lock(receiver));
	if (manager->IsAttached(receiver) || Queue(sender, receiver).IsEmpty())
		return false;
	const TThreadManager::TScope role(receiver, -1, TThreadManager::TPatience::kNone);
	return role.IsTaken() && DrainLocked(sender, receiver);
}

void TThreadCommunicator::WaitUntilDone(int32_t sender, int32_t receiver) {
	if (!PollUntil(kLongestWait, kPollInterval, [&] { return IsDone(sender, receiver); }))
		TLog::Instance()->Log(
		    "Threads", "Timeout while waiting for Thread%d to finish its commands!!", static_cast<int>(receiver));
}

/// False if others drain.
bool TThreadCommunicator::DrainLocked(int32_t sender, int32_t receiver) {
	const std::unique_lock lock(DrainLock(receiver), std::try_to_lock);
	if (lock)
		Queue(sender, receiver).Drain();
	return lock.owns_lock();
}

void TThreadCommunicator::FlushAllCommands() {
	TThreadManager* manager = TThreadManager::Instance();
	manager->Detach();
	for (int pass = 0; pass < kFlushPasses && RunInPlaceOfAll(); ++pass) {
	}
	manager->Attach(kMainThread);
}

/// True if there was anything to run.
bool TThreadCommunicator::RunInPlaceOfAll() {
	TThreadManager* manager = TThreadManager::Instance();
	bool found = false;
	for (int32_t receiver = 0; receiver < kNumberOfThreads; ++receiver) {
		TCriticalSection::TGuard guard(manager->Lock(receiver));
		manager->Attach(receiver);
		for (int32_t sender = 0; sender <= kSenderWithoutRole; ++sender) {
			if (!Queue(sender, receiver).HasWork())
				continue;
			found = true;
			DrainLocked(sender, receiver);
		}
		manager->Detach();
	}
	return found;
}

void TThreadCommunicator::DropAllCommands() {
	for (auto& queues : mQueues)
		for (auto& queue : queues)
			queue->Drop();
}

void TThreadCommunicator::HoldQueues(int32_t sender, int32_t receiver) {
	if (sender != kNoThread && receiver != kNoThread)
		Queue(sender, receiver).Hold();
}

void TThreadCommunicator::ReleaseQueues(int32_t sender, int32_t receiver) {
	if (sender != kNoThread && receiver != kNoThread)
		Queue(sender, receiver).Release();
}

THoldCommands::THoldCommands(int32_t sender) : mSender(sender) {
	for (int32_t receiver = 0; receiver < kNumberOfThreads; ++receiver)
		TThreadCommunicator::Instance()->HoldQueues(mSender, receiver);
}

THoldCommands::~THoldCommands() {
	for (int32_t receiver = 0; receiver < kNumberOfThreads; ++receiver)
		TThreadCommunicator::Instance()->ReleaseQueues(mSender, receiver);
}
