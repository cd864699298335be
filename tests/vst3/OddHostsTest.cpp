// SPDX-License-Identifier: GPL-3.0-or-later
// Hosts that call in odd orders, from odd threads and with odd arguments; and hosts that do everything at once.
#include "framework/foundation/values/TParkMillerPRNG.h"
#include "tests/vst3/TTestHost.h"

#include <pluginterfaces/gui/iplugview.h>
#include <pluginterfaces/vst/ivstmessage.h>
#include <pluginterfaces/vst/ivstunits.h>

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <malloc.h>
#include <thread>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr int32 kMost = std::numeric_limits<int32>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// Calls anything with anything. What is right is decided by the sanitizers and by what comes after.
class TErraticHost {
public:
	TErraticHost(FUnknown* plugin, unsigned int seed)
	    : mpComponent(AskFor<IComponent>(plugin, IComponent_iid)),
	      mpProcessor(AskFor<IAudioProcessor>(plugin, IAudioProcessor_iid)),
	      mpController(AskFor<IEditController>(plugin, IEditController_iid)),
	      mpUnits(AskFor<IUnitInfo>(plugin, IUnitInfo_iid)),
	      mpPoint(AskFor<IConnectionPoint>(plugin, IConnectionPoint_iid)) {
		mRandom.SetSeed(seed);
	}

	~TErraticHost() {
		mpController->setComponentHandler(nullptr);
		mpComponent->terminate();
	}

	TErraticHost(const TErraticHost&) = delete;
	TErraticHost& operator=(const TErraticHost&) = delete;

	void CallSomething() {
		TFakeHostStream stream(std::vector<uint8>(static_cast<std::size_t>(Pick(9)), static_cast<uint8>(Pick(256))), 3);
		SpeakerArrangement arrangements[] = {SpeakerArr::kStereo, Odd() ? SpeakerArr::kMono : SpeakerArr::kStereo};
		ProcessSetup setup{kRealtime, Pick(3), OddNumber(), OddValue() * 48000.0};
		IBStream* const anyStream = Odd() ? nullptr : &stream;
		BusInfo bus{};
		UnitInfo unit{};
		UnitID id = 0;
		ParameterInfo info{};
		ProgramListInfo list{};
		String128 text{};
		char16 given[] = u"2.5 \u00e9 \U0001F600";
		ParamValue value = 0.0;
		const std::function<void()> calls[] = {
		    [&] { mpComponent->initialize(Odd() ? nullptr : static_cast<IHostApplication*>(&mHost)); },
		    [&] {
			    if (Odd())
				    mpComponent->terminate();
		    },
		    [&] { mpComponent->setActive(static_cast<TBool>(Pick(3))); },
		    [&] { mpProcessor->setupProcessing(setup); },
		    [&] { mpProcessor->setProcessing(static_cast<TBool>(Pick(2))); },
		    [&] {
			    mpProcessor->setBusArrangements(Odd() ? nullptr : arrangements, OddNumber() % 3, arrangements, Pick(3));
		    },
		    [&] { mpComponent->getBusInfo(Pick(3), Pick(3), OddNumber(), bus); },
		    [&] { mpComponent->activateBus(OddNumber(), Pick(3), OddNumber(), 1); },
		    [&] { mpComponent->setState(anyStream); },
		    [&] { mpComponent->getState(anyStream); },
		    [&] { mpController->setState(anyStream); },
		    [&] { mpController->setComponentState(anyStream); },
		    [&] { mpController->setComponentHandler(Odd() ? nullptr : static_cast<IComponentHandler*>(&mHost)); },
		    [&] { mpController->getParameterInfo(OddNumber(), info); },
		    [&] { mpController->getParamStringByValue(OddId(), OddValue(), Odd() ? nullptr : text); },
		    [&] { mpController->getParamValueByString(OddId(), Odd() ? nullptr : given, value); },
		    [&] { mpController->normalizedParamToPlain(OddId(), OddValue()); },
		    [&] { mpController->plainParamToNormalized(OddId(), OddValue()); },
		    [&] { mpController->getParamNormalized(OddId()); },
		    [&] {
			    if (IPlugView* view = mpController->createView(Odd() ? nullptr : "editor"))
				    view->release();
		    },
		    [&] { mpUnits->getUnitInfo(OddNumber(), unit); },
		    [&] { mpUnits->getProgramListInfo(OddNumber(), list); },
		    [&] { mpUnits->getProgramName(static_cast<ProgramListID>(OddId()), OddNumber(), Odd() ? nullptr : text); },
		    [&] { mpUnits->getUnitByBus(Pick(3), Pick(3), OddNumber(), OddNumber(), id); },
		    [&] { mpUnits->setUnitProgramData(OddNumber(), OddNumber(), anyStream); },
		    [&] { mpPoint->connect(Odd() ? nullptr : mpPoint.get()); },
		    [&] { mpPoint->disconnect(Odd() ? nullptr : mpPoint.get()); },
		    [&] { mpPoint->notify(nullptr); },
		    [&] { mpProcessor->getBusArrangement(Pick(3), OddNumber(), arrangements[0]); },
		    [&] {
			    if (mHost.mpTimer)
				    mHost.mpTimer->onTimer();
		    },
		    [&] {
			    mpProcessor->getTailSamples();
			    mpProcessor->getLatencySamples();
		    },
		    [&] { mpController->setParamNormalized(OddId(), OddValue()); },
		};
		if (const auto call = static_cast<std::size_t>(Pick(36)); call < std::size(calls))
			calls[call]();
		else
			Process();
	}

private:
	int32 Pick(int32 below) { return static_cast<int32>(mRandom.NextDouble() * below); }

