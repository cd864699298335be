// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>

/// A value that one thread writes and others may read at any time: they see some value that was there, in no order with
/// anything else.
template <class T>
class TRelaxed {
public:
	TRelaxed() noexcept = default;

	TRelaxed(T value) noexcept : mValue(value) {}

	operator T() const noexcept { return mValue.load(std::memory_order_relaxed); }

	T operator->() const noexcept { return *this; }

	TRelaxed& operator=(T value) noexcept {
		mValue.store(value, std::memory_order_relaxed);
		return *this;
	}

private:
	static_assert(std::atomic<T>::is_always_lock_free);

	std::atomic<T> mValue{};
};
