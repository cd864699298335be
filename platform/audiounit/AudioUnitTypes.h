// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

// What hosts and Audio Units (component API, version 2) hand each other: numbers and records, in the published names,
// values and layouts. Texts, data, arrays and dictionaries are the objects of AUObjects.h.

class AUArray;
class AUDictionary;
class AUString;
struct AudioComponentInstanceRecord;

using UInt8 = uint8_t;
using SInt16 = int16_t;
using UInt32 = uint32_t;
using SInt32 = int32_t;
using UInt64 = uint64_t;
using Float32 = float;
using Float64 = double;
using Boolean = uint8_t;
using OSStatus = int32_t;

using AudioComponentInstance = AudioComponentInstanceRecord*;
using AudioUnit = AudioComponentInstance;
using AudioUnitPropertyID = UInt32;
using AudioUnitScope = UInt32;
using AudioUnitElement = UInt32;
using AudioUnitParameterID = UInt32;
using AudioUnitParameterValue = Float32;
using AudioUnitRenderActionFlags = UInt32;
using AudioChannelLayoutTag = UInt32;

enum : OSStatus {
	noErr = 0,
	kAudio_UnimplementedError = -4,
	kAudioUnitCannotOpen = -23,
	kAudio_ParamError = -50,
	kAudio_MemFullError = -108,
	kAudioUnitErr_InvalidProperty = -10879,
	kAudioUnitErr_InvalidParameter = -10878,
	kAudioUnitErr_InvalidElement = -10877,
	kAudioUnitErr_NoConnection = -10876,
	kAudioUnitErr_FailedInitialization = -10875,
	kAudioUnitErr_TooManyFramesToProcess = -10874,
	kAudioUnitErr_FormatNotSupported = -10868,
	kAudioUnitErr_Uninitialized = -10867,
	kAudioUnitErr_InvalidScope = -10866,
	kAudioUnitErr_PropertyNotWritable = -10865,
	kAudioUnitErr_CannotDoInCurrentContext = -10863,
	kAudioUnitErr_InvalidPropertyValue = -10851,
	kAudioUnitErr_Initialized = -10849,
	kAudioUnitErr_InvalidParameterValue = -66743
};

enum : AudioUnitScope { kAudioUnitScope_Global = 0, kAudioUnitScope_Input = 1, kAudioUnitScope_Output = 2 };

enum : AudioUnitPropertyID {
	kAudioUnitProperty_ClassInfo = 0,
	kAudioUnitProperty_MakeConnection = 1,
	kAudioUnitProperty_SampleRate = 2,
	kAudioUnitProperty_ParameterList = 3,
	kAudioUnitProperty_ParameterInfo = 4,
	kAudioUnitProperty_StreamFormat = 8,
	kAudioUnitProperty_ElementCount = 11,
	kAudioUnitProperty_Latency = 12,
	kAudioUnitProperty_SupportedNumChannels = 13,
	kAudioUnitProperty_MaximumFramesPerSlice = 14,
	kAudioUnitProperty_AudioChannelLayout = 19,
	kAudioUnitProperty_TailTime = 20,
	kAudioUnitProperty_LastRenderError = 22,
	kAudioUnitProperty_SetRenderCallback = 23,
	kAudioUnitProperty_FactoryPresets = 24,
	kAudioUnitProperty_HostCallbacks = 27,
	kAudioUnitProperty_InPlaceProcessing = 29,
	kAudioUnitProperty_CocoaUI = 31,
	kAudioUnitProperty_SupportedChannelLayoutTags = 32,
	kAudioUnitProperty_ParameterStringFromValue = 33,
	kAudioUnitProperty_PresentPreset = 36,
	kAudioUnitProperty_ParameterValueFromString = 38,
	kMusicDeviceProperty_InstrumentCount = 1000
};

/// What a component is asked for by number.
enum : SInt16 {
	kAudioUnitInitializeSelect = 0x0001,
	kAudioUnitUninitializeSelect = 0x0002,
	kAudioUnitGetPropertyInfoSelect = 0x0003,
	kAudioUnitGetPropertySelect = 0x0004,
	kAudioUnitSetPropertySelect = 0x0005,
	kAudioUnitGetParameterSelect = 0x0006,
	kAudioUnitSetParameterSelect = 0x0007,
	kAudioUnitResetSelect = 0x0009,
	kAudioUnitAddPropertyListenerSelect = 0x000A,
	kAudioUnitRemovePropertyListenerSelect = 0x000B,
	kAudioUnitRenderSelect = 0x000E,
	kAudioUnitAddRenderNotifySelect = 0x000F,
	kAudioUnitRemoveRenderNotifySelect = 0x0010,
	kAudioUnitScheduleParametersSelect = 0x0011,
	kAudioUnitRemovePropertyListenerWithUserDataSelect = 0x0012,
	kMusicDeviceMIDIEventSelect = 0x0101,
	kMusicDeviceSysExSelect = 0x0102
};

