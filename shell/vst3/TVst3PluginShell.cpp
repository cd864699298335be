// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/vst3/TVst3PluginShell.h"

#include "framework/document/observables/TObservableBang.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/files/TLog.h"
#include "shell/vst3/TVst3PluginEditor.h"
#include "shell/vst3/TVst3PluginParameter.h"
#include "shell/vst3/Vst3HostCall.h"
#include "shell/vst3/Vst3State.h"
#include "shell/vst3/Vst3Text.h"

#include <pluginterfaces/vst/ivsthostapplication.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <utility>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr const char* kLogCategory = "VST3 Shell";
constexpr std::size_t kMidiCapacity = 256;
constexpr int kTimerMilliseconds = 10;

// Far above what any host asks for; what the effects keep for some seconds stays countable in an int32.
constexpr double kHighestSampleRate = 1.0e7;
constexpr int32 kLongestBlock = 1 << 20;

struct TRange {
	ParamID mId;
	const char16_t* mTitle;
	ParamValue mMinimum;
	ParamValue mMaximum;
	ParamValue mDefault;
	int32 mSteps;
	int32 mFlags;
};

constexpr TRange kMidiParameters[] = {
    {kVst3Pitchbend, u"MIDI: Pitchbend", -1.0, 1.0, 0.0, 0, ParameterInfo::kCanAutomate},
    {kVst3ChannelPressure, u"MIDI: Channel Pressure", 0.0, 1.0, 1.0, 0, ParameterInfo::kCanAutomate},
    {kVst3ModulationWheel, u"MIDI: Modulation Wheel", 0.0, 1.0, 0.0, 0, ParameterInfo::kCanAutomate},
    {kVst3Volume, u"MIDI: Volume", 0.0, 1.0, 1.0, 0, ParameterInfo::kCanAutomate},
    {kVst3Sustain, u"MIDI: Sustain", 0.0, 1.0, 0.0, 1, ParameterInfo::kCanAutomate},
};

constexpr TRange kGuiIdleParameter{kVst3GuiIdle, u"Internal: GUI Idle", 0.0, 100.0, 0.0, 1, ParameterInfo::kIsReadOnly};

Parameter* MakeRangeParameter(const TRange& range) {
	return new RangeParameter(
	    range.mTitle, range.mId, nullptr, range.mMinimum, range.mMaximum, range.mDefault, range.mSteps, range.mFlags);
}

/// The list of programs. Its plain value is the program's index; there is one step more than programs.
class TPresetParameter final : public Parameter {
public:
	explicit TPresetParameter(int32 programs)
	    : Parameter(
	          u"Preset", kVst3Preset, nullptr, 0.0, programs,
	          ParameterInfo::kIsProgramChange | ParameterInfo::kIsList) {}

	ParamValue toPlain(ParamValue value) const override { return std::round(value * info.stepCount); }

	ParamValue toNormalized(ParamValue plain) const override { return plain / info.stepCount; }
};

bool IsStereo(SpeakerArrangement arrangement) {
	return std::popcount(arrangement) == 2;
}

int Channels(SpeakerArrangement arrangement) {
	return std::popcount(arrangement);
}

} // namespace

TVst3PluginShell::TVst3PluginShell(TDocument* document, TEngine* engine, TGui* gui, TReleaser releaser)
    : TAudioPluginShell(document, engine, gui),
      mReleaser(releaser),
      mLatency(engine->LatencyInSamples()),
      mpParameterMap(MakePtr<TPublishedParameters>(document, static_cast<TPublishedParameters::THost*>(this))) {
	engine->SetInputChannels(engine->MaxInputChannels());
	engine->SetOutputChannels(engine->MaxOutputChannels());
	if (engine->WantsMidiInput())
		mMidiInputEvents.reserve(kMidiCapacity);
	if (engine->WantsMidiOutput())
		mMidiOutputEvents.reserve(kMidiCapacity);
}

tresult PLUGIN_API TVst3PluginShell::queryInterface(const TUID interfaceId, void** object) {
	if (!object)
		return kInvalidArgument;
	if (Offer<IMidiMapping>(this, IMidiMapping_iid, interfaceId, object))
		return kResultOk;
	return SingleComponentEffect::queryInterface(interfaceId, object);
}

uint32 PLUGIN_API TVst3PluginShell::addRef() {
	return static_cast<uint32>(mReferenceCount.fetch_add(1) + 1);
}

uint32 PLUGIN_API TVst3PluginShell::release() {
	const int32_t left = mReferenceCount.fetch_sub(1) - 1;
	if (left > 0)
		return static_cast<uint32>(left);
	// Whoever takes and returns a reference while the instance closes down must not end it a second time.
	mReferenceCount = 1 << 20;
	terminate();
	HostCall(TGlobalStorage::CurrentId(), [this] {
		mReleaser(this);
		return kResultOk;
	});
	return 0;
}

