// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/shell/vst3/TVst3PluginShellFixture.h"

#include <pluginterfaces/vst/ivstmidicontrollers.h>

#include <limits>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

std::string Narrow(const String128 text) {
	std::string narrow;
	for (int i = 0; text[i] != 0; ++i)
		narrow += static_cast<char>(text[i]);
	return narrow;
}

class TVst3PluginShellHostTest : public TVst3PluginShellFixture {
protected:
	std::string Titles() {
		std::string titles;
		for (int32 i = 0; i < mpShell->getParameterCount(); ++i) {
			ParameterInfo info{};
			mpShell->getParameterInfo(i, info);
			titles += Narrow(info.title) + "|";
		}
		return titles;
	}

	tresult Arrange(std::vector<SpeakerArrangement> inputs, std::vector<SpeakerArrangement> outputs) {
		return mpShell->setBusArrangements(
		    inputs.data(), static_cast<int32>(inputs.size()), outputs.data(), static_cast<int32>(outputs.size()));
	}

	IComponent& Component() { return *mpShell; }

	IEditController& Controller() { return *mpShell; }

	tresult Load(std::vector<uint8> bytes, int32 portion = 1 << 30) {
		TFakeHostStream stream(std::move(bytes), portion);
		return Component().setState(&stream);
	}

	tresult Run() {
		ProcessData data;
		return ProcessElsewhere(data);
	}
};

} // namespace

TEST_F(TVst3PluginShellHostTest, CallsOutsideTheLifeOfAComponentAreRefused) {
	EXPECT_EQ(Run(), kNotInitialized);
	EXPECT_EQ(mpShell->setActive(1), kNotInitialized);
	EXPECT_EQ(mpShell->setParamNormalized(0, 0.5), kNotInitialized);
	EXPECT_EQ(Arrange({SpeakerArr::kStereo}, {SpeakerArr::kStereo}), kNotInitialized);
	EXPECT_EQ(mpShell->getParameterCount(), 0);
	for (int round = 0; round < 2; ++round) {
		Initialize();
		EXPECT_EQ(mpShell->initialize(nullptr), kResultFalse);
		EXPECT_EQ(mpShell->getBusCount(kAudio, kInput), 1);
		EXPECT_EQ(Titles(), "Preset|Parameter0|Parameter1|Parameter2|");
		EXPECT_EQ(mpShell->terminate(), kResultOk);
		EXPECT_EQ(mpShell->terminate(), kResultFalse);
		EXPECT_EQ(Run(), kNotInitialized);
	}
	EXPECT_EQ(TakeCalls(), "");
}

TEST_F(TVst3PluginShellHostTest, LastReferenceClosesDownAndEndsTheInstanceOnce) {
	Initialize();
	sReleased = 0;
	void* found = nullptr;
	EXPECT_EQ(mpShell->queryInterface(IMidiMapping_iid, &found), kResultOk);
	EXPECT_EQ(mpShell->queryInterface(IPlugView_iid, &found), kNoInterface);
	EXPECT_EQ(mpShell->release(), 1u);
	EXPECT_EQ(mpShell->release(), 0u);
	EXPECT_EQ(sReleased, 1);
	EXPECT_EQ(mHost.Take(), "timer off ");
	mHost.mpTimer->onTimer();
}

TEST_F(TVst3PluginShellHostTest, FirstBlockActivates) {
	Initialize();
	mpEngine->mLatency = 64;
	EXPECT_EQ(Run(), kResultOk);
	EXPECT_EQ(mpShell->getLatencySamples(), 64u);
	EXPECT_EQ(mHost.Take(), "");
	mHost.mpTimer->onTimer();
	EXPECT_EQ(mHost.Take(), "restart8 ");
	EXPECT_EQ(mHost.mInterval, 10u);
}

TEST_F(TVst3PluginShellHostTest, EditsReachTheHostAsGesturesAndItsOwnDoNot) {
	Initialize();
	mpDocument->SetParameterValue(0, 0.1f);
	mpShell->BeginHostEdits();
	mpShell->setParamNormalized(2, 0.9);
	mpDocument->SetParameterValue(0, 0.2f);
	mpDocument->SetParameterValue(0, 0.3f);
	mpShell->EndHostEdits();
	EXPECT_EQ(mHost.Take(), "begin0 edit0=0.20 edit0=0.30 end0 ");
	EXPECT_EQ(mpDocument->ParameterValue(2), 0.9f);
	mpShell->setComponentHandler(nullptr);
	mpShell->BeginHostEdits();
	mpDocument->SetParameterValue(0, 0.4f);
	mpShell->EndHostEdits();
	EXPECT_EQ(mHost.Take(), "");
}

