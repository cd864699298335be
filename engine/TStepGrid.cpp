// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/TStepGrid.h"

#include "document/TVortelSequencer.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace MusicalTime {

namespace {

/// In samples. Far above the errors of any song's positions, far below what could be heard or seen.
constexpr double kRoundingErrors = 1e-5;

constexpr double kWholeNumbersAreExact = 4503599627370496.0; // 2^52

/// fmod without its long division: x is not negative, period a whole number. Below the bound the product is exact, and
/// so is the difference, being a multiple of the last place of x; only the quotient may have been rounded up.
double Remainder(double x, double period) noexcept {
	if (!(x < kWholeNumbersAreExact))
		return std::fmod(x, period);
	const double whole = static_cast<double>(static_cast<int64_t>(x / period));
	const double remainder = x - whole * period;
	return remainder < 0.0 ? x - (whole - 1.0) * period : remainder;
}

} // namespace

// Adding a whole number to a negative x is exact until the sum is no longer negative, so only the last addition rounds;
// the remainder of fmod is exact and is what that addition starts from.
double Lift(double x, double period) noexcept {
	if (x >= 0.0)
		return x;
	if (!std::isfinite(x))
		return 0.0;
	const double remainder = Remainder(-x, period);
	return remainder > 0.0 ? period - remainder : 0.0;
}

double Wrap(double x, double period) noexcept {
	if (x < period)
		return x;
	const double remainder = Remainder(x, period);
	return remainder >= 0.0 ? remainder : 0.0;
}

double Snap(double x, double samplesPerUnit) noexcept {
	const double nearest = std::round(x);
	return std::abs(x - nearest) * samplesPerUnit < kRoundingErrors ? nearest : x;
}

double SamplesSinceWhole(double x, double samplesPerUnit) noexcept {
	return std::trunc((x - std::trunc(x)) * samplesPerUnit + kRoundingErrors);
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

int32_t TStepGrid::StepAt(double position, double samplesPerStep) const noexcept {
	const double x = MusicalTime::Snap(MusicalTime::Lift(position * mDivisions, mSteps), samplesPerStep);
	return static_cast<int32_t>(MusicalTime::Wrap(std::trunc(x), mSteps));
}

// Just below the end of a step the samples gone of it may round up to the whole step; a delay of 0 would then run the
// next command at the very same position, for ever. Hence never less than one sample.
int32_t TStepGrid::DelayToNextStep(double position, double samplesPerStep) const noexcept {
	const double x = MusicalTime::Snap(MusicalTime::Lift(position * mDivisions, mSteps), samplesPerStep);
	return MusicalTime::Delay(samplesPerStep - MusicalTime::SamplesSinceWhole(x, samplesPerStep));
}
