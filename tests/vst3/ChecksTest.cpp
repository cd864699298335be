// SPDX-License-Identifier: GPL-3.0-or-later
// The checks of the two test suites that VST 3 plug-ins are usually put through, by the names that those suites print.
// The first suite has a fresh instance for each, the second runs them on one and the same.
#include "framework/foundation/values/TParkMillerPRNG.h"
#include "tests/vst3/TTestHost.h"

#include <pluginterfaces/vst/ivstmidilearn.h>
#include <pluginterfaces/vst/ivstnoteexpression.h>
#include <pluginterfaces/vst/ivstparameterfunctionname.h>
#include <pluginterfaces/vst/ivstprocesscontext.h>
#include <pluginterfaces/vst/ivstunits.h>

#include <gtest/gtest.h>
#include <limits>
#include <set>
#include <thread>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr int32 kBlock = 512;
constexpr ParamID kBypass = 0x7ffffffe;

/// One stereo block: input full of a value, output full of rubbish.
class TStereoBlock {
public:
	explicit TStereoBlock(float input = 0.5f) : mSamples{Fill(input), Fill(input), Fill(7.0f), Fill(7.0f)} {
		for (AudioBusBuffers* bus : {&mIn, &mOut})
			bus->numChannels = 2;
		mIn.channelBuffers32 = mChannels;
		mOut.channelBuffers32 = mChannels + 2;
		mData.numSamples = kBlock;
		mData.numInputs = mData.numOutputs = 1;
		mData.inputs = &mIn;
		mData.outputs = &mOut;
	}

	TStereoBlock(const TStereoBlock&) = delete;
	TStereoBlock& operator=(const TStereoBlock&) = delete;

	tresult Run(const TTestPlugin& plugin) { return plugin.mpProcessor->process(mData); }

	bool IsPassedThrough() const { return mSamples[2] == mSamples[0] && mSamples[3] == mSamples[1]; }

	float Peak() const {
		float peak = 0.0f;
		for (const std::vector<float>* channel : {&mSamples[2], &mSamples[3]})
			for (const float sample : *channel)
				peak = sample - sample == 0.0f ? std::max(peak, std::abs(sample)) : sample;
		return peak;
	}

	static std::vector<float> Fill(float value) { return std::vector<float>(kBlock, value); }

	std::vector<float> mSamples[4];
	float* mChannels[4] = {mSamples[0].data(), mSamples[1].data(), mSamples[2].data(), mSamples[3].data()};
	AudioBusBuffers mIn;
	AudioBusBuffers mOut;
	ProcessData mData;
};

void RunSome(const TTestPlugin& plugin, int blocks = 3) {
	for (int i = 0; i < blocks; ++i)
		EXPECT_EQ(TStereoBlock().Run(plugin), kResultOk);
}

void SetAllAtRandom(const TTestPlugin& plugin, unsigned int seed) {
	TParkMillerPRNG random;
	random.SetSeed(seed);
	for (ParamID id = 0; id < 210; ++id)
		plugin.mpController->setParamNormalized(id, random.NextDouble());
}

// The first suite, general tests

void ScanEditorClasses(TTestPlugin& plugin) {
	EXPECT_EQ(plugin.mpController->createView("no such view"), nullptr);
	EXPECT_EQ(plugin.mpController->createView(nullptr), nullptr);
}

void ScanBuses(TTestPlugin& plugin) {
	for (const auto& [type, direction, count, channels] :
	     {std::tuple{kAudio, kInput, 1, 2}, {kAudio, kOutput, 1, 2}, {kEvent, kInput, 1, 1}, {kEvent, kOutput, 0, 0}}) {
		ASSERT_EQ(plugin.mpComponent->getBusCount(type, direction), count);
		for (int32 i = 0; i < count; ++i) {
			BusInfo info{};
			ASSERT_EQ(plugin.mpComponent->getBusInfo(type, direction, i, info), kResultOk);
			EXPECT_NE(Narrow(info.name), "");
			EXPECT_EQ(info.mediaType, type);
			EXPECT_EQ(info.direction, direction);
			EXPECT_EQ(info.channelCount, channels);
			EXPECT_EQ(info.busType, kMain);
		}
	}
}

