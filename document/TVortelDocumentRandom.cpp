// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelDocument.h"

#include "framework/foundation/values/TRandom.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace {

constexpr int32_t kLowestSeed = 1;
constexpr int32_t kHighestSeed = 99999999;

/// Whole numbers, so that their sum is exact. A file may hold weights outside 0 to 1.
int32_t WeightInPercent(const TVortelDevice& device) {
	const float percent = std::clamp(device.mpRandomWeight->Value(), 0.0f, 1.0f) * 100.0f;
	return static_cast<int32_t>(percent + 0.5f);
}

/// Picks devices by their weights.
class TWeightedDevices {
public:
	explicit TWeightedDevices(const TVortelDocument& document) {
		for (std::size_t i = 0; i < mWeights.size(); ++i)
			mWeights[i] = WeightInPercent(*document.Device(static_cast<int32_t>(i)));
		mTotal = std::accumulate(mWeights.begin(), mWeights.end(), 0);
	}

	bool IsEmpty() const { return mTotal == 0; }

	/// value: 0 to 1. Where rounding leaves no device, the last one with a weight is taken.
	int32_t Pick(double value) const {
		int32_t last = 0;
		for (std::size_t i = 0; i < mWeights.size(); ++i) {
			const double share = mWeights[i] / static_cast<double>(mTotal);
			if (share > value)
				return static_cast<int32_t>(i);
			value -= share;
			if (mWeights[i] > 0)
				last = static_cast<int32_t>(i);
		}
		return last;
	}

private:
	std::array<int32_t, TVortelDocument::kNumberOfDevices> mWeights{};
	int32_t mTotal = 0;
};

} // namespace

void TVortelDocument::RandomizeProgramName() {
	ActiveProgram()->Name().Set(mpNameGenerator->Generate());
	mProgramChangedBang.Bang();
}

void TVortelDocument::RandomizeSeed() {
	ActiveScene()->Seed().Set(RoundHalfAway(TRandom::Next() * (kHighestSeed - kLowestSeed)) + kLowestSeed);
}

void TVortelDocument::RandomizeEffects() {
	for (int32_t i = 1; i < kNumberOfDevices; ++i)
		Device(i)->Randomize();
	mSceneChangedBang.Bang();
}

void TVortelDocument::MutateEffects() {
	for (int32_t i = 1; i < kNumberOfDevices; ++i)
		Device(i)->Mutate();
	mSceneChangedBang.Bang();
}

void TVortelDocument::RandomizeScene(bool withGrid) {
	RandomizeSeed();
	RandomizeEffects();
	if (withGrid) {
		ActiveSequencer()->NumBeats().Set(RoundHalfAway(TRandom::Next() * 7.0) + 1);
		ActiveSequencer()->NumStepsPerBeat().Set(RoundHalfAway(TRandom::Next() * 6.0) + 2);
	}
	const int passes = RoundHalfAway(TRandom::Next() * 2.0) + 1;
	for (int pass = 0; pass < passes; ++pass)
		RandomizeSequence(pass > 0);
}

void TVortelDocument::MutateScene() {
	const int32_t delta = RoundHalfAway(TRandom::Next() * 31337.0) - 15668;
	const int64_t seed = static_cast<int64_t>(ActiveScene()->Seed().Get()) + delta;
	ActiveScene()->Seed().Set(static_cast<int32_t>(std::clamp<int64_t>(seed, kLowestSeed, kHighestSeed)));
	MutateEffects();
	MutateSequence();
}

// A block never crosses a beat, and every step of the used length belongs to one.
void TVortelDocument::RandomizeSequence(bool mix) {
	const TWeightedDevices devices(*this);
	if (devices.IsEmpty())
		return;
	TVortelSequencer& sequencer = *ActiveSequencer();
	if (!mix)
		for (int32_t i = 0; i < kNumberOfDevices; ++i)
			sequencer.Sequence(i).Clear();
	const int32_t stepsPerBeat = sequencer.NumStepsPerBeat().Get();
	const int32_t stepCount = sequencer.StepCount();
	for (int32_t start = 0, end = 0; start < stepCount; start = end) {
		TVortelSequence& row = sequencer.Sequence(devices.Pick(mRandom.NextDouble()));
		const int32_t length = RoundHalfAway(TRandom::Next() * (stepsPerBeat - 1)) + 1;
		end = start + std::min({length, stepsPerBeat - start % stepsPerBeat, stepCount - start});
		for (int32_t i = start; i < end; ++i)
			row.SetStep(i, i == start ? kStepBlockStart : kStepBlockContinue);
	}
	mSequenceChangedBang.Bang();
}

void TVortelDocument::MutateSequence() {
	TVortelSequencer& sequencer = *ActiveSequencer();
	for (int32_t i = 0; i < kNumberOfDevices; ++i)
		sequencer.Sequence(i).Mutate(sequencer.StepCount(), sequencer.NumStepsPerBeat().Get());
	mSequenceChangedBang.Bang();
}

void TVortelDocument::RandomizeAllPrograms() {
	for (int32_t i = 0; i < kNumberOfPrograms; ++i) {
		mActiveProgramIndex.Set(i);
		RandomizeProgramName();
		ActiveProgram()->RandomizeDeviceOrder();
		ActiveProgram()->ActiveSceneIndex().Set(0);
		RandomizeScene(true);
	}
	mActiveProgramIndex.Set(0);
	ActiveProgram()->ActiveSceneIndex().Set(0);
	FireAllBangs();
}