TEST_F(TVst3PluginShellHostTest, ProgramChangesAreToldOnTheMainThreadOnly) {
	Initialize();
	mpShell->setParamNormalized(kVst3Preset, 0.5);
	EXPECT_EQ(mHost.Take(), "program2 ");
	mpDocument->mTitle = "New";
	mpDocument->SetCurrentProgramIndex(1);
	EXPECT_EQ(mHost.Take(), "program1 restart4 ");
	EXPECT_EQ(Titles(), "Preset|New0|New1|New2|");
	mpDocument->SetProgramName(1, "x");
	EXPECT_EQ(mHost.Take(), "program1 restart4 ");
	ProcessChanges({{kVst3Preset, {{0, 0.75}}}});
	EXPECT_EQ(mHost.Take(), "");
	mHost.mpTimer->onTimer();
	EXPECT_EQ(mHost.Take(), "program3 ");
}

TEST_F(TVst3PluginShellHostTest, StateIsALengthAndTheBank) {
	Initialize();
	TFakeHostStream saved;
	EXPECT_EQ(Component().getState(&saved), kResultOk);
	EXPECT_EQ(saved.mBytes, (std::vector<uint8>{1, 0, 0, 0, 7}));
	EXPECT_EQ(Load({1, 0, 0, 0, 65}, 1), kResultOk);
	EXPECT_EQ(mpDocument->mState, 65);
	EXPECT_EQ(Load({0, 0, 0, 0}), kResultOk);
	EXPECT_EQ(mpDocument->mLoadedSizes, (std::vector<int64_t>{1, 0}));
	// The controller has nothing of its own, and does not touch what it is given.
	TFakeHostStream untouched({9, 9});
	EXPECT_EQ(Controller().setComponentState(nullptr), kResultOk);
	EXPECT_EQ(Controller().setState(&untouched), kResultOk);
	EXPECT_EQ(Controller().getState(&untouched), kResultOk);
	EXPECT_EQ(untouched.mBytes.size(), 2u);
}

TEST_F(TVst3PluginShellHostTest, BadStreamsLeaveTheDocumentAlone) {
	Initialize();
	EXPECT_EQ(Component().setState(nullptr), kInvalidArgument);
	EXPECT_EQ(Component().getState(nullptr), kInvalidArgument);
	for (const std::vector<uint8>& bytes :
	     std::vector<std::vector<uint8>>{{}, {1, 0}, {2, 0, 0, 0, 5}, {255, 255, 255, 255, 5}, {255, 255, 255, 127, 5}})
		EXPECT_EQ(Load(bytes), kResultFalse);
	EXPECT_EQ(Load({1, 0, 0, 0, 5}, 0), kResultFalse);
	EXPECT_TRUE(mpDocument->mLoadedSizes.empty());
	TFakeHostStream full({}, 3);
	EXPECT_EQ(Component().getState(&full), kResultFalse);
	full.mPortion = 100;
	full.mResult = kInternalError;
	EXPECT_EQ(Component().getState(&full), kResultFalse);
}

TEST_F(TVst3PluginShellHostTest, HostHearsOfAStateOnlyWhenTheCallIsOver) {
	Initialize();
	EXPECT_EQ(Load({1, 0, 0, 0, 66}), kResultOk);
	EXPECT_EQ(mHost.Take(), "");
	mHost.mpTimer->onTimer();
	EXPECT_EQ(mHost.Take(), "program2 restart4 ");
	EXPECT_EQ(Load({1, 0, 0, 0, 66}), kResultOk);
	mHost.mpTimer->onTimer();
	EXPECT_EQ(mHost.Take(), "");
	// The parameters alone
	mpDocument->SetParameterValue(0, 0.9f);
	EXPECT_EQ(Load({1, 0, 0, 0, 66}), kResultOk);
	mHost.mpTimer->onTimer();
	EXPECT_EQ(mHost.Take(), "program2 restart4 ");
}

TEST_F(TVst3PluginShellHostTest, ChangesThatTheMainThreadHasSleptThroughAreToldOnce) {
	Initialize();
	mpEngine->mLatency = 64;
	for (int i = 0; i < 100; ++i)
		ProcessChanges({{kVst3Preset, {{0, 0.25 * (i % 4)}}}});
	EXPECT_EQ(mHost.Take(), "");
	mHost.mpTimer->onTimer();
	EXPECT_EQ(mHost.Take(), "restart8 program3 ");
	mHost.mpTimer->onTimer();
	EXPECT_EQ(mHost.Take(), "");
}

