// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/TAudience.h"

#include "framework/document/TNotificationCommand.h"
#include "framework/foundation/TThreadCommunicator.h"
#include "framework/foundation/TThreadManager.h"

void TObservable::TAudience::Append(const TObserverInfo& info) {
	mInfos.Append(info);
	CountChanged();
}

void TObservable::TAudience::EraseAt(int32_t index) noexcept {
	for (TRound* round = mpInnermostRound; round; round = round->mpOuter) {
		if (index <= round->mIndex)
			--round->mIndex;
	}
	mInfos.RemoveAt(index);
	CountChanged();
}

TObservable::TObserverInfo TObservable::TAudience::TakeLast() noexcept {
	const int32_t last = mInfos.Count() - 1;
	const TObserverInfo info = mInfos[last];
	EraseAt(last);
	return info;
}

int32_t TObservable::TAudience::IndexOf(const TObserverCallback& callback) const noexcept {
	int32_t index = mInfos.Count() - 1;
	while (index >= 0 && !(mInfos[index].mCallback == callback))
		--index;
	return index;
}

int32_t TObservable::TAudience::RemoveAllOf(const TObserver* observer) noexcept {
	int32_t removed = 0;
	for (int32_t i = mInfos.Count() - 1; i >= 0; --i) {
		if (mInfos[i].mCallback.Observer() == observer) {
			EraseAt(i);
			++removed;
		}
	}
	return removed;
}

void TObservable::TAudience::Abandon(TAudience* audience) noexcept {
	// Rounds under way are this thread's, since the lock is held.
	const bool inUse = audience->mpInnermostRound != nullptr;
	audience->mIsAbandoned = true;
	audience->mLock.unlock();
	if (!inUse)
		delete audience;
}

TObservable::TAudience::TRound::TRound(TAudience& audience) : mAudience(audience) {
	mAudience.mLock.lock();
	mpOuter = mAudience.mpInnermostRound;
	mAudience.mpInnermostRound = this;
}

TObservable::TAudience::TRound::~TRound() {
	mAudience.mpInnermostRound = mpOuter;
	const bool isLastUse = mAudience.mIsAbandoned && !mpOuter;
	mAudience.mLock.unlock();
	if (isLastUse)
		delete &mAudience;
}

void TObservable::TAudience::TRound::Run(TObservable* observable, int32_t reason) {
	const TThreadManager* manager = TThreadManager::Instance();
	TThreadCommunicator* communicator = TThreadCommunicator::Instance();
	const int32_t current = manager ? manager->CurrentThread() : kNoThread;
	for (mIndex = 0; mIndex < mAudience.mInfos.Count(); ++mIndex) {
		const TObserverInfo info = mAudience.mInfos[mIndex]; // the call may change the list
		TObserver* observer = info.mCallback.Observer();
		if (observer->IsBeingDestroyed())
			continue;
		const int32_t target = observer->ThreadIndex();
		const bool isHere = info.mDeliveryMode == kDeliverOnObserverThread && target == current;
		if (info.mDeliveryMode == kDeliverDirectly || isHere || !communicator) {
			CallObserver(info.mCallback, observable, reason, current);
		} else if (target != kNoThread) {
			const TPtr<TCommand> command(new TNotificationCommand(observable, info.mCallback, reason, current));
			communicator->Post(target, command.Get());
		}
	}
}
