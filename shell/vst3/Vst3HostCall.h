// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/foundation/text/TReadableException.h"
#include "shell/HostQuery.h"
#include "shell/vst3/Vst3Interfaces.h"

#include <pluginterfaces/base/funknown.h>

#include <cstdint>
#include <new>
#include <utility>

/// HostQuery for calls that answer with a result code, which says what kind of failure it was.
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

/// Holds what the host may let go of during a call, because the call waits for a user's answer. Stands around the
/// HostCall: with the last reference the storage goes.
template <class T>
class [[nodiscard]] TKeptForCall {
public:
	explicit TKeptForCall(T& object) : mObject(object) { mObject.addRef(); }

	~TKeptForCall() { mObject.release(); }

	TKeptForCall(const TKeptForCall&) = delete;
	TKeptForCall& operator=(const TKeptForCall&) = delete;

private:
	T& mObject;
};
