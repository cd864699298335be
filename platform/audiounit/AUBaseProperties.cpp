// SPDX-License-Identifier: GPL-3.0-or-later
// The properties that every unit has.
#include "platform/audiounit/AUBase.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr UInt32 kMostFramesPerSlice = 1u << 20;

/// Records come from hosts and need not be aligned.
template <class T>
T Read(const void* data, UInt32 size = sizeof(T)) {
	T value{};
	std::memcpy(&value, data, std::min<std::size_t>(size, sizeof(T)));
	return value;
}

template <class T>
OSStatus Write(void* data, const T& value) {
	std::memcpy(data, &value, sizeof(T));
	return noErr;
}

template <class T>
OSStatus WriteAll(void* data, std::span<const T> values) {
	std::memcpy(data, values.data(), values.size_bytes());
	return noErr;
}

OSStatus Describe(UInt32& size, bool& writable, std::size_t itsSize, bool isWritable = false) {
	size = static_cast<UInt32>(itsSize);
	writable = isWritable;
	return itsSize > 0 ? noErr : kAudioUnitErr_InvalidProperty;
}

bool IsSupported(const AudioStreamBasicDescription& format) {
	constexpr UInt32 kNeeded = kAudioFormatFlagIsFloat | kAudioFormatFlagIsPacked | kAudioFormatFlagIsNonInterleaved;
	const UInt32 flags = format.mFormatFlags & (kNeeded | kAudioFormatFlagIsBigEndian);
	return format.mFormatID == kAudioFormatLinearPCM && flags == kNeeded && format.mBitsPerChannel == 32 &&
	       format.mBytesPerFrame == sizeof(float) && format.mFramesPerPacket == 1 &&
	       format.mBytesPerPacket == sizeof(float);
}

bool IsOfBusses(AudioUnitPropertyID id) {
	switch (id) {
	case kAudioUnitProperty_MakeConnection:
	case kAudioUnitProperty_SampleRate:
	case kAudioUnitProperty_StreamFormat:
	case kAudioUnitProperty_AudioChannelLayout:
	case kAudioUnitProperty_SetRenderCallback:
	case kAudioUnitProperty_SupportedChannelLayoutTags:
		return true;
	default:
		return false;
	}
}

bool IsForInputsOnly(AudioUnitPropertyID id) {
	return id == kAudioUnitProperty_MakeConnection || id == kAudioUnitProperty_SetRenderCallback;
}

bool IsOfAnyScope(AudioUnitPropertyID id) {
	return id == kAudioUnitProperty_ElementCount || id == kAudioUnitProperty_ParameterList ||
	       id == kAudioUnitProperty_ParameterInfo;
}

/// What has no value to be read.
bool IsWriteOnly(AudioUnitPropertyID id) {
	return IsForInputsOnly(id);
}

} // namespace

// Dispatch

OSStatus AUBase::DispatchGetPropertyInfo(
    AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, UInt32* size, Boolean* writable) {
	UInt32 itsSize = 0;
	bool isWritable = false;
	const OSStatus status = GetPropertyInfo(id, scope, element, itsSize, isWritable);
	if (size)
		*size = status == noErr ? itsSize : 0;
	if (writable)
		*writable = status == noErr && isWritable;
	return status;
}

OSStatus AUBase::DispatchGetProperty(
    AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, void* data, UInt32* size) {
	if (!size)
		return kAudio_ParamError;
	if (!data)
		return DispatchGetPropertyInfo(id, scope, element, size, nullptr);
	const UInt32 room = *size;
	// A record that holds references must not be cut short: nobody would give them back.
	const OSStatus info = DispatchGetPropertyInfo(id, scope, element, size, nullptr);
	if (info != noErr)
		return info;
	if (room < *size)
		return kAudioUnitErr_InvalidPropertyValue;
	const OSStatus status = GetProperty(id, scope, element, data);
	if (status != noErr)
		*size = 0;
	return status;
}

OSStatus AUBase::DispatchSetProperty(
    AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, const void* data, UInt32 size) {
	return data && size > 0 ? SetProperty(id, scope, element, data, size) : kAudio_ParamError;
}

// Places

