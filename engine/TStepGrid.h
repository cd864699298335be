// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

class TVortelSequencer;

/// Arithmetic of musical time. Positions are in beats, delays in samples.
namespace MusicalTime {

/// A negative x is taken up by whole periods until it is not negative any more; period is a positive whole number.
/// Gives what adding the period again and again gives, in bounded time for any x. What is no number becomes 0.
double Lift(double x, double period) noexcept;

/// The remainder of x, which is not negative, after whole periods.
double Wrap(double x, double period) noexcept;

/// x, or the whole number that it is meant to be. A position is a sum of many stretches, and how many depends on how
/// the host cuts its blocks; what lies within the rounding errors of that sum from a whole number counts as the number,
/// so that steps fall on the same samples whatever the blocks. samplesPerUnit gives the distance a meaning.
double Snap(double x, double samplesPerUnit) noexcept;

/// Whole samples gone since the last whole number; x is not negative and snapped.
double SamplesSinceWhole(double x, double samplesPerUnit) noexcept;

/// A distance as a delay for the schedule: whole samples, rounded up, at least 1, at most what the schedule can hold.
int32_t Delay(double samples) noexcept;

} // namespace MusicalTime

/// The grid of a pattern: beats of the loop, steps per beat, and the steps of the whole, of which a row has 64 at most.
/// Whatever a file says, each is at least 1.
struct TStepGrid {
	int32_t mBeats = 4;
	int32_t mDivisions = 4;
	int32_t mSteps = 16;

	/// Audio thread too.
	static TStepGrid Of(TVortelSequencer& sequencer) noexcept;

	/// The step at a position, from 0 up to, but not including, mSteps.
	int32_t StepAt(double position, double samplesPerStep) const noexcept;
	/// From a position to where the next step begins.
	int32_t DelayToNextStep(double position, double samplesPerStep) const noexcept;
};
