// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/observables/TObserver.h"

#include "framework/document/observables/TAudience.h"

TObserver::~TObserver() {
	while (const TPtr<TRegistration> registration = TObservable::TAudience::RemoveAnyOf(*this))
		registration->WaitForOthers(TRegistration::TUse::kNone);
}

int32_t TObserver::NotificationSourceThread() noexcept {
	return TRegistration::SourceOfThisThread();
}

bool TObserver::PrepareForDeletion() {
	while (TObservable::TAudience::RemoveAnyOf(*this)) {
	}
	return mUnfinished.fetch_sub(1) == 1;
}
