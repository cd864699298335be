// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TReferenceCountable.h"
#include "framework/foundation/threads/TThreadManager.h"
#include "framework/foundation/values/TFunctionPtr.h"

#include <atomic>
#include <concepts>
#include <cstdint>

class TObservable;

/// The watching side. An observer belongs to one logical thread, on which its callbacks run unless a registration asks
/// for something else (TDeliveryMode).
///
/// A registration ends by RemoveObserver, when the observable dies, or when the observer's last reference goes. From
/// then on the observer is not called any more; a counted one stays allocated as long as a notification is on its way
/// to it or another thread is in its callback. An observer that is not counted must remove itself before it dies.
class TObserver : public TReferenceCountable {
public:
	/// kNoThread: no thread is named. Notifications from threads with a role do not reach such an observer, unless
	/// they are delivered directly.
	explicit TObserver(int32_t threadIndex = kMainThread) noexcept : mThreadIndex(threadIndex) {}

	~TObserver() override;
	TObserver(const TObserver&) = delete;
	TObserver& operator=(const TObserver&) = delete;

	static constexpr int32_t kNoNotification = -2;

	int32_t ThreadIndex() const noexcept { return mThreadIndex; }

	/// The role of the thread that caused the notification which is being delivered on the calling thread;
	/// kNoNotification outside of any. Of a notification that stands for several changes: the main thread, if one of
	/// them came from there, else the thread of the last.
	static int32_t NotificationSourceThread() noexcept;

	bool PrepareForDeletion() override;

private:
	friend class TObservable;

	class TRegistration;

	/// Gives up what a registration held.
	void LetGo() {
		if (mUnfinished.fetch_sub(1) == 1)
			DeleteOnItsThread();
	}

	const int32_t mThreadIndex;
	// One for as long as the observer is wanted, and one for each registration that has not ended or is still in use.
	// Whoever takes the last one off deletes.
	std::atomic<int32_t> mUnfinished{1};
	std::atomic<TRegistration*> mpFirstRegistration{nullptr}; // guarded as all lists of registrations are
};

/// What an observable calls: an observer and one of its methods, `void OnChange(TObservable* observable, int32_t
/// reason)`. Two are equal when both are.
class TObserverCallback {
public:
	template <std::derived_from<TObserver> T, class TBase>

	requires std::derived_from<T, TBase> TObserverCallback(T* observer, void (TBase::*method)(TObservable*, int32_t))
	    : mpObserver(observer),
	      mFunction(observer, method) {}

	TObserverCallback(TObserver* observer, void (*function)(TObserver*, TObservable*, int32_t))
	    : mpObserver(observer),
	      mFunction(observer, function) {}

	TObserver* Observer() const noexcept { return mpObserver; }

	void operator()(TObservable* observable, int32_t reason) const { mFunction(observable, reason); }

	friend bool operator==(const TObserverCallback&, const TObserverCallback&) = default;

private:
	TObserver* mpObserver;
	TFunctionPtr<void, TObservable*, int32_t> mFunction;
};
