// SPDX-License-Identifier: GPL-3.0-or-later
// The audio thread's side of TVstPluginShell: one block, and the events around it.
#include "shell/vst2/TVstPluginShell.h"

#include "framework/foundation/commands/TCommand.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "shell/HostQuery.h"

#include <algorithm>
#include <cstring>

static_assert(sizeof(VstMidiEvent) == 32);

/// Carries the news of another latency from the audio thread to the host.
class TVstPluginShellIoChangedCommand final : public TCommand {
public:
	explicit TVstPluginShellIoChangedCommand(TVstPluginShell* shell) : mpShell(shell) {}

	void Execute() override {
		if (mpShell->mEffectOpen)
			mpShell->ioChanged();
	}

private:
	TPtr<TVstPluginShell> mpShell;
};

namespace {

constexpr VstIntPtr kWantedTimes =
    kVstPpqPosValid | kVstTempoValid | kVstCyclePosValid | kVstTimeSigValid; // what a transport is read from
constexpr double kHighestTempo = 9999.0;
constexpr VstInt32 kHighestTimeSignature = 998;

float* ChannelOf(float** buffers, std::size_t channel) {
	return buffers ? buffers[channel] : nullptr;
}

bool IsTimeSignature(VstInt32 number) {
	return number >= 1 && number <= kHighestTimeSignature;
}

} // namespace

void TVstPluginShell::processReplacing(float** inputs, float** outputs, VstInt32 samples) {
	HostQuery(StorageId(), 0, [&] {
		ProcessBlock(inputs, outputs, samples);
		return 0;
	});
}

void TVstPluginShell::process(float** inputs, float** outputs, VstInt32 samples) {
	HostQuery(StorageId(), 0, [&] {
		ProcessAndAdd(inputs, outputs, samples);
		return 0;
	});
}

void TVstPluginShell::ProcessBlock(float** inputs, float** outputs, VstInt32 samples) {
	if (ClearIfSilent(outputs, samples))
		return;
	const TThreadManager::THostScope role(kAudioThread);
	StartBlock();
	FollowLatency();
	const int32_t length = std::min(samples, mpEngine->BlockSize());
	if (length > 0)
		RunEngine(inputs, outputs, length);
}

void TVstPluginShell::ProcessAndAdd(float** inputs, float** outputs, VstInt32 samples) {
	if (ClearIfSilent(outputs, samples))
		return;
	const TThreadManager::THostScope role(kAudioThread);
	StartBlock();
	const auto length = static_cast<std::size_t>(std::clamp(samples, 0, mpEngine->BlockSize()));
	for (std::size_t i = 0; i < mAccumulationBuffers.size(); ++i) {
		mAccumulationBuffers[i].resize(static_cast<std::size_t>(mpEngine->BlockSize()));
		if (const float* output = ChannelOf(outputs, i))
			std::copy_n(output, length, mAccumulationBuffers[i].data());
	}
	ProcessBlock(inputs, outputs, samples);
	for (std::size_t i = 0; i < mAccumulationBuffers.size(); ++i)
		if (float* output = ChannelOf(outputs, i))
			std::transform(output, output + length, mAccumulationBuffers[i].data(), output, std::plus<>());
}

void TVstPluginShell::StartBlock() {
	TThreadCommunicator::Instance()->ProcessCommands();
	if (!mResumed)
		resume();
}

bool TVstPluginShell::ClearIfSilent(float** outputs, VstInt32 samples) {
	if (!mpEngine->WantsSilentOutput())
		return false;
	for (std::size_t i = 0; i < 2 * mBuffers.NumberOfOutputs(); ++i)
		if (float* output = ChannelOf(outputs, i))
			std::fill_n(output, std::max(samples, 0), 0.0f);
	return true;
}

void TVstPluginShell::RunEngine(float** inputs, float** outputs, int32_t samples) {
	for (std::size_t i = 0; i < mBuffers.NumberOfInputs(); ++i)
		mBuffers.SetInput(i, ChannelOf(inputs, 2 * i), ChannelOf(inputs, 2 * i + 1), inputs == nullptr);
	for (std::size_t i = 0; i < mBuffers.NumberOfOutputs(); ++i)
		mBuffers.SetOutput(i, ChannelOf(outputs, 2 * i), ChannelOf(outputs, 2 * i + 1));
	mBuffers.ScaleInputs(samples);
	mpEngine->Process(
	    mBuffers.LeftInputs(), mBuffers.RightInputs(), mBuffers.LeftOutputs(), mBuffers.RightOutputs(), samples,
	    ReadTransport());
	mBuffers.RestoreInputs(samples);
	for (std::size_t i = 0; i < mBuffers.NumberOfOutputs(); ++i)
		mBuffers.RestoreOutput(i, samples);
}

