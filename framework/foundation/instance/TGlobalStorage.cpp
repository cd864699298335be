// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/instance/TGlobalStorage.h"

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

/// All storages by id. Entries are added and taken out under the process-wide mutex; looking one up takes no lock, so
/// that the audio thread of one instance never waits while another is made.
class TStorageTable {
public:
	TStorageTable() = default;

	~TStorageTable() {
		for (int32_t id = 0; id < mCount; ++id)
			delete Find(id);
		for (std::atomic<TPage*>& page : mPages)
			delete page.load();
	}

	TStorageTable(const TStorageTable&) = delete;
	TStorageTable& operator=(const TStorageTable&) = delete;

	/// The id of the next entry.
	int32_t Count() const { return mCount; }

	void Add(std::unique_ptr<TGlobalStorage> storage) {
		const auto page = static_cast<std::size_t>(mCount) / kPageSize;
		if (page >= mPages.size())
			throw std::length_error("more instances than ids");
		if (!mPages[page].load())
			mPages[page].store(new TPage{}, std::memory_order_release);
		Entry(mCount++)->store(storage.release(), std::memory_order_release);
	}

	void Delete(int32_t id) { delete Entry(id)->exchange(nullptr); }

	/// Null for what never was and is no more.
	TGlobalStorage* Find(int32_t id) const noexcept {
		const std::atomic<TGlobalStorage*>* entry = Entry(id);
		return entry ? entry->load(std::memory_order_acquire) : nullptr;
	}

private:
	static constexpr std::size_t kPageSize = 1024;

	using TPage = std::array<std::atomic<TGlobalStorage*>, kPageSize>;

	std::atomic<TGlobalStorage*>* Entry(int32_t id) const noexcept {
		const auto index = static_cast<std::size_t>(id);
		TPage* page = id >= 0 && index / kPageSize < mPages.size()
		                  ? mPages[index / kPageSize].load(std::memory_order_acquire)
		                  : nullptr;
		return page ? &(*page)[index % kPageSize] : nullptr;
	}

	std::array<std::atomic<TPage*>, 1024> mPages{};
	int32_t mCount = 0;
};

// Creators and destroyers run outside the mutex, so that no other instance's audio thread ever waits for them.
struct TProcessWide {
	std::mutex mMutex;
	TStorageTable mStorages;
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

constinit std::atomic<TGlobalStorage*> TGlobalStorage::sDefault{nullptr};

int32_t TGlobalStorage::CreateStorage() {
	TProcessWide& all = ProcessWide();
	int32_t id;
	std::vector<TRegistrations<TCreator>::TEntry> creators;
	{
		std::lock_guard guard(all.mMutex);
		id = all.mStorages.Count();
		all.mStorages.Add(std::unique_ptr<TGlobalStorage>(new TGlobalStorage(id)));
		TGlobalStorage* none = nullptr;
		sDefault.compare_exchange_strong(none, all.mStorages.Find(id));
		if (id != 0)
			creators = all.mCreators.Entries();
	}
	try {
		TGlobalStorageScope scope(id);
		for (const auto& [slot, creator] : creators)
			Current()->SetSlot(slot, creator());
	} catch (...) {
		DestroyStorage(id);
		throw;
	}
	return id;
}

void TGlobalStorage::DestroyStorage(int32_t id) {
	TProcessWide& all = ProcessWide();
	TGlobalStorage* storage;
	{
		std::lock_guard guard(all.mMutex);
		storage = all.mStorages.Find(id);
		if (!storage)
			return;
		if (TThreadState::OfThisThread().mpStorage == storage)
			SetCurrentId(-1);
		// Threads without a scope still reach these objects as the default, so they are left as they are.
		for (int slot = 0; id == 0 && slot < kNumberOfSlots; ++slot)
			if (void* object = storage->mSlots[static_cast<std::size_t>(slot)].exchange(nullptr))
				all.mLeftBehind.emplace_back(slot, object);
	}
	storage->RunDestroyers();
	std::lock_guard guard(all.mMutex);
	sDefault.compare_exchange_strong(storage, nullptr);
	all.mStorages.Delete(id);
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
	TThreadState& thread = TThreadState::OfThisThread();
	thread.LeaveCommandPool();
	thread.mpStorage = id < 0 ? nullptr : ProcessWide().mStorages.Find(id);
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
