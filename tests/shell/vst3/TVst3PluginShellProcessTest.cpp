// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/shell/vst3/TVst3PluginShellFixture.h"

#include <pluginterfaces/vst/ivstprocesscontext.h>

#include <limits>
#include <optional>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

/// A stereo block in and out: the input full of 0.5, the output of rubbish.
struct TBlock {
	std::vector<float> mIn[2] = {std::vector<float>(30, 0.5f), std::vector<float>(30, 0.25f)};
	std::vector<float> mOut[2] = {std::vector<float>(30, 7.0f), std::vector<float>(30, 7.0f)};
	float* mInputs[2] = {mIn[0].data(), mIn[1].data()};
	float* mOutputs[2] = {mOut[0].data(), mOut[1].data()};
	AudioBusBuffers mInBus;
	AudioBusBuffers mOutBus;
	ProcessData mData;

	TBlock(const TBlock&) = delete;
	TBlock& operator=(const TBlock&) = delete;

	TBlock() {
		mInBus.numChannels = mOutBus.numChannels = 2;
		mInBus.channelBuffers32 = mInputs;
		mOutBus.channelBuffers32 = mOutputs;
		mData.numInputs = mData.numOutputs = 1;
		mData.inputs = &mInBus;
		mData.outputs = &mOutBus;
		mData.numSamples = 20;
	}
};

class TVst3PluginShellProcessTest : public TVst3PluginShellFixture {
protected:
	void SetUp() override {
		TVst3PluginShellFixture::SetUp();
		Initialize();
	}

	tresult Process() { return ProcessElsewhere(mBlock->mData); }

	void ExpectOutput(float left, float right) const {
		EXPECT_EQ(mBlock->mOutputs[0][0], left);
		EXPECT_EQ(mBlock->mOutputs[0][19], left);
		EXPECT_EQ(mBlock->mOutputs[1][0], right);
		EXPECT_EQ(mBlock->mOutputs[1][19], right);
	}

	std::optional<TBlock> mBlock{std::in_place};
};

} // namespace

TEST_F(TVst3PluginShellProcessTest, EngineWorksInItsOwnScaleAndTheHostsBuffersComeBack) {
	mBlock->mOutBus.silenceFlags = 3;
	EXPECT_EQ(Process(), kResultOk);
	EXPECT_EQ(mpEngine->mFirstInput, 16384.0f);
	EXPECT_EQ(mpEngine->mRole, kAudioThread);
	ExpectOutput(0.25f, 0.125f);
	EXPECT_EQ(mBlock->mOut[0][20], 7.0f);
	EXPECT_EQ(mBlock->mIn[0], std::vector<float>(30, 0.5f));
	EXPECT_EQ(mBlock->mIn[1], std::vector<float>(30, 0.25f));
	EXPECT_EQ(mBlock->mOutBus.silenceFlags, 0u);
}

TEST_F(TVst3PluginShellProcessTest, BufferThatIsInputAndOutputIsScaledBackOnce) {
	mBlock->mOutputs[0] = mBlock->mInputs[0];
	mBlock->mOutputs[1] = mBlock->mInputs[1];
	EXPECT_EQ(Process(), kResultOk);
	ExpectOutput(0.25f, 0.125f);
	// One channel shared, the other not.
	mBlock.emplace();
	mBlock->mOutputs[0] = mBlock->mInputs[0];
	EXPECT_EQ(Process(), kResultOk);
	ExpectOutput(0.25f, 0.125f);
}

TEST_F(TVst3PluginShellProcessTest, SilentInputIsLeftAloneButWhatComesOutOfItIsScaled) {
	mpEngine->mOffset = 16384.0f;
	for (const bool inPlace : {false, true}) {
		mBlock.emplace();
		mBlock->mInBus.silenceFlags = 3;
		for (auto& channel : mBlock->mIn)
			channel.assign(30, 0.0f);
		for (int channel = 0; inPlace && channel < 2; ++channel)
			mBlock->mOutputs[channel] = mBlock->mInputs[channel];
		EXPECT_EQ(Process(), kResultOk);
		ExpectOutput(0.5f, 0.5f);
	}
	// Half silent is not silent.
	mBlock.emplace();
	mBlock->mInBus.silenceFlags = 2;
	EXPECT_EQ(Process(), kResultOk);
	EXPECT_EQ(mpEngine->mFirstInput, 16384.0f);
}

