// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/memory/TReferenceCountable.h"

/// Holds an object through what may let go of it. One that nobody holds yet, or any more, because it is being built or
/// destroyed, is left alone.
class [[nodiscard]] TKeptAlive {
public:
	explicit TKeptAlive(TReferenceCountable* object) : mpObject(object->ReferenceCount() > 0 ? object : nullptr) {}

	TKeptAlive(const TKeptAlive&) = delete;
	TKeptAlive& operator=(const TKeptAlive&) = delete;

private:
	const TPtr<TReferenceCountable> mpObject;
};
