// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TDeferredMemory.h"
#include "framework/document/observables/TRegistration.h"

#include <atomic>
#include <cstdint>

/// The registrations of one observable, and the rounds of notification that are under way among them.
///
/// Rounds walk the list without a lock and wait for nobody. Changes of any list take one process-wide lock, under which
/// nothing is called. A registration that ends is marked and leaves the list when no round is under way, since a round
/// that stood on it would miss what is appended behind; it is freed when no round can have seen it any more. An
/// observable that dies in the midst of a round leaves its audience to that round.
class TObservable::TAudience : public TDeferredMemory {
public:
	using TRegistration = TObserver::TRegistration;
	using TUse = TRegistration::TUse;

	TAudience() = default;
	TAudience(const TAudience&) = delete;
	TAudience& operator=(const TAudience&) = delete;

	bool IsEmpty() const noexcept { return mCount.load() == 0; }

	/// One round. Newcomers are served last, those that end meanwhile are not.
	void Notify(int32_t reason);

	void Append(TObservable* observable, const TObserverCallback& callback, int32_t deliveryMode);
	void AppendCopies(TObservable* observable, const TAudience& other);

	/// The youngest; null if there is none.
	TPtr<TRegistration> RemoveLast(const TObserverCallback& callback) noexcept;
	TPtr<TRegistration> RemoveLastOf(const TObserver* observer) noexcept;
	/// Keeps its observer up.
	TPtr<TRegistration> TakeLast() noexcept;
	/// From the observer's side, with any observable.
	static TPtr<TRegistration> RemoveAnyOf(TObserver& observer) noexcept;

	bool Contains(const TObserverCallback& callback) const noexcept;
	/// One bit for each thread that has observers here.
	uint32_t ObservingThreads() const noexcept;

	bool IsBorrowed() const noexcept { return mIsBorrowed; }

	/// The observable is gone; no observer is registered any more.
	void Abandon() noexcept;

private:
	friend class TLazyPart<TAudience>;

	class TRound;

	~TAudience();

	template <class TCondition>
	TRegistration* FindLast(const TCondition& condition) const noexcept;
	template <class TCondition>
	TPtr<TRegistration> RemoveLastWhere(const TCondition& condition) noexcept;

	void Link(TRegistration* registration) noexcept;
	void Unlink(TRegistration& registration) noexcept;
	void Remove(TRegistration& registration) noexcept;
	void Sweep(int32_t users) noexcept;
	void FreeUnlinked() noexcept;
	void Leave() noexcept;

	static void LinkToObserver(TRegistration& registration) noexcept;
	static void UnlinkFromObserver(TRegistration& registration) noexcept;

	std::atomic<TRegistration*> mpFirst{nullptr};
	std::atomic<int32_t> mCount{0}; // registered
	std::atomic<int32_t> mUsers{1}; // the observable and the rounds
	std::atomic<bool> mIsAbandoned{false};
	std::atomic<bool> mIsUnswept{false}; // some that have ended are not freed
	bool mIsBorrowed = false;            // this and what follows under the lock
	TRegistration* mpLast = nullptr;     // of the list
	TRegistration* mpUnlinked = nullptr; // taken out, and perhaps still seen by a round
};
