// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TSystemFolders.h"

/// Everything below one folder of the caller's choice: for tests and for machines without a user.
class THeadlessFolders final : public TSystemFolders {
public:
	explicit THeadlessFolders(const TDirectory& root) : mRoot(root) {}

	TDirectory LogDirectory() const override { return mRoot.Descend("Log"); }

private:
	TDirectory mRoot;
};
