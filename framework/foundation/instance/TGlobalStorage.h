// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TThreadState.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

/// What the framework calls a singleton is one object per plug-in instance: a slot in the instance's storage.
///
/// One storage exists per live instance; its id is handed out once and never reused. Each thread has a current
/// storage (TGlobalStorageScope); a thread without one uses the default storage, that of the first instance.
/// Creating and destroying a storage takes one process-wide mutex for a few instructions; looking one up and reading a
/// slot take none.
class TGlobalStorage {
public:
	static constexpr int kNumberOfSlots = 256;
	using TCreator = void* (*)();
	using TDestroyer = void (*)(void*);

	/// Makes a storage, runs the registered creators in it (not for id 0) and returns its id. When a creator throws,
	/// the storage goes again and the exception passes on.
	static int32_t CreateStorage();
	/// Runs the registered destroyers backwards and deletes the storage. Unknown ids are ignored. The objects of
	/// storage 0 are not destroyed but set aside for TakeLeftBehind.
	static void DestroyStorage(int32_t id);

	/// The calling thread's storage, else the default one, else null.
	static TGlobalStorage* Current() noexcept {
		TGlobalStorage* entered = TThreadState::OfThisThread().mpStorage;
		return entered ? entered : sDefault.load(std::memory_order_acquire);
	}

	/// The id of the storage that the calling thread has entered, -1 if none.
	static int32_t CurrentId() noexcept {
		const TGlobalStorage* entered = TThreadState::OfThisThread().mpStorage;
		return entered ? entered->mId : -1;
	}

	/// Makes the storage current for the calling thread; -1 for none.
	static void SetCurrentId(int32_t id);

	/// A slot number for a singleton class; taken once per class, at load time.
	static int AllocateSlot();
	/// What runs when further storages are made and destroyed. Registering a slot again replaces its function.
	static void RegisterCreator(int slot, TCreator creator);
	static void RegisterDestroyer(int slot, TDestroyer destroyer);
	static void Unregister(int slot);
	/// The object that the slot held when storage 0 was destroyed, once; else null.
	static void* TakeLeftBehind(int slot);

	/// Any thread; whoever sees an object sees it whole.
	void* Slot(int slot) const noexcept {
		return mSlots[static_cast<std::size_t>(slot)].load(std::memory_order_acquire);
	}

	void SetSlot(int slot, void* object) noexcept {
		mSlots[static_cast<std::size_t>(slot)].store(object, std::memory_order_release);
	}

	int32_t Id() const noexcept { return mId; }

private:
	explicit TGlobalStorage(int32_t id) : mId(id) {}

	void RunDestroyers();

	static constinit std::atomic<TGlobalStorage*> sDefault;

	int32_t mId;
	std::array<std::atomic<void*>, kNumberOfSlots> mSlots{};
};

/// Makes a storage current on this thread for the guard's life. Every entry from a host or the platform opens one
/// first.
class [[nodiscard]] TGlobalStorageScope {
public:
	explicit TGlobalStorageScope(int32_t id) : mPreviousId(TGlobalStorage::CurrentId()), mChanged(id != mPreviousId) {
		if (mChanged)
			TGlobalStorage::SetCurrentId(id);
	}

	~TGlobalStorageScope() {
		if (mChanged)
			TGlobalStorage::SetCurrentId(mPreviousId);
	}

	TGlobalStorageScope(const TGlobalStorageScope&) = delete;
	TGlobalStorageScope& operator=(const TGlobalStorageScope&) = delete;

private:
	int32_t mPreviousId;
	bool mChanged;
};

/// Base of objects that a host or the platform calls directly: remembers the storage they were made in.
class TGlobalStorageAware {
public:
	int32_t StorageId() const noexcept { return mStorageId; }

protected:
	TGlobalStorageAware() : mStorageId(TGlobalStorage::Current() ? TGlobalStorage::Current()->Id() : -1) {}

	~TGlobalStorageAware() = default;

private:
	int32_t mStorageId;
};
