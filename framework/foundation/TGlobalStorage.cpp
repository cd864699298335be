// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/TGlobalStorage.h"

#include "framework/foundation/TCommandPoolAllocator.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

template <class TFunction>
class TRegistrations {
public:
	using TEntry = std::pair<int, TFunction>;

	void Set(int slot, TFunction function) {
		auto entry = Find(slot);
		if (entry == mEntries.end())
			mEntries.emplace_back(slot, function);
		else
			entry->second = function;
	}

	void Remove(int slot) {
		auto entry = Find(slot);
		if (entry != mEntries.end())
			mEntries.erase(entry);
	}

	const std::vector<TEntry>& Entries() const { return mEntries; }

private:
	auto Find(int slot) {
		return std::find_if(mEntries.begin(), mEntries.end(), [slot](const TEntry& e) { return e.first == slot; });
	}

	std::vector<TEntry> mEntries;
};

// Creators and destroyers run outside the mutex, so that no other instance's audio thread ever waits for them.
struct TProcessWide {
	std::mutex mMutex;
	std::vector<std::unique_ptr<TGlobalStorage>> mStorages; // by id
	TRegistrations<TGlobalStorage::TCreator> mCreators;
	TRegistrations<TGlobalStorage::TDestroyer> mDestroyers;
	std::vector<std::pair<int, void*>> mLeftBehind;
};

TProcessWide& ProcessWide() {
	static TProcessWide processWide;
	return processWide;
}

constinit std::atomic<int> sNumberOfSlotsTaken{0};

} // namespace

constinit thread_local TGlobalStorage* TGlobalStorage::sCurrent = nullptr;
constinit std::atomic<TGlobalStorage*> TGlobalStorage::sDefault{nullptr};

int32_t TGlobalStorage::CreateStorage() {
	TProcessWide& all = ProcessWide();
	int32_t id;
	std::vector<TRegistrations<TCreator>::TEntry> creators;
	{
		std::lock_guard guard(all.mMutex);
		id = static_cast<int32_t>(all.mStorages.size());
		all.mStorages.push_back(std::unique_ptr<TGlobalStorage>(new TGlobalStorage(id)));
		TGlobalStorage* none = nullptr;
		sDefault.compare_exchange_strong(none, all.mStorages.back().get());
		if (id != 0)
			creators = all.mCreators.Entries();
	}
	try {
		TGlobalStorageScope scope(id);
		for (const auto& [slot, creator] : creators)
			sCurrent->SetSlot(slot, creator());
	} catch (...) {
		DestroyStorage(id);
		throw;
	}
	return id;
}

void TGlobalStorage::DestroyStorage(int32_t id) {
	TProcessWide& all = ProcessWide();
	TGlobalStorage* storage = nullptr;
	{
		std::lock_guard guard(all.mMutex);
		if (id >= 0 && static_cast<std::size_t>(id) < all.mStorages.size())
			storage = all.mStorages[static_cast<std::size_t>(id)].get();
		if (!storage)
			return;
		if (sCurrent == storage)
			SetCurrentId(-1);
		// Threads without a scope still reach these objects as the default, so they are left as they are.
		for (int slot = 0; id == 0 && slot < kNumberOfSlots; ++slot)
			if (void* object = std::exchange(storage->mSlots[static_cast<std::size_t>(slot)], nullptr))
				all.mLeftBehind.emplace_back(slot, object);
	}
	storage->RunDestroyers();
	std::lock_guard guard(all.mMutex);
	sDefault.compare_exchange_strong(storage, nullptr);
	all.mStorages[static_cast<std::size_t>(id)].reset();
}

void TGlobalStorage::RunDestroyers() {
	std::vector<TRegistrations<TDestroyer>::TEntry> destroyers;
	{
		std::lock_guard guard(ProcessWide().mMutex);
		destroyers = ProcessWide().mDestroyers.Entries();
	}
	TGlobalStorageScope scope(mId);
	for (auto entry = destroyers.rbegin(); entry != destroyers.rend(); ++entry) {
		if (void* object = Slot(entry->first)) {
			entry->second(object);
			SetSlot(entry->first, nullptr);
		}
	}
}

void TGlobalStorage::SetCurrentId(int32_t id) {
	TCommandPoolAllocator::SetOfThisThread(nullptr);
	if (id < 0) {
		sCurrent = nullptr;
		return;
	}
	TProcessWide& all = ProcessWide();
	std::lock_guard guard(all.mMutex);
	const auto index = static_cast<std::size_t>(id);
	sCurrent = index < all.mStorages.size() ? all.mStorages[index].get() : nullptr;
}

int TGlobalStorage::AllocateSlot() {
	const int slot = sNumberOfSlotsTaken.fetch_add(1);
	if (slot >= kNumberOfSlots)
		throw std::length_error("more singleton classes than slots");
	return slot;
}

void TGlobalStorage::RegisterCreator(int slot, TCreator creator) {
	std::lock_guard guard(ProcessWide().mMutex);
	ProcessWide().mCreators.Set(slot, creator);
}

void TGlobalStorage::RegisterDestroyer(int slot, TDestroyer destroyer) {
	std::lock_guard guard(ProcessWide().mMutex);
	ProcessWide().mDestroyers.Set(slot, destroyer);
}

void TGlobalStorage::Unregister(int slot) {
	std::lock_guard guard(ProcessWide().mMutex);
	ProcessWide().mCreators.Remove(slot);
	ProcessWide().mDestroyers.Remove(slot);
}

void* TGlobalStorage::TakeLeftBehind(int slot) {
	std::lock_guard guard(ProcessWide().mMutex);
	auto& leftBehind = ProcessWide().mLeftBehind;
	const auto entry =
	    std::find_if(leftBehind.begin(), leftBehind.end(), [slot](const auto& e) { return e.first == slot; });
	if (entry == leftBehind.end())
		return nullptr;
	void* object = entry->second;
	leftBehind.erase(entry);
	return object;
}
