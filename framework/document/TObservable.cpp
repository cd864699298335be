// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/TObservable.h"

#include "framework/document/TAudience.h"
#include "framework/foundation/TThreadCommunicator.h"
#include "framework/foundation/TThreadManager.h"

#include <array>
#include <cstddef>
#include <mutex>

TObservable::TObservable() noexcept = default;

TObservable::~TObservable() {
	TAudience* audience = mAudience.Get();
	if (!audience)
		return;
	audience->mLock.lock();
	while (!audience->IsEmpty()) {
		const TObserverInfo info = audience->TakeLast();
		TObserver* observer = info.mCallback.Observer();
		observer->NotificationPosted(); // stays allocated until it has been told
		OnObserverRemoved(observer);
		if (!audience->mIsBorrowed)
			info.mCallback(this, kObserverRemoved);
		observer->RemoveRegistration(this);
		observer->NotificationFinished();
	}
	mAudience.Detach();
	TAudience::Abandon(audience);
}

void TObservable::AddObserver(const TObserverCallback& callback, int32_t deliveryMode) {
	TAudience& audience = mAudience.Ensure();
	TObserver* observer = callback.Observer();
	{
		const TCriticalSection::TGuard guard(audience.mLock);
		audience.Append({callback, deliveryMode});
		try {
			observer->AddRegistration(this);
		} catch (...) {
			audience.TakeLast();
			throw;
		}
	}
	OnObserverAdded(observer, deliveryMode);
	callback(this, kObserverAdded);
}

void TObservable::RemoveObserver(const TObserverCallback& callback) {
	TAudience* audience = mAudience.Get();
	if (!audience)
		return;
	TObserver* observer = callback.Observer();
	{
		const TCriticalSection::TGuard guard(audience->mLock);
		const int32_t index = audience->IndexOf(callback);
		if (index < 0)
			return;
		audience->EraseAt(index);
		observer->RemoveRegistration(this);
	}
	OnObserverRemoved(observer);
	callback(this, kObserverRemoved);
}

bool TObservable::IsObservedBy(const TObserverCallback& callback) const {
	TAudience* audience = mAudience.Get();
	if (!audience)
		return false;
	const TCriticalSection::TGuard guard(audience->mLock);
	return audience->IndexOf(callback) >= 0;
}

void TObservable::RemoveObserverCompletely(TObserver* observer) noexcept {
	TAudience* audience = mAudience.Get();
	if (!audience)
		return;
	const TCriticalSection::TGuard guard(audience->mLock);
	for (int32_t removed = audience->RemoveAllOf(observer); removed > 0; --removed)
		observer->RemoveRegistration(this);
}

bool TObservable::HasObservers() const noexcept {
	const TAudience* audience = mAudience.Get();
	return audience && !audience->IsEmpty();
}

const TCriticalSection* TObservable::ObserversLock() const noexcept {
	const TAudience* audience = mAudience.Get();
	return audience ? &audience->mLock : nullptr;
}

void TObservable::NotifyObservers(int32_t reason) {
	TAudience* audience = mAudience.Get();
	if (audience && !audience->IsEmpty())
		TAudience::TRound(*audience).Run(this, reason);
}

void TObservable::CopyObserversFrom(const TObservable& other) {
	TAudience* source = other.mAudience.Get();
	if (!source)
		return;
	TAudience& audience = mAudience.Ensure();
	const TCriticalSection::TGuard guard(audience.mLock);
	const TCriticalSection::TGuard sourceGuard(source->mLock);
	audience.Reserve(audience.Infos().Count() + source->Infos().Count());
	audience.mIsBorrowed = true;
	for (const TObserverInfo& info : source->Infos()) {
		info.mCallback.Observer()->AddRegistration(this);
		audience.Append(info);
	}
}

void TObservable::FlushObserverThreads() {
	TAudience* audience = mAudience.Get();
	const TThreadManager* manager = TThreadManager::Instance();
	TThreadCommunicator* communicator = TThreadCommunicator::Instance();
	if (!audience || !manager || !communicator)
		return;
	std::array<bool, kNumberOfThreads> isObserving{};
	{
		const TCriticalSection::TGuard guard(audience->mLock);
		for (const TObserverInfo& info : audience->Infos()) {
			const int32_t thread = info.mCallback.Observer()->ThreadIndex();
			if (thread != kNoThread && !manager->IsCurrentThread(thread))
				isObserving[static_cast<std::size_t>(thread)] = true;
		}
	}
	for (int32_t thread = 0; thread < kNumberOfThreads; ++thread) {
		if (isObserving[static_cast<std::size_t>(thread)])
			communicator->WaitForThread(thread);
	}
}
