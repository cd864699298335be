// SPDX-License-Identifier: GPL-3.0-or-later
// The adapter between a fake host and a fake program.
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/files/TLog.h"
#include "shell/vst2/TVstPluginShell.h"
#include "tests/shell/FakeProgram.h"
#include "tests/support/TFrameworkFixture.h"
#include "tests/support/TLogFolder.h"
#include "tests/vst2/TVst2Host.h"

#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <thread>

namespace {

class Vst2AdapterTest : public TFrameworkFixture {
protected:
	static constexpr int kSamples = 20;

	void SetUp() override {
		TLog::SetEchoToConsole(false);
		TFrameworkFixture::SetUp();
		mpDocument = MakePtr<TFakeDocument>();
		mpEngine = MakePtr<TFakeEngine>(mpDocument.Get());
	}

	void TearDown() override {
		mpEffect = nullptr;
		mpShell = nullptr;
		mpEngine = nullptr;
		mpDocument = nullptr;
		TThreadCommunicator::Instance()->FlushAllCommands();
		TFrameworkFixture::TearDown();
	}

	/// What it reads while it is made (maxima, kind) is set before.
	void Open() {
		mpShell = MakePtr<TVstPluginShell>(
		    mpDocument.Get(), mpEngine.Get(), nullptr, &TVst2Host::Callback, [](TVstPluginShell*) {});
		mpEffect = std::make_unique<TVst2Effect>(mpShell->getAeffect());
		mpEffect->Do(effOpen);
	}

	/// A block in the same buffers, on a thread that the plug-in has never seen.
	void Process(int samples = kSamples) {
		std::thread([&] { mpEffect->Process(mLeft, mRight, mLeft, mRight, samples); }).join();
	}

	VstIntPtr Arrange(int inputs, int outputs) {
		TVst2Arrangement in{};
		TVst2Arrangement out{};
		in.mChannels = inputs;
		out.mChannels = outputs;
		return mpEffect->Do(effSetSpeakerArrangement, 0, reinterpret_cast<VstIntPtr>(&in), &out);
	}

