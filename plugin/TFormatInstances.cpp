// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/TFormatInstances.h"

#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/foundation/process/Framework.h"
#include "framework/foundation/process/TStructuredExceptionHandler.h"
#include "framework/foundation/threads/TThreadManager.h"
#include "plugin/CreatePluginShell.h"
#include "shell/TAudioPluginShell.h"

#include <mutex>

namespace {

std::mutex sMutex; // over all formats

/// Null also where a handler of the host's has caught a crash.
TAudioPluginShell* CreateShellGuarded(int32_t hostKind, void* hostContext) {
	TAudioPluginShell* shell = nullptr;
	const auto create = [&] { shell = CreatePluginShell(hostKind, hostContext); };
	return TStructuredExceptionHandler::Instance()->Guard(create) ? shell : nullptr;
}

TAudioPluginShell* CreateShell(int32_t hostKind, void* hostContext) {
	TAudioPluginShell* shell;
	{
		const TThreadManager::THostScope role(kMainThread);
		shell = hostKind == kVst2Host ? CreateShellGuarded(hostKind, hostContext)
		                              : CreatePluginShell(hostKind, hostContext);
	}
	// Which thread made the instance does not matter from here on.
	TThreadManager::Instance()->Detach();
	return shell;
}

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
		if (TAudioPluginShell* shell = CreateShell(mHostKind, hostContext))
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
		const TThreadManager::THostScope role(kMainThread);
		ReleasePluginShell(shell);
	}
	ReleaseFramework();
	TGlobalStorage::DestroyStorage(storageId);
}
