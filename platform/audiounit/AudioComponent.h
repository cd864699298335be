// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audiounit/AudioUnitTypes.h"

struct AudioComponentDescription {
	UInt32 componentType; // four characters each, the first in the highest byte
	UInt32 componentSubType;
	UInt32 componentManufacturer;
};

/// Any method: cast to the type that belongs to its selector before it is called.
using AudioComponentMethod = void (*)();

/// What a component's factory function hands out: one per instance. Close also frees it.
struct AudioComponentPlugInInterface {
	OSStatus (*Open)(void* self, AudioComponentInstance instance);
	OSStatus (*Close)(void* self);
	/// Null for a selector that is not known.
	AudioComponentMethod (*Lookup)(SInt16 selector);
	void* reserved;
};

/// An instance as its host holds it.
struct AudioComponentInstanceRecord {
	AudioComponentPlugInInterface* mpPlugIn = nullptr;
	AudioComponentDescription mDescription{};
};

/// Calls an instance by selector. The arguments must be of exactly the types that belong to it.
template <class... TArguments>
OSStatus AudioUnitCall(AudioUnit unit, SInt16 selector, TArguments... arguments) {
	if (!unit || !unit->mpPlugIn)
		return kAudio_ParamError;
	const AudioComponentMethod method = unit->mpPlugIn->Lookup(selector);
	if (!method)
		return kAudio_UnimplementedError;
	return reinterpret_cast<OSStatus (*)(void*, TArguments...)>(method)(unit->mpPlugIn, arguments...);
}

inline OSStatus AudioUnitRender(
    AudioUnit unit, AudioUnitRenderActionFlags* flags, const AudioTimeStamp* timeStamp, UInt32 bus, UInt32 frames,
    AudioBufferList* data) {
	return AudioUnitCall(unit, kAudioUnitRenderSelect, flags, timeStamp, bus, frames, data);
}

inline OSStatus AudioUnitGetPropertyInfo(
    AudioUnit unit, AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, UInt32* size,
    Boolean* writable) {
	return AudioUnitCall(unit, kAudioUnitGetPropertyInfoSelect, id, scope, element, size, writable);
}

/// size: of data, then of what was written. Without data only the size is told.
inline OSStatus AudioUnitGetProperty(
    AudioUnit unit, AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, void* data, UInt32* size) {
	return AudioUnitCall(unit, kAudioUnitGetPropertySelect, id, scope, element, data, size);
}

inline OSStatus AudioUnitSetProperty(
    AudioUnit unit, AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, const void* data,
    UInt32 size) {
	return AudioUnitCall(unit, kAudioUnitSetPropertySelect, id, scope, element, data, size);
}
