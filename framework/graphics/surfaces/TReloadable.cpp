// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TReloadable.h"

#include "framework/document/observables/TWeakPtr.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace {

struct TLiveObjects {
	std::mutex mLock; // instances make and end their objects on threads of their own
	std::vector<TReloadable*> mObjects;
};

TLiveObjects& LiveObjects() {
	static TLiveObjects objects;
	return objects;
}

} // namespace

TReloadable::TReloadable() {
	TLiveObjects& live = LiveObjects();
	const std::lock_guard lock(live.mLock);
	live.mObjects.push_back(this);
}

TReloadable::~TReloadable() {
	TLiveObjects& live = LiveObjects();
	const std::lock_guard lock(live.mLock);
	// From the end: what was made last goes first, as a rule.
	const auto found = std::find(live.mObjects.rbegin(), live.mObjects.rend(), this);
	live.mObjects.erase(std::next(found).base());
}

void TReloadable::DropAllPixels() {
	const int32_t storage = TGlobalStorage::Current() ? TGlobalStorage::Current()->Id() : -1;
	// Dropping may end an object that is still to come.
	std::vector<TWeakPtr<TReloadable>> objects;
	{
		TLiveObjects& live = LiveObjects();
		const std::lock_guard lock(live.mLock);
		for (TReloadable* object : live.mObjects)
			if (object->StorageId() == storage)
				objects.emplace_back(object);
	}
	for (const TWeakPtr<TReloadable>& object : objects)
		if (object)
			object->DropPixels();
}
