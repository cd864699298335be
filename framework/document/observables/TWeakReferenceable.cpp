// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/observables/TWeakReferenceable.h"

namespace {

constinit std::recursive_mutex sWeakLock;

}

TWeakReferenceable::~TWeakReferenceable() {
	if (!mpFirstWeakReference.load(std::memory_order_acquire))
		return;
	const std::lock_guard guard(sWeakLock);
	while (TWeakRefOwner* owner = mpFirstWeakReference.load(std::memory_order_relaxed)) {
		owner->OnWeakTargetDestroyed();
		owner->Leave();
	}
}

TWeakRefOwner::TLock TWeakRefOwner::Lock() {
	return TLock(sWeakLock);
}

void TWeakRefOwner::Point(TWeakReferenceable* target) {
	if (!target && !IsInList())
		return;
	const std::lock_guard guard(sWeakLock);
	Leave();
	if (target)
		Enter(*target);
}

void TWeakRefOwner::Enter(TWeakReferenceable& target) noexcept {
	TLink& head = target.mpFirstWeakReference;
	TWeakRefOwner* first = head.load(std::memory_order_relaxed);
	mpNext.store(first, std::memory_order_relaxed);
	if (first)
		first->mppPlace.store(&mpNext, std::memory_order_relaxed);
	mppPlace.store(&head, std::memory_order_relaxed);
	head.store(this, std::memory_order_release);
}

void TWeakRefOwner::Leave() noexcept {
	TLink* place = mppPlace.load(std::memory_order_relaxed);
	if (!place)
		return;
	TWeakRefOwner* next = mpNext.load(std::memory_order_relaxed);
	if (next)
		next->mppPlace.store(place, std::memory_order_relaxed);
	place->store(next, std::memory_order_release);
	mppPlace.store(nullptr, std::memory_order_release);
}
