// SPDX-License-Identifier: GPL-3.0-or-later
// What the steps of a pattern do to the devices.
#include "tests/engine/TEngineFixture.h"

namespace {

using TSequencerPlaybackTest = TEngineFixture;
using TSamples = std::vector<int64_t>;

/// Samples at which the constant input is heard at all: an effect that is fully on is silent.
int64_t FirstSounding(const std::vector<float>& output, int64_t from) {
	while (output[static_cast<std::size_t>(from)] == 0.0f)
		++from;
	return from;
}

} // namespace

TEST_F(TSequencerPlaybackTest, LoopIsLockedToTheHostsTimeLine) {
	PlayFrom(5.5);
	Play(1);
	EXPECT_EQ(mpEngine->PlayingStep(), 6);
	mTransport.mIsPlaying = false;
	Play(1);
	EXPECT_EQ(mpEngine->PlayingStep(), -1);
	PlayFrom(-0.5);
	Play(1);
	EXPECT_EQ(mpEngine->PlayingStep(), 14);
}

TEST_F(TSequencerPlaybackTest, BlocksStartContinueAndEndOnTheirSamples) {
	SetRow(3, "-*+-**--+-");
	PlayFrom(0.0);
	Play(10 * kStep);
	// The further step at 8 starts the device, since it does not run there.
	EXPECT_EQ(Starts(3), (TSamples{kStep, 4 * kStep, 8 * kStep}));
	EXPECT_EQ(Retriggers(3), (TSamples{5 * kStep}));
	// The fade begins where the block ends; its first sample is still silent.
	EXPECT_EQ(FirstSounding(mOutput, 2 * kStep), 3 * kStep + 1);
	EXPECT_EQ(FirstSounding(mOutput, 5 * kStep), 6 * kStep + 1);
}

TEST_F(TSequencerPlaybackTest, PlaybackThatEntersInTheMiddleOfABlockStartsIt) {
	SetRow(3, "*+++");
	PlayFrom(0.6);
	Play(1);
	EXPECT_EQ(Starts(3), (TSamples{0}));
}

TEST_F(TSequencerPlaybackTest, WithoutLoopTheSequenceRunsOnce) {
	SetRow(1, "*++++++++++++++*");
	Scene().Sequencer()->LoopEnabled().Set(false);
	PlayFrom(0.0);
	Play(5 * kBeat, 100);
	EXPECT_EQ(mpEngine->PlayingStep(), -1);
	EXPECT_EQ(Starts(1).size(), 1u);
	EXPECT_EQ(FirstSounding(mOutput, 100), 4 * kBeat + 1);
}

TEST_F(TSequencerPlaybackTest, SequenceOfOneStepHasNoEnd) {
	Scene().Sequencer()->LoopEnabled().Set(false);
	Scene().Sequencer()->NumBeats().Set(1);
	Scene().Sequencer()->NumStepsPerBeat().Set(1);
	PlayFrom(0.0);
	Play(3 * kBeat, 100);
	EXPECT_EQ(mpEngine->PlayingStep(), 0);
}

TEST_F(TSequencerPlaybackTest, JumpsAndGridChangesTakeEffectAtTheNextStep) {
	SetRow(1, "-*");
	SetRow(2, "---------*");
	PlayFrom(0.0);
	Play(100);
	PlayFrom(2.0 + 100.0 / kBeat);
	Play(2 * kStep);
	EXPECT_TRUE(Starts(1).empty());
	EXPECT_EQ(Starts(2), (TSamples{kStep}));
	Scene().Sequencer()->NumStepsPerBeat().Set(2);
	Play(kStep, 100);
	EXPECT_EQ(mpEngine->PlayingStep(), 5);
}

TEST_F(TSequencerPlaybackTest, StepsBeyondARowAreNeverReached) {
	Scene().Sequencer()->NumBeats().Set(8);
	Scene().Sequencer()->NumStepsPerBeat().Set(16);
	PlayFrom(5.0);
	for (int i = 0; i < 200; ++i) {
		Play(200, 200);
		ASSERT_LT(mpEngine->PlayingStep(), 64);
	}
}

TEST_F(TSequencerPlaybackTest, RandomizerPicksByWeightFromTheSceneSeed) {
	SetRow(0, "*+*-*+++*-******");
	SetWeight(4, 0.5f);
	SetWeight(8, 0.25f);
	for (int32_t device : {1, 2, 3, 5, 6, 7, 9, 10})
		SetWeight(device, 0.0f);
	Scene().Seed().Set(4711);
	TParkMillerPRNG random;
	random.SetSeed(4711);
	std::vector<int32_t> expected;
	for (int step = 0; step < 16; ++step)
		expected.push_back(random.NextDouble() < 50.0 / 75.0 ? 4 : 8);
	PlayFrom(0.0);
	for (int step = 0; step < 16; ++step) {
		Play(kStep / 2, 100);
		const char kind = "*+*-*+++*-******"[step];
		const int chosenAt = step == 1 ? 0 : step >= 5 && step <= 7 ? 4 : step;
		const int32_t pick = kind == '-' ? -1 : expected[static_cast<std::size_t>(chosenAt)];
		ASSERT_EQ(mpEngine->RandomDevice(), pick) << step;
		Play(kStep / 2, 100);
	}
}

