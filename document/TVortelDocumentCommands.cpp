// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelDocument.h"

#include <algorithm>

void TVortelDocument::InitDevices() {
	for (const auto& device : mpDevices)
		device->Init();
}

void TVortelDocument::InitProgram() {
	ActiveProgram()->Init(true);
	InitDevices();
	FireAllBangs();
	mSelectedDevice.Set(0);
}

void TVortelDocument::CopyProgram() {
	mpProgramClipboard->CopyFrom(*ActiveProgram());
}

void TVortelDocument::PasteProgram() {
	ActiveProgram()->CopyFrom(*mpProgramClipboard);
	FireAllBangs();
}

void TVortelDocument::InitAllPrograms() {
	for (const auto& program : mpPrograms)
		program->Init(true);
	mActiveProgramIndex.Set(0);
	InitDevices();
	FireAllBangs();
	mSelectedDevice.Set(0);
}

void TVortelDocument::InitScene() {
	ActiveScene()->Init(true);
	InitDevices();
	const int32_t index = std::clamp(ActiveProgram()->ActiveSceneIndex().Get(), 0, TVortelProgram::kNumberOfScenes - 1);
	ActiveScene()->Seed().Set(TVortelProgram::InitialSeed(index));
	FireSceneBangs();
}

void TVortelDocument::CopyScene() {
	mpSceneClipboard->CopyFrom(*ActiveScene());
}

void TVortelDocument::PasteScene() {
	ActiveScene()->CopyFrom(*mpSceneClipboard);
	FireSceneBangs();
}

void TVortelDocument::InitEffects() {
	InitDevices();
	FireSceneBangs();
}

void TVortelDocument::CopyEffects() {
	for (const auto& device : mpDevices)
		device->CopyParameters(mpParameterClipboard.Get());
}

void TVortelDocument::PasteEffects() {
	for (const auto& device : mpDevices)
		device->PasteParameters(mpParameterClipboard.Get());
	FireSceneBangs();
}

void TVortelDocument::InitSequence() {
	ActiveSequencer()->Clear();
	mSequenceChangedBang.Bang();
}

void TVortelDocument::CopySequence() {
	mpSequencerClipboard->CopyFrom(*ActiveSequencer(), false);
}

void TVortelDocument::PasteSequence() {
	ActiveSequencer()->CopyFrom(*mpSequencerClipboard, false);
	mSequenceChangedBang.Bang();
}

void TVortelDocument::MixPasteSequence() {
	ActiveSequencer()->CopyFrom(*mpSequencerClipboard, true);
	mSequenceChangedBang.Bang();
}

void TVortelDocument::MirrorSequence() {
	TVortelSequencer& sequencer = *ActiveSequencer();
	for (int32_t device = 0; device < kNumberOfDevices; ++device)
		sequencer.Sequence(device).MirrorHorizontally(sequencer.StepCount());
	mSequenceChangedBang.Bang();
}

void TVortelDocument::FlipSequence() {
	const TVortelProgram& program = *ActiveProgram();
	TVortelSequencer& sequencer = *ActiveSequencer();
	for (int32_t position = 0; position < kNumberOfDevices / 2; ++position) {
		TVortelSequence& upper = sequencer.Sequence(program.DeviceAtPosition(position));
		TVortelSequence& lower = sequencer.Sequence(program.DeviceAtPosition(kNumberOfDevices - 1 - position));
		TVortelSequence held;
		held.CopyFrom(upper, false);
		upper.CopyFrom(lower, false);
		lower.CopyFrom(held, false);
	}
	mSequenceChangedBang.Bang();
}