bool AUBase::IsKnownBus(AudioUnitScope scope, AudioUnitElement element) const {
	switch (scope) {
	case kAudioUnitScope_Global:
		return element == 0;
	case kAudioUnitScope_Input:
		return element < mInputs.size();
	case kAudioUnitScope_Output:
		return element < mOutputs.size();
	default:
		return false;
	}
}

/// In the global scope the formats are those of the first output.
AUBus* AUBase::FindBus(AudioUnitScope scope, AudioUnitElement element) {
	if (!IsKnownBus(scope, element))
		return nullptr;
	if (scope == kAudioUnitScope_Input)
		return mInputs[element].get();
	return element < mOutputs.size() ? mOutputs[element].get() : nullptr;
}

OSStatus AUBase::CheckPlace(AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element) {
	if (scope > kAudioUnitScope_Output)
		return kAudioUnitErr_InvalidScope;
	if (IsForInputsOnly(id)) // which input is checked when it is set: of a connection the record names it
		return scope == kAudioUnitScope_Output ? kAudioUnitErr_InvalidScope : noErr;
	if (IsOfBusses(id))
		return FindBus(scope, element) ? noErr : kAudioUnitErr_InvalidElement;
	return IsOfAnyScope(id) || scope == kAudioUnitScope_Global ? noErr : kAudioUnitErr_InvalidScope;
}

// Asking

OSStatus AUBase::GetPropertyInfo(
    AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, UInt32& size, bool& writable) {
	const auto describe = [&](std::size_t itsSize, bool isWritable = false) {
		const OSStatus place = CheckPlace(id, scope, element);
		return place == noErr ? Describe(size, writable, itsSize, isWritable) : place;
	};
	switch (id) {
	case kAudioUnitProperty_ClassInfo:
		return describe(sizeof(AUDictionary*), true);
	case kAudioUnitProperty_MakeConnection:
		return describe(sizeof(AudioUnitConnection), true);
	case kAudioUnitProperty_SampleRate:
		return describe(sizeof(Float64), StreamFormatWritable(scope, element));
	case kAudioUnitProperty_ParameterList: {
		const OSStatus place = CheckPlace(id, scope, element);
		size = scope == kAudioUnitScope_Global ? mNumberOfParameters * UInt32{sizeof(AudioUnitParameterID)} : 0;
		return place;
	}
	case kAudioUnitProperty_ParameterInfo:
		return describe(sizeof(AudioUnitParameterInfo));
	case kAudioUnitProperty_StreamFormat:
		return describe(sizeof(AudioStreamBasicDescription), StreamFormatWritable(scope, element));
	case kAudioUnitProperty_ElementCount:
		return describe(sizeof(UInt32), BusCountWritable(scope));
	case kAudioUnitProperty_Latency:
		return describe(sizeof(Float64));
	case kAudioUnitProperty_SupportedNumChannels:
		return describe(SupportedNumChannels().size_bytes());
	case kAudioUnitProperty_MaximumFramesPerSlice:
		return describe(sizeof(UInt32), true);
	case kAudioUnitProperty_AudioChannelLayout:
		return describe(LayoutOf(scope, element).mChannelLayoutTag ? sizeof(AudioChannelLayout) : 0, true);
	case kAudioUnitProperty_TailTime:
		return describe(SupportsTail() ? sizeof(Float64) : 0);
	case kAudioUnitProperty_LastRenderError:
		return describe(sizeof(OSStatus));
	case kAudioUnitProperty_SetRenderCallback:
		return describe(sizeof(AURenderCallbackStruct), true);
	case kAudioUnitProperty_FactoryPresets:
		return describe(GetPresets(nullptr) == noErr ? sizeof(const AUArray*) : 0);
	case kAudioUnitProperty_HostCallbacks:
		return describe(sizeof(HostCallbackInfo), true);
	case kAudioUnitProperty_SupportedChannelLayoutTags:
		return describe(GetChannelLayoutTags(scope, element).size_bytes());
	case kAudioUnitProperty_PresentPreset:
		return describe(sizeof(AUPreset), true);
	default:
		return kAudioUnitErr_InvalidProperty;
	}
}