TEST_F(TVst3PluginShellHostTest, WithoutARunLoopTheIdleParameterBringsTheTick) {
	for (const bool refuses : {false, true}) {
		mHost.mHasRunLoop = refuses;
		mHost.mTimerResult = kNotImplemented;
		Initialize();
		EXPECT_EQ(Titles(), "Preset|Parameter0|Parameter1|Parameter2|Internal: GUI Idle|");
		ProcessSetup setup{kRealtime, kSample32, 9000, 44109.0};
		mpShell->setupProcessing(setup);
		TFakeChanges out;
		ProcessData data;
		data.outputParameterChanges = &out;
		data.numSamples = 4409; // one short of the period
		ProcessElsewhere(data);
		EXPECT_TRUE(out.mQueues.empty());
		data.numSamples = 1 + 4410;
		ProcessElsewhere(data);
		ASSERT_EQ(out.mQueues.size(), 2u);
		EXPECT_EQ(out.mQueues[1].mId, kVst3GuiIdle);
		EXPECT_EQ(out.mQueues[1].mPoints[0].second, out.mQueues[0].mPoints[0].second + 0.01);
		mpEngine->mLatency += 64;
		Run();
		EXPECT_EQ(mHost.Take(), "");
		mpShell->setParamNormalized(kVst3GuiIdle, 0.1);
		EXPECT_EQ(mHost.Take(), "restart8 ");
		mpShell->terminate();
	}
}

TEST_F(TVst3PluginShellHostTest, ParametersAnswerInTextAndPlainValues) {
	Initialize();
	String128 text{};
	double value = 7.0;
	char16 quarter[] = u"a quarter";
	char16 on[] = u"oN";
	EXPECT_EQ(mpShell->getParamStringByValue(1, 0.5, text), kResultOk);
	EXPECT_EQ(Narrow(text).substr(0, 3), "0.5");
	EXPECT_EQ(mpShell->getParamStringByValue(kVst3Preset, 0.5, text), kResultOk);
	EXPECT_EQ(Narrow(text), "Name2");
	EXPECT_EQ(mpShell->getParamStringByValue(kVst3Bypass, 0.6, text), kResultOk);
	EXPECT_EQ(Narrow(text), "On");
	EXPECT_EQ(mpShell->getParamStringByValue(77, 0.5, text), kResultFalse);
	EXPECT_EQ(mpShell->getParamStringByValue(1, std::numeric_limits<double>::quiet_NaN(), text), kInvalidArgument);
	EXPECT_EQ(mpShell->getParamValueByString(1, on, value), kResultFalse);
	EXPECT_EQ(mpShell->getParamValueByString(1, quarter, value), kResultOk);
	EXPECT_EQ(value, 0.25);
	EXPECT_EQ(mpShell->getParamValueByString(kVst3Bypass, on, value), kResultOk);
	EXPECT_EQ(value, 1.0);
	EXPECT_EQ(mpShell->getParamValueByString(kVst3Preset, on, value), kResultFalse);
	for (const double program : {0.0, 0.25, 0.5, 0.75}) {
		EXPECT_EQ(mpShell->getParamStringByValue(kVst3Preset, program, text), kResultOk);
		EXPECT_EQ(mpShell->getParamValueByString(kVst3Preset, text, value), kResultOk);
		EXPECT_EQ(value, program);
	}
	for (int program = 0; program <= 4; ++program) {
		const double normalized = mpShell->plainParamToNormalized(kVst3Preset, program);
		EXPECT_EQ(normalized, program / 4.0);
		EXPECT_EQ(mpShell->normalizedParamToPlain(kVst3Preset, normalized), program);
	}
	EXPECT_EQ(mpShell->setParamNormalized(1, std::numeric_limits<double>::quiet_NaN()), kInvalidArgument);
	EXPECT_EQ(mpShell->setParamNormalized(77, 0.5), kResultFalse);
	ParameterInfo info{};
	for (const int32 index : {-1, 4, std::numeric_limits<int32>::max()})
		EXPECT_EQ(mpShell->getParameterInfo(index, info), kInvalidArgument);
}

