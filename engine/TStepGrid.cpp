// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/TStepGrid.h"

#include "document/TVortelSequencer.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace MusicalTime {

// Adding a whole number to a negative x is exact until the sum is no longer negative, so only the last addition rounds;
// the remainder of fmod is exact and is what that addition starts from.
double Lift(double x, double period) noexcept {
	if (x >= 0.0)
		return x;
	if (!std::isfinite(x))
		return 0.0;
	const double remainder = std::fmod(x, period);
	return remainder < 0.0 ? remainder + period : 0.0;
}

double Wrap(double x, double period) noexcept {
	if (x < period)
		return x;
	const double remainder = std::fmod(x, period);
	return remainder >= 0.0 ? remainder : 0.0;
}

int32_t Delay(double samples) noexcept {
	constexpr double kLongest = std::numeric_limits<int32_t>::max();
	// Written so that what is no number gives the shortest delay.
	return samples > 1.0 ? static_cast<int32_t>(std::min(std::ceil(samples), kLongest)) : 1;
}

} // namespace MusicalTime

TStepGrid TStepGrid::Of(TVortelSequencer& sequencer) noexcept {
	const int32_t beats = std::max(1, sequencer.NumBeats().Get());
	const int32_t divisions = std::max(1, sequencer.NumStepsPerBeat().Get());
	const int64_t steps = int64_t{beats} * divisions;
	return {beats, divisions, static_cast<int32_t>(std::min<int64_t>(steps, TVortelSequence::kNumberOfSteps))};
}

int32_t TStepGrid::StepAt(double position) const noexcept {
	const double x = MusicalTime::Lift(position * mDivisions, mSteps);
	return static_cast<int32_t>(MusicalTime::Wrap(std::trunc(x), mSteps));
}

// Just below the end of a step the samples gone of it may round up to the whole step; a delay of 0 would then run the
// next command at the very same position, for ever. Hence never less than one sample.
int32_t TStepGrid::DelayToNextStep(double position, double samplesPerStep) const noexcept {
	const double x = MusicalTime::Lift(position * mDivisions, mSteps);
	const double samplesOfStep = std::trunc((x - std::trunc(x)) * samplesPerStep);
	return MusicalTime::Delay(samplesPerStep - samplesOfStep);
}
