// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/foundation/text/TReadableException.h"
#include "platform/audiounit/AudioUnitTypes.h"

#include <new>
#include <utility>

/// The status that a host gets for what was thrown. A status that was thrown is passed on as it is.
template <class TFunction>
OSStatus StatusOf(TFunction&& function) noexcept {
	try {
		return std::forward<TFunction>(function)();
	} catch (OSStatus status) {
		return status;
	} catch (const TOutOfMemoryException&) {
		return kAudio_MemFullError;
	} catch (const std::bad_alloc&) {
		return kAudio_MemFullError;
	} catch (...) {
		return -1;
	}
}

/// What every call from the host or the platform does around its work: the instance's storage is current, and no
/// exception gets out.
template <class TFunction>
OSStatus AudioUnitHostCall(int32_t storageId, TFunction&& function) noexcept {
	return StatusOf([&] {
		const TGlobalStorageScope storage(storageId);
		return std::forward<TFunction>(function)();
	});
}