// Sound

enum : UInt32 {
	kAudioFormatLinearPCM = 0x6C70636D, // 'lpcm'
	kAudioFormatFlagIsFloat = 1u << 0,
	kAudioFormatFlagIsBigEndian = 1u << 1,
	kAudioFormatFlagIsPacked = 1u << 3,
	kAudioFormatFlagIsNonInterleaved = 1u << 5
};

struct AudioStreamBasicDescription {
	Float64 mSampleRate = 0.0;
	UInt32 mFormatID = 0;
	UInt32 mFormatFlags = 0;
	UInt32 mBytesPerPacket = 0;
	UInt32 mFramesPerPacket = 0;
	UInt32 mBytesPerFrame = 0;
	UInt32 mChannelsPerFrame = 0;
	UInt32 mBitsPerChannel = 0;
	UInt32 mReserved = 0;
};

struct AudioBuffer {
	UInt32 mNumberChannels;
	UInt32 mDataByteSize;
	void* mData;
};

/// As many buffers follow as mNumberBuffers says.
struct AudioBufferList {
	UInt32 mNumberBuffers;
	AudioBuffer mBuffers[1];
};

enum : UInt32 { kAudioTimeStampSampleTimeValid = 1u << 0 };

struct SMPTETime {
	SInt16 mSubframes;
	SInt16 mSubframeDivisor;
	UInt32 mCounter;
	UInt32 mType;
	UInt32 mFlags;
	SInt16 mHours;
	SInt16 mMinutes;
	SInt16 mSeconds;
	SInt16 mFrames;
};

struct AudioTimeStamp {
	Float64 mSampleTime;
	UInt64 mHostTime;
	Float64 mRateScalar;
	UInt64 mWordClockTime;
	SMPTETime mSMPTETime;
	UInt32 mFlags;
	UInt32 mReserved;
};

enum : AudioUnitRenderActionFlags {
	kAudioUnitRenderAction_PreRender = 1u << 2,
	kAudioUnitRenderAction_PostRender = 1u << 3,
	kAudioUnitRenderAction_OutputIsSilence = 1u << 4,
	kAudioUnitRenderAction_PostRenderError = 1u << 8
};

enum : AudioChannelLayoutTag {
	kAudioChannelLayoutTag_Mono = 0x640001, // the number of channels in the lower half
	kAudioChannelLayoutTag_Stereo = 0x650002
};

/// Descriptions may follow; ours have none.
struct AudioChannelLayout {
	AudioChannelLayoutTag mChannelLayoutTag;
	UInt32 mChannelBitmap;
	UInt32 mNumberChannelDescriptions;
};

/// A pair of channel counts that a unit takes.
struct AUChannelInfo {
	SInt16 inChannels;
	SInt16 outChannels;
};

// Where sound comes from

using AURenderCallback = OSStatus (*)(
    void* refCon, AudioUnitRenderActionFlags* flags, const AudioTimeStamp* timeStamp, UInt32 bus, UInt32 frames,
    AudioBufferList* data);

struct AURenderCallbackStruct {
	AURenderCallback inputProc = nullptr;
	void* inputProcRefCon = nullptr;
};

struct AudioUnitConnection {
	AudioUnit sourceAudioUnit = nullptr;
	UInt32 sourceOutputNumber = 0;
	UInt32 destInputNumber = 0;
};

// The host's transport

using HostCallback_GetBeatAndTempo = OSStatus (*)(void* user, Float64* beat, Float64* tempo);
using HostCallback_GetMusicalTimeLocation = OSStatus (*)(
    void* user, UInt32* samplesToNextBeat, Float32* numerator, UInt32* denominator, Float64* measureDownBeat);
using HostCallback_GetTransportState = OSStatus (*)(
    void* user, Boolean* isPlaying, Boolean* changed, Float64* samplePosition, Boolean* isCycling, Float64* cycleStart,
    Float64* cycleEnd);
