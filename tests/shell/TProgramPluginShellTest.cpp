// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/program/TProgramPluginShell.h"

#include "framework/foundation/commands/TThreadCommunicator.h"
#include "tests/shell/FakeProgram.h"
#include "tests/support/TFrameworkFixture.h"

#include <string>
#include <thread>

namespace {

class THostLog final : public TProgramPluginShell::THost {
public:
	void BeginEdit(int32_t parameter) override { mText += "begin" + std::to_string(parameter) + " "; }

	void PerformEdit(int32_t parameter, float value) override {
		mText += "edit" + std::to_string(parameter) + "=" + std::to_string(value).substr(0, 4) + " ";
	}

	void EndEdit(int32_t parameter) override { mText += "end" + std::to_string(parameter) + " "; }

	void ProgramChanged(int32_t program, bool byHost) override {
		mText += (byHost ? "host's program" : "program") + std::to_string(program) + " ";
	}

	void ProgramNamesChanged() override { mText += "names "; }

	void LatencyChanged(int32_t samples) override { mText += "latency" + std::to_string(samples) + " "; }

	std::string Take() { return std::exchange(mText, {}); }

private:
	std::string mText;
};

class TProgramPluginShellTest : public TFrameworkFixture {
protected:
	void SetUp() override {
		TFrameworkFixture::SetUp();
		mpDocument = MakePtr<TFakeDocument>();
		mpEngine = MakePtr<TFakeEngine>(mpDocument.Get());
		mpShell = MakePtr<TProgramPluginShell>(mpDocument.Get(), mpEngine.Get(), nullptr, &mHost);
	}

	void TearDown() override {
		mpShell = nullptr;
		mpEngine = nullptr;
		mpDocument = nullptr;
		TThreadCommunicator::Instance()->FlushAllCommands();
		TFrameworkFixture::TearDown();
	}

	TProgramPluginShell::TBlock Block() {
		TProgramPluginShell::TBlock block;
		block.mpLeftIn = mIn.data();
		block.mpRightIn = mIn.data();
		block.mpLeftOut = mLeftOut.data();
		block.mpRightOut = mRightOut.data();
		block.mSamples = 100;
		return block;
	}

	/// What a host's audio thread does: a thread that the plug-in has never seen.
	int32_t ProcessElsewhere(const TProgramPluginShell::TBlock& block) {
		int32_t samples = 0;
		std::thread([&] { samples = mpShell->Process(block); }).join();
		return samples;
	}

	std::string TakeCalls() { return std::exchange(mpEngine->mCalls, {}); }

	THostLog mHost;
	TPtr<TFakeDocument> mpDocument;
	TPtr<TFakeEngine> mpEngine;
	TPtr<TProgramPluginShell> mpShell;
	std::vector<float> mIn = std::vector<float>(300, 0.5f);
	std::vector<float> mLeftOut = std::vector<float>(300, -1.0f);
	std::vector<float> mRightOut = std::vector<float>(300, -1.0f);
};

} // namespace

TEST_F(TProgramPluginShellTest, BlockTravelsInTheAudioRoleAndTheEnginesScale) {
	EXPECT_EQ(ProcessElsewhere(Block()), 100);
	EXPECT_EQ(mpEngine->mRole, kAudioThread);
	EXPECT_EQ(mpEngine->mFirstInput, 16384.0f);
	EXPECT_EQ(mIn, std::vector<float>(300, 0.5f));
	for (const auto& out : {mLeftOut, mRightOut}) {
		EXPECT_EQ(out[0], 0.25f);
		EXPECT_EQ(out[99], 0.25f);
		EXPECT_EQ(out[100], -1.0f);
	}
	// On the GUI's own thread the role comes back.
	mpShell->Process(Block());
	EXPECT_EQ(TThreadManager::Instance()->CurrentThread(), kMainThread);
}

TEST_F(TProgramPluginShellTest, InPlaceAndBeyondTheBlockSize) {
	mpShell->Setup(48000, 200);
	TProgramPluginShell::TBlock block = Block();
	block.mpLeftIn = mLeftOut.data();
	block.mpRightIn = mRightOut.data();
	block.mSamples = 300;
	EXPECT_EQ(ProcessElsewhere(block), 200);
	EXPECT_EQ(mLeftOut[199], -0.5f);
	EXPECT_EQ(mLeftOut[200], -1.0f);
	block.mSamples = -5;
	EXPECT_EQ(ProcessElsewhere(block), 0);
}

TEST_F(TProgramPluginShellTest, TransportIsCopiedOrAbsent) {
	TTransportInfo transport;
	transport.mFlags = TTransportInfo::kTempoValid;
	transport.mTempo = 99.0f;
	TProgramPluginShell::TBlock block = Block();
	block.mpTransport = &transport;
	mpShell->Process(block);
	EXPECT_TRUE(mpEngine->mHadTransport);
	EXPECT_EQ(mpEngine->mTransport.mTempo, 99.0f);
	mpShell->Process(Block());
	EXPECT_FALSE(mpEngine->mHadTransport);
}