tresult PLUGIN_API TVst3PluginShell::initialize(FUnknown* context) {
	return HostCall(StorageId(), [this, context] {
		const TThreadManager::THostScope role(kMainThread);
		const tresult base = SingleComponentEffect::initialize(context);
		GreetHost(context);
		if (base != kResultOk)
			return base;
		try {
			AddBusses();
			AddParameters();
			StartTimer();
			ObserveDocument();
		} catch (...) {
			CloseDown();
			throw;
		}
		mLatency = mpEngine->LatencyInSamples();
		return base;
	});
}

tresult PLUGIN_API TVst3PluginShell::terminate() {
	return HostCall(StorageId(), [this] {
		const TThreadManager::THostScope role(kMainThread);
		return CloseDown();
	});
}

void TVst3PluginShell::GreetHost(FUnknown* context) {
	String128 name{};
	const auto host = AskFor<IHostApplication>(context, IHostApplication_iid);
	if (!host || host->getName(name) != kResultOk) {
		TLog::Instance()->LogText(kLogCategory, "Running in unknown host...");
		return;
	}
	name[127] = 0;
	mHostName = TString(std::u16string_view(name));
	TLog::Instance()->LogString(kLogCategory, TString("Running in host: '") + mHostName + TString("'..."));
}

void TVst3PluginShell::AddBusses() {
	mMadeInputs = static_cast<std::size_t>(std::max(mpEngine->MaxInputChannels(), 1));
	mMadeOutputs = static_cast<std::size_t>(std::max(mpEngine->MaxOutputChannels(), 1));
	SetBusCounts(mMadeInputs, mMadeOutputs);
	if (mpEngine->WantsMidiInput())
		AddEventBus(kInput, u"MIDI Input");
	if (mpEngine->WantsMidiOutput())
		AddEventBus(kOutput, u"MIDI Output");
	mBuffers.SetBlockSize(mpEngine->BlockSize());
}

/// Takes busses away from the end, or brings back those that a host did without before.
void TVst3PluginShell::SetBusCounts(std::size_t inputs, std::size_t outputs) {
	const auto nameOfInput = [this](int32_t bus) -> TString {
		return mMadeInputs == 1 ? "Main Input" : mpEngine->InputChannelName(2 * bus);
	};
	const auto nameOfOutput = [this](int32_t bus) -> TString {
		return mMadeOutputs == 1 ? "Main Output" : mpEngine->OutputChannelName(2 * bus);
	};
	const auto setCount = [this](BusDirection direction, std::size_t count, const auto& nameOf) {
		auto& busses = *Busses(kAudio, direction);
		busses.resize(std::min(busses.size(), count));
		while (busses.size() < count)
			AddStereoBus(direction, nameOf(static_cast<int32_t>(busses.size())).Units());
	};
	setCount(kInput, inputs, nameOfInput);
	setCount(kOutput, outputs, nameOfOutput);
	mBuffers.SetBusCounts(inputs, outputs);
}

void TVst3PluginShell::AddParameters() {
	if (mpDocument->NumberOfPrograms() >= 1)
		AddParameter(new TPresetParameter(mpDocument->NumberOfPrograms()));
	mWalks.clear();
	for (int32_t i = 0; i < mpDocument->NumberOfParameters(); ++i) {
		AddParameter(new TPluginParameter(mpDocument.Get(), i));
		mWalks.push_back(MakeWalk(static_cast<ParamID>(i)));
	}
	mpPresetWalk = MakeWalk(kVst3Preset);
	mWalksOfBlock.reserve(mWalks.size() + 1);
	if (!mpDocument->IsInstrument())
		return;
	for (const TRange& range : kMidiParameters)
		AddParameter(MakeRangeParameter(range));
}

TPtr<TVst3PointWalk> TVst3PluginShell::MakeWalk(ParamID id) {
	return MakePtr<TVst3PointWalk>(static_cast<TVst3PointWalk::TTarget&>(*this), *mpEngine, id);
}

void TVst3PluginShell::StartTimer() {
	mpTimer = TVst3Timer::Start(HostContext(), this, kTimerMilliseconds);
	mUsesGuiIdleParameter = !mpTimer;
	if (mUsesGuiIdleParameter)
		AddParameter(MakeRangeParameter(kGuiIdleParameter));
}

