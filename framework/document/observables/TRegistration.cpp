// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/observables/TRegistration.h"

#include "framework/foundation/commands/TThreadCommunicator.h"

#include <algorithm>
#include <thread>
#include <utility>

/// A call of an observer that the thread is in.
class TObserver::TRegistration::TCall {
public:
	TCall(const TRegistration& registration, int32_t source, TState uses) noexcept
	    : mRegistration(registration),
	      mSource(source),
	      mUses(uses),
	      mpOuter(std::exchange(sInnermost, this)) {}

	~TCall() { sInnermost = mpOuter; }

	TCall(const TCall&) = delete;
	TCall& operator=(const TCall&) = delete;

	static constinit thread_local const TCall* sInnermost;

	const TRegistration& mRegistration;
	const int32_t mSource;
	const TState mUses;
	const TCall* const mpOuter;
};

constinit thread_local const TObserver::TRegistration::TCall* TObserver::TRegistration::TCall::sInnermost = nullptr;

int32_t TObserver::TRegistration::SourceOfThisThread() noexcept {
	return TCall::sInnermost ? TCall::sInnermost->mSource : kNoNotification;
}

TObserver::TRegistration::TRegistration(
    TObservable* observable, const TObserverCallback& callback, int32_t deliveryMode) noexcept
    : mpObservable(observable),
      mCallback(callback),
      mThreadIndex(callback.Observer()->ThreadIndex()),
      mDeliveryMode(deliveryMode) {}

void TObserver::TRegistration::Tell(int32_t reason, int32_t current, TThreadCommunicator* communicator) {
	const bool isHere = mDeliveryMode == kDeliverOnObserverThread && mThreadIndex == current;
	if (mDeliveryMode == kDeliverDirectly || isHere || !communicator) {
		const TState uses = UsesOf(current);
		if (Enter(uses))
			Call(reason, current, uses);
	} else if (mThreadIndex != kNoThread) {
		Post(reason, current, *communicator);
	}
}

bool TObserver::TRegistration::Enter(TState uses) noexcept {
	TState state = mState.load();
	while (state & kRegistered)
		if (mState.compare_exchange_weak(state, state + uses))
			return true;
	return false;
}

void TObserver::TRegistration::Leave(TState uses) noexcept {
	const TState state = mState.fetch_sub(uses) - uses;
	if ((state & (kUses | kRegistered | kHoldsObserver)) == kHoldsObserver)
		Observer().LetGo();
}

/// Leaves in any case.
void TObserver::TRegistration::Call(int32_t reason, int32_t source, TState uses) {
	struct TLeaveAtEnd {
		~TLeaveAtEnd() { mRegistration.Leave(mUses); }

		TRegistration& mRegistration;
		TState mUses;
	};

	const TLeaveAtEnd leaveAtEnd{*this, uses};
	const TCall call(*this, source, uses);
	if (!Observer().IsBeingDestroyed())
		mCallback(mpObservable, reason);
}

constexpr TObserver::TRegistration::TState
TObserver::TRegistration::Notification(int32_t reason, int32_t source) noexcept {
	return kNotified | TState{static_cast<uint8_t>(reason)} << kReasonShift |
	       TState{static_cast<uint8_t>(source - kNoThread)} << kSourceShift;
}

/// What has changed is no longer about to change; who asks where a change came from wants to know of the main thread.
TObserver::TRegistration::TState
TObserver::TRegistration::Joined(TState state, int32_t reason, int32_t source) noexcept {
	const auto oldReason = static_cast<uint8_t>(state >> kReasonShift);
	const auto oldSource = static_cast<uint8_t>(state >> kSourceShift) + kNoThread;
	return (state & ~kNotification) |
	       Notification(std::max<int32_t>(oldReason, reason), oldSource == kMainThread ? oldSource : source);
}

void TObserver::TRegistration::Post(int32_t reason, int32_t source, TThreadCommunicator& communicator) {
	TReferenceCountable* counted = mpObservable->Counted();
	if (counted && reason == kWillChange)
		return; // an event of its own, which nothing joins: it would be late
	TState state = mState.load();
	TState posted = 0;
	do {
		if (!(state & kRegistered))
			return;
		posted = state & kNotified ? Joined(state, reason, source) : (state + kUse) | Notification(reason, source);
	} while (posted != state && !mState.compare_exchange_weak(state, posted));
	if (state & kNotified)
		return;
	mpKeepAlive = counted;
	communicator.Post(mThreadIndex, this);
}

/// Exchanges the notification's use for others.
TObserver::TRegistration::TState TObserver::TRegistration::TakeNotification(TState uses) noexcept {
	TState state = mState.load();
	while (!mState.compare_exchange_weak(state, (state & ~kNotification) - kUse + uses)) {
	}
	return state;
}

void TObserver::TRegistration::Execute() {
	const TThreadManager* manager = TThreadManager::Instance();
	const TState uses = UsesOf(manager ? manager->CurrentThread() : kNoThread);
	const TPtr<TReferenceCountable> keepAlive = std::exchange(mpKeepAlive, nullptr);
	const TState state = TakeNotification(uses);
	if (state & kRegistered)
		Call(
		    static_cast<uint8_t>(state >> kReasonShift), static_cast<uint8_t>(state >> kSourceShift) + kNoThread, uses);
	else
		Leave(uses);
}

void TObserver::TRegistration::OnDropped() noexcept {
	const TPtr<TReferenceCountable> keepAlive = std::exchange(mpKeepAlive, nullptr);
	TakeNotification(kUse);
	Leave(kUse);
}

void TObserver::TRegistration::End(TUse use) noexcept {
	// An observer that nobody counts may be gone before what is on its way to it has arrived.
	const bool isCounted = Observer().ReferenceCount() != 0;
	TState state = mState.load();
	TState ended = 0;
	do {
		ended = (state & ~kRegistered) + (use == TUse::kKept ? kUse : 0);
		if (!isCounted)
			ended &= ~kHoldsObserver;
	} while (!mState.compare_exchange_weak(state, ended));
	if (!isCounted || !(ended & kUses))
		Observer().LetGo();
}

void TObserver::TRegistration::WaitForOthers(TUse use) const noexcept {
	const TThreadManager* manager = TThreadManager::Instance();
	const bool isMain = manager && manager->IsCurrentThread(kMainThread);
	const TState own = UsesOfThisThread(isMain) + (use == TUse::kKept ? kUse : 0);
	const auto hasOthers = [&](TState state) {
		const TState calls = (state & kUses) - (state & kNotified ? kUse : 0);
		return calls > own + (isMain ? (state & kMainUses) / kMainUse : 0);
	};
	while (hasOthers(mState.load()))
		std::this_thread::yield();
}

/// The calls that this thread is in; to a main thread, without those made in that role.
TObserver::TRegistration::TState TObserver::TRegistration::UsesOfThisThread(bool isMain) const noexcept {
	TState uses = 0;
	for (const TCall* call = TCall::sInnermost; call; call = call->mpOuter)
		if (&call->mRegistration == this && !(isMain && call->mUses != kUse))
			uses += kUse;
	return uses;
}
