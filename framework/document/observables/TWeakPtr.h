// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakReferenceable.h"
#include "framework/foundation/memory/TPtr.h"

#include <atomic>
#include <cstddef>

/// Weak reference: reads as null once the object is gone. Reading takes no lock and is safe on any
/// thread; what it gives is safe to use where the object cannot die meanwhile (as a rule: the main thread).
/// Pointing it elsewhere is for one thread at a time.
template <class T>
class TWeakPtr final : public TWeakRefOwner {
public:
	TWeakPtr() noexcept = default;

	TWeakPtr(std::nullptr_t) noexcept {}

	TWeakPtr(T* object) { Set(object); }

	TWeakPtr(const TPtr<T>& object) { Set(object.Get()); }

	TWeakPtr(const TWeakPtr& other) : TWeakRefOwner() { CopyFrom(other); }

	~TWeakPtr() override { Point(nullptr); }

	TWeakPtr& operator=(const TWeakPtr& other) {
		if (this != &other)
			CopyFrom(other);
		return *this;
	}

	TWeakPtr& operator=(T* object) {
		Set(object);
		return *this;
	}

	T* Get() const noexcept { return mpObject.load(std::memory_order_acquire); }

	T* operator->() const noexcept { return Get(); }

	T& operator*() const noexcept { return *Get(); }

	explicit operator bool() const noexcept { return Get() != nullptr; }

	friend bool operator==(const TWeakPtr& a, const TWeakPtr& b) noexcept { return a.Get() == b.Get(); }

	friend bool operator==(const TWeakPtr& a, const T* b) noexcept { return a.Get() == b; }

private:
	void Set(T* object) {
		if (!object && !IsInList())
			return;
		const TLock lock = Lock();
		Point(object);
		mpObject.store(object, std::memory_order_release);
	}

	// Under the lock the other's object cannot die between reading and entering its list.
	void CopyFrom(const TWeakPtr& other) {
		const TLock lock = Lock();
		Set(other.Get());
	}

	void OnWeakTargetDestroyed() override { mpObject.store(nullptr, std::memory_order_release); }

	std::atomic<T*> mpObject{nullptr};
};