	TVst2Host mHost;
	TPtr<TFakeDocument> mpDocument;
	TPtr<TFakeEngine> mpEngine;
	TPtr<TVstPluginShell> mpShell;
	std::unique_ptr<TVst2Effect> mpEffect;
	float mLeft[2048]{};
	float mRight[2048]{};
};

TEST_F(Vst2AdapterTest, FollowsRateAndBlockAtResumeAlsoOfAHostThatForgetsToResume) {
	Open();
	EXPECT_EQ(mHost.TakeCalls(), "idle ");
	mHost.mRate = 48000;
	mHost.mBlock = 1000;
	Process();
	EXPECT_EQ(mpEngine->mRole, kAudioThread);
	EXPECT_EQ(mpEngine->SampleRate(), 48000);
	EXPECT_EQ(mpEngine->BlockSize(), 1000);
	// A host that says nothing, or nonsense.
	mHost.mRate = mHost.mBlock = 0;
	mpEffect->Do(effSetSampleRate, 0, 0, nullptr, std::numeric_limits<float>::quiet_NaN());
	mpEffect->Do(effSetBlockSize, 0, -5);
	mpEffect->Do(effMainsChanged, 0, 0);
	mpEffect->Do(effMainsChanged, 0, 1);
	EXPECT_EQ(mpEngine->SampleRate(), 44100);
	EXPECT_EQ(mpEngine->BlockSize(), 1024);
	// No more than the block size is processed.
	mLeft[1023] = mLeft[1024] = 1.0f;
	Process(2000);
	EXPECT_EQ(mLeft[1023], 0.5f);
	EXPECT_EQ(mLeft[1024], 1.0f);
}

TEST_F(Vst2AdapterTest, ScalesEachBufferOnceAndAddsForHostsOfOld) {
	Open();
	mpEffect->Do(effMainsChanged, 0, 1);
	mpEngine->mOffset = 32768.0f;
	float out[2][kSamples]{};
	const auto fill = [&] { std::fill_n(mLeft, kSamples, 0.25f), std::fill_n(mRight, kSamples, -0.25f); };
	fill();
	mpEffect->Process(mLeft, mRight, out[0], out[1], kSamples);
	EXPECT_EQ(mpEngine->mFirstInput, 8192.0f);
	EXPECT_EQ(mLeft[0], 0.25f);
	EXPECT_EQ(out[0][0], 1.125f);
	EXPECT_EQ(out[1][kSamples - 1], 0.875f);
	mpEffect->Process(mLeft, mRight, mLeft, mRight, kSamples);
	EXPECT_EQ(mLeft[kSamples - 1], 1.125f);
	EXPECT_EQ(mRight[0], 0.875f);
	fill();
	float* inputs[] = {mLeft, mRight};
	float* outputs[] = {out[0], out[1]};
	(*mpEffect)->process(mpEffect->operator->(), inputs, outputs, kSamples);
	EXPECT_EQ(out[0][0], 2.25f);
	// Buffers that are not there.
	float* none[] = {nullptr, nullptr};
	(*mpEffect)->processReplacing(mpEffect->operator->(), nullptr, outputs, kSamples);
	EXPECT_EQ(out[0][0], 1.0f);
	(*mpEffect)->processReplacing(mpEffect->operator->(), none, none, kSamples);
	(*mpEffect)->processReplacing(mpEffect->operator->(), nullptr, nullptr, -1);
	(*mpEffect)->process(mpEffect->operator->(), nullptr, nullptr, kSamples);
	// Silent on demand, without a call of the engine.
	mpEngine->mIsSilent = true;
	mpEngine->mCalls.clear();
	mpEffect->Process(mLeft, mRight, out[0], out[1], kSamples);
	EXPECT_EQ(out[0][0], 0.0f);
	EXPECT_EQ(mpEngine->mCalls, "");
}

TEST_F(Vst2AdapterTest, ReadsOfTheTransportWhatIsValidAndPossible) {
	Open();
	VstTimeInfo& time = mHost.mTime;
	time.samplePos = 7.0;
	time.ppqPos = 1.5;
	time.tempo = 9999.0;
	time.cycleStartPos = 4.0;
	time.cycleEndPos = 8.0;
	time.timeSigNumerator = 999;
	time.timeSigDenominator = 4;
	time.flags = kVstTransportRecording | kVstTransportCycleActive | kVstPpqPosValid | kVstTempoValid |
	             kVstTimeSigValid | kVstCyclePosValid;
	mHost.mProcessLevel = kVstProcessLevelOffline;
	Process();
	const TTransportInfo& transport = mpEngine->mTransport;
	EXPECT_EQ(transport.mFlags, 0x8BBu);
	EXPECT_TRUE(transport.mIsPlaying && transport.mIsOffline && transport.mIsCycling);
	EXPECT_EQ(transport.mBeatPosition, 1.5);
	EXPECT_EQ(transport.mSamplePosition, 7.0);
	EXPECT_EQ(transport.mCycleEnd, 8.0);
	time.tempo = 120.5;
	time.timeSigNumerator = 7;
	Process();
	EXPECT_EQ(transport.mFlags, 0xDBBu);
	EXPECT_EQ(transport.mTempo, 120.5f);
	EXPECT_EQ(transport.mTimeSigNumerator, 7);
	time.sampleRate = 0.0;
	Process();
	EXPECT_FALSE(mpEngine->mHadTransport);
}

TEST_F(Vst2AdapterTest, TakesAndSendsEventsInBatches) {
	Open();
	TVst2Events events;
	for (int i = 0; i < 600; ++i)
		events.Add(0x90, static_cast<uint8_t>(i % 128), 100, i);
	events.mEvents[1].type = kVstSysExType;
	EXPECT_EQ(mpEffect->Do(effProcessEvents, 0, 0, events.Record()), 1);
	ASSERT_EQ(mpEngine->mEvents.size(), 599u);
	EXPECT_EQ(mpEngine->mEvents.back().mSampleOffset, 599);
	mpEffect->Do(effProcessEvents);

	std::vector<TMidiEvent> out(1025, {0xB0, 1, 2, 3});
	mpShell->SendMidiEvents(out);
	ASSERT_EQ(mHost.mBatches.size(), 3u);
	EXPECT_EQ(mHost.mBatches[1].size(), 512u);
	EXPECT_EQ(mHost.mBatches[2].size(), 1u);
	EXPECT_EQ(mHost.mBatches[2][0].midiData[2], 2);
	EXPECT_EQ(mHost.mBatches[2][0].deltaFrames, 3);
}

TEST_F(Vst2AdapterTest, TellsOfEditsAndProgramsButNotOfTheHostsOwn) {
	Open();
	mHost.TakeCalls();
	mpEffect->SetParameter(1, 7.0f);
	mpEffect->SetParameter(1, std::numeric_limits<float>::quiet_NaN());
	mpEffect->SetParameter(3, 0.5f);
	mpEffect->Do(effSetProgram, 0, 2);
	mpEffect->Do(effSetProgram, 0, 4);
	EXPECT_EQ(mpEffect->Parameter(1), 1.0f);
	EXPECT_EQ(mpEffect->Parameter(-1), 0.0f);
	EXPECT_EQ(mpEffect->Do(effGetProgram), 2);
	EXPECT_EQ(mHost.TakeCalls(), "");

	mpDocument->UndoTransactionBegun();
	mpDocument->SetParameterValue(0, 0.25f);
	mpDocument->SetParameterValue(0, 0.75f);
	mpDocument->UndoTransactionEnded();
	mpDocument->SetParameterValue(0, 0.5f);
	EXPECT_EQ(mHost.TakeCalls(), "begin0 automate0=0.25 automate0=0.75 end0 ");
	mpDocument->SetCurrentProgramIndex(1);
	EXPECT_EQ(mHost.TakeCalls(), "display ");

	// A chunk's program is reported when the host is out of the call, and its values are not.
	const uint8_t state[] = {0x43};
	mpEffect->Load(state);
	EXPECT_EQ(mHost.TakeCalls(), "");
	EXPECT_EQ(mpEffect->Do(kEffectIdle), 1);
	EXPECT_EQ(mHost.TakeCalls(), "display ");
	EXPECT_EQ(mpEffect->Chunk(), std::vector<uint8_t>(1, 0x43));
	mpEffect->Load({});
	mpEffect->Do(effSetChunk, 0, 5, nullptr);
	mpEffect->Do(effSetChunk, 0, -5, mpDocument.Get());
	EXPECT_EQ(mpDocument->mLoadedSizes.size(), 1u);

	// Another latency, seen on the audio thread.
	mpEngine->mLatency = 64;
	Process();
	EXPECT_EQ((*mpEffect)->initialDelay, 64);
	mpEffect->Do(effEditIdle);
	EXPECT_EQ(mHost.TakeCalls(), "io ");
}

TEST_F(Vst2AdapterTest, ArrangesChannelsWhileItRests) {
	mpEngine->mOutputs = 2;
	Open();
	EXPECT_EQ((*mpEffect)->numOutputs, 4);
	VstPinProperties pin;
	EXPECT_EQ(mpEffect->Do(effGetOutputProperties, 2, 0, &pin), 1);
	EXPECT_STREQ(pin.label, "Output 2");
	EXPECT_STREQ(pin.shortLabel, "Output ");
	EXPECT_EQ(pin.flags, 3);
	EXPECT_EQ(Arrange(2, 3), 0);
	EXPECT_EQ(Arrange(2, 0), 0);
	EXPECT_EQ(Arrange(4, 2), 0);
	EXPECT_EQ(Arrange(2, 2), 1);
	EXPECT_EQ(mpEngine->OutputChannels(), 1);
	EXPECT_EQ(mpEffect->Do(effGetOutputProperties, 2, 0, &pin), 1);
	EXPECT_EQ(pin.flags, 0);
	EXPECT_EQ(mpEffect->Do(effGetOutputProperties, 4, 0, &pin), 0);
	EXPECT_EQ(mpEffect->Do(effGetInputProperties, 2, 0, &pin), 0);
	mpEffect->Do(effMainsChanged, 0, 1);
	EXPECT_EQ(Arrange(2, 2), 0);
	EXPECT_EQ(Arrange(2, 4), 1);
	VstSpeakerArrangement* in = nullptr;
	VstSpeakerArrangement* out = nullptr;
	EXPECT_EQ(mpEffect->Do(effGetSpeakerArrangement, 0, reinterpret_cast<VstIntPtr>(&in), &out), 1);
	EXPECT_EQ(in->numChannels, 2);
	EXPECT_EQ(out->numChannels, 4);

	mpEffect = nullptr;
	mpDocument->mIsInstrument = true;
	Open();
	EXPECT_EQ((*mpEffect)->flags & effFlagsIsSynth, effFlagsIsSynth);
	EXPECT_EQ(Arrange(0, 2), 1);
	EXPECT_EQ(Arrange(0, 1), 0);
	EXPECT_EQ(Arrange(-2, 2), 0);
}

TEST_F(Vst2AdapterTest, AnswersWhatItCanDoAndReadsParametersAsTexts) {
	const TLogFolder log;
	Open();
	EXPECT_EQ(mpEffect->Do(effCanDo), -1);
	EXPECT_EQ(mpEffect->CanDo("receiveVstMidiEvent"), 1);
	EXPECT_EQ(mpEffect->CanDo("openCloseAnyThread"), -1);
	EXPECT_EQ(mpEffect->CanDo("bypass"), 0);
	EXPECT_EQ(mpEffect->CanDo("hasCockosViewAsConfig") & 0xffffffff, 0xbeef0000);
	mpEffect->CanDo("hasCockosViewAsConfig");
	const std::string said = log.Logged();
	EXPECT_NE(said.find("Accepted"), std::string::npos);
	EXPECT_EQ(said.find("Accepted"), said.rfind("Accepted"));

	char text[256] = "a quarter";
	EXPECT_EQ(mpEffect->Do(effVendorSpecific, CCONST('S', 'e', 'r', 'P'), CCONST('s', 'C', 'e', 'A')), 1);
	EXPECT_EQ(mpEffect->Do(effVendorSpecific, effString2Parameter, 0, text), 0) << "nobody has asked for it";
	mpEffect->CanDo("canSerializeParameters");
	EXPECT_EQ(mpEffect->Do(effVendorSpecific, effString2Parameter, 0, text), 1);
	EXPECT_STREQ(text, "0.250000");
	EXPECT_EQ(mpEffect->Do(effVendorSpecific, effString2Parameter, 0, text), -1);
	EXPECT_EQ(mpEffect->Do(effVendorSpecific, effGetParamDisplay, 2, text, 0.5f), 1);
	EXPECT_STREQ(text, "0.5");
	EXPECT_EQ(mpEffect->Do(effVendorSpecific, effGetParamDisplay, 3, text, 0.5f), 0);

	// At most so many bytes, and whole characters.
	mpDocument->mTitle = TString("Fourteen bytes\xc3\xa4", kUtf8Encoding);
	EXPECT_EQ(mpEffect->Text(effGetParamName, 1), "Fourteen bytes");
	EXPECT_EQ(mpEffect->Text(effGetParamLabel, 1), "Hz");
	EXPECT_EQ(mpEffect->Text(effGetParamName, 3), "");
	EXPECT_EQ(mpEffect->Text(effGetProgramName), "Name0");
	EXPECT_EQ(mpEffect->Text(effGetProgramNameIndexed, 3), "Name3");
	EXPECT_EQ(mpEffect->Text(effGetProgramNameIndexed, 4), "");
}

} // namespace