void TVstPluginShell::FollowLatency() {
	const int32_t latency = mpEngine->LatencyInSamples();
	if (latency == cEffect.initialDelay)
		return;
	cEffect.initialDelay = latency;
	const TPtr<TCommand> command(new TVstPluginShellIoChangedCommand(this));
	TThreadCommunicator::Instance()->Post(kMainThread, command.Get());
}

/// Null if the host tells no time.
const TTransportInfo* TVstPluginShell::ReadTransport() {
	const VstTimeInfo* time = getTimeInfo(kWantedTimes);
	if (!time || !(time->sampleRate > 0.0))
		return nullptr;
	const auto isSet = [time](VstInt32 bit) { return (time->flags & bit) != 0; };
	mTransport = {};
	mTransport.mFlags = TTransportInfo::kBlockSizeValid | TTransportInfo::kSampleRateValid |
	                    TTransportInfo::kIsPlayingValid | TTransportInfo::kSamplePositionValid;
	mTransport.mBlockSize = updateBlockSize();
	mTransport.mSampleRate = static_cast<int32_t>(std::clamp(updateSampleRate(), 0.0f, 1.0e9f));
	mTransport.mIsPlaying = isSet(kVstTransportPlaying | kVstTransportRecording);
	mTransport.mSamplePosition = time->samplePos;
	if (getCurrentProcessLevel() == kVstProcessLevelOffline) {
		mTransport.mFlags |= TTransportInfo::kIsOffline;
		mTransport.mIsOffline = true;
	}
	if (isSet(kVstTempoValid) && time->tempo > 0.0 && time->tempo < kHighestTempo) {
		mTransport.mFlags |= TTransportInfo::kTempoValid;
		mTransport.mTempo = static_cast<float>(time->tempo);
	}
	if (isSet(kVstTimeSigValid) && IsTimeSignature(time->timeSigNumerator) &&
	    IsTimeSignature(time->timeSigDenominator)) {
		mTransport.mFlags |= TTransportInfo::kTimeSignatureValid;
		mTransport.mTimeSigNumerator = time->timeSigNumerator;
		mTransport.mTimeSigDenominator = time->timeSigDenominator;
	}
	if (isSet(kVstPpqPosValid)) {
		mTransport.mFlags |= TTransportInfo::kBeatPositionValid;
		mTransport.mBeatPosition = time->ppqPos;
	}
	if (isSet(kVstCyclePosValid)) {
		mTransport.mFlags |= TTransportInfo::kCycleValid;
		mTransport.mIsCycling = isSet(kVstTransportCycleActive);
		mTransport.mCycleStart = time->cycleStartPos;
		mTransport.mCycleEnd = time->cycleEndPos;
	}
	return &mTransport;
}

// Events

VstInt32 TVstPluginShell::processEvents(VstEvents* events) {
	if (mpEngine->WantsSilentOutput())
		return mpEngine->WantsMidiInput();
	const TThreadManager::THostScope role(kAudioThread);
	TThreadCommunicator::Instance()->ProcessCommands();
	if (!mpEngine->WantsMidiInput())
		return 0;
	ReceiveEvents(events);
	return 1;
}

void TVstPluginShell::ReceiveEvents(const VstEvents* events) {
	const int32_t count = events ? events->numEvents : 0;
	mMidiInputEvents.clear();
	for (int32_t i = 0; i < count; ++i) {
		const VstEvent* event = events->events[i];
		if (!event || event->type != kVstMidiType)
			continue;
		if (mMidiInputEvents.size() == mMidiInputEvents.capacity())
			HandOverMidiInput();
		const auto* midi = reinterpret_cast<const VstMidiEvent*>(event);
		mMidiInputEvents.push_back({midi->midiData[0], midi->midiData[1], midi->midiData[2], midi->deltaFrames});
	}
	HandOverMidiInput();
}

void TVstPluginShell::HandOverMidiInput() {
	if (mMidiInputEvents.empty())
		return;
	mpEngine->ProcessMidiEvents(mMidiInputEvents);
	mMidiInputEvents.clear();
}

void TVstPluginShell::SendMidiEvents(std::span<const TMidiEvent> events) {
	while (!events.empty()) {
		const std::size_t count = std::min(events.size(), kMostEvents);
		SendBatch(events.first(count));
		events = events.subspan(count);
	}
}

void TVstPluginShell::SendBatch(std::span<const TMidiEvent> events) {
	mEventList.mCount = static_cast<VstInt32>(events.size());
	for (std::size_t i = 0; i < events.size(); ++i) {
		VstMidiEvent& event = mEvents[i];
		event = {};
		event.type = kVstMidiType;
		event.byteSize = sizeof(VstMidiEvent);
		event.deltaFrames = events[i].mSampleOffset;
		event.midiData[0] = events[i].mStatus;
		event.midiData[1] = events[i].mData1;
		event.midiData[2] = events[i].mData2;
		mEventList.mEvents[i] = reinterpret_cast<VstEvent*>(&event);
	}
	sendVstEventsToHost(reinterpret_cast<VstEvents*>(&mEventList));
}
