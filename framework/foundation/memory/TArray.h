// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TArrayAllocator.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>

/// A block of elements whose number is set as a whole. New elements are value-initialised (numbers are 0).
/// Throws TOutOfMemoryException; the array is then empty.
template <class T, class TAllocator = TDefaultArrayAllocator<T>>
class TArray {
public:
	// What algorithms and matchers ask of a range.
	using value_type = T;
	using iterator = T*;
	using const_iterator = const T*;

	TArray() noexcept = default;

	explicit TArray(int32_t size) { SetSize(size); }

	TArray(std::initializer_list<T> items) { Assign({items.begin(), items.size()}); }

	TArray(const TArray& other) { Assign(other); }

	TArray(TArray&& other) noexcept
	    : mpItems(std::exchange(other.mpItems, nullptr)),
	      mSize(std::exchange(other.mSize, 0)) {}

	~TArray() { Discard(); }

	TArray& operator=(const TArray& other) {
		if (this != &other)
			TArray(other).Swap(*this);
		return *this;
	}

	TArray& operator=(TArray&& other) noexcept {
		TArray(std::move(other)).Swap(*this);
		return *this;
	}

	/// Another size makes a new block: contents are not kept. The same size changes nothing.
	void SetSize(int32_t size) {
		if (size == mSize)
			return;
		Discard();
		if (size <= 0)
			return;
		TRawArray<T, TAllocator> block(size);
		if constexpr (!(TAllocator::kGivesZeroes && std::is_trivially_default_constructible_v<T>))
			std::uninitialized_value_construct_n(block.Items(), size);
		mpItems = block.Release();
		mSize = size;
	}

	int32_t Size() const noexcept { return mSize; }

	bool IsEmpty() const noexcept { return mSize == 0; }

	/// Not checked.
	T& operator[](int32_t index) noexcept { return mpItems[index]; }

	const T& operator[](int32_t index) const noexcept { return mpItems[index]; }

	T* Items() noexcept { return mpItems; }

	const T* Items() const noexcept { return mpItems; }

	std::size_t size() const noexcept { return static_cast<std::size_t>(mSize); }

	T* begin() noexcept { return mpItems; }

	T* end() noexcept { return mpItems + mSize; }

	const T* begin() const noexcept { return mpItems; }

	const T* end() const noexcept { return mpItems + mSize; }

	void Swap(TArray& other) noexcept {
		std::swap(mpItems, other.mpItems);
		std::swap(mSize, other.mSize);
	}

private:
	void Assign(std::span<const T> items) {
		if (items.empty())
			return;
		const auto size = static_cast<int32_t>(items.size());
		TRawArray<T, TAllocator> block(size);
		std::uninitialized_copy(items.begin(), items.end(), block.Items());
		mpItems = block.Release();
		mSize = size;
	}

	void Discard() noexcept {
		T* items = std::exchange(mpItems, nullptr);
		std::destroy_n(items, std::exchange(mSize, 0));
		TAllocator::Free(items);
	}

	T* mpItems = nullptr;
	int32_t mSize = 0;
};
