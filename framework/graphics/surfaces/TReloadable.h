// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakReferenceable.h"
#include "framework/foundation/instance/TGlobalStorage.h"

/// Base of what keeps pixels that were loaded for one UI scale and can load them again. All live ones stand in one list
/// of the process.
class TReloadable : public TWeakReferenceable, public TGlobalStorageAware {
public:
	TReloadable(const TReloadable&) = delete;
	TReloadable& operator=(const TReloadable&) = delete;

	/// For all of the current storage: other instances are drawn by threads of their own.
	static void DropAllPixels();

	/// The next use loads again.
	virtual void DropPixels() = 0;

protected:
	TReloadable();
	~TReloadable() override;
};
