// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TGlobalStorage.h"

#include <cstdint>
#include <utility>

/// What a call from the host that answers with a value does around its work: the instance's storage is current, and no
/// exception gets out; the host gets onFailure then.
template <class TValue, class TFunction>
TValue HostQuery(int32_t storageId, TValue onFailure, TFunction&& function) noexcept {
	try {
		const TGlobalStorageScope storage(storageId);
		return std::forward<TFunction>(function)();
	} catch (...) {
		return onFailure;
	}
}
