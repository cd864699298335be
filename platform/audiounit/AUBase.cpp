// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audiounit/AUBase.h"

#include <algorithm>
#include <utility>

namespace {

constexpr const char* kVersionKey = "version";
constexpr const char* kTypeKey = "type";
constexpr const char* kSubTypeKey = "subtype";
constexpr const char* kManufacturerKey = "manufacturer";
constexpr const char* kNameKey = "name";

AudioStreamBasicDescription StereoFormat() {
	AudioStreamBasicDescription format;
	format.mSampleRate = 44100.0;
	format.mFormatID = kAudioFormatLinearPCM;
	format.mFormatFlags = kAudioFormatFlagIsFloat | kAudioFormatFlagIsPacked | kAudioFormatFlagIsNonInterleaved;
	format.mBytesPerPacket = format.mBytesPerFrame = sizeof(float);
	format.mFramesPerPacket = 1;
	format.mChannelsPerFrame = 2;
	format.mBitsPerChannel = 32;
	return format;
}

template <class TBus>
void ResizeBusses(std::vector<std::unique_ptr<TBus>>& busses, std::size_t count) {
	busses.resize(std::min(busses.size(), count));
	while (busses.size() < count) {
		busses.push_back(std::make_unique<TBus>());
		busses.back()->mFormat = StereoFormat();
	}
}

AURef<const AUObject> Number(int64_t value) {
	return AURef<const AUObject>::Adopt(new AUNumber(value));
}

bool Holds(const AUDictionary& state, const char* key, UInt32 value) {
	const auto* number = state.Find<AUNumber>(key);
	return number && number->Value() == int64_t{value};
}

} // namespace

AUBase::AUBase(AudioComponentInstance instance, UInt32 inputs, UInt32 outputs)
    : mInstance(instance),
      mpPresetName(AURef<const AUString>::Make(u"Untitled")) {
	ResizeBusses(mInputs, inputs);
	ResizeBusses(mOutputs, outputs);
}

// Starting and ending

OSStatus AUBase::DoInitialize() {
	if (mIsInitialized)
		return noErr;
	if (const OSStatus status = Initialize(); status != noErr)
		return status;
	AllocateBuffers();
	mIsInitialized = true;
	return noErr;
}

void AUBase::AllocateBuffers() {
	const auto allocate = [this](AUBus& bus) { bus.mBuffers = AUBuffers(bus.mFormat.mChannelsPerFrame, mMaxFrames); };
	for (const auto& bus : mInputs)
		allocate(*bus);
	for (const auto& bus : mOutputs)
		allocate(*bus);
	mIsFresh.assign(mOutputs.size(), false);
}

OSStatus AUBase::DoCleanup() {
	if (mIsRendering && mRenderThread.load() == std::this_thread::get_id())
		return kAudioUnitErr_CannotDoInCurrentContext;
	const bool wasInitialized = mIsInitialized.exchange(false);
	while (mIsRendering)
		std::this_thread::yield();
	if (wasInitialized)
		Cleanup();
	return noErr;
}

OSStatus AUBase::SetBusCount(AudioUnitScope scope, UInt32 count) {
	if (mIsInitialized)
		return kAudioUnitErr_Initialized;
	switch (scope) {
	case kAudioUnitScope_Input:
		ResizeBusses(mInputs, count);
		return noErr;
	case kAudioUnitScope_Output:
		ResizeBusses(mOutputs, count);
		return noErr;
	default:
		return kAudioUnitErr_InvalidScope;
	}
}

bool AUBase::StreamFormatWritable(AudioUnitScope /*scope*/, AudioUnitElement /*element*/) {
	return !mIsInitialized;
}

// Listeners

OSStatus AUBase::AddPropertyListener(AudioUnitPropertyID id, AudioUnitPropertyListenerProc proc, void* user) {
	if (!proc)
		return kAudio_ParamError;
	const std::lock_guard guard(mLock);
	mListeners.push_back({id, proc, user});
	return noErr;
}

OSStatus AUBase::RemovePropertyListener(AudioUnitPropertyID id, AudioUnitPropertyListenerProc proc, void* const* user) {
	const std::lock_guard guard(mLock);
	std::erase_if(mListeners, [&](const TPropertyListener& listener) {
		return listener.mId == id && listener.mpProc == proc && (!user || listener.mpUser == *user);
	});
	return noErr;
}

// A listener may add and remove listeners.
void AUBase::PropertyChanged(AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element) {
	std::vector<TPropertyListener> listeners;
	{
		const std::lock_guard guard(mLock);
		listeners = mListeners;
	}
	for (const TPropertyListener& listener : listeners)
		if (listener.mId == id)
			listener.mpProc(listener.mpUser, mInstance, id, scope, element);
}

OSStatus AUBase::AddRenderNotify(AURenderCallback proc, void* refCon) {
	if (!proc)
		return kAudio_ParamError;
	mRenderNotifies.Change([&](auto& notifies) { notifies.push_back({proc, refCon}); });
	return noErr;
}

OSStatus AUBase::RemoveRenderNotify(AURenderCallback proc, void* refCon) {
	mRenderNotifies.Change([&](auto& notifies) { std::erase(notifies, TRenderNotify{proc, refCon}); });
	return noErr;
}

// Parameters

