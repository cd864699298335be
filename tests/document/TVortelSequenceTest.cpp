// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelSequencer.h"
#include "framework/foundation/values/TRandom.h"
#include "tests/support/TFrameworkFixture.h"

#include <limits>
#include <set>
#include <string>

namespace {

std::string Text(const TVortelSequence& row) {
	return row.ToString().CString();
}

/// A whole row from its first steps.
std::string Padded(std::string steps) {
	steps.resize(TVortelSequence::kNumberOfSteps, '-');
	return steps;
}

/// Rows are made of starts with continued steps behind them.
bool HasStrayStep(const TVortelSequence& row) {
	for (int32_t i = 0; i < TVortelSequence::kNumberOfSteps; ++i)
		if (row.Step(i) == kStepBlockContinue && row.Step(i - 1) == kStepEmpty)
			return true;
	return false;
}

} // namespace

class TVortelSequenceTest : public TFrameworkFixture {
protected:
	TVortelSequence mRow;
};

TEST_F(TVortelSequenceTest, TextIsCutAt64AndClearsWhatItDoesNotReach) {
	mRow.FromString(TString((std::string(70, '*')).c_str()));
	EXPECT_EQ(Text(mRow), std::string(64, '*'));
	mRow.FromString("*+x-*++*+*");
	EXPECT_EQ(Text(mRow), Padded("*+--*++*+*"));
	mRow.FromString("+-");
	EXPECT_EQ(Text(mRow), Padded("+")); // a continued step without a start is kept
	mRow.FromString("");
	EXPECT_EQ(Text(mRow), "");
	EXPECT_TRUE(mRow.IsEmpty());
}

TEST_F(TVortelSequenceTest, StepsOutsideTheRowAreNeverTouched) {
	for (const int32_t index : {-1, 64, std::numeric_limits<int32_t>::max(), std::numeric_limits<int32_t>::min()}) {
		mRow.SetStep(index, kStepBlockStart);
		EXPECT_EQ(mRow.Step(index), kStepEmpty);
	}
	EXPECT_TRUE(mRow.IsEmpty());
}

TEST_F(TVortelSequenceTest, MixingKeepsWhatTheSourceLeavesEmpty) {
	TVortelSequence source;
	source.FromString("-*+-");
	mRow.FromString("*++*");
	mRow.CopyFrom(source, true);
	EXPECT_EQ(Text(mRow), Padded("**+*"));
	mRow.CopyFrom(source, false);
	EXPECT_EQ(Text(mRow), Padded("-*+"));
}

TEST_F(TVortelSequenceTest, MirrorTurnsBlocksWithinTheUsedLength) {
	mRow.FromString("*+--*---*++-----*++");
	mRow.MirrorHorizontally(16);
	EXPECT_EQ(Text(mRow), Padded("-----*++---*--*+"));
	mRow.MirrorHorizontally(16);
	EXPECT_EQ(Text(mRow), Padded("*+--*---*++"));
}

TEST_F(TVortelSequenceTest, RandomizeFillsAllStepsWithBlocksOfTheGivenLengths) {
	TRandom::SetState(4711);
	for (int pass = 0; pass < 50; ++pass) {
		mRow.Randomize(2, 4);
		EXPECT_FALSE(HasStrayStep(mRow));
		int32_t length = 0;
		for (int32_t i = 0; i <= TVortelSequence::kNumberOfSteps; ++i) {
			if (mRow.Step(i) == kStepBlockContinue) {
				++length;
				continue;
			}
			EXPECT_LE(length, 5); // 2 + round(3 r)
			if (length > 0 && i < TVortelSequence::kNumberOfSteps) {
				EXPECT_GE(length, 2);
			}
			length = mRow.Step(i) == kStepBlockStart ? 1 : 0;
		}
	}
}

TEST_F(TVortelSequenceTest, MutateMovesOrResizesByOneStepInsideTheUsedLength) {
	std::set<std::string> results;
	for (uint32_t seed = 0; seed < 200; ++seed) {
		TRandom::SetState(seed * 7919);
		mRow.FromString("*+--");
		mRow.Mutate(4, 4);
		results.insert(Text(mRow));
	}
	// Stays (also when a move to the left is refused), moves right, shrinks, grows; the next step is free in both.
	EXPECT_EQ(results, (std::set<std::string>{Padded("*+"), Padded("-*+"), Padded("*"), Padded("*++")}));
}

TEST_F(TVortelSequenceTest, MutateDropsWhatLiesBeyondTheUsedLength) {
	mRow.FromString("----*---*+++");
	mRow.Mutate(4, 4);
	EXPECT_TRUE(mRow.IsEmpty());
	mRow.FromString("---*");
	mRow.Mutate(std::numeric_limits<int32_t>::max(), 4);
	EXPECT_FALSE(HasStrayStep(mRow));
}

TEST_F(TVortelSequenceTest, UsedLengthStaysInTheRowWhateverTheGridSays) {
	const auto sequencer = MakePtr<TVortelSequencer>();
	const auto count = [&](int beats, int stepsPerBeat) {
		sequencer->NumBeats().Set(beats);
		sequencer->NumStepsPerBeat().Set(stepsPerBeat);
		return sequencer->StepCount();
	};
	EXPECT_EQ(count(8, 8), 64);
	EXPECT_EQ(count(3, 5), 15);
	EXPECT_EQ(count(9, 8), 64);
	EXPECT_EQ(count(std::numeric_limits<int>::max(), std::numeric_limits<int>::max()), 64);
	EXPECT_EQ(count(-4, 4), 0);
	EXPECT_EQ(count(-4, -4), 0);
}

TEST_F(TVortelSequenceTest, SequencerContentIsGridAndBlocksButNotTheLoop) {
	const auto sequencer = MakePtr<TVortelSequencer>();
	sequencer->LoopEnabled().Set(false);
	EXPECT_FALSE(sequencer->HasContent());
	sequencer->Sequence(10).SetStep(63, kStepBlockStart);
	EXPECT_TRUE(sequencer->HasContent());
	sequencer->Clear();
	EXPECT_FALSE(sequencer->HasContent());
	sequencer->NumStepsPerBeat().Set(3);
	EXPECT_TRUE(sequencer->HasContent());
}

TEST_F(TVortelSequenceTest, ShorteningTheGridKeepsTheStepsAndMixingKeepsTheGrid) {
	const auto source = MakePtr<TVortelSequencer>();
	const auto target = MakePtr<TVortelSequencer>();
	source->NumBeats().Set(8);
	source->Sequence(3).SetStep(31, kStepBlockStart);
	source->NumBeats().Set(1);
	target->CopyFrom(*source, true);
	EXPECT_EQ(target->NumBeats().Get(), 4);
	EXPECT_EQ(target->Sequence(3).Step(31), kStepBlockStart);
	target->CopyFrom(*source, false);
	EXPECT_EQ(target->NumBeats().Get(), 1);
}

TEST_F(TVortelSequenceTest, MembersStandInFileOrder) {
	const auto sequencer = MakePtr<TVortelSequencer>();
	const auto& members = sequencer->Properties();
	ASSERT_EQ(members.Count(), 14);
	const char* const kNames[] = {"NumBeats", "NumStepsPerBeat", "LoopEnabled", "Sequence0"};
	for (int32_t i = 0; i < 4; ++i)
		EXPECT_EQ(members[i].mName, TString(kNames[i]));
	EXPECT_EQ(members[13].mName, TString("Sequence10"));
}
