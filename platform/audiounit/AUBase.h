// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audiounit/AUBus.h"
#include "platform/audiounit/AUObjects.h"
#include "platform/audiounit/AUPublished.h"
#include "platform/audiounit/AudioComponent.h"
#include "platform/audiounit/AudioUnitTypes.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

/// What all Audio Units have in common: busses with their formats and sources, the dispatch of properties, the state
/// dictionary, the present preset, and everything around one render. A unit derives from it and overrides.
///
/// The dispatching half is what a component's methods call; it has checked arguments and state when it calls the
/// virtual half. Results are the published codes; both halves may also throw.
///
/// Rendering, parameters and their scheduling, listeners, sources and host callbacks: any thread, while it renders,
/// too. Set-up (formats, bus counts, Initialize) comes from one thread at a time. Rendering neither allocates nor
/// locks.
class AUBase {
public:
	AUBase(AudioComponentInstance instance, UInt32 inputs, UInt32 outputs);
	virtual ~AUBase() = default;

	AUBase(const AUBase&) = delete;
	AUBase& operator=(const AUBase&) = delete;

	AudioComponentInstance ComponentInstance() const { return mInstance; }

	bool IsInitialized() const { return mIsInitialized; }

	// The dispatching half

	OSStatus DoInitialize();
	/// Waits for a render on another thread; from inside one it fails.
	OSStatus DoCleanup();
	OSStatus DispatchGetPropertyInfo(
	    AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, UInt32* size, Boolean* writable);
	OSStatus DispatchGetProperty(
	    AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, void* data, UInt32* size);
	OSStatus DispatchSetProperty(
	    AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, const void* data, UInt32 size);
	OSStatus AddPropertyListener(AudioUnitPropertyID id, AudioUnitPropertyListenerProc proc, void* user);
	/// Null for all users.
	OSStatus RemovePropertyListener(AudioUnitPropertyID id, AudioUnitPropertyListenerProc proc, void* const* user);
	OSStatus AddRenderNotify(AURenderCallback proc, void* refCon);
	OSStatus RemoveRenderNotify(AURenderCallback proc, void* refCon);
	OSStatus DispatchGetParameter(
	    AudioUnitParameterID id, AudioUnitScope scope, AudioUnitElement element, AudioUnitParameterValue* value);
	OSStatus ScheduleParameters(const AudioUnitParameterEvent* events, UInt32 count);
	OSStatus DoRender(
	    AudioUnitRenderActionFlags* flags, const AudioTimeStamp* timeStamp, UInt32 bus, UInt32 frames,
	    AudioBufferList* data);

	// The virtual half. Sizes are in bytes.

	virtual OSStatus Version() { return 0; }

	virtual OSStatus Initialize() { return noErr; }

	virtual void Cleanup() {}

	virtual OSStatus Reset(AudioUnitScope /*scope*/, AudioUnitElement /*element*/) { return noErr; }

	/// Fills all outputs, of which bus 0 has its buffers already.
	virtual OSStatus Render(AudioUnitRenderActionFlags& flags, const AudioTimeStamp& timeStamp, UInt32 frames) = 0;

	virtual OSStatus GetPropertyInfo(
	    AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, UInt32& size, bool& writable);
	/// data has room for the size that GetPropertyInfo tells.
	virtual OSStatus GetProperty(AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, void* data);
	/// data is never null.
	virtual OSStatus
	SetProperty(AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, const void* data, UInt32 size);

	virtual OSStatus GetParameterInfo(AudioUnitScope scope, AudioUnitParameterID id, AudioUnitParameterInfo& info);
	virtual OSStatus GetParameter(
	    AudioUnitParameterID id, AudioUnitScope scope, AudioUnitElement element, AudioUnitParameterValue& value);
	virtual OSStatus SetParameter(
	    AudioUnitParameterID id, AudioUnitScope scope, AudioUnitElement element, AudioUnitParameterValue value,
	    UInt32 offset);

	/// Without it a scheduled value acts at once, and ramps are left alone.
	virtual bool CanScheduleParameters() const { return true; }

	/// A new dictionary in state, which belongs to the caller.
	virtual OSStatus SaveState(AUDictionary*& state);
	/// Refuses the state of another component.
	virtual OSStatus RestoreState(const AUDictionary& state);

	/// A new array, which belongs to the caller; null asks only whether there is one.
	virtual OSStatus GetPresets(const AUArray** /*presets*/) { return kAudioUnitErr_InvalidProperty; }

	virtual OSStatus NewFactoryPresetSet(const AUPreset& /*preset*/) { return kAudioUnitErr_InvalidProperty; }

	virtual Float64 GetLatency() { return 0.0; }

	virtual bool SupportsTail() { return false; }

	virtual Float64 GetTailTime() { return 0.0; }

	virtual std::span<const AUChannelInfo> SupportedNumChannels() { return {}; }

