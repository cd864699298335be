// SPDX-License-Identifier: GPL-3.0-or-later
// The part of the engine that turns time and notes into effects that are on or off.
#include "engine/TVortelAudioEngine.h"
#include "engine/TVortelEngineCommands.h"
#include "framework/foundation/values/TRandom.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr uint8_t kAllSoundOff = 120; // controller

/// A device that the randomizer has picked follows both its own row and the randomizer's: a start in either starts.
uint8_t StepOfBoth(uint8_t own, uint8_t randomizer) {
	if (own == kStepBlockStart || randomizer == kStepBlockStart)
		return kStepBlockStart;
	return own == kStepEmpty ? randomizer : own;
}

} // namespace

int32_t TVortelAudioEngine::PlayingStep() const {
	TVortelScene* scene = mpScene;
	if (!mIsRunning || scene != mpEditedScene)
		return kNone;
	return TStepGrid::Of(*scene->Sequencer()).StepAt(mPosition, mSamplesPerStep);
}

double TVortelAudioEngine::PlayingPosition() const {
	return mIsRunning && mpScene == mpEditedScene ? double{mPosition} : kNone;
}

void TVortelAudioEngine::StartSequencer() {
	RemovePendingSteps();
	mIsRunning = true;
	mRandomDevice = kNone;
	mCurrentStep = kNone;
	if (TriggerMode() == kTriggerHost) {
		const double loop = Grid().mBeats;
		SetPosition(MusicalTime::Wrap(MusicalTime::Lift(mHostPosition, loop), loop));
		mStartPosition = 0.0;
	} else {
		SetPosition(0.0);
		mStartPosition = mHostPosition;
	}
	// A restart at the same place shuffles the same.
	const uint32_t seed = static_cast<uint32_t>(mpScene->Seed().Get()) +
	                      static_cast<uint32_t>(MusicalTime::Snap(mPosition, mSamplesPerBeat));
	for (const auto& device : mDevices)
		device->OnReseed(seed);
	AdvanceStep();
}

void TVortelAudioEngine::StopSequencer() {
	RemovePendingSteps();
	mIsRunning = false;
	mCurrentStep = kNone;
	mHeldNotes = 0;
	SetPosition(0.0);
	mStartPosition = 0.0;
	for (std::size_t device = 1; device < mDevices.size(); ++device)
		mDevices[device]->Stop();
}

void TVortelAudioEngine::RemovePendingSteps() {
	mpScheduler->RemoveMatching(TVortelNewSceneCommandMatch(TVortelNewSceneCommandMatch::kAnyNote));
	mpScheduler->RemoveMatching(TVortelNewStepCommandMatch());
}

// The step is worked out from the position each time and never counted, so that jumps, tempo changes and changes of the
// grid need no correction.
void TVortelAudioEngine::AdvanceStep() {
	if (!mIsRunning)
		return;
	CatchUp();
	const TStepGrid grid = Grid();
	const double position = mPosition;
	const int32_t step = grid.StepAt(position, mSamplesPerStep);
	if (step != mCurrentStep && !EnterStep(step))
		return;
	mpScheduler->Schedule(new TVortelNewStepCommand(this), grid.DelayToNextStep(position, mSamplesPerStep));
}

/// False: that was the end of the sequence.
bool TVortelAudioEngine::EnterStep(int32_t step) {
	TVortelSequencer& sequencer = *mpScene->Sequencer();
	if (step == 0 && mCurrentStep >= 1 && !sequencer.LoopEnabled().Get()) {
		StopSequencer();
		return false;
	}
	mCurrentStep = step;
	const uint8_t randomizerStep = sequencer.Sequence(0).Step(step);
	ChooseRandomDevice(randomizerStep);
	if (mSoloedRow == kNone)
		SwitchDevices(step, randomizerStep);
	else
		SwitchSoloed(step, randomizerStep);
	return true;
}

/// A block of the randomizer row chooses once, where playback first meets it.
void TVortelAudioEngine::ChooseRandomDevice(uint8_t randomizerStep) {
	if (randomizerStep == kStepEmpty)
		mRandomDevice = kNone;
	else if (randomizerStep == kStepBlockStart || mRandomDevice == kNone) {
		const TStepGrid grid = Grid();
		const double steps =
		    MusicalTime::Snap(MusicalTime::Lift(mHostPosition * grid.mDivisions, grid.mSteps), mSamplesPerStep);
		mRandomDevice = PickRandomDevice(std::trunc(steps));
	}
}