using HostCallback_GetTransportState2 = OSStatus (*)(
    void* user, Boolean* isPlaying, Boolean* isRecording, Boolean* changed, Float64* samplePosition, Boolean* isCycling,
    Float64* cycleStart, Float64* cycleEnd);

/// Hosts may know only a part of it, from the front.
struct HostCallbackInfo {
	void* hostUserData = nullptr;
	HostCallback_GetBeatAndTempo beatAndTempoProc = nullptr;
	HostCallback_GetMusicalTimeLocation musicalTimeLocationProc = nullptr;
	HostCallback_GetTransportState transportStateProc = nullptr;
	HostCallback_GetTransportState2 transportStateProc2 = nullptr;
};

// Parameters and presets

enum : UInt32 {
	kAudioUnitParameterUnit_CustomUnit = 26,
	kAudioUnitParameterFlag_CFNameRelease = 1u << 4,
	kAudioUnitParameterFlag_ValuesHaveStrings = 1u << 21,
	kAudioUnitParameterFlag_IsHighResolution = 1u << 23,
	kAudioUnitParameterFlag_HasCFNameString = 1u << 27,
	kAudioUnitParameterFlag_IsReadable = 1u << 30,
	kAudioUnitParameterFlag_IsWritable = 1u << 31
};

struct AudioUnitParameterInfo {
	char name[52];            // UTF-8, zero-terminated
	const AUString* unitName; // with CFNameRelease both texts belong to who asked
	UInt32 clumpID;
	const AUString* cfNameString;
	UInt32 unit;
	AudioUnitParameterValue minValue;
	AudioUnitParameterValue maxValue;
	AudioUnitParameterValue defaultValue;
	UInt32 flags;
};

struct AudioUnitParameterStringFromValue {
	AudioUnitParameterID inParamID;
	const AudioUnitParameterValue* inValue; // null: the present value
	const AUString* outString;              // belongs to who asked
};

struct AudioUnitParameterValueFromString {
	AudioUnitParameterID inParamID;
	const AUString* inString;
	AudioUnitParameterValue outValue;
};

enum : UInt32 { kParameterEvent_Immediate = 1, kParameterEvent_Ramped = 2 };

struct AudioUnitParameterEvent {
	AudioUnitScope scope;
	AudioUnitElement element;
	AudioUnitParameterID parameter;
	UInt32 eventType;
	union {
		struct {
			SInt32 startBufferOffset;
			UInt32 durationInFrames;
			AudioUnitParameterValue startValue;
			AudioUnitParameterValue endValue;
		} ramp;
		struct {
			UInt32 bufferOffset;
			AudioUnitParameterValue value;
		} immediate;
	} eventValues;
};

struct AUPreset {
	SInt32 presetNumber = 0; // below 0: one of the user's
	const AUString* presetName = nullptr;
};

/// Where a host finds the class that makes views.
struct AudioUnitCocoaViewInfo {
	const AUString* mCocoaAUViewBundleLocation; // both belong to who asked
	const AUString* mCocoaAUViewClass;
};

// What a unit tells those who watch it

enum : UInt32 {
	kAudioUnitEvent_ParameterValueChange = 0,
	kAudioUnitEvent_BeginParameterChangeGesture = 1,
	kAudioUnitEvent_EndParameterChangeGesture = 2
};

inline constexpr AudioUnitParameterID kAUParameterListener_AnyParameter = 0xFFFFFFFF;

struct AudioUnitParameterAddress {
	AudioUnit mAudioUnit;
	AudioUnitParameterID mParameterID;
	AudioUnitScope mScope;
	AudioUnitElement mElement;
};

struct AudioUnitEvent {
	UInt32 mEventType;
	AudioUnitParameterAddress mParameter;
};

using AudioUnitPropertyListenerProc =
    void (*)(void* user, AudioUnit unit, AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element);

static_assert(sizeof(AudioStreamBasicDescription) == 40 && sizeof(AudioTimeStamp) == 64);
static_assert(sizeof(AudioUnitParameterInfo) == 104 && sizeof(AudioUnitParameterEvent) == 32);
static_assert(sizeof(AudioUnitParameterStringFromValue) == 24 && sizeof(AudioUnitParameterValueFromString) == 24);
static_assert(sizeof(AudioUnitConnection) == 16 && sizeof(AUPreset) == 16 && sizeof(AudioUnitCocoaViewInfo) == 16);