void ScanParameters(TTestPlugin& plugin) {
	std::set<ParamID> ids;
	std::set<std::string> titles;
	int programParameters = 0;
	for (int32 i = 0; i < plugin.mpController->getParameterCount(); ++i) {
		ParameterInfo info{};
		ASSERT_EQ(plugin.mpController->getParameterInfo(i, info), kResultOk);
		EXPECT_TRUE(ids.insert(info.id).second && info.id < 0x80000000u) << i;
		EXPECT_NE(Narrow(info.title), "") << i;
		titles.insert(Narrow(info.title));
		EXPECT_TRUE(info.stepCount >= 0 && info.defaultNormalizedValue >= 0.0 && info.defaultNormalizedValue <= 1.0);
		EXPECT_EQ(info.unitId, kRootUnitId) << i;
		EXPECT_FALSE((info.flags & ParameterInfo::kCanAutomate) && (info.flags & ParameterInfo::kIsReadOnly)) << i;
		EXPECT_FALSE(info.flags & ParameterInfo::kIsBypass) << i;
		programParameters += (info.flags & ParameterInfo::kIsProgramChange) != 0;
	}
	EXPECT_EQ(ids.size(), 211u);
	EXPECT_GT(titles.size(), 130u); // those without a function share their names
	EXPECT_EQ(programParameters, 1);
}

void MidiMapping(TTestPlugin& plugin) {
	const auto mapping = plugin.As<IMidiMapping>(IMidiMapping_iid);
	ASSERT_TRUE(mapping);
	ParamID id = 0;
	for (const int32 bus : {-1, 0, 1})
		for (const auto channel : std::initializer_list<int16>{-1, 0, 15, 16})
			for (int controller = -1; controller <= kCountCtrlNumber + 1; ++controller)
				EXPECT_EQ(
				    mapping->getMidiControllerAssignment(bus, channel, static_cast<CtrlNumber>(controller), id),
				    kResultFalse);
}

void ScanUnitsAndPrograms(TTestPlugin& plugin) {
	const auto units = plugin.As<IUnitInfo>(IUnitInfo_iid);
	ASSERT_TRUE(units);
	ASSERT_EQ(units->getUnitCount(), 1);
	UnitInfo unit{};
	ASSERT_EQ(units->getUnitInfo(0, unit), kResultOk);
	EXPECT_EQ(unit.id, kRootUnitId);
	EXPECT_EQ(unit.parentUnitId, kNoParentUnitId);
	EXPECT_NE(units->getUnitInfo(1, unit), kResultOk);
	ASSERT_EQ(units->getProgramListCount(), 1);
	ProgramListInfo list{};
	ASSERT_EQ(units->getProgramListInfo(0, list), kResultOk);
	EXPECT_EQ(list.id, unit.programListId);
	ASSERT_EQ(list.programCount, 16);
	String128 name{};
	for (int32 i = 0; i < 16; ++i) {
		EXPECT_EQ(units->getProgramName(list.id, i, name), kResultOk);
		EXPECT_NE(Narrow(name), "");
	}
	EXPECT_EQ(units->getProgramName(list.id, 16, name), kResultFalse);
	EXPECT_EQ(units->getProgramName(list.id + 1, 0, name), kResultFalse);
	ParameterInfo parameter{};
	ASSERT_EQ(plugin.mpController->getParameterInfo(0, parameter), kResultOk);
	for (int32 i = 0; i < 16; ++i) {
		EXPECT_EQ(plugin.mpController->setParamNormalized(parameter.id, i / 16.0), kResultOk);
		EXPECT_EQ(plugin.mpController->getParamNormalized(parameter.id), i / 16.0);
	}
}

void TerminateInitialize(TTestPlugin& plugin) {
	EXPECT_EQ(plugin.mpComponent->terminate(), kResultOk);
	EXPECT_EQ(plugin.mpComponent->initialize(static_cast<IHostApplication*>(&plugin.mHost)), kResultOk);
	plugin.Activate();
	RunSome(plugin);
}