TEST_F(TProgramPluginShellTest, ParameterChangesComeAtTheirSamplesAndBeforeMidi) {
	const std::array<TProgramPluginShell::TParameterChange, 5> changes{
	    {{0, 0, 0.1f}, {10, 0, 0.2f}, {40, 0, 0.3f}, {50, -1, 0.4f}, {60, 3, 0.4f}}};
	const std::array<TMidiEvent, 2> events{};
	TProgramPluginShell::TBlock block = Block();
	block.mParameterChanges = changes;
	block.mMidiEvents = events;
	mpShell->Process(block);
	EXPECT_EQ(TakeCalls(), "midi2 process 0:0.10 10:0.10 40:0.20 ");
	EXPECT_EQ(mpDocument->ParameterValue(0), 0.3f);
}

TEST_F(TProgramPluginShellTest, SilentOutputSkipsTheEngine) {
	mpEngine->mIsSilent = true;
	mpShell->Process(Block());
	EXPECT_EQ(TakeCalls(), "");
	EXPECT_EQ(mLeftOut[99], 0.0f);
	EXPECT_EQ(mLeftOut[100], -1.0f);
}

TEST_F(TProgramPluginShellTest, GestureIsOneEditPerTouchedParameter) {
	mpShell->AsGui([this] {
		mpDocument->SetParameterValue(0, 0.2f); // outside of any edit
		mpDocument->BeginAction();
		for (float value : {0.5f, 0.6f})
			for (int32_t parameter : {0, 2})
				mpDocument->SetParameterValue(parameter, value);
		mpDocument->EndAction();
		mpDocument->EndAction();
		mpDocument->SetParameterValue(0, 0.1f);
	});
	EXPECT_EQ(mHost.Take(), "begin0 edit0=0.50 begin2 edit2=0.50 edit0=0.60 edit2=0.60 end0 end2 ");
}

TEST_F(TProgramPluginShellTest, HostDoesNotHearOfItsOwnChanges) {
	mpShell->BeginHostEdits();
	mpShell->SetParameterFromHost(1, 0.7f);
	mpShell->SetParameterFromHost(77, 0.7f);
	const std::array<TProgramPluginShell::TParameterChange, 1> changes{{{0, 0, 0.9f}}};
	TProgramPluginShell::TBlock block = Block();
	block.mParameterChanges = changes;
	ProcessElsewhere(block);
	mpShell->Tick();
	mpShell->EndHostEdits();
	EXPECT_EQ(mHost.Take(), "");
	EXPECT_EQ(mpDocument->ParameterValue(0), 0.9f);
	EXPECT_EQ(mpDocument->ParameterValue(1), 0.7f);
}

TEST_F(TProgramPluginShellTest, ProgramChangesAreToldOnTheMainThread) {
	mpShell->SetCurrentProgramFromHost(2);
	EXPECT_EQ(mHost.Take(), "host's program2 ");
	mpShell->SetCurrentProgramFromHost(2);
	mpShell->SetCurrentProgramFromHost(4);
	EXPECT_EQ(mHost.Take(), "");
	mpEngine->mLatency = 33;
	{
		TThreadManager::TScope audio(kAudioThread);
		mpDocument->SetCurrentProgramIndex(3);
		mpShell->Process(Block());
	}
	EXPECT_EQ(mHost.Take(), "");
	mpShell->Tick();
	EXPECT_EQ(mHost.Take(), "program3 latency33 ");
}

TEST_F(TProgramPluginShellTest, WhatFollowsAProgramChangeIsNoEdit) {
	mpShell->AsGui([this] {
		mpShell->BeginHostEdits();
		mpDocument->SetCurrentProgramIndex(1);
		mpDocument->SetParameterValue(0, 0.5f);
		mpShell->EndHostEdits();
	});
	EXPECT_EQ(mHost.Take(), "program1 ");
}

TEST_F(TProgramPluginShellTest, StoppedHostDoesNotStallTheGui) {
	int32_t role = kNoThread;
	mpShell->AsGui([&role] {
		TThreadCommunicator::Instance()->Post(
		    kAudioThread, [&role] { role = TThreadManager::Instance()->CurrentThread(); });
	});
	EXPECT_EQ(role, kNoThread);
	mpShell->WaitForAudioThread();
	EXPECT_EQ(role, kAudioThread);
}

TEST_F(TProgramPluginShellTest, NewsForTheHostKeepTheShellUntilTheyAreTold) {
	{
		TThreadManager::TScope audio(kAudioThread);
		mpDocument->SetCurrentProgramIndex(3);
	}
	mpShell = nullptr;
	mpDocument->BeginAction(); // its shell is gone or going
	TThreadCommunicator::Instance()->FlushAllCommands();
	EXPECT_EQ(mHost.Take(), "program3 ");
	mpDocument->EndAction();
}

TEST_F(TProgramPluginShellTest, SetupReachesTheEngineOncePerChange) {
	mpShell->Setup(48000, 64);
	mpShell->Setup(48000, 128);
	mpShell->Setup(0, -1);
	EXPECT_EQ(mpEngine->mRates, (std::vector<int32_t>{48000}));
	EXPECT_EQ(mpEngine->mSizes, (std::vector<int32_t>{64, 128}));
	EXPECT_EQ(mpEngine->InputChannels(), 1);
}