	virtual std::span<const AudioChannelLayoutTag>
	GetChannelLayoutTags(AudioUnitScope /*scope*/, AudioUnitElement /*element*/) {
		return {};
	}

	virtual OSStatus SetBusCount(AudioUnitScope scope, UInt32 count);

	virtual bool BusCountWritable(AudioUnitScope /*scope*/) { return false; }

	virtual bool StreamFormatWritable(AudioUnitScope scope, AudioUnitElement element);

protected:
	/// Parameters 0 to count - 1 in the global scope.
	void UseIndexedParameters(UInt32 count) { mNumberOfParameters = count; }

	UInt32 InputBusses() const { return static_cast<UInt32>(mInputs.size()); }

	UInt32 OutputBusses() const { return static_cast<UInt32>(mOutputs.size()); }

	AUInputBus& Input(std::size_t bus) { return *mInputs[bus]; }

	AUBus& Output(std::size_t bus) { return *mOutputs[bus]; }

	UInt32 MaxFramesPerSlice() const { return mMaxFrames; }

	void SetMaxFramesPerSlice(UInt32 frames) { mMaxFrames = frames; }

	/// Brings an input's sound into its buffers, which are valid until the render is over. Only inside Render.
	OSStatus PullInput(std::size_t bus, AudioUnitRenderActionFlags& flags, const AudioTimeStamp& time, UInt32 frames);

	void SetPresentPreset(SInt32 number, AURef<const AUString> name);
	SInt32 PresentPresetNumber() const;
	/// Tells the listeners. Main thread.
	void PropertyChanged(AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element);

	/// False when there is no such function, or it has no answer.
	bool CallHostBeatAndTempo(Float64& beat, Float64& tempo);
	bool CallHostMusicalTimeLocation(Float32& numerator, UInt32& denominator);

	struct THostTransport {
		Boolean mIsPlaying = 0;
		Boolean mHasChanged = 0;
		Float64 mSamplePosition = 0.0;
		Boolean mIsCycling = 0;
		Float64 mCycleStart = 0.0;
		Float64 mCycleEnd = 0.0;
	};

	bool CallHostTransportState(THostTransport& transport);

private:
	struct TPropertyListener {
		AudioUnitPropertyID mId;
		AudioUnitPropertyListenerProc mpProc;
		void* mpUser;
	};

	struct TRenderNotify {
		AURenderCallback mpProc;
		void* mpRefCon;

		bool operator==(const TRenderNotify&) const = default;
	};

	class TRenderScope;

	bool IsKnownBus(AudioUnitScope scope, AudioUnitElement element) const;
	AUBus* FindBus(AudioUnitScope scope, AudioUnitElement element);
	OSStatus CheckPlace(AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element);
	OSStatus SetStreamFormat(AudioUnitScope scope, AudioUnitElement element, const AudioStreamBasicDescription& format);
	OSStatus SetLayoutTag(AudioUnitScope scope, AudioUnitElement element, AudioChannelLayoutTag tag);
	OSStatus SetConnection(const AudioUnitConnection& connection);
	OSStatus SetRenderCallback(AudioUnitElement element, const AURenderCallbackStruct& callback);
	OSStatus SetPreset(const AUPreset& preset);
	OSStatus SetFrames(UInt32 frames);
	AudioChannelLayout LayoutOf(AudioUnitScope scope, AudioUnitElement element);
	void AllocateBuffers();

	OSStatus CheckRequest(UInt32 bus, UInt32 frames, const AudioBufferList& data) const;
	OSStatus RenderBus(
	    AudioUnitRenderActionFlags& flags, const AudioTimeStamp& timeStamp, UInt32 bus, UInt32 frames,
	    AudioBufferList& data);
	bool IsRendered(UInt32 bus, const AudioTimeStamp& timeStamp) const;
	void Notify(
	    AudioUnitRenderActionFlags flags, const AudioTimeStamp& timeStamp, UInt32 bus, UInt32 frames,
	    AudioBufferList& data);

	const AudioComponentInstance mInstance;
	std::vector<std::unique_ptr<AUInputBus>> mInputs;
	std::vector<std::unique_ptr<AUBus>> mOutputs;
	UInt32 mNumberOfParameters = 0;
	UInt32 mMaxFrames = 1156; // what hosts expect of a unit that they have told nothing
	std::atomic<bool> mIsInitialized{false};
	AUPublished<HostCallbackInfo> mHostCallbacks;
	AUPublished<std::vector<TRenderNotify>> mRenderNotifies;

	// Rendering
	std::atomic<bool> mIsRendering{false};
	std::atomic<std::thread::id> mRenderThread{};
	std::vector<char> mIsFresh; // a bus that holds what was rendered at mRenderedTime and was not fetched yet
	Float64 mRenderedTime = 0.0;
	std::atomic<OSStatus> mLastRenderError{noErr};

	mutable std::mutex mLock; // over what follows
	std::vector<TPropertyListener> mListeners;
	SInt32 mPresetNumber = -1;
	AURef<const AUString> mpPresetName;
};