TEST_F(TVst3PluginShellProcessTest, MonoInputIsScaledOnceAndServesBothSides) {
	mBlock->mInBus.numChannels = 1;
	EXPECT_EQ(Process(), kResultOk);
	EXPECT_EQ(mpEngine->mFirstInput, 16384.0f);
	ExpectOutput(0.25f, 0.25f);
	EXPECT_EQ(mBlock->mIn[0], std::vector<float>(30, 0.5f));
}

TEST_F(TVst3PluginShellProcessTest, MissingBuffersAreSilenceInAndNowhereOut) {
	mpEngine->mOffset = 16384.0f;
	mBlock->mInputs[1] = nullptr;
	mBlock->mOutputs[0] = nullptr;
	EXPECT_EQ(Process(), kResultOk);
	EXPECT_EQ(mBlock->mOut[1][19], 0.5f);
	mBlock->mData.numInputs = 0;
	mBlock->mOutBus.channelBuffers32 = nullptr;
	EXPECT_EQ(Process(), kResultOk);
	EXPECT_EQ(mpEngine->mFirstInput, 0.0f);
	mBlock->mData.outputs = nullptr;
	EXPECT_EQ(Process(), kResultOk);
}

TEST_F(TVst3PluginShellProcessTest, BusWithoutChannelsIsSilenceInAndNowhereOut) {
	mpEngine->mOffset = 16384.0f;
	for (const bool isBypassed : {false, true}) {
		mpShell->setParamNormalized(kVst3Bypass, isBypassed ? 1.0 : 0.0);
		for (const int32 busses : {1, 0}) {
			mBlock.emplace();
			mBlock->mData.numInputs = busses;
			mBlock->mInBus.numChannels = 0;
			mpEngine->mFirstInput = 0.0f;
			EXPECT_EQ(Process(), kResultOk);
			EXPECT_EQ(mpEngine->mFirstInput, 0.0f);
			ExpectOutput(isBypassed ? 0.0f : 0.5f, isBypassed ? 0.0f : 0.5f);
			mBlock.emplace();
			mBlock->mData.numOutputs = busses;
			mBlock->mOutBus.numChannels = 0;
			EXPECT_EQ(Process(), kResultOk);
			EXPECT_EQ(mBlock->mOut[0][0], 7.0f);
			EXPECT_EQ(mBlock->mOutBus.silenceFlags, 0u);
		}
	}
}

TEST_F(TVst3PluginShellProcessTest, SilentOutputsAreFlagged) {
	const auto fill = [this](float left, float right) {
		mBlock.emplace();
		mBlock->mIn[0].assign(30, 0.0f);
		mBlock->mIn[1].assign(30, 0.0f);
		mBlock->mIn[0][19] = left;
		mBlock->mIn[1][0] = right;
	};
	for (const uint64_t silent : {0u, 1u, 2u, 3u}) {
		fill(silent & 1 ? 0.0f : 0.5f, silent & 2 ? 0.0f : 0.5f);
		EXPECT_EQ(Process(), kResultOk);
		EXPECT_EQ(mBlock->mOutBus.silenceFlags, silent);
		EXPECT_EQ(mBlock->mOut[0][19], silent & 1 ? 0.0f : 0.25f);
	}
	fill(0.0f, 0.0f);
	mBlock->mOutBus.numChannels = 1;
	EXPECT_EQ(Process(), kResultOk);
	EXPECT_EQ(mBlock->mOutBus.silenceFlags, 1u);
	mpShell->setParamNormalized(kVst3Bypass, 1.0);
	mBlock.emplace();
	mBlock->mInBus.silenceFlags = 2;
	EXPECT_EQ(Process(), kResultOk);
	EXPECT_EQ(mBlock->mOutBus.silenceFlags, 2u);
}

TEST_F(TVst3PluginShellProcessTest, WrongSizes) {
	mBlock->mData.symbolicSampleSize = kSample64;
	EXPECT_EQ(Process(), kInvalidArgument);
	mBlock.emplace();
	mBlock->mData.numSamples = -1;
	EXPECT_EQ(Process(), kInvalidArgument);
	EXPECT_EQ(TakeCalls(), "");
	ProcessSetup setup{kRealtime, kSample32, 12, 48000.5};
	EXPECT_EQ(mpShell->setupProcessing(setup), kResultOk);
	EXPECT_EQ(mpEngine->mRates, std::vector<int32_t>{48000});
	mBlock.emplace();
	EXPECT_EQ(Process(), kResultOk);
	EXPECT_EQ(mBlock->mData.numSamples, 12);
	EXPECT_EQ(mBlock->mOut[0][12], 7.0f);
	for (const ProcessSetup& wrong :
	     {ProcessSetup{kRealtime, kSample64, 12, 48000.0}, ProcessSetup{kRealtime, kSample32, 0, 48000.0},
	      ProcessSetup{kRealtime, kSample32, 12, 0.0}, ProcessSetup{kRealtime, kSample32, 12, 1e300},
	      ProcessSetup{kRealtime, kSample32, 12, std::numeric_limits<double>::quiet_NaN()}}) {
		setup = wrong;
		EXPECT_EQ(mpShell->setupProcessing(setup), kInvalidArgument);
	}
}