	bool Odd() { return Pick(3) == 0; }

	int32 OddNumber() {
		constexpr int32 kNumbers[] = {0, 1, 2, 15, 16, 64, 209, 210, 512, -1, -64, kMost, -kMost - 1};
		return kNumbers[Pick(std::size(kNumbers))];
	}

	ParamID OddId() {
		return Odd() ? ParamID{0x7ffffff5} + static_cast<ParamID>(Pick(14)) : static_cast<ParamID>(Pick(212));
	}

	double OddValue() {
		constexpr double kValues[] = {0.0, 0.5, 1.0, -0.1, 1.1, 1e300, -1e300, 1e-310, kInfinity, kNaN};
		return Odd() ? kValues[Pick(std::size(kValues))] : mRandom.NextDouble();
	}

	void Process() {
		TFakeChanges changes({{OddId(), {{OddNumber(), OddValue()}, {Pick(64), OddValue()}}}, {OddId(), {}}});
		TFakeEvents events;
		Event event{};
		event.type = static_cast<uint16>(Odd() ? OddNumber() : Pick(4));
		event.sampleOffset = OddNumber();
		const auto pitch = static_cast<int16>(OddNumber());
		event.noteOn = {static_cast<int16>(OddNumber()), pitch, 0.0f, static_cast<float>(OddValue()), 0, -1};
		events.mEvents.assign(3, event);
		ProcessContext context{};
		context.state = Odd() ? ~0u : ProcessContext::kPlaying | ProcessContext::kTempoValid;
		context.tempo = OddValue() * 300.0;
		context.projectTimeMusic = OddValue();
		AudioBusBuffers busses[2];
		for (AudioBusBuffers& bus : busses) {
			bus.numChannels = Pick(4);
			bus.silenceFlags = static_cast<uint64>(Pick(8));
			bus.channelBuffers32 = Odd() ? nullptr : mChannels;
		}
		ProcessData data;
		data.symbolicSampleSize = Odd() && Odd() ? kSample64 : kSample32;
		data.numSamples = Odd() ? std::min(OddNumber(), 1024) : Pick(65);
		data.numInputs = Pick(3);
		data.numOutputs = Pick(3);
		data.inputs = Odd() ? nullptr : busses;
		data.outputs = Odd() ? nullptr : busses;
		data.inputParameterChanges = Odd() ? nullptr : &changes;
		data.inputEvents = Odd() ? nullptr : &events;
		data.processContext = Odd() ? nullptr : &context;
		mpProcessor->process(data);
	}

	TParkMillerPRNG mRandom;
	TFakeVst3Host mHost;
	IPtr<IComponent> mpComponent;
	IPtr<IAudioProcessor> mpProcessor;
	IPtr<IEditController> mpController;
	IPtr<IUnitInfo> mpUnits;
	IPtr<IConnectionPoint> mpPoint;
	std::vector<float> mSamples[4]{
	    std::vector<float>(1024), std::vector<float>(1024), std::vector<float>(1024), std::vector<float>(1024)};
	float* mChannels[4] = {mSamples[0].data(), mSamples[1].data(), nullptr, mSamples[3].data()};
};

void LiveOnce() {
	const TVst3Module module;
	TTestPlugin plugin(module);
	plugin.Load(plugin.State());
	plugin.Activate();
	TTestSession::Busy(3, 20).Play(plugin);
	plugin.Tick();
}

