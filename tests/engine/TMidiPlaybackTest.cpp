// SPDX-License-Identifier: GPL-3.0-or-later
// Notes, controllers and program changes.
#include "tests/engine/TEngineFixture.h"

namespace {

using TSamples = std::vector<int64_t>;

class TMidiPlaybackTest : public TEngineFixture {
protected:
	void SetUp() override {
		TEngineFixture::SetUp();
		for (int32_t scene : {0, 60, 61})
			SetRow(1 + scene % 10, "*+++", scene); // device 1, 1, 2
	}

	bool IsRunning() const { return mpEngine->PlayingStep() >= 0; }
};

} // namespace

TEST_F(TMidiPlaybackTest, GateRunsWhileNotesAreHeld) {
	Program().TriggerMode().Set(kTriggerGate);
	PlayFrom(1.3);
	Play(1);
	EXPECT_FALSE(IsRunning());
	NoteOn(60);
	NoteOn(61);
	Play(5 * kBeat, 100); // longer than the loop
	EXPECT_TRUE(IsRunning());
	NoteOff(60);
	Play(1);
	EXPECT_TRUE(IsRunning());
	Send({{0x93, 61, 0, 0}}); // velocity 0, another channel
	Play(1);
	EXPECT_FALSE(IsRunning());
}

TEST_F(TMidiPlaybackTest, NoteStartsItsSceneFromTheFirstStepAtItsSample) {
	Program().TriggerMode().Set(kTriggerLatch);
	PlayFrom(2.3);
	Play(10);
	NoteOn(61, 77);
	Play(200);
	EXPECT_EQ(Starts(2), (TSamples{87}));
	EXPECT_EQ(Program().ActiveSceneIndex().Get(), 61);
	Play(kStep);
	EXPECT_EQ(mpEngine->PlayingStep(), 1);
	NoteOff(61);
	Play(1);
	EXPECT_TRUE(IsRunning());
	Send({{0xB0, 7, 0, 0}});
	EXPECT_TRUE(IsRunning());
	Send({{0xB0, 120, 0, 0}});
	EXPECT_FALSE(IsRunning());
}

TEST_F(TMidiPlaybackTest, HostStopEndsARunByNote) {
	Program().TriggerMode().Set(kTriggerLatch);
	PlayFrom(0.0);
	Play(1);
	NoteOn(60);
	mTransport.mIsPlaying = false;
	Play(1);
	EXPECT_FALSE(IsRunning());
}

TEST_F(TMidiPlaybackTest, WithAStoppedHostTheRunMovesByItself) {
	Program().TriggerMode().Set(kTriggerGate);
	Play(1);
	NoteOn(60);
	Play(3 * kStep + 1, 100);
	EXPECT_EQ(mpEngine->PlayingStep(), 3);
}

TEST_F(TMidiPlaybackTest, InHostModeANoteRestartsAtTheHostsPlace) {
	PlayFrom(1.5);
	Play(1);
	NoteOn(61);
	Play(1);
	EXPECT_EQ(mpEngine->PlayingStep(), 6);
}

TEST_F(TMidiPlaybackTest, TwoStartsInOneBlockLeaveOneRun) {
	SetRow(3, "****************", 7);
	Program().TriggerMode().Set(kTriggerLatch);
	Send({{0x90, 7, 100, 0}, {0x90, 7, 100, 0}, {0x90, 7, 100, 40}});
	Play(3 * kStep);
	EXPECT_EQ(Starts(3), (TSamples{0}));
	// At once by the second note, at 0 by the block of the third, then one for each step.
	EXPECT_EQ(Retriggers(3), (TSamples{0, 40, 40 + kStep, 40 + 2 * kStep}));
}

TEST_F(TMidiPlaybackTest, QuantizedNoteWaitsForTheNextGridPoint) {
	Program().TriggerMode().Set(kTriggerGate);
	Program().QuantizeFactor().Set(2);
	PlayFrom(0.0);
	Play(500);
	NoteOn(61);
	Play(kBeat);
	EXPECT_EQ(Starts(2), (TSamples{kBeat / 2}));
	// The finest grid has three points in a beat.
	NoteOff(61);
	Program().QuantizeFactor().Set(3);
	NoteOn(60);
	Play(kBeat);
	ASSERT_EQ(Starts(1).size(), 1u);
	EXPECT_NEAR(static_cast<double>(Starts(1)[0]), 4.0 / 3.0 * kBeat, 1.0);
}

TEST_F(TMidiPlaybackTest, NoteUpToAMillisecondLateIsOnTheGrid) {
	Program().TriggerMode().Set(kTriggerLatch);
	Program().QuantizeFactor().Set(1);
	PlayFrom(0.0);
	Play(kBeat + 7);
	NoteOn(61);
	Play(10);
	EXPECT_EQ(Starts(2), (TSamples{kBeat + 7}));
	PlayFrom(static_cast<double>(kBeat + 8) / kBeat);
	Play(1);
	NoteOn(60);
	Play(20);
	EXPECT_TRUE(Starts(1).empty());
}

TEST_F(TMidiPlaybackTest, GateNoteReleasedBeforeItsGridPointNeverSounds) {
	Program().TriggerMode().Set(kTriggerGate);
	Program().QuantizeFactor().Set(1);
	PlayFrom(0.1);
	Play(1);
	NoteOn(60);
	NoteOn(61);
	NoteOff(60, 100);
	Play(2 * kBeat, 100);
	EXPECT_TRUE(Starts(1).empty());
	EXPECT_EQ(Starts(2).size(), 1u);
}

TEST_F(TMidiPlaybackTest, QuantizeDoesNotHoldWithAStoppedHost) {
	Program().TriggerMode().Set(kTriggerGate);
	Program().QuantizeFactor().Set(1);
	Play(1);
	NoteOn(61);
	Play(1);
	EXPECT_EQ(Starts(2), (TSamples{1}));
}

TEST_F(TMidiPlaybackTest, LockKeepsTheSceneAndLetsNotesTrigger) {
	Program().TriggerMode().Set(kTriggerLatch);
	mpDocument->SceneLocked().Set(true);
	Play(1);
	NoteOn(61);
	Play(1);
	EXPECT_EQ(Program().ActiveSceneIndex().Get(), 0);
	EXPECT_EQ(FakeDevices::Log().Started(), (std::vector<int32_t>{1}));
}

TEST_F(TMidiPlaybackTest, ProgramChangeSwitchesAtItsSample) {
	TVortelProgram& third = *mpDocument->Program(3);
	third.ActiveSceneIndex().Set(9);
	third.Scene(9)->Sequencer()->Sequence(8).FromString("****************");
	PlayFrom(0.0);
	Play(10);
	Send({{0xC5, 0x13, 0, 500}}); // only the lower four bits count
	Play(2 * kStep);
	EXPECT_EQ(mpDocument->CurrentProgramIndex(), 3);
	EXPECT_EQ(Starts(8), (TSamples{kStep}));
}
