// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/TVortelAudioEngine.h"

#include "tests/engine/TEngineFixture.h"

#include <cmath>
#include <limits>

namespace {

using TVortelAudioEngineTest = TEngineFixture;

constexpr const char* kAllStarts = "****************************************************************";

} // namespace

TEST_F(TVortelAudioEngineTest, CopiesOnlyBetweenDifferentBuffersAndOnlyWithChannels) {
	std::vector<float> in(8, 5.0f), leftOut(8, 1.0f), rightOut(8, 1.0f);
	float* inData = in.data();
	float* left = leftOut.data();
	float* right = rightOut.data();
	const auto process = [&] {
		TAudioScope audio;
		mpEngine->Process({&inData, 1}, {&inData, 1}, {&left, 1}, {&right, 1}, 8, nullptr);
	};
	mpEngine->SetInputChannels(0);
	process();
	EXPECT_EQ(leftOut, std::vector<float>(8, 1.0f));
	mpEngine->SetInputChannels(1);
	process();
	EXPECT_EQ(leftOut, in);
	EXPECT_EQ(rightOut, in);
}

TEST_F(TVortelAudioEngineTest, LoadingPassesAudioDryAndLosesMidi) {
	SetRow(1, "*+++");
	Program().TriggerMode().Set(kTriggerLatch);
	{
		TVortelDocument::TLoadGuard guard(*mpDocument);
		NoteOn(0);
		Play(10);
	}
	Play(10);
	EXPECT_TRUE(FakeDevices::Log().mEvents.empty());
	EXPECT_EQ(mOutput, std::vector<float>(20, 1000.0f));
}

TEST_F(TVortelAudioEngineTest, EffectsRunInTheOrderOfTheCurrentProgram) {
	for (int32_t device : {2, 5, 9})
		SetRow(device, "*+++");
	Program().SetDeviceOrder({0, 9, 1, 2, 3, 4, 6, 7, 8, 10, 5});
	PlayFrom(0.0);
	Play(1);
	EXPECT_EQ(FakeDevices::Log().mProcessed, (std::vector<int32_t>{9, 2, 5}));
	FakeDevices::Log().mProcessed.clear();
	Program().SwapDevices(1, 10);
	Play(1);
	EXPECT_EQ(FakeDevices::Log().mProcessed, (std::vector<int32_t>{5, 2, 9}));
}

TEST_F(TVortelAudioEngineTest, ScheduledCommandCutsTheBlockAtItsSample) {
	SetRow(1, "*+++");
	PlayFrom(0.0);
	Block(1);
	FakeDevices::Log().mSlices.clear();
	int runs = 0;
	{
		TAudioScope audio;
		for (int32_t offset : {0, 100, 100, 300})
			mpEngine->ScheduleCommand(new TInvokeFunctionCommand([&runs] { ++runs; }), offset);
	}
	EXPECT_EQ(runs, 1);
	Block(256);
	EXPECT_EQ(FakeDevices::Log().mSlices, (std::vector<int32_t>{100, 156}));
	EXPECT_EQ(runs, 3);
	Block(256);
	EXPECT_EQ(runs, 4);
}

TEST_F(TVortelAudioEngineTest, SoundDoesNotDependOnTheBlocks) {
	SetRow(1, "*-*+--**");
	SetRow(4, "--*---+*");
	SetWeight(7, 1.0f);
	SetRow(0, "-*---*--");
	const auto render = [this](std::vector<int32_t> blocks) {
		mTransport.mIsPlaying = false;
		Block(100);
		mOutput.clear();
		PlayFrom(-1.0);
		for (std::size_t i = 0; mOutput.size() < 40000; ++i)
			Block(blocks[i % blocks.size()]);
		mOutput.resize(40000);
		return mOutput;
	};
	const std::vector<float> reference = render({1});
	EXPECT_EQ(render({256}), reference);
	EXPECT_EQ(render({0, 17, 1, 64, 0, 255}), reference);
}

TEST_F(TVortelAudioEngineTest, WithoutTransportEverythingRunsOn) {
	SetRow(1, kAllStarts);
	PlayFrom(2.0);
	Play(1);
	mGivesTransport = false;
	Play(2 * kStep);
	EXPECT_EQ(Starts(1), (std::vector<int64_t>{0}));
	EXPECT_EQ(Retriggers(1), (std::vector<int64_t>{kStep, 2 * kStep}));
}

TEST_F(TVortelAudioEngineTest, MissingTransportFieldsReadAsTheirDefaults) {
	mTransport.mTempo = 90.0f;
	Play(1);
	EXPECT_EQ(mpEngine->Tempo(), 90.0f);
	mTransport.mFlags = 0;
	Play(1);
	EXPECT_EQ(mpEngine->Tempo(), 120.0f);
	EXPECT_EQ(FakeDevices::Log().mTempos.back(), 120.0f);
}

TEST_F(TVortelAudioEngineTest, NoHostIsTooStrange) {
	SetRow(1, kAllStarts);
	Scene().Sequencer()->NumStepsPerBeat().Set(8);
	const float infinity = std::numeric_limits<float>::infinity();
	for (float tempo : {0.0f, -120.0f, infinity, std::nanf(""), 1e-30f, 1e30f, 99999.0f, 0.5f}) {
		for (double position : {0.0, -1e18, 1e18, 1e300, static_cast<double>(infinity), std::nan("")}) {
			mTransport.mTempo = tempo;
			mTransport.mIsPlaying = false;
			Block(1);
			PlayFrom(position);
			Block(64);
			ASSERT_GE(mpEngine->PlayingStep(), 0) << tempo << " at " << position;
			ASSERT_LT(mpEngine->PlayingStep(), 32) << tempo << " at " << position;
		}
	}
}

TEST_F(TVortelAudioEngineTest, RateReachesTheDevicesAndTheSteps) {
	SetRow(1, "**");
	mpEngine->SetSampleRate(2 * kRate);
	mpEngine->SetBlockSize(64);
	EXPECT_EQ(FakeDevices::Log().mSampleRate, 2 * kRate);
	EXPECT_EQ(FakeDevices::Log().mBlockSize, 64);
	PlayFrom(0.0);
	Play(1);
	mGivesTransport = false;
	Play(2 * kStep);
	EXPECT_EQ(Retriggers(1), (std::vector<int64_t>{2 * kStep}));
}

// Tens of thousands of steps at awkward lengths: each begins once, within a sample of its place.
TEST_F(TVortelAudioEngineTest, EveryStepBeginsOnceAndInItsPlace) {
	SetRow(1, kAllStarts);
	mGivesTransport = true;
	for (float tempo : {119.99f, 120.0f, 133.7f, 999.0f, 30011.0f}) {
		for (int32_t divisions : {2, 3, 7, 8}) {
			Scene().Sequencer()->NumStepsPerBeat().Set(divisions);
			mTransport.mTempo = tempo;
			mTransport.mIsPlaying = false;
			Play(100, 100);
			PlayFrom(0.0);
			const int64_t origin = mSample;
			FakeDevices::Log().mEvents.clear();
			Play(8000);
			const double samplesPerStep = kRate * 60.0 / static_cast<double>(tempo) / divisions;
			int64_t step = 0;
			for (const FakeDevices::TEvent& event : FakeDevices::Log().mEvents) {
				const double expected = static_cast<double>(step) * samplesPerStep;
				ASSERT_NEAR(static_cast<double>(event.mSample - origin), expected, 2.0) << tempo << "/" << divisions;
				++step;
			}
			ASSERT_NEAR(static_cast<double>(step), 8000.0 / samplesPerStep, 1.5) << tempo << "/" << divisions;
		}
	}
}