void StateTransitions(TTestPlugin& plugin) {
	// A block before anything else, processing switched without activation, and what comes again.
	RunSome(plugin);
	for (const TBool state : {TBool{0}, TBool{1}, TBool{1}, TBool{0}, TBool{0}}) {
		plugin.mpProcessor->setProcessing(state);
		EXPECT_EQ(plugin.mpComponent->setActive(state), kResultOk);
		RunSome(plugin);
	}
	// Set up while it is active, and suspended without a word on processing.
	for (int round = 0; round < 3; ++round) {
		plugin.Activate();
		RunSome(plugin);
		EXPECT_EQ(plugin.mpComponent->setActive(0), kResultOk);
		EXPECT_EQ(plugin.mpComponent->setActive(1), kResultOk);
		RunSome(plugin);
	}
}

void RefusedSampleSizes(TTestPlugin& plugin) {
	plugin.Activate();
	for (const int32 size : {int32{kSample64}, kSample64 + 1, -1}) {
		ProcessSetup setup{kRealtime, size, kBlock, 44100.0};
		EXPECT_EQ(plugin.mpProcessor->canProcessSampleSize(size), kResultFalse);
		EXPECT_EQ(plugin.mpProcessor->setupProcessing(setup), kInvalidArgument);
		TFakeChanges changes({{60, {{0, 0.25}}}});
		TStereoBlock block;
		block.mData.symbolicSampleSize = size;
		block.mData.inputParameterChanges = &changes;
		EXPECT_EQ(block.Run(plugin), kInvalidArgument);
		EXPECT_EQ(block.mSamples[0], TStereoBlock::Fill(0.5f));
		EXPECT_EQ(block.mSamples[2], TStereoBlock::Fill(7.0f));
		RunSome(plugin);
	}
}

void BusActivationAndArrangement(TTestPlugin& plugin) {
	SpeakerArrangement stereo = SpeakerArr::kStereo;
	SpeakerArrangement got = 0;
	for (const BusDirection direction : {kInput, kOutput}) {
		for (const TBool state : {TBool{0}, TBool{1}})
			EXPECT_EQ(plugin.mpComponent->activateBus(kAudio, direction, 0, state), kResultOk);
		for (const int32 index : {-1, 1, std::numeric_limits<int32>::max()}) {
			BusInfo info{};
			EXPECT_EQ(plugin.mpComponent->activateBus(kAudio, direction, index, 1), kInvalidArgument);
			EXPECT_EQ(plugin.mpComponent->getBusInfo(kAudio, direction, index, info), kInvalidArgument);
			EXPECT_EQ(plugin.mpProcessor->getBusArrangement(direction, index, got), kInvalidArgument);
		}
	}
	EXPECT_EQ(plugin.mpComponent->activateBus(kEvent, kInput, 0, 0), kResultOk);
	for (SpeakerArrangement in = 0; in < 64; ++in) {
		for (const SpeakerArrangement out : {in, stereo, SpeakerArr::kMono, SpeakerArr::k71Cine}) {
			SpeakerArrangement wanted[2] = {in, out};
			const bool isStereo = std::popcount(in) == 2 && std::popcount(out) == 2;
			EXPECT_EQ(
			    plugin.mpProcessor->setBusArrangements(wanted, 1, wanted + 1, 1), isStereo ? kResultOk : kResultFalse);
			EXPECT_EQ(plugin.mpProcessor->getBusArrangement(kInput, 0, got), kResultOk);
			EXPECT_EQ(std::popcount(got), 2);
		}
	}
	// Whatever was refused, it goes on as stereo.
	plugin.Activate();
	RunSome(plugin);
}

void OptionalInterfaces(TTestPlugin& plugin) {
	for (const FUID& id :
	     {INoteExpressionController::iid, IKeyswitchController::iid, IMidiLearn::iid, IProcessContextRequirements::iid,
	      IParameterFunctionName::iid})
		EXPECT_FALSE(plugin.As<FUnknown>(id));
	// Every interface leads back to the same object.
	const auto unknown = plugin.As<FUnknown>(FUnknown_iid);
	for (const auto* id : {&IComponent_iid, &IAudioProcessor_iid, &IEditController_iid, &IConnectionPoint_iid})
		EXPECT_EQ(AskFor<FUnknown>(plugin.As<FUnknown>(*id), FUnknown_iid), unknown);
}

