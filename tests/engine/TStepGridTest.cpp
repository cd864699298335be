// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/TStepGrid.h"

#include "document/TVortelSequencer.h"
#include "tests/support/TFrameworkFixture.h"

#include <cmath>
#include <limits>
#include <random>

namespace {

double LiftStepwise(double x, double period) {
	while (x < 0.0)
		x += period;
	return x;
}

using TStepGridTest = TFrameworkFixture;

} // namespace

TEST(MusicalTimeTest, LiftIsAddingPeriodsOneByOne) {
	std::mt19937 random(1);
	std::uniform_real_distribution<double> exponent(-60.0, 13.0);
	std::uniform_int_distribution<int> period(1, 64);
	for (int i = 0; i < 20000; ++i) {
		const double x = -std::exp2(exponent(random));
		const double whole = period(random);
		ASSERT_EQ(MusicalTime::Lift(x, whole), LiftStepwise(x, whole)) << x << " by " << whole;
	}
	for (double x : {-8.0, -4.0, -0.0, 0.0, 3.5, 1e12})
		EXPECT_EQ(MusicalTime::Lift(x, 4.0), LiftStepwise(x, 4.0));
}

TEST(MusicalTimeTest, WrapIsTheExactRemainder) {
	std::mt19937_64 random(2);
	std::uniform_real_distribution<double> exponent(-3.0, 60.0);
	for (int i = 0; i < 20000; ++i) {
		const double whole = static_cast<double>(random() % 64 + 1);
		const double x = std::exp2(exponent(random));
		for (double near : {x, std::nextafter(std::round(x / whole) * whole, 0.0), std::round(x / whole) * whole})
			ASSERT_EQ(MusicalTime::Wrap(near, whole), std::fmod(near, whole)) << near << " by " << whole;
	}
}

TEST(MusicalTimeTest, NoPositionIsTooFarAway) {
	const double infinity = std::numeric_limits<double>::infinity();
	for (double x : {-1e18, -1e300, 1e300, infinity, -infinity, std::nan("")}) {
		const double wrapped = MusicalTime::Wrap(MusicalTime::Lift(x, 7.0), 7.0);
		EXPECT_GE(wrapped, 0.0) << x;
		EXPECT_LT(wrapped, 7.0) << x;
	}
}

TEST(MusicalTimeTest, DelayIsAtLeastOneSampleAndFitsTheSchedule) {
	EXPECT_EQ(MusicalTime::Delay(-3.0), 1);
	EXPECT_EQ(MusicalTime::Delay(0.25), 1);
	EXPECT_EQ(MusicalTime::Delay(1.25), 2);
	EXPECT_EQ(MusicalTime::Delay(1e30), std::numeric_limits<int32_t>::max());
	EXPECT_EQ(MusicalTime::Delay(std::nan("")), 1);
}

// Whatever the length of a step and wherever in it the position lies, the next command is at least a sample away and
// no further than the step's end.
TEST(TStepGridUnitTest, NextStepIsNeverNowAndNeverBeyondTheNextBoundary) {
	const TStepGrid grid{4, 4, 16};
	for (double samplesPerStep : {0.003, 0.7, 1.0, 1.5, 333.3, 5512.5, 6000.0, 7.2e6}) {
		for (double boundary : {0.25, 0.5, 1.0, 3.75, 4.0}) {
			for (double position : {std::nextafter(boundary, 0.0), boundary, std::nextafter(boundary, 5.0)}) {
				const int32_t delay = grid.DelayToNextStep(position, samplesPerStep);
				ASSERT_GE(delay, 1);
				ASSERT_LE(delay, std::max(1.0, std::ceil(samplesPerStep)));
			}
		}
	}
}

// A position is the sum of the host's blocks; the last bits of that sum must not decide about a sample.
TEST(TStepGridUnitTest, RoundingOfThePositionMovesNoStep) {
	const TStepGrid grid{4, 7, 28};
	for (double samplesPerBeat : {22050.0, 26460.0, 18900.0, 27194.2445}) {
		const double samplesPerStep = samplesPerBeat / grid.mDivisions;
		for (int sample = 0; sample < 90000; sample += 15) {
			const double exact = sample / samplesPerBeat;
			for (double noise : {-3e-12, 3e-12}) {
				const double position = MusicalTime::Wrap(MusicalTime::Lift(exact + noise, 4.0), 4.0);
				const double wrapped = MusicalTime::Wrap(exact, 4.0);
				ASSERT_EQ(grid.StepAt(position, samplesPerStep), grid.StepAt(wrapped, samplesPerStep)) << sample;
				ASSERT_EQ(grid.DelayToNextStep(position, samplesPerStep), grid.DelayToNextStep(wrapped, samplesPerStep))
				    << sample;
			}
		}
	}
}

TEST_F(TStepGridTest, AnyFileGivesAGridWithinTheRow) {
	const auto sequencer = MakePtr<TVortelSequencer>();
	const int32_t largest = std::numeric_limits<int32_t>::max();
	for (int32_t beats : {-1, 0, 1, 8, 16, largest}) {
		for (int32_t divisions : {-1, 0, 1, 8, 9, largest}) {
			sequencer->NumBeats().Set(beats);
			sequencer->NumStepsPerBeat().Set(divisions);
			const TStepGrid grid = TStepGrid::Of(*sequencer);
			for (double position : {0.0, 0.99, 7.999, 1e9}) {
				ASSERT_GE(grid.StepAt(position, 5512.5), 0);
				ASSERT_LT(grid.StepAt(position, 5512.5), 64);
			}
		}
	}
}