TEST_F(TVst3PluginShellHostTest, EffectTakesStereoOnly) {
	Initialize();
	EXPECT_EQ(Arrange({SpeakerArr::kStereo}, {SpeakerArr::kStereo}), kResultOk);
	EXPECT_EQ(Arrange({SpeakerArr::kMono}, {SpeakerArr::kStereo}), kResultFalse);
	EXPECT_EQ(Arrange({SpeakerArr::kStereo}, {SpeakerArr::k51}), kResultFalse);
	EXPECT_EQ(Arrange({}, {SpeakerArr::kStereo}), kResultFalse);
	EXPECT_EQ(Arrange({SpeakerArr::kStereo, SpeakerArr::kStereo}, {SpeakerArr::kStereo}), kResultFalse);
	EXPECT_EQ(mpShell->setBusArrangements(nullptr, 1, nullptr, 1), kInvalidArgument);
	SpeakerArrangement arrangement = 0;
	EXPECT_EQ(mpShell->getBusArrangement(kInput, 0, arrangement), kResultOk);
	EXPECT_EQ(arrangement, SpeakerArr::kStereo);
	EXPECT_EQ(mpShell->getBusArrangement(kInput, 1, arrangement), kInvalidArgument);
	EXPECT_EQ(mpShell->getBusArrangement(7, 0, arrangement), kInvalidArgument);
	ParamID id = 0;
	EXPECT_EQ(mpShell->getMidiControllerAssignment(0, 0, kCtrlModWheel, id), kResultFalse);
}

TEST_F(TVst3PluginShellHostTest, BussesThatAHostDidWithoutComeBack) {
	mpEngine->mOutputs = 2;
	Initialize();
	for (const std::size_t outputs : {2u, 1u, 2u}) {
		EXPECT_EQ(Arrange({SpeakerArr::kStereo}, std::vector(outputs, SpeakerArr::kStereo)), kResultOk);
		EXPECT_EQ(mpShell->getBusCount(kAudio, kOutput), static_cast<int32>(outputs));
		BusInfo info{};
		EXPECT_EQ(mpShell->getBusInfo(kAudio, kOutput, static_cast<int32>(outputs) - 1, info), kResultOk);
		EXPECT_EQ(info.channelCount, 2);
		EXPECT_EQ(std::u16string_view(info.name), outputs == 2 ? u"Output 2" : u"Output 1");
	}
}

TEST_F(TVst3PluginShellHostTest, InstrumentPublishesControllersAndHearsThemAsMidi) {
	mpDocument->mIsInstrument = true;
	Initialize();
	EXPECT_EQ(
	    Titles(), "Preset|Parameter0|Parameter1|Parameter2|MIDI: Pitchbend|MIDI: Channel Pressure|"
	              "MIDI: Modulation Wheel|MIDI: Volume|MIDI: Sustain|");
	EXPECT_EQ(mpShell->getParamNormalized(kVst3Pitchbend), 0.5);
	EXPECT_EQ(mpShell->getParamNormalized(kVst3Volume), 1.0);
	ParamID id = 0;
	EXPECT_EQ(mpShell->getMidiControllerAssignment(0, 3, kCtrlSustainOnOff, id), kResultOk);
	EXPECT_EQ(id, kVst3Sustain);
	EXPECT_EQ(mpShell->getMidiControllerAssignment(0, 3, kCtrlPan, id), kResultFalse);
	EXPECT_EQ(mpShell->getMidiControllerAssignment(1, 3, kCtrlSustainOnOff, id), kResultFalse);
	ProcessChanges({{kVst3Sustain, {{4, 1.0}}}, {kVst3ChannelPressure, {{0, 0.5}}}});
	ASSERT_EQ(mpEngine->mEvents.size(), 2u);
	EXPECT_EQ(mpEngine->mEvents[0].mStatus, 0xB0);
	EXPECT_EQ(mpEngine->mEvents[0].mData1, 64);
	EXPECT_EQ(mpEngine->mEvents[0].mData2, 127);
	EXPECT_EQ(mpEngine->mEvents[0].mSampleOffset, 4);
	EXPECT_EQ(mpEngine->mEvents[1].mStatus, 0xD0);
	EXPECT_EQ(mpEngine->mEvents[1].mData1, 64);
	EXPECT_EQ(Arrange({}, {SpeakerArr::kStereo}), kResultOk);
	EXPECT_EQ(mpShell->getBusCount(kAudio, kInput), 0);
	EXPECT_EQ(Arrange({}, {SpeakerArr::kMono}), kResultFalse);
	EXPECT_EQ(Arrange({SpeakerArr::kMono}, {SpeakerArr::kStereo}), kResultFalse);
}
