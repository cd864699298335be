// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/TDirectory.h"

/// Where a system wants a program to keep its files. A folder need not exist. Any thread.
class TSystemFolders {
public:
	virtual ~TSystemFolders() = default;

	/// Empty where the system gives no answer.
	virtual TDirectory LogDirectory() const = 0;
};