TEST_F(TSequencerPlaybackTest, SamePlaceInTheSongPicksTheSameAgain) {
	SetRow(0, "****************");
	const auto pass = [this](double position) {
		mTransport.mIsPlaying = false;
		Play(100, 100);
		PlayFrom(position);
		std::vector<int32_t> picks;
		for (int step = 0; step < 32; ++step) {
			Play(kStep, 250);
			picks.push_back(mpEngine->RandomDevice());
		}
		return picks;
	};
	const std::vector<int32_t> first = pass(0.0);
	EXPECT_EQ(pass(0.0), first);
	EXPECT_EQ(pass(1024.0), first); // 4096 steps later
	Scene().Seed().Set(99);
	EXPECT_NE(pass(0.0), first);
}

TEST_F(TSequencerPlaybackTest, RandomizerBlockRunsThePickedDeviceBesideItsOwnRow) {
	SetRow(0, "*++-");
	SetRow(6, "-*--+");
	for (int32_t device = 1; device <= 10; ++device)
		SetWeight(device, device == 6 ? 1.0f : 0.0f);
	PlayFrom(0.0);
	Play(5 * kStep);
	EXPECT_EQ(Starts(6), (TSamples{0, 4 * kStep}));
	EXPECT_EQ(Retriggers(6), (TSamples{kStep}));
	EXPECT_EQ(FirstSounding(mOutput, 100), 3 * kStep + 1);
}

TEST_F(TSequencerPlaybackTest, NoWeightsNoPick) {
	SetRow(0, "*+++");
	for (int32_t device = 1; device <= 10; ++device)
		SetWeight(device, 0.0f);
	PlayFrom(0.0);
	Play(2 * kStep, 100);
	EXPECT_EQ(mpEngine->RandomDevice(), -1);
	EXPECT_TRUE(FakeDevices::Log().mEvents.empty());
}

TEST_F(TSequencerPlaybackTest, SoloLeavesOneRowByDisplayPosition) {
	SetRow(2, "*+++");
	SetRow(7, "*++++*");
	Program().SetDeviceOrder({0, 7, 1, 2, 3, 4, 5, 6, 8, 9, 10});
	PlayFrom(0.0);
	Play(kStep / 2, 100);
	mpDocument->SoloRow().Set(1);
	Play(kStep, 100);
	FakeDevices::Log().mProcessed.clear();
	Play(100, 100);
	EXPECT_EQ(FakeDevices::Log().mProcessed, (std::vector<int32_t>{7}));
	mpDocument->SoloRow().Set(-1);
	Play(kStep, 100);
	EXPECT_EQ(Starts(2).size(), 2u);
}

TEST_F(TSequencerPlaybackTest, SoloedRandomizerLeavesItsPick) {
	SetRow(0, "*++-");
	SetRow(2, "*+++");
	for (int32_t device = 1; device <= 10; ++device)
		SetWeight(device, device == 9 ? 1.0f : 0.0f);
	mpDocument->SoloRow().Set(0);
	PlayFrom(0.0);
	Play(4 * kStep);
	EXPECT_EQ(FakeDevices::Log().Started(), (std::vector<int32_t>{9}));
	EXPECT_EQ(FirstSounding(mOutput, 100), 3 * kStep + 1);
}

TEST_F(TSequencerPlaybackTest, SceneChosenInTheEditorTakesOverAtTheNextStep) {
	SetRow(1, "****************", 0);
	SetRow(2, "****************", 5);
	PlayFrom(0.0);
	Play(kStep / 2);
	Program().ActiveSceneIndex().Set(5);
	Play(kStep);
	EXPECT_EQ(Starts(1), (TSamples{0}));
	EXPECT_TRUE(Retriggers(1).empty());
	EXPECT_EQ(Starts(2), (TSamples{kStep}));
	EXPECT_EQ(mpEngine->PlayingStep(), 1);
}

TEST_F(TSequencerPlaybackTest, StartReseedsFromSceneAndPlace) {
	Scene().Seed().Set(500);
	PlayFrom(6.75);
	Play(1);
	EXPECT_EQ(FakeDevices::Log().mSeeds, (std::vector<uint32_t>{502}));
}
