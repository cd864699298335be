// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audiounit/AUBase.h"

/// What a unit that takes MIDI adds to AUBase.
class AUMIDIBase {
public:
	explicit AUMIDIBase(AUBase& unit) : mUnit(unit) {}

	virtual ~AUMIDIBase() = default;

	AUMIDIBase(const AUMIDIBase&) = delete;
	AUMIDIBase& operator=(const AUMIDIBase&) = delete;

	/// For the render that comes next, on its thread. offset: samples from its start.
	OSStatus MIDIEvent(UInt32 status, UInt32 data1, UInt32 data2, UInt32 offset) {
		if (!mUnit.IsInitialized())
			return kAudioUnitErr_Uninitialized;
		if (status < 0x80 || status > 0xFF)
			return kAudio_ParamError;
		const auto byte = [](UInt32 value) { return static_cast<UInt8>(value & 0xFF); };
		return HandleMidiEvent(byte(status & 0xF0), byte(status & 0x0F), byte(data1), byte(data2), offset);
	}

	OSStatus SysEx(const UInt8* data, UInt32 length) {
		if (!mUnit.IsInitialized())
			return kAudioUnitErr_Uninitialized;
		return data ? HandleSysEx(data, length) : kAudio_ParamError;
	}

	virtual OSStatus HandleMidiEvent(UInt8 status, UInt8 channel, UInt8 data1, UInt8 data2, UInt32 offset) = 0;

	virtual OSStatus HandleSysEx(const UInt8* /*data*/, UInt32 /*length*/) { return noErr; }

	// Properties that AUBase does not know

	virtual OSStatus DelegateGetPropertyInfo(
	    AudioUnitPropertyID /*id*/, AudioUnitScope /*scope*/, AudioUnitElement /*element*/, UInt32& /*size*/,
	    bool& /*writable*/) {
		return kAudioUnitErr_InvalidProperty;
	}

	virtual OSStatus DelegateGetProperty(
	    AudioUnitPropertyID /*id*/, AudioUnitScope /*scope*/, AudioUnitElement /*element*/, void* /*data*/) {
		return kAudioUnitErr_InvalidProperty;
	}

	virtual OSStatus DelegateSetProperty(
	    AudioUnitPropertyID /*id*/, AudioUnitScope /*scope*/, AudioUnitElement /*element*/, const void* /*data*/,
	    UInt32 /*size*/) {
		return kAudioUnitErr_InvalidProperty;
	}

private:
	AUBase& mUnit;
};