int32_t TVortelAudioEngine::PickRandomDevice(double position) const {
	std::array<int32_t, kNumberOfDevices> weights{};
	int32_t sum = 0;
	for (int32_t device = 1; device < kNumberOfDevices; ++device) {
		const int32_t id = TVortelParameterTable::Device(device).mFirstId + VortelParameterIds::kWeight;
		int32_t& weight = weights[static_cast<std::size_t>(device)];
		weight = RoundHalfAway(mpScene->ParameterValue(id) * 100.0);
		sum += weight;
	}
	if (sum < 1)
		return kNone;
	double number = mRandomTable[static_cast<std::size_t>(std::fmod(position, kRandomTableSize))];
	for (int32_t device = 1; device < kNumberOfDevices; ++device) {
		const double share = static_cast<double>(weights[static_cast<std::size_t>(device)]) / sum;
		if (number < share)
			return device;
		number -= share;
	}
	return kNone;
}

void TVortelAudioEngine::SwitchDevices(int32_t step, uint8_t randomizerStep) {
	TVortelSequencer& sequencer = *mpScene->Sequencer();
	for (int32_t device = 1; device < kNumberOfDevices; ++device) {
		const uint8_t own = sequencer.Sequence(device).Step(step);
		ApplyStep(device, device == mRandomDevice ? StepOfBoth(own, randomizerStep) : own);
	}
}

void TVortelAudioEngine::SwitchSoloed(int32_t step, uint8_t randomizerStep) {
	const bool isRandomizer = mSoloedRow == 0;
	const int32_t soloed =
	    isRandomizer ? int32_t{mRandomDevice} : mProcessingOrder[static_cast<std::size_t>(mSoloedRow)];
	for (int32_t device = 1; device < kNumberOfDevices; ++device) {
		if (device != soloed)
			ApplyStep(device, kStepEmpty);
		else
			ApplyStep(device, isRandomizer ? randomizerStep : mpScene->Sequencer()->Sequence(device).Step(step));
	}
}

/// The start of a block restarts its effect; a further step only makes sure that it runs.
void TVortelAudioEngine::ApplyStep(int32_t deviceId, uint8_t step) {
	TVortelDspDevice& device = *mDevices[static_cast<std::size_t>(deviceId)];
	const bool isRunning = device.IsRunning();
	if (step == kStepBlockStart || (step == kStepBlockContinue && !isRunning)) {
		device.Start();
		mRunningCount = kStale;
	} else if (step == kStepEmpty && isRunning)
		device.Stop();
}

/// The channel does not matter.
void TVortelAudioEngine::HandleMidiEvent(const TMidiEvent& event) {
	switch (event.mStatus & 0xF0) {
	case 0x80:
		MidiNoteOff(event.mData1);
		break;
	case 0x90:
		MidiNoteOn(event.mData1, event.mData2);
		break;
	case 0xB0:
		if (event.mData1 == kAllSoundOff)
			StopSequencer();
		break;
	case 0xC0:
		mpVortelDocument->SetCurrentProgramIndex(event.mData1 & 15);
		break;
	default:
		break;
	}
}

void TVortelAudioEngine::MidiNoteOn(int32_t note, int32_t velocity) {
	if (mIgnoreMidiNotePitch)
		note = mpProgram->ActiveSceneIndex().Get();
	if (velocity == 0) {
		MidiNoteOff(note);
		return;
	}
	if (note < 0 || note >= TVortelProgram::kNumberOfScenes)
		return;
	if (!ScheduleAtGridPoint(note))
		ApplyMidiSceneChange(note);
}

/// False: there is no grid, or the note is on it. A note up to a millisecond late still is.
bool TVortelAudioEngine::ScheduleAtGridPoint(int32_t note) {
	const int32_t pointsPerBeat = mpProgram->QuantizeFactor().Get();
	if (pointsPerBeat < 1 || !mHostIsPlaying)
		return false;
	const double interval = mSamplesPerBeat / pointsPerBeat;
	const double points = MusicalTime::Snap(MusicalTime::Lift(mHostPosition * pointsPerBeat, 1.0), interval);
	const double samplesSincePoint = MusicalTime::SamplesSinceWhole(points, interval);
	const int32_t wholeMillisecond = SampleRate() / 1000;
	if (samplesSincePoint < wholeMillisecond)
		return false;
	mpScheduler->Schedule(
	    new TVortelApplyMIDISceneChangeCommand(this, note), MusicalTime::Delay(interval - samplesSincePoint));
	return true;
}

void TVortelAudioEngine::ApplyMidiSceneChange(int32_t note) {
	++mHeldNotes;
	SetScene(mpProgram->Scene(note));
	StartSequencer();
	mpProgram->ActiveSceneIndex().Set(note);
}

void TVortelAudioEngine::MidiNoteOff(int32_t note) {
	const bool isGate = TriggerMode() == kTriggerGate;
	if (isGate && mpScheduler->HasPendingCommand())
		mpScheduler->RemoveMatching(TVortelNewSceneCommandMatch(note));
	mHeldNotes = std::max(0, mHeldNotes - 1);
	if (mHeldNotes == 0 && mIsRunning && isGate)
		StopSequencer();
}