AudioChannelLayout AUBase::LayoutOf(AudioUnitScope scope, AudioUnitElement element) {
	const AUBus* bus = FindBus(scope, element);
	for (const AudioChannelLayoutTag tag : GetChannelLayoutTags(scope, element))
		if (bus && (tag & 0xFFFF) == bus->mFormat.mChannelsPerFrame)
			return {tag, 0, 0};
	return {};
}

OSStatus AUBase::GetProperty(AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, void* data) {
	if (IsWriteOnly(id))
		return kAudioUnitErr_InvalidProperty;
	if (const OSStatus place = CheckPlace(id, scope, element); place != noErr)
		return place;
	switch (id) {
	case kAudioUnitProperty_ClassInfo: {
		AUDictionary* state = nullptr;
		const OSStatus status = SaveState(state);
		return status == noErr ? Write(data, state) : status;
	}
	case kAudioUnitProperty_SampleRate:
		return Write(data, FindBus(scope, element)->mFormat.mSampleRate);
	case kAudioUnitProperty_ParameterList: {
		const UInt32 count = scope == kAudioUnitScope_Global ? mNumberOfParameters : 0;
		for (AudioUnitParameterID parameter = 0; parameter < count; ++parameter)
			Write(static_cast<AudioUnitParameterID*>(data) + parameter, parameter);
		return noErr;
	}
	case kAudioUnitProperty_ParameterInfo: {
		AudioUnitParameterInfo info{};
		const OSStatus status = GetParameterInfo(scope, element, info);
		return status == noErr ? Write(data, info) : status;
	}
	case kAudioUnitProperty_StreamFormat:
		return Write(data, FindBus(scope, element)->mFormat);
	case kAudioUnitProperty_ElementCount: {
		const UInt32 counts[] = {1, InputBusses(), OutputBusses()};
		return Write(data, counts[scope]);
	}
	case kAudioUnitProperty_Latency:
		return Write(data, GetLatency());
	case kAudioUnitProperty_SupportedNumChannels:
		return WriteAll(data, SupportedNumChannels());
	case kAudioUnitProperty_MaximumFramesPerSlice:
		return Write(data, mMaxFrames);
	case kAudioUnitProperty_AudioChannelLayout:
		return Write(data, LayoutOf(scope, element));
	case kAudioUnitProperty_TailTime:
		return Write(data, GetTailTime());
	case kAudioUnitProperty_LastRenderError:
		return Write(data, mLastRenderError.exchange(noErr));
	case kAudioUnitProperty_FactoryPresets: {
		const AUArray* presets = nullptr;
		const OSStatus status = GetPresets(&presets);
		return status == noErr ? Write(data, presets) : status;
	}
	case kAudioUnitProperty_HostCallbacks:
		return Write(data, mHostCallbacks.Copy());
	case kAudioUnitProperty_SupportedChannelLayoutTags:
		return WriteAll(data, GetChannelLayoutTags(scope, element));
	case kAudioUnitProperty_PresentPreset: {
		const std::lock_guard guard(mLock);
		mpPresetName->Retain();
		return Write(data, AUPreset{mPresetNumber, mpPresetName.Get()});
	}
	default:
		return kAudioUnitErr_InvalidProperty;
	}
}

// Telling

