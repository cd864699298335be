// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObserver.h"
#include "framework/document/observables/TWeakReferenceable.h"
#include "framework/foundation/memory/Memory.h"

#include <cstddef>

/// Base of everything that lives on the main thread: views, windows, what handles their events.
class TGuiObject : public TObserver, public TWeakReferenceable {
public:
	static void* operator new(std::size_t size) { return Memory::Allocate("TGuiObject", size); }

	static void operator delete(void* memory) noexcept { Memory::Free(memory); }

protected:
	TGuiObject() noexcept : TObserver(kMainThread) {}
};
