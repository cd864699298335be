// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/TGlobalStorage.h"
#include "framework/foundation/TReadableException.h"

/// Base of a class with one object per plug-in instance (see TGlobalStorage).
///
///     class TThing : public TSingleton<TThing> { ... };
///     TThing::Create([] { return new TThing; }, [](TThing* thing) { delete thing; });
///     TThing::Instance()->...
///
/// Create also registers both functions, so that storages made later get an object of their own, unless
/// SetCreateInEveryStorage(false) was called before.
template <class T>
class TSingleton {
public:
	using TCreatorFunction = T* (*)();
	using TDestroyerFunction = void (*)(T*);

	static void Create(TCreatorFunction creator, TDestroyerFunction destroyer) {
		sCreator = creator;
		sDestroyer = destroyer;
		if (sCreateInEveryStorage) {
			TGlobalStorage::RegisterCreator(sSlot, &CreateForStorage);
			TGlobalStorage::RegisterDestroyer(sSlot, &DestroyForStorage);
		}
		CreateForStorage();
	}

	/// The object of the current storage; null before Create and after Destroy. No lock.
	static T* Instance() noexcept {
		TGlobalStorage* storage = TGlobalStorage::Current();
		return storage ? static_cast<T*>(storage->Slot(sSlot)) : nullptr;
	}

	static void Destroy() {
		if (T* object = Instance())
			DestroyForStorage(object);
	}

	static void SetCreateInEveryStorage(bool create) { sCreateInEveryStorage = create; }

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
		try {
			T* object = sCreator();
			storage->SetSlot(sSlot, object);
			static_cast<TSingleton*>(object)->OnCreated();
			return object;
		} catch (const TReadableException&) {
			storage->SetSlot(sSlot, nullptr);
			throw;
		}
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
	static inline bool sCreateInEveryStorage = true;
};
