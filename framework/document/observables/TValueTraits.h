// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TDirectory.h"
#include "framework/foundation/text/TString.h"

#include <atomic>
#include <type_traits>
#include <utility>

/// How a value of type T becomes text and back. FromString is false for a text that does not parse.
template <class T>
struct TValueTraits {
	static constexpr bool kIsPlainText = true;

	static TString ToString(const T& value) { return TString::ToString(value); }

	static bool FromString(const TString& text, T& value) { return TString::FromString(text, value); }
};

template <>
struct TValueTraits<TString> {
	static constexpr bool kIsPlainText = false;

	static TString ToString(const TString& value) { return value; }

	static bool FromString(const TString& text, TString& value) {
		value = text;
		return true;
	}
};

template <>
struct TValueTraits<TDirectory> {
	static constexpr bool kIsPlainText = false;

	static TString ToString(const TDirectory& value) { return value.Path(); }

	static bool FromString(const TString& text, TDirectory& value) {
		value = TDirectory(text);
		return true;
	}
};

/// Where an observable value lies. Numbers may be read on any thread while one thread writes: order between values is
/// the business of notifications, so relaxed access is enough. Others are for the thread that writes them.
template <class T>
class TValueStorage {
public:
	using TResult = const T&;

	TValueStorage() = default;

	explicit TValueStorage(T value) : mValue(std::move(value)) {}

	TResult Load() const noexcept { return mValue; }

	void Store(const T& value) { mValue = value; }

private:
	T mValue{};
};

template <class T>
requires std::is_arithmetic_v<T>

class TValueStorage<T> {
public:
	using TResult = T;

	TValueStorage() noexcept = default;

	explicit TValueStorage(T value) noexcept : mValue(value) {}

	TResult Load() const noexcept { return mValue.load(std::memory_order_relaxed); }

	void Store(T value) noexcept { mValue.store(value, std::memory_order_relaxed); }

private:
	std::atomic<T> mValue{};
	static_assert(std::atomic<T>::is_always_lock_free);
};
