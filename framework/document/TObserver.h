// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/TFrameworkMemory.h"
#include "framework/document/TLazyPart.h"
#include "framework/foundation/TCriticalSection.h"
#include "framework/foundation/TFunctionPtr.h"
#include "framework/foundation/TReferenceCountable.h"
#include "framework/foundation/TStlAllocator.h"
#include "framework/foundation/TThreadManager.h"

#include <atomic>
#include <concepts>
#include <cstdint>
#include <functional>
#include <map>
#include <utility>

class TObservable;

/// The watching side. An observer belongs to one logical thread, on which its callbacks run unless a registration asks
/// for something else (TDeliveryMode).
///
/// A registration ends by RemoveObserver, when the observable dies, or when the observer's last reference goes; an
/// observer that still has posted notifications under way is then not called any more, and is deleted when the last of
/// them has arrived. An observer that is not counted must outlive what it is registered with, or remove itself.
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
	/// kNoNotification outside of any.
	static int32_t NotificationSourceThread() noexcept;

	bool PrepareForDeletion() override;

private:
	friend class TObservable;

	using TCounts = std::map<TObservable*, int32_t, std::less<>, TStlAllocator<std::pair<TObservable* const, int32_t>>>;

	struct TRegistrations : TFrameworkMemory<TRegistrations> {
		TCriticalSection mLock;
		TCounts mCounts; // registrations with each observable
	};

	void AddRegistration(TObservable* observable);
	void RemoveRegistration(TObservable* observable) noexcept;
	void LeaveObservables() noexcept;
	bool LeaveFirstObservable(TRegistrations& registrations) noexcept;

	void NotificationPosted() noexcept { mUnfinished.fetch_add(1); }

	void NotificationFinished();

	const int32_t mThreadIndex;
	// Posted notifications that have not arrived, and one for as long as the observer is wanted. Whoever takes the last
	// one off deletes.
	std::atomic<int32_t> mUnfinished{1};
	TLazyPart<TRegistrations> mRegistrations;
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