// The first suite, processing tests

void ProcessInAnotherThread(TTestPlugin& plugin) {
	plugin.Setup(44100.0, kBlock);
	plugin.mpComponent->setActive(1);
	std::thread([&] {
		plugin.mpProcessor->setProcessing(1);
		TStereoBlock block;
		for (int i = 0; i < 9999 && !testing::Test::HasFailure(); ++i)
			EXPECT_EQ(block.Run(plugin), kResultOk);
		plugin.mpProcessor->setProcessing(0);
	}).join();
}

void SilenceFlags(TTestPlugin& plugin) {
	plugin.Activate();
	for (uint64 flags = 0; flags < 4; ++flags) {
		TStereoBlock block;
		for (int channel = 0; channel < 2; ++channel)
			if (flags >> channel & 1)
				block.mSamples[channel].assign(kBlock, 0.0f);
		block.mIn.silenceFlags = flags;
		EXPECT_EQ(block.Run(plugin), kResultOk);
		EXPECT_TRUE(block.IsPassedThrough()) << flags;
	}
}

void SilenceProcessing(TTestPlugin& plugin) {
	ASSERT_EQ(plugin.Load(MakeTestState(8)), kResultOk);
	plugin.Activate();
	TStereoBlock block(0.0f);
	for (int i = 0; i < 20 * 44100 / kBlock && !testing::Test::HasFailure(); ++i) {
		block.mIn.silenceFlags = 3;
		EXPECT_EQ(block.Run(plugin), kResultOk);
		EXPECT_LE(block.Peak(), 0.000132184f) << i;
	}
}

void ParametersFlush(TTestPlugin& plugin) {
	plugin.Activate();
	TStereoBlock block;
	TFakeChanges out;
	block.mData.numSamples = 0;
	block.mData.outputParameterChanges = &out;
	double value = 0.1;
	const auto flush = [&] {
		value += 0.1;
		TFakeChanges changes({{60, {{0, value}}}});
		block.mData.inputParameterChanges = &changes;
		EXPECT_EQ(block.Run(plugin), kResultOk);
		EXPECT_EQ(plugin.mpController->getParamNormalized(60), static_cast<float>(value));
	};
	flush();
	block.mIn.channelBuffers32 = block.mOut.channelBuffers32 = nullptr;
	flush();
	block.mIn.numChannels = block.mOut.numChannels = 0;
	flush();
	block.mData.inputs = block.mData.outputs = nullptr;
	flush();
	block.mData.numInputs = block.mData.numOutputs = 0;
	flush();
	block.mData.inputParameterChanges = block.mData.outputParameterChanges = nullptr;
	EXPECT_EQ(block.Run(plugin), kResultOk);
}

void VariableBlockSize(TTestPlugin& plugin) {
	plugin.Activate();
	for (int32 samples = 0; samples <= kBlock; ++samples) {
		TStereoBlock block;
		block.mData.numSamples = samples;
		EXPECT_EQ(block.Run(plugin), kResultOk);
		EXPECT_TRUE(samples == 0 || block.mSamples[2][static_cast<std::size_t>(samples) - 1] == 0.5f);
		EXPECT_TRUE(samples == kBlock || block.mSamples[2][static_cast<std::size_t>(samples)] == 7.0f);
	}
}

void BypassPersistence(TTestPlugin& plugin) {
	ASSERT_EQ(plugin.Load(MakeTestState(8)), kResultOk);
	plugin.Activate();
	EXPECT_EQ(plugin.mpController->setParamNormalized(kBypass, 1.0), kResultOk);
	// The state is the bank: loading one does not switch the bypass off.
	EXPECT_EQ(plugin.Load(plugin.State()), kResultOk);
	EXPECT_EQ(plugin.mpController->getParamNormalized(kBypass), 1.0);
	TStereoBlock block;
	EXPECT_EQ(block.Run(plugin), kResultOk);
	EXPECT_TRUE(block.IsPassedThrough());
}

