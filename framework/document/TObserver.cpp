// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/TObserver.h"

#include "framework/document/TAudience.h"

#include <mutex>
#include <thread>

TObserver::~TObserver() {
	LeaveObservables();
}

bool TObserver::PrepareForDeletion() {
	LeaveObservables();
	return mUnfinished.fetch_sub(1) == 1;
}

void TObserver::NotificationFinished() {
	if (mUnfinished.fetch_sub(1) == 1)
		DeleteOnItsThread();
}

void TObserver::AddRegistration(TObservable* observable) {
	TRegistrations& registrations = mRegistrations.Ensure();
	const TCriticalSection::TGuard guard(registrations.mLock);
	++registrations.mCounts[observable];
}

void TObserver::RemoveRegistration(TObservable* observable) noexcept {
	TRegistrations* registrations = mRegistrations.Get();
	if (!registrations)
		return;
	const TCriticalSection::TGuard guard(registrations->mLock);
	const auto entry = registrations->mCounts.find(observable);
	if (entry != registrations->mCounts.end() && --entry->second == 0)
		registrations->mCounts.erase(entry);
}

void TObserver::LeaveObservables() noexcept {
	TRegistrations* registrations = mRegistrations.Get();
	if (!registrations)
		return;
	while (LeaveFirstObservable(*registrations)) {
	}
}

// Locks are taken observable first, but which observables there are only the observer knows. As long as its own lock is
// held and the entry is there, the observable cannot finish its destruction, so its lock may be tried; whoever holds it
// gets the chance to go on with this observer's before the next try.
bool TObserver::LeaveFirstObservable(TRegistrations& registrations) noexcept {
	std::unique_lock own(registrations.mLock);
	if (registrations.mCounts.empty())
		return false;
	const auto first = registrations.mCounts.begin();
	TObservable::TAudience& audience = *first->first->mAudience.Get();
	if (std::unique_lock theirs(audience.mLock, std::try_to_lock); theirs) {
		audience.RemoveAllOf(this);
		registrations.mCounts.erase(first);
		return true;
	}
	own.unlock();
	std::this_thread::yield();
	return true;
}
