// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/foundation/process/Framework.h"

#include <gtest/gtest.h>

#include <optional>

/// A test inside one instance: a storage, entered, with the framework running; the test's thread is the main thread.
class TFrameworkFixture : public testing::Test {
protected:
	void SetUp() override {
		mStorageId = TGlobalStorage::CreateStorage();
		mScope.emplace(mStorageId);
		InitializeFramework();
	}

	void TearDown() override {
		FinalizeFramework();
		mScope.reset();
		TGlobalStorage::DestroyStorage(mStorageId);
	}

	/// For threads that the test starts: they enter with TGlobalStorageScope.
	int32_t StorageId() const { return mStorageId; }

private:
	int32_t mStorageId = -1;
	std::optional<TGlobalStorageScope> mScope;
};
