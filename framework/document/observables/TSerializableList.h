// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TSerializable.h"
#include "framework/foundation/memory/TList.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// A list of numbers that is one leaf of the document. Its text is one line, the elements joined by blanks.
/// Notifications are fired by the owner, around bulk edits.
class TSerializableListBase : public TSerializable {
public:
	bool IsPlainText() const override { return true; }

protected:
	static constexpr std::size_t kUsualElementLength = 12; // "0.123456789 "

	/// Behind a blank, unless it is the first.
	template <class T>
	static void AppendElement(std::string& line, T value);
	static int32_t CountElements(std::u16string_view text);
	/// Cuts the first element off; blanks inside an element's text stand behind a backslash.
	static std::u16string_view TakeElement(std::u16string_view& text);
	/// 0 for what does not parse.
	template <class T>
	static T ParseElement(std::u16string_view text);
};

template <>
void TSerializableListBase::AppendElement<int>(std::string& line, int value);
template <>
void TSerializableListBase::AppendElement<float>(std::string& line, float value);
template <>
int TSerializableListBase::ParseElement<int>(std::u16string_view text);
template <>
float TSerializableListBase::ParseElement<float>(std::u16string_view text);

/// Elements may be read on any thread while one thread stores elements; the number of elements changes only while
/// nobody else reads. No index is checked.
template <class T>
class TSerializableList : public TSerializableListBase, public TList<T> {
public:
	TSerializableList() = default;

	/// `count` times the same value.
	explicit TSerializableList(int32_t count, T value = T{}) { Resize(count, value); }

	T operator[](int32_t index) const noexcept { return Word(index).load(std::memory_order_relaxed); }

	void Store(int32_t index, T value) noexcept {
		Word(index).store(value, std::memory_order_relaxed);
		NoteChange();
	}

	/// All elements, in order, from a function of the index; counts as one change.
	template <class TFunction>
	void StoreEach(TFunction valueAt) {
		for (int32_t i = 0; i < this->Count(); ++i)
			Word(i).store(valueAt(i), std::memory_order_relaxed);
		NoteChange();
	}

	/// A number that every change of elements moves on. Who has read it first and then the elements, and finds it the
	/// same later, has the elements as they are.
	uint32_t Changes() const noexcept { return mChanges.load(std::memory_order_acquire); }

	/// From the first element on, as one change; there must be as many elements as values.
	void StoreAll(std::span<const T> values) noexcept {
		T* place = this->begin();
		for (const T value : values)
			std::atomic_ref<T>(*place++).store(value, std::memory_order_relaxed);
		NoteChange();
	}

	/// Drops elements at the end, or appends `value` until there are `count`.
	void Resize(int32_t count, T value = T{}) {
		this->Reserve(count);
		while (this->Count() > count)
			this->RemoveAt(this->Count() - 1);
		while (this->Count() < count)
			this->Append(value);
		NoteChange();
	}

	TString ToString() const override {
		std::string line;
		line.reserve(static_cast<std::size_t>(this->Count()) * kUsualElementLength);
		for (int32_t i = 0; i < this->Count(); ++i)
			AppendElement(line, (*this)[i]);
		return line.c_str();
	}

	/// An element that does not parse becomes 0. An empty text empties the list.
	void FromString(const TString& text) override {
		std::u16string_view rest = text.View();
		Resize(CountElements(rest));
		StoreEach([&](int32_t) { return ParseElement<T>(TakeElement(rest)); });
	}

private:
	static_assert(std::atomic_ref<T>::is_always_lock_free);

	/// After the elements, so that who sees the new number sees them too.
	void NoteChange() noexcept { mChanges.fetch_add(1, std::memory_order_release); }

	std::atomic_ref<T> Word(int32_t index) const noexcept {
		return std::atomic_ref<T>(const_cast<T&>(TList<T>::operator[](index)));
	}

	std::atomic<uint32_t> mChanges{0};
};