TEST_F(TVst3PluginShellProcessTest, BypassPassesTheInputAndChangesActAtOnce) {
	EXPECT_EQ(ProcessChanges({{kVst3Bypass, {{0, 1.0}}}, {0, {{15, 0.75}}}}), kResultOk);
	EXPECT_EQ(mpDocument->ParameterValue(0), 0.75f);
	EXPECT_EQ(mpShell->getParamNormalized(kVst3Bypass), 1.0);
	EXPECT_EQ(Process(), kResultOk);
	ExpectOutput(0.5f, 0.25f);
	mBlock->mInBus.numChannels = 1;
	EXPECT_EQ(Process(), kResultOk);
	ExpectOutput(0.0f, 0.0f);
	EXPECT_EQ(mBlock->mOutBus.silenceFlags, 3u);
	EXPECT_EQ(TakeCalls(), "");
	mpDocument->mIsInstrument = true;
	mBlock.emplace();
	EXPECT_EQ(Process(), kResultOk);
	ExpectOutput(0.0f, 0.0f);
	EXPECT_EQ(mBlock->mOutBus.silenceFlags, 3u);
	// A new setup begins without.
	ProcessSetup setup{kRealtime, kSample32, 256, 44100.0};
	mpShell->setupProcessing(setup);
	EXPECT_EQ(mpShell->getParamNormalized(kVst3Bypass), 0.0);
}

TEST_F(TVst3PluginShellProcessTest, PointsTakeEffectAtTheirSample) {
	const double none = std::numeric_limits<double>::quiet_NaN();
	EXPECT_EQ(
	    ProcessChanges({
	        {0, {{-9, 0.1}, {5, 0.2}, {5, none}, {12, 0.3}, {kSamples, 0.4}, {1 << 30, 0.5}}},
	        {99, {{0, 0.5}}},
	        {0xFFFFFFFF, {{0, 0.5}}},
	    }),
	    kResultOk);
	// The engine writes a stretch's first sample down just before it runs what is due there.
	EXPECT_EQ(TakeCalls(), "process 0:0.10 5:0.10 12:0.20 19:0.30 ");
	EXPECT_EQ(mpDocument->ParameterValue(0), 0.5f);
	// With no sample to wait for, all act at once.
	TFakeChanges changes({{0, {{0, 0.6}, {7, 0.7}}}});
	ProcessData flush;
	flush.inputParameterChanges = &changes;
	EXPECT_EQ(ProcessElsewhere(flush), kResultOk);
	EXPECT_EQ(mpDocument->ParameterValue(0), 0.7f);
}

TEST_F(TVst3PluginShellProcessTest, PointsOutOfOrderAndOfTwoQueuesTakeEffectAtTheirSample) {
	ProcessChanges({{0, {{9, 0.2}, {4, 0.1}}}});
	EXPECT_EQ(TakeCalls(), "process 0:0.00 4:0.00 9:0.10 ");
	ProcessChanges({{0, {{2, 0.3}, {2, 0.4}, {8, 0.5}}}, {0, {{5, 0.6}}}});
	EXPECT_EQ(TakeCalls(), "process 0:0.20 2:0.20 5:0.40 8:0.60 ");
	EXPECT_EQ(mpDocument->ParameterValue(0), 0.5f);
}

TEST_F(TVst3PluginShellProcessTest, LastValueArrivesThoughTheEngineDoesNotRun) {
	mpEngine->mIsSilent = true;
	for (const double value : {0.5, 0.75}) {
		ProcessChanges({{1, {{3, 0.1}, {4, 0.2}, {9, value}}}, {kVst3Preset, {{5, value}}}});
		EXPECT_EQ(mpDocument->ParameterValue(1), static_cast<float>(value));
		EXPECT_EQ(mpDocument->CurrentProgramIndex(), static_cast<int32_t>(4 * value));
	}
	mpEngine->mIsSilent = false;
	mpDocument->SetParameterValue(1, 0.0f);
	ProcessChanges({});
	EXPECT_EQ(mpDocument->ParameterValue(1), 0.0f);
	ProcessChanges({{0, {{7, 0.5}}}});
	EXPECT_EQ(TakeCalls(), "process 0:0.00 3:0.00 5:0.00 process 0:0.00 7:0.00 ");
}