void TVst3PluginShell::ObserveDocument() {
	if (TObservable* program = mpDocument->CurrentProgramIndexValue())
		program->AddObserver({this, &TVst3PluginShell::OnProgramIndex}, kDeliverDirectly);
	if (TObservable* names = mpDocument->ProgramNameChangedBang())
		names->AddObserver({this, &TVst3PluginShell::OnProgramNames});
	mNewsBang.AddObserver({this, &TVst3PluginShell::OnNews}, kDeliverAlwaysPosted);
	if (TObservable* list = mpDocument->ParameterListAboutToChangeValue())
		list->AddObserver({this, &TVst3PluginShell::OnParameterListAboutToChange}, kDeliverDirectly);
	if (TObservable* list = mpDocument->ParameterListChangedValue())
		list->AddObserver({this, &TVst3PluginShell::OnParameterListChanged});
	mpParameterMap->Rebuild();
}

void TVst3PluginShell::StopObserving() {
	mpParameterMap->Clear();
	if (TObservable* program = mpDocument->CurrentProgramIndexValue())
		program->RemoveObserver({this, &TVst3PluginShell::OnProgramIndex});
	if (TObservable* names = mpDocument->ProgramNameChangedBang())
		names->RemoveObserver({this, &TVst3PluginShell::OnProgramNames});
	mNewsBang.RemoveObserver({this, &TVst3PluginShell::OnNews});
	mNews = 0;
	if (TObservable* list = mpDocument->ParameterListAboutToChangeValue())
		list->RemoveObserver({this, &TVst3PluginShell::OnParameterListAboutToChange});
	if (TObservable* list = mpDocument->ParameterListChangedValue())
		list->RemoveObserver({this, &TVst3PluginShell::OnParameterListChanged});
}

tresult TVst3PluginShell::CloseDown() {
	if (TPluginEditor* editor = std::exchange(mpEditor, nullptr))
		editor->Close();
	if (const IPtr<TVst3Timer> timer = std::exchange(mpTimer, nullptr))
		timer->Stop();
	if (IsInitialized()) {
		StopObserving();
		SetActive(false);
	}
	return SingleComponentEffect::terminate();
}

tresult PLUGIN_API TVst3PluginShell::setActive(TBool state) {
	return HostCall(StorageId(), [this, state] {
		const TThreadManager::THostScope role(kMainThread);
		if (!IsInitialized())
			return tresult{kNotInitialized};
		SetActive(state != 0);
		return SingleComponentEffect::setActive(state);
	});
}

void TVst3PluginShell::SetActive(bool active) {
	mActive = active;
	if (active)
		mpEngine->Resume();
	else
		mpEngine->Suspend();
}

tresult PLUGIN_API TVst3PluginShell::setupProcessing(ProcessSetup& setup) {
	return HostCall(StorageId(), [this, &setup]() -> tresult {
		const TThreadManager::THostScope role(kMainThread);
		if (!IsInitialized())
			return kNotInitialized;
		if (canProcessSampleSize(setup.symbolicSampleSize) != kResultOk || !(setup.sampleRate >= 1.0) ||
		    setup.sampleRate > kHighestSampleRate || setup.maxSamplesPerBlock < 1 ||
		    setup.maxSamplesPerBlock > kLongestBlock)
			return kInvalidArgument;
		mpEngine->SetSampleRate(static_cast<int32_t>(setup.sampleRate));
		mpEngine->SetBlockSize(setup.maxSamplesPerBlock);
		mBuffers.SetBlockSize(setup.maxSamplesPerBlock);
		mBypass = false;
		return kResultOk;
	});
}

tresult PLUGIN_API TVst3PluginShell::setBusArrangements(
    SpeakerArrangement* inputs, int32 numIns, SpeakerArrangement* outputs, int32 numOuts) {
	return HostCall(StorageId(), [&]() -> tresult {
		const TThreadManager::THostScope role(kMainThread);
		if (!IsInitialized())
			return kNotInitialized;
		if (numIns < 0 || numOuts < 0 || (!inputs && numIns > 0) || (!outputs && numOuts > 0))
			return kInvalidArgument;
		return ArrangeBusses({inputs, static_cast<std::size_t>(numIns)}, {outputs, static_cast<std::size_t>(numOuts)});
	});
}

tresult TVst3PluginShell::ArrangeBusses(TArrangements inputs, TArrangements outputs) {
	const bool isAccepted =
	    mpDocument->IsInstrument() ? AcceptInstrument(inputs, outputs) : AcceptEffect(inputs, outputs);
	if (!isAccepted)
		return kResultFalse;
	SetBusCounts(inputs.size(), outputs.size());
	mpEngine->SetInputChannels(static_cast<int32_t>(inputs.size()));
	mpEngine->SetOutputChannels(static_cast<int32_t>(outputs.size()));
	return kResultOk;
}

