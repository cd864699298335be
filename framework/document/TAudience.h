// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/TFrameworkMemory.h"
#include "framework/document/TObservable.h"
#include "framework/foundation/TCriticalSection.h"

#include <atomic>
#include <cstdint>

/// The registrations of one observable, and the rounds of notification that are under way among them.
/// Everything but IsEmpty needs the lock. An observable that dies in the midst of a round leaves its audience to that
/// round.
class TObservable::TAudience : public TFrameworkMemory<TObservable::TAudience> {
public:
	/// One walk over the audience; rounds nest. Holds the lock for its life.
	class TRound {
	public:
		explicit TRound(TAudience& audience);
		~TRound();
		TRound(const TRound&) = delete;
		TRound& operator=(const TRound&) = delete;

		void Run(TObservable* observable, int32_t reason);

	private:
		friend class TAudience;

		TAudience& mAudience;
		TRound* mpOuter;
		int32_t mIndex = -1; // of the observer that is being served
	};

	bool IsEmpty() const noexcept { return mCount.load(std::memory_order_acquire) == 0; }

	const TList<TObserverInfo>& Infos() const noexcept { return mInfos; }

	void Reserve(int32_t capacity) { mInfos.Reserve(capacity); }

	void Append(const TObserverInfo& info);
	/// The rounds under way go on with the observer behind.
	void EraseAt(int32_t index) noexcept;
	TObserverInfo TakeLast() noexcept;
	/// The youngest; -1 if there is none.
	int32_t IndexOf(const TObserverCallback& callback) const noexcept;
	/// Returns how many there were.
	int32_t RemoveAllOf(const TObserver* observer) noexcept;

	/// The observable is gone. Called with the lock held, which is given up.
	static void Abandon(TAudience* audience) noexcept;

	TCriticalSection mLock;
	bool mIsBorrowed = false; // copied from another observable

private:
	void CountChanged() noexcept { mCount.store(mInfos.Count(), std::memory_order_release); }

	TList<TObserverInfo> mInfos;
	std::atomic<int32_t> mCount{0};
	TRound* mpInnermostRound = nullptr;
	bool mIsAbandoned = false;
};