TEST_F(TVst3PluginShellProcessTest, PresetPointsSelectProgramsAtTheirSample) {
	ProcessChanges({{kVst3Preset, {{0, 0.5}, {5, 1.0}}}});
	EXPECT_EQ(mpDocument->CurrentProgramIndex(), 3);
	ProcessChanges({{kVst3Preset, {{0, 0.12}}}});
	EXPECT_EQ(mpDocument->CurrentProgramIndex(), 0);
	ProcessChanges({{kVst3Preset, {{0, 0.13}}}});
	EXPECT_EQ(mpDocument->CurrentProgramIndex(), 1);
}

TEST_F(TVst3PluginShellProcessTest, TransportIsTakenOverWhereTheHostSaysItIsValid) {
	ProcessContext context{};
	context.sampleRate = 1e300;
	context.tempo = 99.0;
	context.projectTimeMusic = 4.5;
	context.cycleEndMusic = 8.0;
	context.timeSigNumerator = 7;
	context.continousTimeSamples = 1234;
	context.systemTime = 5;
	mBlock->mData.processContext = &context;
	Process();
	EXPECT_EQ(mpEngine->mTransport.mFlags, TTransportInfo::kIsPlayingValid);
	EXPECT_FALSE(mpEngine->mTransport.mIsPlaying);
	EXPECT_EQ(mpEngine->mTransport.mTempo, 0.0f);
	context.state = ProcessContext::kPlaying | ProcessContext::kCycleActive | ProcessContext::kSystemTimeValid |
	                ProcessContext::kContTimeValid | ProcessContext::kProjectTimeMusicValid |
	                ProcessContext::kCycleValid | ProcessContext::kTempoValid | ProcessContext::kTimeSigValid;
	Process();
	const TTransportInfo& transport = mpEngine->mTransport;
	EXPECT_EQ(transport.mFlags, 0x4u | 0x8u | 0x10u | 0x20u | 0x100u | 0x400u | 0x800u);
	EXPECT_TRUE(transport.mIsPlaying && transport.mIsCycling);
	EXPECT_EQ(transport.mTempo, 99.0f);
	EXPECT_EQ(transport.mBeatPosition, 4.5);
	EXPECT_EQ(transport.mCycleEnd, 8.0);
	EXPECT_EQ(transport.mTimeSigNumerator, 7);
	EXPECT_EQ(transport.mSamplePosition, 1234.0);
	EXPECT_EQ(transport.mSystemTime, 5.0);
	mBlock->mData.processContext = nullptr;
	Process();
	EXPECT_EQ(mpEngine->mTransport.mFlags, 0u);
}

TEST_F(TVst3PluginShellProcessTest, EventsGoInBatchesAndComeBackWithTheNextBlock) {
	TFakeEvents in;
	TFakeEvents out;
	for (int16 i = 0; i < 300; ++i) {
		Event event{};
		event.type = i == 7 ? Event::kChordEvent : Event::kNoteOnEvent;
		event.sampleOffset = i;
		event.noteOn = {0, 60, 0.0f, 1.0f, 0, -1};
		in.mEvents.push_back(event);
	}
	mBlock->mData.inputEvents = &in;
	mBlock->mData.outputEvents = &out;
	const TMidiEvent sent[] = {{0x90, 36, 127, 3}, {0xF8, 0, 0, 0}};
	mpShell->SendMidiEvents(sent);
	EXPECT_EQ(Process(), kResultOk);
	EXPECT_EQ(TakeCalls(), "midi256 midi43 process 0:0.00 ");
	EXPECT_EQ(mpEngine->mEvents[5].mSampleOffset, 5);
	EXPECT_EQ(mpEngine->mEvents.back().mSampleOffset, 19);
	ASSERT_EQ(out.mEvents.size(), 1u);
	EXPECT_EQ(out.mEvents[0].noteOn.pitch, 36);
	EXPECT_EQ(out.mEvents[0].sampleOffset, 3);
	mBlock->mData.inputEvents = nullptr;
	Process();
	EXPECT_EQ(out.mEvents.size(), 1u);
}

TEST_F(TVst3PluginShellProcessTest, SilentEngineIsNotAsked) {
	mpEngine->mIsSilent = true;
	EXPECT_EQ(Process(), kResultOk);
	ExpectOutput(0.0f, 0.0f);
	EXPECT_EQ(TakeCalls(), "");
}