OSStatus AUBase::SetProperty(
    AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, const void* data, UInt32 size) {
	UInt32 itsSize = 0;
	bool isWritable = false;
	const OSStatus known = GetPropertyInfo(id, scope, element, itsSize, isWritable);
	if (known != noErr)
		return known;
	if (!isWritable)
		return IsOfBusses(id) && mIsInitialized ? kAudioUnitErr_Initialized : kAudioUnitErr_PropertyNotWritable;
	if (id == kAudioUnitProperty_HostCallbacks) { // hosts that know fewer functions
		mHostCallbacks.Set(Read<HostCallbackInfo>(data, size));
		return noErr;
	}
	if (size < itsSize)
		return kAudioUnitErr_InvalidPropertyValue;
	switch (id) {
	case kAudioUnitProperty_ClassInfo: {
		const auto* state = Read<const AUObject*>(data);
		const auto* dictionary = dynamic_cast<const AUDictionary*>(state);
		return dictionary ? RestoreState(*dictionary) : kAudioUnitErr_InvalidPropertyValue;
	}
	case kAudioUnitProperty_MakeConnection:
		return SetConnection(Read<AudioUnitConnection>(data));
	case kAudioUnitProperty_SampleRate: {
		AudioStreamBasicDescription format = FindBus(scope, element)->mFormat;
		format.mSampleRate = Read<Float64>(data);
		return SetStreamFormat(scope, element, format);
	}
	case kAudioUnitProperty_StreamFormat:
		return SetStreamFormat(scope, element, Read<AudioStreamBasicDescription>(data));
	case kAudioUnitProperty_ElementCount: {
		const OSStatus status = SetBusCount(scope, Read<UInt32>(data));
		if (status == noErr)
			PropertyChanged(id, scope, element);
		return status;
	}
	case kAudioUnitProperty_MaximumFramesPerSlice:
		return SetFrames(Read<UInt32>(data));
	case kAudioUnitProperty_AudioChannelLayout:
		return SetLayoutTag(scope, element, Read<AudioChannelLayout>(data).mChannelLayoutTag);
	case kAudioUnitProperty_SetRenderCallback:
		return SetRenderCallback(element, Read<AURenderCallbackStruct>(data));
	case kAudioUnitProperty_PresentPreset:
		return SetPreset(Read<AUPreset>(data));
	default:
		return kAudioUnitErr_PropertyNotWritable;
	}
}

OSStatus
AUBase::SetStreamFormat(AudioUnitScope scope, AudioUnitElement element, const AudioStreamBasicDescription& format) {
	if (!IsSupported(format))
		return kAudioUnitErr_FormatNotSupported;
	FindBus(scope, element)->mFormat = format;
	PropertyChanged(kAudioUnitProperty_StreamFormat, scope, element);
	return noErr;
}

OSStatus AUBase::SetLayoutTag(AudioUnitScope scope, AudioUnitElement element, AudioChannelLayoutTag tag) {
	const auto tags = GetChannelLayoutTags(scope, element);
	const bool isSupported = std::ranges::find(tags, tag) != tags.end();
	const bool fits = (tag & 0xFFFF) == FindBus(scope, element)->mFormat.mChannelsPerFrame;
	return isSupported && fits ? noErr : kAudioUnitErr_FormatNotSupported;
}

OSStatus AUBase::SetFrames(UInt32 frames) {
	if (mIsInitialized)
		return kAudioUnitErr_Initialized;
	if (frames > kMostFramesPerSlice)
		return kAudioUnitErr_InvalidPropertyValue;
	mMaxFrames = frames;
	PropertyChanged(kAudioUnitProperty_MaximumFramesPerSlice, kAudioUnitScope_Global, 0);
	return noErr;
}

/// The input takes the format of what it is connected to.
OSStatus AUBase::SetConnection(const AudioUnitConnection& connection) {
	if (connection.destInputNumber >= mInputs.size())
		return kAudioUnitErr_InvalidElement;
	AUInputBus& input = *mInputs[connection.destInputNumber];
	if (connection.sourceAudioUnit) {
		AudioStreamBasicDescription format;
		UInt32 size = sizeof(format);
		const OSStatus known = AudioUnitGetProperty(
		    connection.sourceAudioUnit, kAudioUnitProperty_StreamFormat, kAudioUnitScope_Output,
		    connection.sourceOutputNumber, &format, &size);
		if (known != noErr)
			return known;
		const bool fits = format.mSampleRate == input.mFormat.mSampleRate &&
		                  format.mChannelsPerFrame == input.mFormat.mChannelsPerFrame && IsSupported(format);
		if (!fits) {
			const OSStatus taken = SetProperty(
			    kAudioUnitProperty_StreamFormat, kAudioUnitScope_Input, connection.destInputNumber, &format, size);
			if (taken != noErr)
				return taken;
		}
	}
	input.mSource.Set({connection, {}});
	PropertyChanged(kAudioUnitProperty_MakeConnection, kAudioUnitScope_Input, connection.destInputNumber);
	return noErr;
}

OSStatus AUBase::SetRenderCallback(AudioUnitElement element, const AURenderCallbackStruct& callback) {
	if (element >= mInputs.size())
		return kAudioUnitErr_InvalidElement;
	mInputs[element]->mSource.Set({{}, callback});
	PropertyChanged(kAudioUnitProperty_SetRenderCallback, kAudioUnitScope_Input, element);
	return noErr;
}
