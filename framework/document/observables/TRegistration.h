// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TDeferredMemory.h"
#include "framework/document/observables/TObservable.h"
#include "framework/foundation/commands/TCommand.h"
#include "framework/foundation/memory/TPtr.h"

#include <atomic>
#include <cstdint>

class TThreadCommunicator;

/// An observer's registration with an observable. It is itself the command that carries a notification to the
/// observer's thread: at most one is on its way, posting needs no memory, and what happens meanwhile joins it.
///
/// The audience's list holds it, and the queue that it waits in. Registered or not, the calls under way and what it
/// carries stand in one atomic word, so that any thread may tell the observer while another ends the registration.
/// From the registration on, until it has ended and is in no use any more, it holds a counted observer up.
class TObserver::TRegistration final : public TCommand {
public:
	TRegistration(TObservable* observable, const TObserverCallback& callback, int32_t deliveryMode) noexcept;

	static void* operator new(std::size_t size) { return TDeferredMemory::operator new(size); }

	static void operator delete(void* memory) noexcept { TDeferredMemory::operator delete(memory); }

	const TObserverCallback& Callback() const noexcept { return mCallback; }

	TObserver& Observer() const noexcept { return *mCallback.Observer(); }

	int32_t ThreadIndex() const noexcept { return mThreadIndex; }

	int32_t DeliveryMode() const noexcept { return mDeliveryMode; }

	TObservable::TAudience& Audience() const noexcept { return *mpObservable->mAudience.Get(); }

	bool IsRegistered() const noexcept { return (mState.load() & kRegistered) != 0; }

	/// Calls the observer or posts to it, whichever is asked for. `current` is the calling thread's role.
	void Tell(int32_t reason, int32_t current, TThreadCommunicator* communicator);

	/// Whether who ends a registration holds the observer up until it calls Leave.
	enum class TUse : int32_t { kNone, kKept };

	/// No call begins any more.
	void End(TUse use) noexcept;
	void Leave() noexcept { Leave(kUse); }
	/// Returns when no other thread is in the observer's callback; called after End. A main thread does not wait for
	/// another one, which has lent it the role in the midst of the call.
	void WaitForOthers(TUse use) const noexcept;

	/// Of the innermost call that the thread is in.
	static int32_t SourceOfThisThread() noexcept;

	void Execute() override;
	void OnDropped() noexcept override;

private:
	friend class TObservable::TAudience;

	using TState = uint64_t;

	class TCall;

	bool Enter(TState uses) noexcept;
	void Leave(TState uses) noexcept;
	void Call(int32_t reason, int32_t source, TState uses);
	void Post(int32_t reason, int32_t source, TThreadCommunicator& communicator);
	TState TakeNotification(TState uses) noexcept;
	TState UsesOfThisThread(bool isMain) const noexcept;

	static TState UsesOf(int32_t role) noexcept { return role == kMainThread ? kUse + kMainUse : kUse; }

	static constexpr TState Notification(int32_t reason, int32_t source) noexcept;
	static TState Joined(TState state, int32_t reason, int32_t source) noexcept;

	static constexpr TState kUse = 1; // a call under way, or the notification
	static constexpr TState kUses = 0xFFFF * kUse;
	static constexpr TState kMainUse = TState{1} << 16; // a call that is made in the main role
	static constexpr TState kMainUses = 0xFFFF * kMainUse;
	static constexpr TState kRegistered = TState{1} << 32;
	static constexpr TState kHoldsObserver = TState{1} << 33;
	static constexpr TState kNotified = TState{1} << 34; // on its way, with reason and source
	static constexpr int32_t kReasonShift = 40;
	static constexpr int32_t kSourceShift = 48;
	static constexpr TState kNotification = kNotified | TState{0xFFFF} << kReasonShift;

	std::atomic<TState> mState{kRegistered | kHoldsObserver};
	TObservable* const mpObservable; // only as long as it is registered
	const TObserverCallback mCallback;
	const int32_t mThreadIndex;
	const int32_t mDeliveryMode;
	TPtr<TReferenceCountable> mpKeepAlive; // the observable, while a notification is on its way

	// The audience's: rounds read the way forward.
	std::atomic<TRegistration*> mpNext{nullptr};
	TRegistration* mpPrevious = nullptr; // of the list; among those that wait for their end, the next one
	TRegistration* mpNextOfObserver = nullptr;
	TRegistration* mpPreviousOfObserver = nullptr;
};
