// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TGlobalStorage.h"

/// Base of a class with one object per plug-in instance (see TGlobalStorage).
///
///     class TThing : public TSingleton<TThing> { ... };
///     TThing::Create([] { return new TThing; }, [](TThing* thing) { delete thing; });
///     TThing::Instance()->...
///
/// Create also registers both functions, so that storages made later get an object of their own; the registration
/// lasts until Destroy has been called as often as Create. A class for which SetCreateInEveryStorage(false) was called
/// before is created and destroyed explicitly in each storage. Create and Destroy belong to the thread that makes and
/// ends instances; Instance() is for any.
template <class T>
class TSingleton {
public:
	using TCreatorFunction = T* (*)();
	using TDestroyerFunction = void (*)(T*);

	/// An object that the current storage was created with stays. What the creator throws leaves the slot empty and
	/// passes on.
	static void Create(TCreatorFunction creator, TDestroyerFunction destroyer) {
		sCreator = creator;
		sDestroyer = destroyer;
		if (!Instance())
			CreateForStorage();
		if (sCreateInEveryStorage) {
			TGlobalStorage::RegisterCreator(sSlot, &CreateForStorage);
			TGlobalStorage::RegisterDestroyer(sSlot, &DestroyForStorage);
			++sRegistrations;
		}
	}

	/// The object of the current storage; null before Create and after Destroy. No lock.
	static T* Instance() noexcept {
		TGlobalStorage* storage = TGlobalStorage::Current();
		return storage ? static_cast<T*>(storage->Slot(sSlot)) : nullptr;
	}

	static void Destroy() {
		if (T* object = Instance())
			DestroyForStorage(object);
		if (sRegistrations == 0 || --sRegistrations > 0)
			return;
		TGlobalStorage::Unregister(sSlot);
		if (void* object = TGlobalStorage::TakeLeftBehind(sSlot))
			DestroyForStorage(object);
	}

	static void SetCreateInEveryStorage(bool create) { sCreateInEveryStorage = create; }

	TSingleton(const TSingleton&) = delete;
	TSingleton& operator=(const TSingleton&) = delete;

protected:
	TSingleton() = default;
	virtual ~TSingleton() = default;

	/// After creation, when Instance() already answers.
	virtual void OnCreated() {}

	/// Before destruction, while Instance() still answers.
	virtual void OnBeforeDestruction() {}

private:
	static void* CreateForStorage() {
		TGlobalStorage* storage = TGlobalStorage::Current();
		T* object = sCreator();
		storage->SetSlot(sSlot, object);
		try {
			static_cast<TSingleton*>(object)->OnCreated();
		} catch (...) {
			sDestroyer(object);
			storage->SetSlot(sSlot, nullptr);
			throw;
		}
		return object;
	}

	static void DestroyForStorage(void* untyped) {
		T* object = static_cast<T*>(untyped);
		static_cast<TSingleton*>(object)->OnBeforeDestruction();
		sDestroyer(object);
		TGlobalStorage::Current()->SetSlot(sSlot, nullptr);
	}

	static inline const int sSlot = TGlobalStorage::AllocateSlot();
	static inline TCreatorFunction sCreator = nullptr;
	static inline TDestroyerFunction sDestroyer = nullptr;
	static inline int sRegistrations = 0;
	static inline bool sCreateInEveryStorage = true;
};
