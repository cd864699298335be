// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/TVortelEngineCommands.h"

#include "engine/TVortelAudioEngine.h"

void TVortelMidiEventCommand::Execute() {
	mpEngine->HandleMidiEvent(mEvent);
}

void TVortelNewStepCommand::Execute() {
	mpEngine->AdvanceStep();
}

void TVortelApplyMIDISceneChangeCommand::Execute() {
	mpEngine->ApplyMidiSceneChange(mNote);
}

// Commands of others wait in the same schedule, so the kind has to be asked for.
bool TVortelNewSceneCommandMatch::Matches(const TCommand* command) const {
	const auto* sceneChange = dynamic_cast<const TVortelApplyMIDISceneChangeCommand*>(command);
	return sceneChange && (mNote == kAnyNote || sceneChange->Note() == mNote);
}

bool TVortelNewStepCommandMatch::Matches(const TCommand* command) const {
	return dynamic_cast<const TVortelNewStepCommand*>(command) != nullptr;
}
