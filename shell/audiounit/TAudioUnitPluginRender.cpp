// SPDX-License-Identifier: GPL-3.0-or-later
// One render of TAudioUnitPluginShell, which is for all outputs at once.
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "shell/audiounit/AudioUnitCall.h"
#include "shell/audiounit/TAudioUnitPluginShell.h"

#include <algorithm>
#include <cstring>

namespace {

// A host that counts further counts nonsense; a tempo beyond this, too.
constexpr float kMostBeatsInABar = 999.0f;
constexpr double kHighestTempo = 9999.0;

void Clear(std::span<const AudioBuffer> buffers, UInt32 frames) {
	for (const AudioBuffer& buffer : buffers)
		if (buffer.mData)
			std::fill_n(static_cast<float*>(buffer.mData), frames, 0.0f);
}

} // namespace

OSStatus
TAudioUnitPluginShell::Render(AudioUnitRenderActionFlags& /*flags*/, const AudioTimeStamp& timeStamp, UInt32 frames) {
	const TGlobalStorageScope storage(StorageId());
	if (mpEngine->WantsSilentOutput())
		return RenderSilence(frames);
	const TThreadManager::THostScope role(kAudioThread);
	TThreadCommunicator::Instance()->ProcessCommands();

	const auto samples = std::min(static_cast<int32_t>(frames), mpEngine->BlockSize());
	mBuffers.Begin(samples);
	if (const OSStatus status = CollectInputs(timeStamp, static_cast<UInt32>(samples)); status != noErr)
		return status;
	if (const OSStatus status = CollectOutputs(static_cast<UInt32>(samples)); status != noErr)
		return status;
	mBuffers.ScaleInputs();
	HandOverMidiInput();
	ReadTransport();
	mpEngine->Process(
	    mBuffers.LeftInputs(), mBuffers.RightInputs(), mBuffers.LeftOutputs(), mBuffers.RightOutputs(), samples,
	    &mTransport);
	mBuffers.RestoreInputs();
	mBuffers.RestoreOutputs();
	return noErr;
}

OSStatus TAudioUnitPluginShell::RenderSilence(UInt32 frames) {
	for (UInt32 bus = 0; bus < OutputBusses(); ++bus) {
		AUBuffers& buffers = Output(bus).mBuffers;
		if (bus > 0)
			buffers.Prepare(frames);
		Clear(buffers.Buffers(), frames);
	}
	return noErr;
}

OSStatus TAudioUnitPluginShell::CollectInputs(const AudioTimeStamp& timeStamp, UInt32 frames) {
	for (UInt32 bus = 0; bus < InputBusses(); ++bus) {
		// A silent input is no silent output: effects go on sounding.
		AudioUnitRenderActionFlags flags = 0;
		const OSStatus status = StatusOf([&] { return PullInput(bus, flags, timeStamp, frames); });
		if (status == kAudioUnitErr_NoConnection)
			mBuffers.SetSilentInput(bus);
		else if (status != noErr)
			return status;
		else if (!mBuffers.SetInput(bus, Input(bus).mBuffers.Buffers()))
			return kAudioUnitErr_FormatNotSupported;
	}
	return mBuffers.AreInputsComplete() ? noErr : kAudioUnitErr_FormatNotSupported;
}

OSStatus TAudioUnitPluginShell::CollectOutputs(UInt32 frames) {
	for (UInt32 bus = 0; bus < OutputBusses(); ++bus) {
		AUBuffers& buffers = Output(bus).mBuffers;
		if (!LendInput(bus) && bus > 0)
			buffers.Prepare(frames);
		if (!mBuffers.SetOutput(bus, buffers.Buffers()))
			return kAudioUnitErr_FormatNotSupported;
	}
	return mBuffers.AreOutputsComplete() ? noErr : kAudioUnitErr_FormatNotSupported;
}

/// In place the output takes over the input's buffers, where it has as many.
bool TAudioUnitPluginShell::LendInput(std::size_t bus) {
	if (!mInPlaceProcessing.load(std::memory_order_relaxed) || bus >= InputBusses())
		return false;
	AUBuffers& input = Input(bus).mBuffers;
	AUBuffers& output = Output(bus).mBuffers;
	if (!input.IsValid() || input.Buffers().size() != output.Channels())
		return false;
	output.PointTo(input.List());
	return true;
}

OSStatus TAudioUnitPluginShell::HandleMidiEvent(UInt8 status, UInt8 channel, UInt8 data1, UInt8 data2, UInt32 offset) {
	// More than the list was made for would have to allocate.
	if (mMidiInputEvents.size() < mMidiInputEvents.capacity())
		mMidiInputEvents.push_back(
		    {static_cast<uint8_t>(status | channel), data1, data2, static_cast<int32_t>(offset)});
	return noErr;
}

void TAudioUnitPluginShell::HandOverMidiInput() {
	if (mMidiInputEvents.empty())
		return;
	mpEngine->ProcessMidiEvents(mMidiInputEvents);
	mMidiInputEvents.clear();
}

void TAudioUnitPluginShell::ReadTransport() {
	mTransport = {};
	mTransport.mFlags = TTransportInfo::kBlockSizeValid | TTransportInfo::kSampleRateValid;
	mTransport.mBlockSize = MaxFramesPerSlice();
	mTransport.mSampleRate = mpEngine->SampleRate();
	if (THostTransport host; CallHostTransportState(host)) {
		mTransport.mFlags |= TTransportInfo::kIsPlayingValid | TTransportInfo::kTransportChanged |
		                     TTransportInfo::kSamplePositionValid | TTransportInfo::kCycleValid;
		mTransport.mIsPlaying = host.mIsPlaying != 0;
		mTransport.mTransportChanged = host.mHasChanged != 0;
		mTransport.mSamplePosition = host.mSamplePosition;
		mTransport.mIsCycling = host.mIsCycling != 0;
		mTransport.mCycleStart = host.mCycleStart;
		mTransport.mCycleEnd = host.mCycleEnd;
	}
	mTransport.mTempo = 120.0f;
	double beat = 0.0;
	double tempo = 0.0;
	if (CallHostBeatAndTempo(beat, tempo)) {
		mTransport.mFlags |= TTransportInfo::kBeatPositionValid;
		mTransport.mBeatPosition = beat;
		if (tempo > 0.0 && tempo < kHighestTempo) {
			mTransport.mFlags |= TTransportInfo::kTempoValid;
			mTransport.mTempo = static_cast<float>(tempo);
		}
	}
	mTransport.mTimeSigNumerator = mTransport.mTimeSigDenominator = 4;
	Float32 numerator = 0.0f;
	UInt32 denominator = 0;
	if (CallHostMusicalTimeLocation(numerator, denominator) && numerator > 0.0f && numerator < kMostBeatsInABar &&
	    denominator >= 1 && denominator < static_cast<UInt32>(kMostBeatsInABar)) {
		mTransport.mFlags |= TTransportInfo::kTimeSignatureValid;
		mTransport.mTimeSigNumerator = static_cast<int32_t>(numerator);
		mTransport.mTimeSigDenominator = static_cast<int32_t>(denominator);
	}
}
