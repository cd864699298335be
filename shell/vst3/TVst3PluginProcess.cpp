// SPDX-License-Identifier: GPL-3.0-or-later
// The processor's side of TVst3PluginShell: one block.
#include "shell/vst3/TVst3PluginShell.h"

#include "framework/foundation/commands/TCommand.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "shell/vst3/TVst3MidiEvents.h"
#include "shell/vst3/Vst3HostCall.h"

#include <pluginterfaces/vst/ivstevents.h>
#include <pluginterfaces/vst/ivstmidicontrollers.h>
#include <pluginterfaces/vst/ivstparameterchanges.h>
#include <pluginterfaces/vst/ivstprocesscontext.h>

#include <algorithm>
#include <cmath>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr int32_t kGuiIdleMilliseconds = 100;
constexpr double kGuiIdleValues = 100.0;

/// A rate that fits no int32 counts as none.
int32_t WholeRate(double rate) {
	return rate >= 0.0 && rate < 2147483648.0 ? static_cast<int32_t>(rate) : 0;
}

void AddPoint(IParameterChanges* changes, ParamID id, double value) {
	int32 index = 0;
	if (IParamValueQueue* queue = changes ? changes->addParameterData(id, index) : nullptr)
		queue->addPoint(0, value, index);
}

} // namespace

tresult PLUGIN_API TVst3PluginShell::canProcessSampleSize(int32 size) {
	return size == kSample32 ? kResultTrue : kResultFalse;
}

uint32 PLUGIN_API TVst3PluginShell::getLatencySamples() {
	return static_cast<uint32>(std::max(mLatency.load(), 0));
}

uint32 PLUGIN_API TVst3PluginShell::getTailSamples() {
	return kNoTail;
}

tresult PLUGIN_API TVst3PluginShell::process(ProcessData& data) {
	return HostCall(StorageId(), [this, &data]() -> tresult {
		// The one scope: whatever role the thread had, comes back behind it.
		const TThreadManager::TScope role(kAudioThread);
		if (!IsInitialized())
			return kNotInitialized;
		TThreadCommunicator::Instance()->ProcessCommands();
		if (canProcessSampleSize(data.symbolicSampleSize) != kResultTrue || data.numSamples < 0)
			return kInvalidArgument;
		return ProcessBlock(data);
	});
}

/// The queue pointers of a block are good for its process call only.
struct TVst3PluginShell::TWalksEndWithBlock {
	~TWalksEndWithBlock() {
		for (TVst3PointWalk* walk : mShell.mWalksOfBlock)
			walk->Finish();
		mShell.mWalksOfBlock.clear();
	}

	TVst3PluginShell& mShell;
};

tresult TVst3PluginShell::ProcessBlock(ProcessData& data) {
	if (!mActive)
		SetActive(true);
	FollowLatency();
	data.numSamples = std::min(data.numSamples, mpEngine->BlockSize());
	mBlockSamples = data.numSamples;
	ReadTransport(data.processContext);
	const TWalksEndWithBlock walksEndWithBlock{*this};
	if (data.inputParameterChanges)
		ApplyParameterChanges(*data.inputParameterChanges);
	if (mUsesGuiIdleParameter)
		AdvanceGuiIdle(data.outputParameterChanges);
	if (mpEngine->WantsSilentOutput()) {
		TVst3Buffers::ClearOutputs(data);
		return kResultOk;
	}
	ReceiveEvents(data.inputEvents);
	if (mBypass)
		Bypass(data);
	else if (data.numSamples > 0)
		RunEngine(data);
	SendEvents(data.outputEvents);
	return kResultOk;
}

void TVst3PluginShell::FollowLatency() {
	const int32_t latency = mpEngine->LatencyInSamples();
	if (latency == mLatency.load(std::memory_order_relaxed))
		return;
	mLatency.store(latency, std::memory_order_relaxed);
	ReportOnMainThread(kLatencyIsAnother);
}

