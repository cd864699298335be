// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

/// A value that any thread replaces while the rendering thread reads it. Reading takes no lock and frees nothing; there
/// is one reader at a time. Replacing waits for nobody: what is still being read goes with a later change.
template <class T>
class AUPublished {
public:
	AUPublished() { Set({}); }

	void Set(T value) {
		Change([&value](T& current) { current = std::move(value); });
	}

	/// Hands a copy of the value to the function and publishes what that has made of it.
	template <class TFunction>
	void Change(TFunction function) {
		const std::lock_guard guard(mLock);
		const T* current = mpCurrent.load();
		auto changed = current ? std::make_unique<T>(*current) : std::make_unique<T>();
		function(*changed);
		mValues.push_back(std::move(changed));
		mpCurrent.store(mValues.back().get());
		const T* const isRead = mpRead.load();
		std::erase_if(
		    mValues, [&](const auto& value) { return value.get() != mpCurrent.load() && value.get() != isRead; });
	}

	/// Not for the rendering thread.
	T Copy() const {
		const std::lock_guard guard(mLock);
		return *mpCurrent.load();
	}

	/// The value as it is now, for as long as the reader lives.
	class [[nodiscard]] TReader {
	public:
		explicit TReader(const AUPublished& value) : mPublished(value) {
			do {
				mpValue = mPublished.mpCurrent.load();
				mPublished.mpRead.store(mpValue);
			} while (mPublished.mpCurrent.load() != mpValue);
		}

		~TReader() { mPublished.mpRead.store(nullptr); }

		TReader(const TReader&) = delete;
		TReader& operator=(const TReader&) = delete;

		const T& operator*() const { return *mpValue; }

		const T* operator->() const { return mpValue; }

	private:
		const AUPublished& mPublished;
		const T* mpValue;
	};

private:
	mutable std::mutex mLock;
	std::vector<std::unique_ptr<T>> mValues;
	std::atomic<const T*> mpCurrent{nullptr};
	mutable std::atomic<const T*> mpRead{nullptr};
};
