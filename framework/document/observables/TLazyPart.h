// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <utility>

/// A part of an object that is made when it is first needed, by whichever thread comes first, and then stays until the
/// object dies. Costs one pointer while absent.
template <class T>
class TLazyPart {
public:
	TLazyPart() noexcept = default;

	~TLazyPart() { delete mpPart.load(std::memory_order_relaxed); }

	TLazyPart(const TLazyPart&) = delete;
	TLazyPart& operator=(const TLazyPart&) = delete;

	/// Null while absent.
	T* Get() const noexcept { return mpPart.load(std::memory_order_acquire); }

	T& Ensure() {
		T* present = Get();
		if (present)
			return *present;
		T* made = new T;
		if (mpPart.compare_exchange_strong(present, made, std::memory_order_acq_rel, std::memory_order_acquire))
			return *made;
		delete made;
		return *present;
	}

	/// Hands the part over to the caller.
	T* Detach() noexcept { return mpPart.exchange(nullptr, std::memory_order_acq_rel); }

private:
	std::atomic<T*> mpPart{nullptr};
};
