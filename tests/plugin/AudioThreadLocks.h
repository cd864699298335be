// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "framework/foundation/TGlobalStorage.h"
#include "framework/foundation/TThreadCommunicator.h"

#include <cstdint>
#include <initializer_list>
#include <vector>

/// The locks that the audio thread may take: the document's, those of its role and its queue, and those of the
/// values that it sets or that are set while it runs.
inline std::vector<const void*> LocksOfTheAudioThread(int32_t storageId, TVortelDocument& document) {
	const TGlobalStorageScope storage(storageId);
	std::vector<const void*> locks{
	    &document.AudioLock(), &TThreadManager::Instance()->Lock(kAudioThread),
	    &TThreadCommunicator::Instance()->DrainLock(kAudioThread), document.ActiveProgramIndex().ObserversLock()};
	for (int32_t i = 0; i < TVortelDocument::kNumberOfPrograms; ++i) {
		TVortelProgram& program = *document.Program(i);
		for (const TObservable* value : std::initializer_list<const TObservable*>{
		         &program.ActiveSceneIndex(), &program.MasterMix(), &program.MasterPanning(), &program.MasterVolume()})
			locks.push_back(value->ObserversLock());
	}
	for (int32_t id = 0; id < TVortelDocument::kNumberOfParameters; ++id)
		locks.push_back(document.ParameterObservable(id)->ObserversLock());
	std::erase(locks, nullptr);
	return locks;
}
