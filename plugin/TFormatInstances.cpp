// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/TFormatInstances.h"

#include "framework/foundation/Framework.h"
#include "framework/foundation/TGlobalStorage.h"
#include "framework/foundation/TThreadManager.h"
#include "plugin/CreatePluginShell.h"
#include "shell/TAudioPluginShell.h"

#include <mutex>

namespace {

std::mutex sMutex; // over all formats

/// The thread plays the main thread of an instance, which has to be running for that.
class TMainThreadRole {
private:
	TThreadManager::TScope mNoRole{kNoThread};
	TThreadManager::TScope mRole{kMainThread};
};

} // namespace

void TFormatInstances::RetainFramework() {
	if (mCount == 0)
		InitializeFramework();
	++mCount;
}

void TFormatInstances::ReleaseFramework() {
	if (--mCount == 0)
		FinalizeFramework();
}

TAudioPluginShell* TFormatInstances::Create(void* hostContext) {
	const std::lock_guard guard(sMutex);
	const int32_t storageId = TGlobalStorage::CreateStorage();
	const TGlobalStorageScope storage(storageId);
	bool hasFramework = false;
	const auto undo = [&] {
		if (hasFramework)
			ReleaseFramework();
		TGlobalStorage::DestroyStorage(storageId);
	};
	try {
		RetainFramework();
		hasFramework = true;
		const TMainThreadRole role;
		if (TAudioPluginShell* shell = CreatePluginShell(mHostKind, hostContext))
			return shell;
	} catch (...) {
		undo();
		throw;
	}
	undo();
	return nullptr;
}

void TFormatInstances::Release(TAudioPluginShell* shell) {
	const std::lock_guard guard(sMutex);
	const int32_t storageId = shell->StorageId();
	const TGlobalStorageScope storage(storageId);
	{
		const TMainThreadRole role;
		ReleasePluginShell(shell);
	}
	ReleaseFramework();
	TGlobalStorage::DestroyStorage(storageId);
}