void TVst3PluginShell::ReadTransport(const ProcessContext* context) {
	mTransport = {};
	if (!context)
		return;
	const auto isSet = [context](uint32 bit) { return (context->state & bit) != 0; };
	mTransport.mFlags = TTransportInfo::kIsPlayingValid;
	mTransport.mSampleRate = WholeRate(context->sampleRate);
	mTransport.mIsPlaying = isSet(ProcessContext::kPlaying);
	if (isSet(ProcessContext::kSystemTimeValid)) {
		mTransport.mFlags |= TTransportInfo::kSystemTimeValid;
		mTransport.mSystemTime = static_cast<double>(context->systemTime);
	}
	if (isSet(ProcessContext::kContTimeValid)) {
		mTransport.mFlags |= TTransportInfo::kSamplePositionValid;
		mTransport.mSamplePosition = static_cast<double>(context->continousTimeSamples);
	}
	if (isSet(ProcessContext::kProjectTimeMusicValid)) {
		mTransport.mFlags |= TTransportInfo::kBeatPositionValid;
		mTransport.mBeatPosition = context->projectTimeMusic;
	}
	if (isSet(ProcessContext::kCycleValid)) {
		mTransport.mFlags |= TTransportInfo::kCycleValid;
		mTransport.mIsCycling = isSet(ProcessContext::kCycleActive);
		mTransport.mCycleStart = context->cycleStartMusic;
		mTransport.mCycleEnd = context->cycleEndMusic;
	}
	if (isSet(ProcessContext::kTempoValid)) {
		mTransport.mFlags |= TTransportInfo::kTempoValid;
		mTransport.mTempo = static_cast<float>(context->tempo);
	}
	if (isSet(ProcessContext::kTimeSigValid)) {
		mTransport.mFlags |= TTransportInfo::kTimeSignatureValid;
		mTransport.mTimeSigNumerator = context->timeSigNumerator;
		mTransport.mTimeSigDenominator = context->timeSigDenominator;
	}
}

void TVst3PluginShell::ApplyParameterChanges(IParameterChanges& changes) {
	mMidiInputEvents.clear();
	const int32 queues = changes.getParameterCount();
	for (int32 i = 0; i < queues; ++i)
		if (IParamValueQueue* queue = changes.getParameterData(i))
			ApplyQueue(*queue);
	HandOverMidiInput();
}

void TVst3PluginShell::ApplyQueue(IParamValueQueue& queue) {
	const ParamID id = queue.getParameterId();
	TVst3PointWalk* walk = WalkOf(id);
	if (walk && !walk->IsScheduled() && TVst3PointWalk::IsInOrder(queue)) {
		walk->Start(queue);
		if (walk->IsUnderWay())
			mWalksOfBlock.push_back(walk);
		return;
	}
	// A walk that is left from a block that the engine has not run says that the engine stands still.
	const bool isLeft = walk && walk->IsScheduled() && !walk->IsUnderWay();
	int32 index = 0;
	int32 offset = 0;
	double value = 0.0;
	while (TVst3PointWalk::Read(queue, index, offset, value)) {
		if (!walk)
			ReceivePoint(id, offset, value);
		else if (const int32_t inBlock = OffsetInBlock(offset); inBlock < 1 || isLeft)
			ApplyPoint(id, value);
		else
			mpEngine->ScheduleCommand(
			    new TInvokeFunctionCommand([this, id, value] { ApplyPoint(id, value); }), inBlock);
	}
}

TVst3PointWalk* TVst3PluginShell::WalkOf(ParamID id) {
	if (id < mWalks.size())
		return mWalks[id].Get();
	return id == kVst3Preset ? mpPresetWalk.Get() : nullptr;
}

void TVst3PluginShell::ApplyPoint(ParamID id, double value) {
	if (id == kVst3Preset)
		SetProgramFromHost(ProgramOf(value));
	else
		mpDocument->SetParameterValue(static_cast<int32_t>(id), static_cast<float>(value));
}

