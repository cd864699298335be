// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/observables/TObservable.h"

#include "framework/document/observables/TAudience.h"
#include "framework/foundation/commands/TThreadCommunicator.h"

TObservable::TObservable() noexcept = default;

TObservable::~TObservable() {
	TAudience* audience = mAudience.Get();
	if (!audience)
		return;
	while (const auto registration = audience->TakeLast()) {
		registration->WaitForOthers(TAudience::TUse::kKept);
		OnObserverRemoved(&registration->Observer());
		if (!audience->IsBorrowed())
			registration->Callback()(this, kObserverRemoved);
		registration->Leave();
	}
	mAudience.Detach();
	audience->Abandon();
}

void TObservable::AddObserver(const TObserverCallback& callback, int32_t deliveryMode) {
	mAudience.Ensure().Append(this, callback, deliveryMode);
	OnObserverAdded(callback.Observer(), deliveryMode);
	callback(this, kObserverAdded);
}

void TObservable::RemoveObserver(const TObserverCallback& callback) {
	TAudience* audience = mAudience.Get();
	const auto registration = audience ? audience->RemoveLast(callback) : nullptr;
	if (!registration)
		return;
	registration->WaitForOthers(TAudience::TUse::kNone);
	OnObserverRemoved(callback.Observer());
	callback(this, kObserverRemoved);
}

bool TObservable::IsObservedBy(const TObserverCallback& callback) const {
	const TAudience* audience = mAudience.Get();
	return audience && audience->Contains(callback);
}

void TObservable::RemoveObserverCompletely(TObserver* observer) noexcept {
	TAudience* audience = mAudience.Get();
	if (!audience)
		return;
	while (const auto registration = audience->RemoveLastOf(observer))
		registration->WaitForOthers(TAudience::TUse::kNone);
}

bool TObservable::HasObservers() const noexcept {
	const TAudience* audience = mAudience.Get();
	return audience && !audience->IsEmpty();
}

void TObservable::NotifyObservers(int32_t reason) {
	TAudience* audience = mAudience.Get();
	if (audience && !audience->IsEmpty())
		audience->Notify(reason);
}

void TObservable::CopyObserversFrom(const TObservable& other) {
	if (const TAudience* source = other.mAudience.Get())
		mAudience.Ensure().AppendCopies(this, *source);
}

void TObservable::FlushObserverThreads() {
	const TAudience* audience = mAudience.Get();
	const TThreadManager* manager = TThreadManager::Instance();
	TThreadCommunicator* communicator = TThreadCommunicator::Instance();
	if (!audience || !manager || !communicator)
		return;
	const uint32_t threads = audience->ObservingThreads();
	for (int32_t thread = 0; thread < kNumberOfThreads; ++thread)
		if ((threads >> thread & 1u) != 0 && !manager->IsCurrentThread(thread))
			communicator->WaitForThread(thread);
}
