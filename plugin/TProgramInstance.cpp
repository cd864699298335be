// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/TProgramInstance.h"

#include "framework/foundation/Framework.h"
#include "plugin/CreatePluginShell.h"

#include <mutex>

namespace {

// A storage must not be made while the framework starts or ends in another, so instances come and go one by one.
std::mutex sMutex;
int32_t sInstances = 0;

void RetainFramework() {
	if (++sInstances == 1)
		InitializeFramework();
}

void ReleaseFramework() {
	if (--sInstances == 0)
		FinalizeFramework();
}

/// The thread plays the main thread of an instance, which has to be running for that.
class TMainThreadRole {
private:
	TThreadManager::TScope mNoRole{kNoThread};
	TThreadManager::TScope mRole{kMainThread};
};

} // namespace

TOwnerPtr<TProgramInstance> TProgramInstance::Create(TProgramPluginShell::THost* host) {
	const std::lock_guard guard(sMutex);
	const int32_t storageId = TGlobalStorage::CreateStorage();
	{
		const TGlobalStorageScope storage(storageId);
		RetainFramework();
		const TMainThreadRole role;
		if (TAudioPluginShell* shell = CreatePluginShell(kProgramHost, host))
			return TOwnerPtr<TProgramInstance>(
			    new TProgramInstance(storageId, static_cast<TProgramPluginShell*>(shell)));
	}
	const TGlobalStorageScope storage(storageId);
	ReleaseFramework();
	TGlobalStorage::DestroyStorage(storageId);
	return nullptr;
}

TProgramInstance::~TProgramInstance() {
	const std::lock_guard guard(sMutex);
	const TGlobalStorageScope storage(mStorageId);
	{
		const TMainThreadRole role;
		ReleasePluginShell(mpShell);
	}
	ReleaseFramework();
	TGlobalStorage::DestroyStorage(mStorageId);
}