bool TVst3PluginShell::AcceptEffect(TArrangements inputs, TArrangements outputs) const {
	const auto log = TLog::Instance();
	const int numIns = static_cast<int>(inputs.size());
	const int numOuts = static_cast<int>(outputs.size());
	if (numIns < 1 || numOuts < 1 || inputs.size() > mMadeInputs || outputs.size() > mMadeOutputs) {
		log->Log(kLogCategory, "Neglecting FX bus arrangement with bus count (%d/%d)", numIns, numOuts);
		return false;
	}
	if (!IsStereo(inputs[0]) || !IsStereo(outputs[0])) {
		log->Log(
		    kLogCategory, "Neglecting FX bus arrangement with bus count (%d/%d) and channels (%d/%d)", numIns, numOuts,
		    Channels(inputs[0]), Channels(outputs[0]));
		return false;
	}
	log->Log(kLogCategory, "Accepted FX bus arrangement with bus count (%d/%d)", numIns, numOuts);
	return true;
}

bool TVst3PluginShell::AcceptInstrument(TArrangements inputs, TArrangements outputs) const {
	const auto log = TLog::Instance();
	const int numIns = static_cast<int>(inputs.size());
	const int numOuts = static_cast<int>(outputs.size());
	if (numOuts < 1 || inputs.size() > mMadeInputs || outputs.size() > mMadeOutputs) {
		log->Log(kLogCategory, "Neglecting instrument bus arrangement with bus count (%d/%d)", numIns, numOuts);
		return false;
	}
	if (const auto odd = std::ranges::find_if_not(inputs, &IsStereo); odd != inputs.end()) {
		log->Log(
		    kLogCategory, "Neglecting instrument bus arrangement with bus count (%d/%d) and input channels #%d", numIns,
		    numOuts, static_cast<int>(odd - inputs.begin()));
		return false;
	}
	if (const auto odd = std::ranges::find_if_not(outputs, &IsStereo); odd != outputs.end()) {
		log->Log(
		    kLogCategory, "Neglecting instrument bus arrangement with bus count (%d/%d) and output channels #%d",
		    numIns, numOuts, static_cast<int>(odd - outputs.begin()));
		return false;
	}
	log->Log(kLogCategory, "Accepted instrument bus arrangement with bus count (%d/%d)", numIns, numOuts);
	return true;
}

tresult TVst3PluginShell::LoadComponent(IBStream* stream) {
	return HostCall(StorageId(), [this, stream]() -> tresult {
		const TThreadManager::THostScope role(kMainThread);
		if (!IsInitialized())
			return kNotInitialized;
		if (!stream)
			return kInvalidArgument;
		TStream chunk;
		if (!Vst3State::Read(*stream, chunk))
			return kResultFalse;
		ReplaceState(chunk);
		return kResultOk;
	});
}

/// Told once, with the next tick, and only if the host finds anything else than before.
void TVst3PluginShell::ReplaceState(const TStream& chunk) {
	const int32_t program = mpDocument->CurrentProgramIndex();
	const std::vector<float> values = ParameterValues();
	mRenamedByState = false;
	{
		const TPublishedParameters::TStateChange change(*mpParameterMap);
		mpDocument->LoadBankChunk(chunk);
	}
	if (mRenamedByState || program != mpDocument->CurrentProgramIndex() || values != ParameterValues())
		ReportLater(kProgramChanged);
}

std::vector<float> TVst3PluginShell::ParameterValues() const {
	std::vector<float> values(static_cast<std::size_t>(mpDocument->NumberOfParameters()));
	for (std::size_t i = 0; i < values.size(); ++i)
		values[i] = mpDocument->ParameterValue(static_cast<int32_t>(i));
	return values;
}

tresult TVst3PluginShell::SaveComponent(IBStream* stream) {
	return HostCall(StorageId(), [this, stream]() -> tresult {
		const TThreadManager::THostScope role(kMainThread);
		if (!IsInitialized())
			return kNotInitialized;
		if (!stream)
			return kInvalidArgument;
		TStream chunk;
		mpDocument->SaveBankChunk(chunk);
		return Vst3State::Write(*stream, chunk) ? kResultOk : kResultFalse;
	});
}

// A host that drags no size is asked; the answer decides whether the editor grows.
bool TVst3PluginShell::RequestWindowResize(const TSize& oldSize, const TSize& newSize) {
	TLog::Instance()->Log(kLogCategory, "Requesting new window size: %d, %d", newSize.mX, newSize.mY);
	return mpEditor && mpEditor->RequestResize(oldSize, newSize);
}

void TVst3PluginShell::OnTimer() noexcept {
	const TKeptForCall kept(*this);
	HostCall(StorageId(), [this] {
		RunMainThreadCommands();
		return kResultOk;
	});
}

void TVst3PluginShell::RunMainThreadCommands() {
	// The next tick will do while the host works with the document on another thread.
	const TThreadManager::THostScope role(kMainThread, TThreadManager::TPatience::kNone);
	if (!role.IsTaken())
		return;
	if (mpEditor && mpEditor->NeedsTicks())
		mpEditor->Tick();
	else
		TThreadCommunicator::Instance()->ProcessCommands();
}