void TVst3PluginShell::ReceivePoint(ParamID id, int32_t offset, double value) {
	switch (id) {
	case kVst3Sustain:
		return ReceiveEvent(Vst3MidiEvents::MakeController(kCtrlSustainOnOff, value, offset));
	case kVst3Volume:
		return ReceiveEvent(Vst3MidiEvents::MakeController(kCtrlVolume, value, offset));
	case kVst3ModulationWheel:
		return ReceiveEvent(Vst3MidiEvents::MakeController(kCtrlModWheel, value, offset));
	case kVst3ChannelPressure:
		return ReceiveEvent(Vst3MidiEvents::MakeController(kAfterTouch, value, offset));
	case kVst3Pitchbend:
		return ReceiveEvent(Vst3MidiEvents::MakeController(kPitchBend, value, offset));
	case kVst3Bypass:
		mBypass = value > 0.5;
		return;
	default:
		return;
	}
}

// Hosts also send points that lie one sample behind the block, or before it. While the engine does not run, nothing
// would ever take a scheduled change up.
int32_t TVst3PluginShell::OffsetInBlock(int32_t offset) const {
	return mBypass ? 0 : std::min(offset, mBlockSamples - 1);
}

// A host that runs no timer still processes: it hands the value of this parameter to its main thread, and that call
// stands in for the timer's.
void TVst3PluginShell::AdvanceGuiIdle(IParameterChanges* changes) {
	const int32_t period = std::max(mpEngine->SampleRate() / 10, 1);
	static_assert(kGuiIdleMilliseconds * 10 == 1000);
	mGuiIdleSampleCounter += mBlockSamples;
	if (mGuiIdleSampleCounter < period) [[likely]]
		return;
	while (mGuiIdleSampleCounter >= period) {
		mGuiIdleSampleCounter -= period;
		const double value = mGuiIdleValue.load(std::memory_order_relaxed);
		AddPoint(changes, kVst3GuiIdle, value / kGuiIdleValues);
		mGuiIdleValue.store(value + 1.0 < kGuiIdleValues ? value + 1.0 : 0.0, std::memory_order_relaxed);
	}
}

void TVst3PluginShell::ReceiveEvents(IEventList* list) {
	if (!list || !mpEngine->WantsMidiInput())
		return;
	const int32 events = list->getEventCount();
	for (int32 i = 0; i < events; ++i) {
		Event event{};
		if (list->getEvent(i, event) == kResultOk)
			ReceiveEvent(event);
	}
	HandOverMidiInput();
}

void TVst3PluginShell::ReceiveEvent(const Event& event) {
	const auto midi = Vst3MidiEvents::ToMidi(event);
	if (!midi || mMidiInputEvents.capacity() == 0)
		return;
	if (mMidiInputEvents.size() == mMidiInputEvents.capacity())
		HandOverMidiInput();
	mMidiInputEvents.push_back(*midi);
	mMidiInputEvents.back().mSampleOffset = OffsetInBlock(midi->mSampleOffset);
}

void TVst3PluginShell::HandOverMidiInput() {
	if (mMidiInputEvents.empty())
		return;
	mpEngine->ProcessMidiEvents(mMidiInputEvents);
	mMidiInputEvents.clear();
}

void TVst3PluginShell::Bypass(ProcessData& data) {
	if (mpDocument->IsInstrument())
		TVst3Buffers::ClearOutputs(data);
	else
		TVst3Buffers::CopyInputs(data);
}

void TVst3PluginShell::RunEngine(ProcessData& data) {
	mBuffers.Collect(data);
	TStereoBuffers& pairs = mBuffers.Pairs();
	pairs.ScaleInputs(data.numSamples);
	mpEngine->Process(
	    pairs.LeftInputs(), pairs.RightInputs(), pairs.LeftOutputs(), pairs.RightOutputs(), data.numSamples,
	    &mTransport);
	pairs.RestoreInputs(data.numSamples);
	mBuffers.RestoreOutputs(*mpEngine);
}

void TVst3PluginShell::SendMidiEvents(std::span<const TMidiEvent> events) {
	for (const TMidiEvent& midi : events) {
		const auto event = Vst3MidiEvents::FromMidi(midi);
		if (event && mMidiOutputEvents.size() < mMidiOutputEvents.capacity())
			mMidiOutputEvents.push_back(*event);
	}
}

void TVst3PluginShell::SendEvents(IEventList* list) {
	if (!list)
		return;
	for (Event& event : mMidiOutputEvents)
		list->addEvent(event);
	mMidiOutputEvents.clear();
}
