// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/FileOperations.h"
#include "framework/foundation/files/TSystemFolders.h"

/// Everything below one folder of the caller's choice: for tests and for machines without a user.
class THeadlessFolders final : public TSystemFolders {
public:
	explicit THeadlessFolders(const TDirectory& root) : mRoot(root) {}

	TDirectory HomeDirectory() const override { return mRoot.Descend("Home"); }

	TDirectory DocumentsDirectory() const override { return mRoot.Descend("Documents"); }

	TDirectory PreferencesDirectory() const override { return mRoot.Descend("Preferences"); }

	TDirectory LogDirectory() const override { return mRoot.Descend("Log"); }

	TDirectory TemporaryDirectory() const override { return mRoot; }

	bool MoveToTrash(const TString& path) const override {
		const TDirectory trash = mRoot.Descend("Trash");
		return trash.Create(true) && MoveFile(path, UniqueFileName(trash, ""));
	}

private:
	TDirectory mRoot;
};
