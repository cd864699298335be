// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/observables/TAudience.h"

#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/threads/TThreadManager.h"

#include <mutex>
#include <utility>

namespace {

constinit std::mutex sLock;

using TGuard = std::lock_guard<std::mutex>;

constexpr int32_t kObservable = 1; // among the users

} // namespace

/// A user of the audience that walks over it.
class TObservable::TAudience::TRound {
public:
	TRound(TAudience& audience, bool sweeps) noexcept : mAudience(audience), mSweeps(sweeps) {
		mAudience.mUsers.fetch_add(1);
	}

	~TRound() {
		if (mSweeps && mAudience.mIsUnswept.load(std::memory_order_relaxed)) {
			const TGuard guard(sLock);
			mAudience.Sweep(kObservable + 1);
		}
		mAudience.Leave();
	}

	TRound(const TRound&) = delete;
	TRound& operator=(const TRound&) = delete;

private:
	TAudience& mAudience;
	const bool mSweeps;
};

TObservable::TAudience::~TAudience() {
	while (TRegistration* first = mpFirst.load())
		Unlink(*first);
	FreeUnlinked();
}

void TObservable::TAudience::Notify(int32_t reason) {
	const TThreadManager* manager = TThreadManager::Instance();
	TThreadCommunicator* communicator = TThreadCommunicator::Instance();
	const int32_t current = manager ? manager->CurrentThread() : kNoThread;
	const TRound round(*this, current != kAudioThread);
	for (TRegistration* registration = mpFirst.load(); registration; registration = registration->mpNext.load())
		registration->Tell(reason, current, communicator);
}

void TObservable::TAudience::Abandon() noexcept {
	mIsAbandoned.store(true);
	Leave();
}

void TObservable::TAudience::Leave() noexcept {
	if (mUsers.fetch_sub(1) == 1)
		delete this;
}

void TObservable::TAudience::Append(TObservable* observable, const TObserverCallback& callback, int32_t deliveryMode) {
	auto* registration = new TRegistration(observable, callback, deliveryMode);
	const TGuard guard(sLock);
	Link(registration);
}

void TObservable::TAudience::AppendCopies(TObservable* observable, const TAudience& other) {
	const TGuard guard(sLock);
	mIsBorrowed = true;
	for (const TRegistration* source = other.mpFirst.load(); source; source = source->mpNext.load())
		if (source->IsRegistered())
			Link(new TRegistration(observable, source->Callback(), source->DeliveryMode()));
}

template <class TCondition>
TObserver::TRegistration* TObservable::TAudience::FindLast(const TCondition& condition) const noexcept {
	TRegistration* registration = mpLast;
	while (registration && !(registration->IsRegistered() && condition(*registration)))
		registration = registration->mpPrevious;
	return registration;
}

template <class TCondition>
TPtr<TObserver::TRegistration> TObservable::TAudience::RemoveLastWhere(const TCondition& condition) noexcept {
	const TGuard guard(sLock);
	const TPtr<TRegistration> registration = FindLast(condition);
	if (registration) {
		registration->End(TUse::kNone);
		Remove(*registration);
	}
	return registration;
}

TPtr<TObserver::TRegistration> TObservable::TAudience::RemoveLast(const TObserverCallback& callback) noexcept {
	return RemoveLastWhere([&](const TRegistration& candidate) { return candidate.Callback() == callback; });
}

TPtr<TObserver::TRegistration> TObservable::TAudience::RemoveLastOf(const TObserver* observer) noexcept {
	return RemoveLastWhere([&](const TRegistration& candidate) { return &candidate.Observer() == observer; });
}

TPtr<TObserver::TRegistration> TObservable::TAudience::TakeLast() noexcept {
	const TGuard guard(sLock);
	const TPtr<TRegistration> registration = FindLast([](const TRegistration&) { return true; });
	if (registration) {
		registration->End(TUse::kKept);
		Remove(*registration);
	}
	return registration;
}

TPtr<TObserver::TRegistration> TObservable::TAudience::RemoveAnyOf(TObserver& observer) noexcept {
	const TGuard guard(sLock);
	const TPtr<TRegistration> registration = observer.mpFirstRegistration.load();
	if (registration) {
		registration->End(TUse::kNone);
		registration->Audience().Remove(*registration);
	}
	return registration;
}

bool TObservable::TAudience::Contains(const TObserverCallback& callback) const noexcept {
	const TGuard guard(sLock);
	return FindLast([&](const TRegistration& candidate) { return candidate.Callback() == callback; }) != nullptr;
}

uint32_t TObservable::TAudience::ObservingThreads() const noexcept {
	uint32_t threads = 0;
	const TGuard guard(sLock);
	for (const TRegistration* registration = mpLast; registration; registration = registration->mpPrevious)
		if (registration->IsRegistered() && registration->ThreadIndex() != kNoThread)
			threads |= 1u << registration->ThreadIndex();
	return threads;
}

void TObservable::TAudience::Link(TRegistration* registration) noexcept {
	registration->Retain();
	LinkToObserver(*registration);
	registration->mpPrevious = mpLast;
	(mpLast ? mpLast->mpNext : mpFirst).store(registration);
	mpLast = registration;
	mCount.fetch_add(1);
}

void TObservable::TAudience::Remove(TRegistration& registration) noexcept {
	UnlinkFromObserver(registration);
	mCount.fetch_sub(1);
	mIsUnswept.store(true, std::memory_order_relaxed);
	Sweep(kObservable);
}

/// Does nothing while there are other users than these.
void TObservable::TAudience::Sweep(int32_t users) noexcept {
	if (mIsAbandoned.load() || mUsers.load() != users)
		return;
	FreeUnlinked();
	for (TRegistration* registration = mpFirst.load(); registration;) {
		TRegistration* next = registration->mpNext.load();
		if (!registration->IsRegistered())
			Unlink(*registration);
		registration = next;
	}
	// A round that has begun meanwhile may have seen them.
	const bool isUnseen = mUsers.load() == users;
	if (isUnseen)
		FreeUnlinked();
	mIsUnswept.store(!isUnseen, std::memory_order_relaxed);
}

/// Rounds that come later do not find it any more. Its own way forward stays for those that stand on it.
void TObservable::TAudience::Unlink(TRegistration& registration) noexcept {
	TRegistration* next = registration.mpNext.load();
	(registration.mpPrevious ? registration.mpPrevious->mpNext : mpFirst).store(next);
	(next ? next->mpPrevious : mpLast) = registration.mpPrevious;
	registration.mpPrevious = std::exchange(mpUnlinked, &registration);
}

void TObservable::TAudience::FreeUnlinked() noexcept {
	while (TRegistration* registration = mpUnlinked) {
		mpUnlinked = registration->mpPrevious;
		registration->Release();
	}
}

void TObservable::TAudience::LinkToObserver(TRegistration& registration) noexcept {
	TObserver& observer = registration.Observer();
	observer.mUnfinished.fetch_add(1);
	TRegistration* first = observer.mpFirstRegistration.load();
	registration.mpNextOfObserver = first;
	if (first)
		first->mpPreviousOfObserver = &registration;
	observer.mpFirstRegistration.store(&registration);
}

void TObservable::TAudience::UnlinkFromObserver(TRegistration& registration) noexcept {
	TRegistration* next = registration.mpNextOfObserver;
	TRegistration* previous = registration.mpPreviousOfObserver;
	if (next)
		next->mpPreviousOfObserver = previous;
	if (previous)
		previous->mpNextOfObserver = next;
	else
		registration.Observer().mpFirstRegistration.store(next);
}
