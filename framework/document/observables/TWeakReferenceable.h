// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <mutex>

class TWeakRefOwner;

/// Base of objects that weak pointers may refer to. When it dies, every weak pointer to it becomes null.
///
/// Weak references are kept in lists that hang on their targets; one process-wide recursive lock guards them all. It is
/// the last lock to be taken and is held over no callback but OnWeakTargetDestroyed. An object that nobody refers to
/// weakly dies without taking it.
class TWeakReferenceable {
public:
	TWeakReferenceable() noexcept = default;

	TWeakReferenceable(const TWeakReferenceable&) noexcept {} // references stay with the original

	TWeakReferenceable& operator=(const TWeakReferenceable&) noexcept { return *this; }

	virtual ~TWeakReferenceable();

private:
	friend class TWeakRefOwner;

	std::atomic<TWeakRefOwner*> mpFirstWeakReference{nullptr};
};

/// Base of every weak pointer: one entry in the list of its target. The destructor of the derived class calls
/// Point(nullptr), since until then the target may still call it.
class TWeakRefOwner {
public:
	virtual ~TWeakRefOwner() = default;
	TWeakRefOwner(const TWeakRefOwner&) = delete;
	TWeakRefOwner& operator=(const TWeakRefOwner&) = delete;

protected:
	using TLock = std::unique_lock<std::recursive_mutex>;

	TWeakRefOwner() noexcept = default;

	static TLock Lock();

	/// Leaves the list of the old target and enters the one of the new. Null for none; free of locks if there was none.
	void Point(TWeakReferenceable* target);

	bool IsInList() const noexcept { return mppPlace.load(std::memory_order_acquire) != nullptr; }

	/// From the target's destructor, under the lock.
	virtual void OnWeakTargetDestroyed() = 0;

private:
	friend class TWeakReferenceable;
	using TLink = std::atomic<TWeakRefOwner*>;

	void Enter(TWeakReferenceable& target) noexcept;
	void Leave() noexcept;

	TLink mpNext{nullptr};
	// What points to this entry: the target's head or the entry before. Null: in no list. Clearing it is the last that
	// a dying target does here.
	std::atomic<TLink*> mppPlace{nullptr};
};