OSStatus AUBase::GetParameterInfo(AudioUnitScope scope, AudioUnitParameterID /*id*/, AudioUnitParameterInfo& /*info*/) {
	return IsKnownBus(scope, 0) ? kAudioUnitErr_InvalidParameter : kAudioUnitErr_InvalidScope;
}

OSStatus AUBase::GetParameter(
    AudioUnitParameterID /*id*/, AudioUnitScope scope, AudioUnitElement element, AudioUnitParameterValue& /*value*/) {
	if (scope > kAudioUnitScope_Output)
		return kAudioUnitErr_InvalidScope;
	return IsKnownBus(scope, element) ? kAudioUnitErr_InvalidParameter : kAudioUnitErr_InvalidElement;
}

OSStatus AUBase::SetParameter(
    AudioUnitParameterID id, AudioUnitScope scope, AudioUnitElement element, AudioUnitParameterValue value,
    UInt32 /*offset*/) {
	return AUBase::GetParameter(id, scope, element, value);
}

OSStatus AUBase::DispatchGetParameter(
    AudioUnitParameterID id, AudioUnitScope scope, AudioUnitElement element, AudioUnitParameterValue* value) {
	return value ? GetParameter(id, scope, element, *value) : kAudio_ParamError;
}

OSStatus AUBase::ScheduleParameters(const AudioUnitParameterEvent* events, UInt32 count) {
	if (!events && count > 0)
		return kAudio_ParamError;
	for (const AudioUnitParameterEvent& event : std::span(events, count)) {
		if (event.eventType != kParameterEvent_Immediate)
			continue;
		const auto& [offset, value] = event.eventValues.immediate;
		const OSStatus status = SetParameter(event.parameter, event.scope, event.element, value, offset);
		if (status != noErr)
			return status;
	}
	return noErr;
}

// State and presets

OSStatus AUBase::SaveState(AUDictionary*& state) {
	auto dictionary = AURef<AUDictionary>::Make();
	const AudioComponentDescription description = mInstance ? mInstance->mDescription : AudioComponentDescription{};
	dictionary->Set(kVersionKey, Number(0));
	dictionary->Set(kTypeKey, Number(description.componentType));
	dictionary->Set(kSubTypeKey, Number(description.componentSubType));
	dictionary->Set(kManufacturerKey, Number(description.componentManufacturer));
	{
		const std::lock_guard guard(mLock);
		dictionary->Set(kNameKey, AURef<const AUObject>(mpPresetName.Get()));
	}
	state = dictionary.Detach();
	return noErr;
}

OSStatus AUBase::RestoreState(const AUDictionary& state) {
	const AudioComponentDescription description = mInstance ? mInstance->mDescription : AudioComponentDescription{};
	if (!Holds(state, kTypeKey, description.componentType) ||
	    !Holds(state, kSubTypeKey, description.componentSubType) ||
	    !Holds(state, kManufacturerKey, description.componentManufacturer))
		return kAudioUnitErr_InvalidPropertyValue;
	if (const auto* name = state.Find<AUString>(kNameKey)) {
		SetPresentPreset(-1, AURef<const AUString>(name));
		PropertyChanged(kAudioUnitProperty_PresentPreset, kAudioUnitScope_Global, 0);
	}
	return noErr;
}

void AUBase::SetPresentPreset(SInt32 number, AURef<const AUString> name) {
	const std::lock_guard guard(mLock);
	mPresetNumber = number;
	mpPresetName = std::move(name);
}

SInt32 AUBase::PresentPresetNumber() const {
	const std::lock_guard guard(mLock);
	return mPresetNumber;
}

OSStatus AUBase::SetPreset(const AUPreset& preset) {
	if (preset.presetNumber >= 0) {
		if (const OSStatus status = NewFactoryPresetSet(preset); status != noErr)
			return status;
	} else if (preset.presetName) {
		SetPresentPreset(preset.presetNumber, AURef<const AUString>(preset.presetName));
	} else {
		return kAudioUnitErr_InvalidPropertyValue;
	}
	PropertyChanged(kAudioUnitProperty_PresentPreset, kAudioUnitScope_Global, 0);
	return noErr;
}

// The host's transport

bool AUBase::CallHostBeatAndTempo(Float64& beat, Float64& tempo) {
	const AUPublished<HostCallbackInfo>::TReader host(mHostCallbacks);
	return host->beatAndTempoProc && host->beatAndTempoProc(host->hostUserData, &beat, &tempo) == noErr;
}

bool AUBase::CallHostMusicalTimeLocation(Float32& numerator, UInt32& denominator) {
	const AUPublished<HostCallbackInfo>::TReader host(mHostCallbacks);
	UInt32 samplesToNextBeat = 0;
	Float64 downBeat = 0.0;
	return host->musicalTimeLocationProc &&
	       host->musicalTimeLocationProc(host->hostUserData, &samplesToNextBeat, &numerator, &denominator, &downBeat) ==
	           noErr;
}

bool AUBase::CallHostTransportState(THostTransport& transport) {
	const AUPublished<HostCallbackInfo>::TReader host(mHostCallbacks);
	return host->transportStateProc &&
	       host->transportStateProc(
	           host->hostUserData, &transport.mIsPlaying, &transport.mHasChanged, &transport.mSamplePosition,
	           &transport.mIsCycling, &transport.mCycleStart, &transport.mCycleEnd) == noErr;
}
