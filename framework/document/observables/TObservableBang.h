// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObservable.h"
#include "framework/foundation/memory/TPtr.h"

/// An event without a value.
class TObservableBang : public TObservable {
public:
	void Bang() { NotifyObservers(kDidChange); }

	/// For events that also tell what is about to happen.
	void BangBegin() { NotifyObservers(kWillChange); }
};

/// An event with a payload: one object is made for each time it happens and given the audience of a prototype
/// (CopyObserversFrom). A posted notification keeps it alive, unchanged, until the last observer has been served.
class TObservableOneShotBang : public TObservableBang, public TReferenceCountable {
protected:
	TReferenceCountable* Counted() noexcept override { return this; }
};

/// Makes a one-shot bang for the audience of the prototype and fires it. Nothing is made when nobody listens.
template <class TEvent, class... TArguments>
void FireEvent(const TObservable& prototype, int32_t reason, const TArguments&... arguments) {
	if (!prototype.HasObservers())
		return;
	const TPtr<TEvent> event = MakePtr<TEvent>(arguments...);
	event->CopyObserversFrom(prototype);
	event->NotifyObservers(reason);
}
