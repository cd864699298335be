// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TReferenceCountable.h"

#include <cstddef>
#include <type_traits>
#include <utility>

/// Strong reference to a TReferenceCountable. May be null. Copying retains, the last one to go releases the object.
/// Holds the object and its counted base apart, because the two addresses differ under multiple inheritance; so a
/// TPtr can be destroyed where T is only declared.
template <class T>
class TPtr {
public:
	TPtr() noexcept = default;

	TPtr(std::nullptr_t) noexcept {}

	TPtr(T* object) : mpObject(object), mpCounted(const_cast<std::remove_const_t<T>*>(object)) {
		if (mpCounted)
			mpCounted->Retain();
	}

	TPtr(const TPtr& other) noexcept : mpObject(other.mpObject), mpCounted(other.mpCounted) {
		if (mpCounted)
			mpCounted->Retain();
	}

	TPtr(TPtr&& other) noexcept
	    : mpObject(std::exchange(other.mpObject, nullptr)),
	      mpCounted(std::exchange(other.mpCounted, nullptr)) {}

	template <class U>

	requires std::is_convertible_v<U*, T*> TPtr(const TPtr<U>& other) : TPtr(static_cast<T*>(other.Get())) {}

	~TPtr() {
		if (mpCounted)
			mpCounted->Release();
	}

	/// Retains the new object before it releases the old one. Assigning itself changes nothing.
	TPtr& operator=(const TPtr& other) {
		TPtr(other).Swap(*this);
		return *this;
	}

	TPtr& operator=(TPtr&& other) noexcept {
		TPtr(std::move(other)).Swap(*this);
		return *this;
	}

	TPtr& operator=(std::nullptr_t) {
		TPtr().Swap(*this);
		return *this;
	}

	void Swap(TPtr& other) noexcept {
		std::swap(mpObject, other.mpObject);
		std::swap(mpCounted, other.mpCounted);
	}

	T* Get() const noexcept { return mpObject; }

	T* operator->() const noexcept { return mpObject; }

	T& operator*() const noexcept { return *mpObject; }

	explicit operator bool() const noexcept { return mpObject != nullptr; }

	friend bool operator==(const TPtr& a, const TPtr& b) noexcept { return a.mpObject == b.mpObject; }

	friend bool operator==(const TPtr& a, const T* b) noexcept { return a.mpObject == b; }

private:
	T* mpObject = nullptr;
	TReferenceCountable* mpCounted = nullptr;
};

/// new T (arguments...) in a TPtr.
template <class T, class... TArguments>
TPtr<T> MakePtr(TArguments&&... arguments) {
	return TPtr<T>(new T(std::forward<TArguments>(arguments)...));
}
