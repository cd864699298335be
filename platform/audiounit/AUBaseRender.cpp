// SPDX-License-Identifier: GPL-3.0-or-later
// Everything around one render.
#include "platform/audiounit/AUBase.h"

#include <algorithm>

namespace {

using TReadSource = AUPublished<AUSource>::TReader;

bool HasRoom(const AudioBuffer& buffer, UInt32 frames) {
	return buffer.mDataByteSize / sizeof(float) >= frames;
}

} // namespace

/// One render at a time: a second thread, or the unit as its own source, is turned away.
class AUBase::TRenderScope {
public:
	explicit TRenderScope(AUBase& unit) : mUnit(unit), mIsFirst(!unit.mIsRendering.exchange(true)) {
		if (mIsFirst)
			mUnit.mRenderThread = std::this_thread::get_id();
	}

	~TRenderScope() {
		if (!mIsFirst)
			return;
		mUnit.mRenderThread = std::thread::id();
		mUnit.mIsRendering = false;
	}

	TRenderScope(const TRenderScope&) = delete;
	TRenderScope& operator=(const TRenderScope&) = delete;

	bool IsFirst() const { return mIsFirst; }

private:
	AUBase& mUnit;
	const bool mIsFirst;
};

OSStatus AUBase::DoRender(
    AudioUnitRenderActionFlags* flags, const AudioTimeStamp* timeStamp, UInt32 bus, UInt32 frames,
    AudioBufferList* data) {
	if (!timeStamp || !data)
		return kAudio_ParamError;
	const TRenderScope scope(*this);
	if (!scope.IsFirst())
		return kAudioUnitErr_CannotDoInCurrentContext;
	AudioUnitRenderActionFlags ownFlags = 0;
	AudioUnitRenderActionFlags& actions = flags ? *flags : ownFlags;
	OSStatus status = CheckRequest(bus, frames, *data);
	if (status == noErr && frames > 0) {
		Notify(actions | kAudioUnitRenderAction_PreRender, *timeStamp, bus, frames, *data);
		status = RenderBus(actions, *timeStamp, bus, frames, *data);
		const AudioUnitRenderActionFlags error = status == noErr ? 0u : kAudioUnitRenderAction_PostRenderError;
		Notify(actions | kAudioUnitRenderAction_PostRender | error, *timeStamp, bus, frames, *data);
	}
	if (status != noErr)
		mLastRenderError = status;
	return status;
}

OSStatus AUBase::CheckRequest(UInt32 bus, UInt32 frames, const AudioBufferList& data) const {
	if (!mIsInitialized)
		return kAudioUnitErr_Uninitialized;
	if (frames > mMaxFrames)
		return kAudioUnitErr_TooManyFramesToProcess;
	if (bus >= mOutputs.size())
		return kAudioUnitErr_InvalidElement;
	if (data.mNumberBuffers != mOutputs[bus]->mBuffers.Channels())
		return kAudio_ParamError;
	const std::span<const AudioBuffer> buffers(data.mBuffers, data.mNumberBuffers);
	const auto isUsable = [&](const AudioBuffer& buffer) {
		return buffer.mNumberChannels == 1 && (!buffer.mData || HasRoom(buffer, frames));
	};
	return std::ranges::all_of(buffers, isUsable) ? noErr : kAudio_ParamError;
}

bool AUBase::IsRendered(UInt32 bus, const AudioTimeStamp& timeStamp) const {
	return mIsFresh[bus] && (timeStamp.mFlags & kAudioTimeStampSampleTimeValid) != 0 &&
	       timeStamp.mSampleTime == mRenderedTime;
}

OSStatus AUBase::RenderBus(
    AudioUnitRenderActionFlags& flags, const AudioTimeStamp& timeStamp, UInt32 bus, UInt32 frames,
    AudioBufferList& data) {
	AUBuffers& buffers = mOutputs[bus]->mBuffers;
	if (!IsRendered(bus, timeStamp)) {
		const auto isGiven = [](const AudioBuffer& buffer) { return buffer.mData != nullptr; };
		AUBuffers& first = mOutputs[0]->mBuffers;
		if (mOutputs.size() == 1 && std::ranges::all_of(AUBuffers::BuffersOf(data), isGiven))
			first.PointTo(data);
		else
			first.Prepare(frames);
		const OSStatus status = Render(flags, timeStamp, frames);
		for (const auto& input : mInputs)
			input->mBuffers.Invalidate();
		std::ranges::fill(mIsFresh, static_cast<char>(status == noErr));
		if (status != noErr)
			return status;
		mRenderedTime = timeStamp.mSampleTime;
	}
	buffers.GiveTo(data, frames);
	mIsFresh[bus] = false;
	return noErr;
}

OSStatus
AUBase::PullInput(std::size_t bus, AudioUnitRenderActionFlags& flags, const AudioTimeStamp& time, UInt32 frames) {
	AUInputBus& input = *mInputs[bus];
	const TReadSource source(input.mSource);
	if (!source->IsActive())
		return kAudioUnitErr_NoConnection;
	AudioBufferList* list = nullptr;
	OSStatus status = noErr;
	if (const AudioUnitConnection& from = source->mConnection; from.sourceAudioUnit) {
		list = &input.mBuffers.PrepareNull(frames);
		status = AudioUnitRender(from.sourceAudioUnit, &flags, &time, from.sourceOutputNumber, frames, list);
	} else {
		list = &input.mBuffers.Prepare(frames);
		const AURenderCallbackStruct& callback = source->mCallback;
		status = callback.inputProc(callback.inputProcRefCon, &flags, &time, static_cast<UInt32>(bus), frames, list);
	}
	const auto isUsable = [&](const AudioBuffer& buffer) {
		return !buffer.mData || input.mBuffers.IsOwn(buffer) || HasRoom(buffer, frames);
	};
	if (status == noErr &&
	    (list->mNumberBuffers > input.mBuffers.Channels() || !std::ranges::all_of(input.mBuffers.Buffers(), isUsable)))
		status = kAudio_ParamError;
	if (status != noErr)
		input.mBuffers.Invalidate();
	return status;
}

void AUBase::Notify(
    AudioUnitRenderActionFlags flags, const AudioTimeStamp& timeStamp, UInt32 bus, UInt32 frames,
    AudioBufferList& data) {
	const AUPublished<std::vector<TRenderNotify>>::TReader notifies(mRenderNotifies);
	for (const TRenderNotify& notify : *notifies) {
		AudioUnitRenderActionFlags given = flags;
		notify.mpProc(notify.mpRefCon, &given, &timeStamp, bus, frames, &data);
	}
}
