// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/instance/TGlobalStorage.h"

#include <cstdint>
#include <vector>

/// The locks that the audio thread may take, which others hold for a few instructions only: the document's and that of
/// its role.
inline std::vector<const void*> LocksOfTheAudioThread(int32_t storageId, TVortelDocument& document) {
	const TGlobalStorageScope storage(storageId);
	return {&document.AudioLock(), &TThreadManager::Instance()->Lock(kAudioThread)};
}
