// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/foundation/memory/TReferenceCountable.h"

#include <cstdint>

/// What an event is about, so that a listener can tell at a glance whether to look closer.
enum TApplicationEventKind : int32_t { kKeyboardEvent = 1, kMouseEvent = 2, kApplicationEvent = 4 };

/// What travels through the TApplicationEventQueue. Main thread.
class TApplicationEvent : public TReferenceCountable, public TGlobalStorageAware {
public:
	int32_t Kind() const noexcept { return mKind; }

protected:
	explicit TApplicationEvent(TApplicationEventKind kind) noexcept : mKind(kind) {}

private:
	const int32_t mKind;
};
