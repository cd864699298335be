// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/plot/TPlayedBlocks.h"

#include <algorithm>
#include <cmath>

TPlayedBlocks::TPlayedBlocks(const TVortelAudioEngine& engine, TVortelDocument& document)
    : mEngine(engine),
      mDocument(document) {}

void TPlayedBlocks::AddHostBlock(int64_t firstSample, int32_t samples) {
	const double position = mEngine.PlayingPosition();
	if (position < 0.0) {
		CloseAll(static_cast<double>(firstSample));
		return;
	}
	for (const TStepEntry& entry : StepsEntered(firstSample, samples, position))
		if (entry.mStep != mStep)
			EnterStep(entry);
}

void TPlayedBlocks::Finish(int64_t end) {
	CloseAll(static_cast<double>(end));
}

/// From the position at the end of the host block back to its beginning, or to that of the run.
std::vector<TPlayedBlocks::TStepEntry>
TPlayedBlocks::StepsEntered(int64_t firstSample, int32_t samples, double position) {
	const TStepGrid grid = TStepGrid::Of(*mDocument.ActiveProgram()->ActiveScene()->Sequencer());
	const double samplesPerStep = 60.0 * mEngine.SampleRate() / static_cast<double>(mEngine.Tempo()) / grid.mDivisions;
	const auto start = static_cast<double>(firstSample);
	const double snapped = MusicalTime::Snap(position * grid.mDivisions, samplesPerStep);
	const bool hasJustBegun = mStep < 0;
	const double newest = start + samples - (snapped - std::floor(snapped)) * samplesPerStep;
	std::vector<TStepEntry> entries;
	int32_t step = grid.StepAt(position, samplesPerStep);
	for (double begin = newest; entries.empty() || (begin + samplesPerStep > start && step != mStep);
	     begin -= samplesPerStep) {
		entries.push_back({step, std::max(begin, start)});
		if (step == 0 && hasJustBegun)
			break;
		step = step > 0 ? step - 1 : grid.mSteps - 1;
	}
	std::reverse(entries.begin(), entries.end());
	return entries;
}

void TPlayedBlocks::EnterStep(const TStepEntry& entry) {
	mStep = entry.mStep;
	for (int32_t device = 1; device < TVortelAudioEngine::kNumberOfDevices; ++device) {
		const TVortelSequence* own = OwnRow(device);
		const TVortelSequence* random = RandomRow(device);
		const uint8_t ownStep = own ? own->Step(mStep) : uint8_t{kStepEmpty};
		const uint8_t randomStep = random ? random->Step(mStep) : uint8_t{kStepEmpty};
		const bool isOn = ownStep != kStepEmpty || randomStep != kStepEmpty;
		const auto index = static_cast<std::size_t>(device);
		if (!isOn || ownStep == kStepBlockStart || randomStep == kStepBlockStart)
			Close(device, entry.mStart);
		if (isOn && !mIsOpen[index]) {
			mIsOpen[index] = true;
			mOpen[index] = {device, entry.mStart, entry.mStart, ownStep == kStepEmpty};
		}
	}
}

/// The rows that a device follows; null if it does not.
const TVortelSequence* TPlayedBlocks::OwnRow(int32_t device) const {
	const int32_t solo = mDocument.SoloRow().Get();
	const TVortelProgram& program = *mDocument.ActiveProgram();
	const bool isAudible = solo < 0 || (solo > 0 && program.DeviceAtPosition(solo) == device);
	return isAudible ? &program.ActiveScene()->Sequencer()->Sequence(device) : nullptr;
}

const TVortelSequence* TPlayedBlocks::RandomRow(int32_t device) const {
	const bool isAudible = mDocument.SoloRow().Get() < 1 && device == mEngine.RandomDevice();
	return isAudible ? &mDocument.ActiveProgram()->ActiveScene()->Sequencer()->Sequence(0) : nullptr;
}

void TPlayedBlocks::Close(int32_t device, double end) {
	const auto index = static_cast<std::size_t>(device);
	if (!mIsOpen[index])
		return;
	mIsOpen[index] = false;
	mOpen[index].mEnd = end;
	if (mOpen[index].mStart < end)
		mBlocks.push_back(mOpen[index]);
}

void TPlayedBlocks::CloseAll(double end) {
	mStep = -1;
	for (int32_t device = 1; device < TVortelAudioEngine::kNumberOfDevices; ++device)
		Close(device, end);
}
