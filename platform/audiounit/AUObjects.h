// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audiounit/AudioUnitTypes.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What a host and a unit own together. Begins with one reference, which belongs to who made it; the last one to go
/// deletes. Never changed once others have it, so that any thread may read.
class AUObject {
public:
	void Retain() const noexcept { mReferences.fetch_add(1, std::memory_order_relaxed); }

	void Release() const noexcept {
		if (mReferences.fetch_sub(1, std::memory_order_acq_rel) == 1)
			delete this;
	}

	AUObject(const AUObject&) = delete;
	AUObject& operator=(const AUObject&) = delete;

protected:
	AUObject() = default;
	virtual ~AUObject() = default;

private:
	mutable std::atomic<int32_t> mReferences{1};
};

/// A reference to an AUObject; may be null.
template <class T>
class AURef {
public:
	AURef() = default;

	/// Takes a reference of its own.
	explicit AURef(T* object) : mpObject(object) {
		if (mpObject)
			mpObject->Retain();
	}

	/// Takes over the one that the caller has.
	static AURef Adopt(T* object) {
		AURef reference;
		reference.mpObject = object;
		return reference;
	}

	template <class... TArguments>
	static AURef Make(TArguments&&... arguments) {
		return Adopt(new T(std::forward<TArguments>(arguments)...));
	}

	AURef(const AURef& other) : AURef(other.mpObject) {}

	AURef(AURef&& other) noexcept : mpObject(std::exchange(other.mpObject, nullptr)) {}

	AURef& operator=(AURef other) noexcept {
		std::swap(mpObject, other.mpObject);
		return *this;
	}

	~AURef() {
		if (mpObject)
			mpObject->Release();
	}

	T* Get() const { return mpObject; }

	T* operator->() const { return mpObject; }

	T& operator*() const { return *mpObject; }

	explicit operator bool() const { return mpObject != nullptr; }

	/// The reference goes to the caller.
	T* Detach() { return std::exchange(mpObject, nullptr); }

private:
	T* mpObject = nullptr;
};

class AUString final : public AUObject {
public:
	explicit AUString(std::u16string_view units) : mUnits(units) {}

	std::u16string_view Units() const { return mUnits; }

private:
	const std::u16string mUnits;
};

class AUData final : public AUObject {
public:
	explicit AUData(std::span<const uint8_t> bytes) : mBytes(bytes.begin(), bytes.end()) {}

	std::span<const uint8_t> Bytes() const { return mBytes; }

private:
	const std::vector<uint8_t> mBytes;
};

class AUNumber final : public AUObject {
public:
	explicit AUNumber(int64_t value) : mValue(value) {}

	int64_t Value() const { return mValue; }

private:
	const int64_t mValue;
};

/// Keeps its values. Changed only by who fills it.
class AUDictionary final : public AUObject {
public:
	void Set(const std::string& key, AURef<const AUObject> value) { mValues[key] = std::move(value); }

	void Remove(const std::string& key) { mValues.erase(key); }

	/// Null: there is no such key, or something else under it.
	template <class T>
	const T* Find(const std::string& key) const {
		const auto found = mValues.find(key);
		return found == mValues.end() ? nullptr : dynamic_cast<const T*>(found->second.Get());
	}

private:
	std::map<std::string, AURef<const AUObject>> mValues;
};

/// Presets in the order of their numbers.
class AUArray final : public AUObject {
public:
	void Append(SInt32 number, AURef<const AUString> name) {
		mPresets.push_back({number, name.Get()});
		mNames.push_back(std::move(name));
	}

	/// They and their names live as long as the array.
	std::span<const AUPreset> Presets() const { return mPresets; }

private:
	std::vector<AUPreset> mPresets;
	std::vector<AURef<const AUString>> mNames;
};
