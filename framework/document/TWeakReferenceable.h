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

/// Base of every weak pointer: one entry in the list of its target.
class TWeakRefOwner {
public:
	virtual ~TWeakRefOwner() { Point(nullptr); }

protected:
	using TLock = std::unique_lock<std::recursive_mutex>;

	TWeakRefOwner() noexcept = default;
	TWeakRefOwner(const TWeakRefOwner&) = delete;
	TWeakRefOwner& operator=(const TWeakRefOwner&) = delete;

	static TLock Lock();

	/// Leaves the list of the old target and enters the one of the new. Null for none.
	void Point(TWeakReferenceable* target);
	/// With the lock held, from the target's destructor; the reference has left the list.
	virtual void OnWeakTargetDestroyed() = 0;

private:
	friend class TWeakReferenceable;

	void Enter(TWeakReferenceable& target) noexcept;
	void Leave() noexcept;

	TWeakRefOwner* mpNext = nullptr;
	// Where the list points to this entry: the target's head or the entry before. Null: in no list.
	std::atomic<TWeakRefOwner*>* mppHead = nullptr;
	TWeakRefOwner* mpPrevious = nullptr;
};
