// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/foundation/text/TReadableException.h"
#include "shell/vst3/Vst3Interfaces.h"

#include <pluginterfaces/base/funknown.h>

#include <cstdint>
#include <new>
#include <utility>

/// What every call from the host does around its work: the instance's storage is current, and no exception gets out.
template <class TFunction>
Steinberg::tresult HostCall(int32_t storageId, TFunction&& function) noexcept {
	try {
		const TGlobalStorageScope storage(storageId);
		return std::forward<TFunction>(function)();
	} catch (const TOutOfMemoryException&) {
		return Steinberg::kOutOfMemory;
	} catch (const std::bad_alloc&) {
		return Steinberg::kOutOfMemory;
	} catch (...) {
		return Steinberg::kInternalError;
	}
}

/// The same for calls that answer with a value.
template <class TValue, class TFunction>
TValue HostQuery(int32_t storageId, TValue onFailure, TFunction&& function) noexcept {
	TValue value = onFailure;
	HostCall(storageId, [&] {
		value = std::forward<TFunction>(function)();
		return Steinberg::kResultOk;
	});
	return value;
}
