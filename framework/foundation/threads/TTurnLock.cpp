// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/threads/TTurnLock.h"

#include <utility>

bool TTurnLock::Take(TLimit longestWait) {
	std::unique_lock lock(mMutex);
	if (TakeAtOnce())
		return true;
	if (longestWait <= TLimit::zero())
		return false;
	TWaiter me{std::this_thread::get_id()};
	Enqueue(me);
	if (mPassed.wait_for(lock, longestWait, [&] { return IsHeldBy(me.mThread); }))
		return true;
	Leave(me);
	return false;
}

void TTurnLock::GiveBack() {
	const std::lock_guard guard(mMutex);
	if (--mLevels == 0)
		PassOn();
}

bool TTurnLock::IsMine() const {
	const std::lock_guard guard(mMutex);
	return IsHeldBy(std::this_thread::get_id());
}

int32_t TTurnLock::GiveUp() {
	const std::lock_guard guard(mMutex);
	if (!IsHeldBy(std::this_thread::get_id()))
		return 0;
	const int32_t levels = std::exchange(mLevels, 0);
	PassOn();
	return levels;
}

void TTurnLock::TakeAgain(int32_t levels) {
	std::unique_lock lock(mMutex);
	if (!TakeAtOnce()) {
		TWaiter me{std::this_thread::get_id()};
		Enqueue(me);
		mPassed.wait(lock, [&] { return IsHeldBy(me.mThread); });
	}
	mLevels += levels - 1;
}

bool TTurnLock::TakeAtOnce() noexcept {
	if (mLevels > 0 && mOwner != std::this_thread::get_id())
		return false;
	mOwner = std::this_thread::get_id();
	++mLevels;
	return true;
}

void TTurnLock::Enqueue(TWaiter& waiter) noexcept {
	TWaiter** place = &mpFirst;
	while (*place)
		place = &(*place)->mpNext;
	*place = &waiter;
}

void TTurnLock::Leave(const TWaiter& waiter) noexcept {
	TWaiter** place = &mpFirst;
	while (*place != &waiter)
		place = &(*place)->mpNext;
	*place = waiter.mpNext;
}

/// To the first who waits, so that it cannot be overtaken.
void TTurnLock::PassOn() noexcept {
	if (!mpFirst)
		return;
	mOwner = mpFirst->mThread;
	mLevels = 1;
	mpFirst = mpFirst->mpNext;
	mPassed.notify_all();
}