void ProcessInputOverwriting(TTestPlugin& plugin) {
	plugin.Activate();
	for (const double bypass : {0.0, 1.0})
		for (const auto& [left, right] : {std::pair{2, 3}, {0, 1}, {1, 0}, {1, 3}, {2, 0}}) {
			plugin.mpController->setParamNormalized(kBypass, bypass);
			TStereoBlock block;
			block.mSamples[1].assign(kBlock, -0.25f);
			float* outputs[2] = {block.mChannels[left], block.mChannels[right]};
			block.mOut.channelBuffers32 = outputs;
			EXPECT_EQ(block.Run(plugin), kResultOk);
			const auto& samples = block.mSamples;
			EXPECT_TRUE(samples[left] == TStereoBlock::Fill(0.5f) && samples[right] == TStereoBlock::Fill(-0.25f));
			EXPECT_TRUE(right == 0 || samples[0] == TStereoBlock::Fill(0.5f));
			EXPECT_TRUE(left == 1 || samples[1] == TStereoBlock::Fill(-0.25f));
		}
}

// The second suite

void PluginState(TTestPlugin& plugin) {
	plugin.Load(MakeTestState(5));
	const TTestState kept = plugin.State();
	const std::vector<double> values = plugin.Values();
	SetAllAtRandom(plugin, 6);
	EXPECT_NE(plugin.State(), kept);
	EXPECT_EQ(plugin.Load(kept), kResultOk);
	EXPECT_EQ(plugin.State(), kept);
	EXPECT_EQ(plugin.Values(), values);
	plugin.Tick();
	EXPECT_EQ(plugin.State(), kept);
}

void AudioProcessing(TTestPlugin& plugin) {
	plugin.Load(MakeTestState(5));
	for (const double rate : {44100.0, 48000.0, 96000.0}) {
		plugin.Activate(rate, kBlock);
		for (const float sample :
		     {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), 1e-40f, 1e30f}) {
			EXPECT_EQ(TStereoBlock(sample).Run(plugin), kResultOk);
			TStereoBlock block;
			for (int i = 0; i < static_cast<int>(rate) / kBlock; ++i)
				EXPECT_EQ(block.Run(plugin), kResultOk);
			EXPECT_LT(block.Peak(), 100.0f) << sample; // not for NaN
		}
		plugin.Deactivate();
	}
}

void NonReleasingAudioProcessing(TTestPlugin& plugin) {
	for (const int32 block : {64, 128, 256, kBlock, 1024})
		for (const double rate : {44100.0, 48000.0, 96000.0}) {
			plugin.Activate(rate, block);
			RunSome(plugin);
		}
}

void AutomationAndFuzz(TTestPlugin& plugin) {
	plugin.Activate();
	for (const int32 samples : {32, kBlock})
		for (unsigned int seed = 0; seed < 50; ++seed) {
			SetAllAtRandom(plugin, seed);
			TStereoBlock block;
			block.mData.numSamples = samples;
			EXPECT_EQ(block.Run(plugin), kResultOk);
			EXPECT_LT(block.Peak(), 100.0f);
		}
}

/// Text and value of each parameter lead to each other, and plain values are the normalised ones.
void Parameters(TTestPlugin& plugin) {
	for (int32 i = 0; i < plugin.mpController->getParameterCount(); ++i) {
		ParameterInfo info{};
		plugin.mpController->getParameterInfo(i, info);
		double previous = -1.0;
		for (int step = 0; step <= 16; ++step) {
			const double value = step / 16.0;
			String128 text{};
			ASSERT_EQ(plugin.mpController->getParamStringByValue(info.id, value, text), kResultOk);
			const double plain = plugin.mpController->normalizedParamToPlain(info.id, value);
			EXPECT_GT(plain, previous) << i;
			EXPECT_EQ(plugin.mpController->plainParamToNormalized(info.id, plain), value) << i;
			previous = plain;
			double parsed = 0.0;
			String128 again{};
			if (plugin.mpController->getParamValueByString(info.id, text, parsed) != kResultOk)
				continue;
			plugin.mpController->getParamStringByValue(info.id, parsed, again);
			EXPECT_EQ(Narrow(again), Narrow(text)) << i << " " << value;
		}
	}
}