auto CountEntries(const char* folder) {
	return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
}

} // namespace

TEST(OddHostsTest, AnyCallsInAnyOrderWithAnythingLeaveItsNeighbourUnharmed) {
	const TVst3Module module;
	TTestPlugin neighbour(module);
	neighbour.Load(MakeTestState(4));
	const TTestState kept = neighbour.State();
	for (unsigned int seed = 1; seed <= 4; ++seed) {
		TErraticHost host(module.Make<FUnknown>(FUnknown_iid), seed);
		for (int call = 0; call < 2000; ++call)
			host.CallSomething();
	}
	neighbour.Tick();
	EXPECT_EQ(neighbour.State(), kept);
	neighbour.Activate();
	TTestSession::Busy(5, 10).Play(neighbour);
}

TEST(OddHostsTest, DamagedStatesNeverHarm) {
	const TVst3Module module;
	TTestPlugin plugin(module);
	const TTestState whole = MakeTestState(4);
	ASSERT_EQ(plugin.Load(whole), kResultOk);
	TParkMillerPRNG random;
	random.SetSeed(11);
	plugin.Activate();
	for (int round = 0; round < 60; ++round) {
		TTestState damaged = whole;
		const auto at = static_cast<std::size_t>(random.NextDouble() * static_cast<double>(whole.size()));
		if (round % 3 == 0)
			damaged.resize(at);
		else
			for (std::size_t i = at; i < std::min(at + 20, damaged.size()); i += 3)
				damaged[i] = static_cast<uint8>(random.NextDouble() * 256.0);
		// A stream that ends early is refused and changes nothing; what the bank's reader makes of its text is its own.
		const TTestState before = plugin.State();
		const tresult result = plugin.Load(damaged);
		if (round % 3 == 0) {
			EXPECT_EQ(result, kResultFalse);
			EXPECT_EQ(plugin.State(), before);
		}
		TTestSession::Busy(static_cast<unsigned int>(round), 1).Play(plugin);
	}
	ASSERT_EQ(plugin.Load(whole), kResultOk);
	EXPECT_EQ(plugin.State(), whole);
}

TEST(OddHostsTest, EverythingAtOnceOnThreadsOfTheirOwn) {
	const TVst3Module module;
	TTestPlugin plugin(module);
	const TTestState states[] = {MakeTestState(1), MakeTestState(2)};
	plugin.Load(states[0]);
	plugin.Activate();
	std::atomic<bool> isOver{false};
	std::thread audio([&] {
		const TTestSession session = TTestSession::Busy(6, 5);
		while (!isOver)
			session.Play(plugin, EBuffers::kApart, ETicks::kWithout);
	});
	// Elsewhere instances come and go, each on a thread of its own, released on another one.
	std::thread others([&] {
		while (!isOver) {
			auto other = std::make_unique<TTestPlugin>(module);
			other->Load(states[1]);
			std::thread([&] { other = nullptr; }).join();
		}
	});
	for (int round = 0; round < 24; ++round) {
		for (ParamID id = 0; id < 210; id += 7)
			plugin.mpController->setParamNormalized(id, round / 24.0);
		plugin.mpController->setParamNormalized(0x7ffffffd, round % 3 / 16.0);
		if (round % 4 == 0) {
			EXPECT_EQ(plugin.Load(states[round / 4 % 2]), kResultOk);
		}
		plugin.State();
		plugin.Tick();
	}
	isOver = true;
	audio.join();
	others.join();
	EXPECT_EQ(plugin.mHost.Take().find("begin"), std::string::npos); // the host's own changes are no edits
	plugin.Deactivate();
	plugin.Load(states[1]);
	EXPECT_EQ(plugin.State(), states[1]);
}

TEST(OddHostsTest, UnloadingLeavesNoThreadNoHandleNoMemory) {
	LiveOnce();
	const auto threads = CountEntries("/proc/self/task");
	const auto handles = CountEntries("/proc/self/fd");
	const auto mappings = [] { return mallinfo2().uordblks + mallinfo2().hblkhd; };
	const auto before = mappings();
	for (int round = 0; round < 4; ++round)
		LiveOnce();
	EXPECT_EQ(CountEntries("/proc/self/task"), threads);
	EXPECT_EQ(CountEntries("/proc/self/fd"), handles);
	// Four lives of tens of megabytes. What the loader keeps for itself is far less than a page per life.
	EXPECT_LT(mappings(), before + 32768);
}
