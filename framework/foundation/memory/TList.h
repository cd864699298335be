// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TArrayAllocator.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <utility>

/// The steps by which a TList grows: small lists at once by two, larger ones by a factor that falls with the size,
/// and lists of large elements one by one, so that little is wasted.
struct TListGrowth {
	static constexpr int32_t kLargeElement = 100; // bytes

	/// The capacity for one element more than `count`.
	static constexpr int32_t CapacityAfter(int32_t count, std::size_t elementSize) noexcept {
		if (elementSize >= kLargeElement)
			return count + 1;
		if (count == 0)
			return 1;
		if (count < 10)
			return count + 2;
		return static_cast<int32_t>(static_cast<float>(count) * Factor(count));
	}

private:
	static constexpr float Factor(int32_t count) noexcept {
		if (count < 100)
			return 1.5f;
		if (count < 1000)
			return 1.25f;
		return count < 10000 ? 1.15f : 1.05f;
	}
};

/// Growing array. Elements may be of any type that can be moved; an element that goes is destroyed when the list is
/// in order again, so its destructor may use the list.
/// Throws TOutOfMemoryException; the list then stays as it was.
template <class T>
class TList {
public:
	// What algorithms and matchers ask of a range.
	using value_type = T;
	using iterator = T*;
	using const_iterator = const T*;

	TList() noexcept = default;

	TList(std::initializer_list<T> items) { CopyFrom({items.begin(), items.size()}); }

	TList(const TList& other) { CopyFrom(other); }

	TList(TList&& other) noexcept { Swap(other); }

	~TList() {
		Clear();
		TDefaultArrayAllocator<T>::Free(mpItems);
	}

	TList& operator=(const TList& other) {
		if (this != &other)
			TList(other).Swap(*this);
		return *this;
	}

	TList& operator=(TList&& other) noexcept {
		TList(std::move(other)).Swap(*this);
		return *this;
	}

	int32_t Count() const noexcept { return mCount; }

	int32_t Capacity() const noexcept { return mCapacity; }

	bool IsEmpty() const noexcept { return mCount == 0; }

	/// Makes room for exactly `capacity` elements; never shrinks.
	void Reserve(int32_t capacity) {
		if (capacity > mCapacity)
			Relocate(capacity);
	}

	void Append(T item) {
		GrowByOne();
		std::construct_at(mpItems + mCount, std::move(item));
		++mCount;
	}

	/// The index is 0 to Count(); Count() appends.
	void Insert(T item, int32_t index) {
		if (index == mCount)
			return Append(std::move(item));
		GrowByOne();
		T* place = mpItems + index;
		T* last = mpItems + mCount;
		std::construct_at(last, std::move(last[-1]));
		++mCount;
		std::move_backward(place, last - 1, last);
		*place = std::move(item);
	}

	void RemoveAt(int32_t index) {
		T* place = mpItems + index;
		[[maybe_unused]] const T removed = std::move(*place);
		std::move(place + 1, end(), place);
		std::destroy_at(mpItems + --mCount);
	}

	/// From the last element to the first. Keeps the capacity.
	void Clear() noexcept {
		while (mCount > 0)
			std::destroy_at(mpItems + --mCount);
	}

	/// Not checked.
	T& operator[](int32_t index) noexcept { return mpItems[index]; }

	const T& operator[](int32_t index) const noexcept { return mpItems[index]; }

	/// The index of the first equal element, else -1.
	int32_t IndexOf(const T& item) const {
		const T* found = std::find(begin(), end(), item);
		return found == end() ? -1 : static_cast<int32_t>(found - begin());
	}

	std::size_t size() const noexcept { return static_cast<std::size_t>(mCount); }

	T* begin() noexcept { return mpItems; }

	T* end() noexcept { return mpItems + mCount; }

	const T* begin() const noexcept { return mpItems; }

	const T* end() const noexcept { return mpItems + mCount; }

	void Swap(TList& other) noexcept {
		std::swap(mpItems, other.mpItems);
		std::swap(mCount, other.mCount);
		std::swap(mCapacity, other.mCapacity);
	}

	friend bool operator==(const TList& a, const TList& b) {
		return std::equal(a.begin(), a.end(), b.begin(), b.end());
	}

private:
	void GrowByOne() {
		if (mCount + 1 > mCapacity)
			Relocate(TListGrowth::CapacityAfter(mCount, sizeof(T)));
	}

	void Relocate(int32_t capacity) {
		TRawArray<T, TDefaultArrayAllocator<T>> block(capacity);
		std::uninitialized_move_n(mpItems, mCount, block.Items());
		std::destroy_n(mpItems, mCount);
		TDefaultArrayAllocator<T>::Free(std::exchange(mpItems, block.Release()));
		mCapacity = capacity;
	}

	void CopyFrom(std::span<const T> items) {
		TList copy;
		copy.Reserve(static_cast<int32_t>(items.size()));
		for (const T& item : items)
			copy.Append(item);
		Swap(copy);
	}

	int32_t mCapacity = 0;
	int32_t mCount = 0;
	T* mpItems = nullptr;
};
