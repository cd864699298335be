// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObservable.h"

#include <cstdint>
#include <functional>
#include <utility>

/// Lets an object that is no observer observe: hands notifications on to one of its methods.
/// The object holds it in a TPtr, so that notifications under way at its own end find nobody.
template <class T>
class TForwardingObserver final : public TObserver {
public:
	using TMethod = void (T::*)(TObservable* observable, int32_t reason);

	TForwardingObserver(int32_t threadIndex, T* target, TMethod method)
	    : TObserver(threadIndex),
	      mpTarget(target),
	      mMethod(method) {}

	void Observe(TObservable& observable, int32_t deliveryMode = kDeliverOnObserverThread) {
		observable.AddObserver({this, &TForwardingObserver::Forward}, deliveryMode);
	}

	void StopObserving(TObservable& observable) { observable.RemoveObserver({this, &TForwardingObserver::Forward}); }

private:
	void Forward(TObservable* observable, int32_t reason) { (mpTarget->*mMethod)(observable, reason); }

	T* mpTarget;
	TMethod mMethod;
};

/// The same for a function object. Made with new and held in a TPtr.
class TForwardingStdObserver final : public TObserver {
public:
	using TFunction = std::function<void(TObservable* observable, int32_t reason)>;

	TForwardingStdObserver(int32_t threadIndex, TFunction function)
	    : TObserver(threadIndex),
	      mFunction(std::move(function)) {}

	void Observe(TObservable* observable) { observable->AddObserver({this, &TForwardingStdObserver::Forward}); }

	void StopObserving(TObservable* observable) {
		observable->RemoveObserver({this, &TForwardingStdObserver::Forward});
	}

private:
	void Forward(TObservable* observable, int32_t reason) { mFunction(observable, reason); }

	TFunction mFunction;
};