void OnTwoThreads(TTestPlugin& plugin, void (*work)(TTestPlugin& plugin, unsigned int round)) {
	plugin.Activate();
	std::atomic<bool> isOver{false};
	std::thread audio([&] {
		while (!isOver)
			RunSome(plugin, 1);
	});
	for (unsigned int round = 0; round < 20; ++round)
		work(plugin, round);
	isOver = true;
	audio.join();
	plugin.Deactivate();
}

void BackgroundThreadState(TTestPlugin& plugin) {
	static TTestState sState;
	sState = plugin.State();
	OnTwoThreads(plugin, [](TTestPlugin& running, unsigned int) {
		std::thread([&] {
			EXPECT_EQ(running.Load(sState), kResultOk);
			EXPECT_EQ(running.State(), sState);
		}).join();
		running.Tick();
	});
}

void ParameterThreadSafety(TTestPlugin& plugin) {
	OnTwoThreads(plugin, [](TTestPlugin& running, unsigned int round) {
		SetAllAtRandom(running, round);
		running.Tick();
	});
}

struct TCheck {
	const char* mName;
	void (*mRun)(TTestPlugin& plugin);

	friend std::ostream& operator<<(std::ostream& stream, const TCheck& check) { return stream << check.mName; }
};

constexpr TCheck kFirstSuite[] = {
    {"ScanEditorClasses", ScanEditorClasses},
    {"ScanBuses", ScanBuses},
    {"ScanParameters", ScanParameters},
    {"MidiMapping", MidiMapping},
    {"ScanUnitsScanProgramsCheckUnitStructure", ScanUnitsAndPrograms},
    {"TerminateInitialize", TerminateInitialize},
    {"ValidInvalidAndIdenticalStateTransitionSuspendResume", StateTransitions},
    {"SixtyFourBitTests", RefusedSampleSizes},
    {"BusConsistencyBusActivationArrangementInvalidIndex", BusActivationAndArrangement},
    {"NoteExpressionKeyswitchMidiLearnContextRequirementsFunctionName", OptionalInterfaces},
    {"ProcessFunctionRunningInAnotherThread", ProcessInAnotherThread},
    {"SilenceFlags", SilenceFlags},
    {"SilenceProcessing", SilenceProcessing},
    {"ParametersFlush", ParametersFlush},
    {"VariableBlockSize", VariableBlockSize},
    {"ParameterBypassPersistence", BypassPersistence},
    {"ProcessInputOverwriting", ProcessInputOverwriting},
};

constexpr TCheck kSecondSuite[] = {
    {"PluginPrograms", ScanUnitsAndPrograms},
    {"PluginState", PluginState},
    {"AudioProcessing", AudioProcessing},
    {"BasicBus", BusActivationAndArrangement},
    {"NonReleasingAudioProcessing", NonReleasingAudioProcessing},
    {"AutomationFuzzParameters", AutomationAndFuzz},
    {"Parameters", Parameters},
    {"BackgroundThreadState", BackgroundThreadState},
    {"ParameterThreadSafety", ParameterThreadSafety},
};

class TFirstSuiteTest : public testing::TestWithParam<TCheck> {};

} // namespace

TEST_P(TFirstSuiteTest, Passes) {
	const TVst3Module module;
	TTestPlugin plugin(module);
	GetParam().mRun(plugin);
}

INSTANTIATE_TEST_SUITE_P(Checks, TFirstSuiteTest, testing::ValuesIn(kFirstSuite), [](const auto& check) {
	return check.param.mName;
});

TEST(TSecondSuiteTest, PassesOnOneInstance) {
	const TVst3Module module;
	TTestPlugin plugin(module);
	for (const TCheck& check : kSecondSuite) {
		SCOPED_TRACE(check.mName);
		check.mRun(plugin);
	}
}
