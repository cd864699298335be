// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TDirectory.h"

/// Where a system wants a program to keep its files; implemented in platform/. A folder need not exist, and is empty
/// where the system gives no answer. Any thread.
class TSystemFolders {
public:
	virtual ~TSystemFolders() = default;

	virtual TDirectory HomeDirectory() const = 0;
	/// The user's own documents.
	virtual TDirectory DocumentsDirectory() const = 0;
	/// Of this product; the folders of its versions lie in it.
	virtual TDirectory PreferencesDirectory() const = 0;
	/// Of this product.
	virtual TDirectory LogDirectory() const = 0;
	/// Of the whole system.
	virtual TDirectory TemporaryDirectory() const = 0;
	virtual bool MoveToTrash(const TString& path) const = 0;
};
