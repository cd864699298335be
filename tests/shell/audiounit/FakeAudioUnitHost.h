// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audiounit/AUObjects.h"
#include "platform/audiounit/AUSystem.h"
#include "platform/audiounit/AudioComponent.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

/// The process around the units: its timers run when a test says so, and what listeners would hear is written down.
class TFakeAudioUnitSystem final : public AUSystem {
public:
	TFakeAudioUnitSystem() { Use(this); }

	~TFakeAudioUnitSystem() { Use(nullptr); }

	void StartTimer(TTimerTarget& target, int milliseconds) override {
		EXPECT_EQ(milliseconds, 10);
		const std::lock_guard guard(mLock); // instances come and go on any thread
		mTimers.push_back(&target);
	}

	void StopTimer(TTimerTarget& target) override {
		const std::lock_guard guard(mLock);
		std::erase(mTimers, &target);
	}

	void NotifyListeners(const AudioUnitEvent& event) override {
		constexpr const char* kNames[] = {"value", "begin", "end"};
		Hear(kNames[event.mEventType] + std::to_string(static_cast<int>(event.mParameter.mParameterID)));
	}

	void Hear(const std::string& what) {
		const std::lock_guard guard(mLock);
		mHeard += what + " ";
	}

	/// Every timer once.
	void Tick() {
		for (TTimerTarget* timer : Timers())
			if (std::ranges::count(Timers(), timer) > 0)
				timer->OnTimer();
	}

	std::vector<TTimerTarget*> Timers() {
		const std::lock_guard guard(mLock);
		return mTimers;
	}

	std::string Take() {
		const std::lock_guard guard(mLock);
		return std::exchange(mHeard, {});
	}

private:
	std::mutex mLock;
	std::vector<TTimerTarget*> mTimers;
	std::string mHeard;
};

/// A buffer list with memory of its own, as many channels as wanted.
class TFakeBuffers {
public:
	explicit TFakeBuffers(UInt32 channels, UInt32 frames, float value = 0.0f, bool withMemory = true) {
		mBytes.resize(sizeof(AudioBufferList) + channels * sizeof(AudioBuffer));
		mSamples.assign(channels, std::vector<float>(frames, value));
		Get()->mNumberBuffers = channels;
		for (UInt32 i = 0; i < channels; ++i)
			Buffer(i) = {1, frames * UInt32{sizeof(float)}, withMemory ? mSamples[i].data() : nullptr};
	}

	AudioBufferList* Get() { return reinterpret_cast<AudioBufferList*>(mBytes.data()); }

	AudioBuffer& Buffer(UInt32 channel) { return *(Get()->mBuffers + channel); }

	float* Samples(UInt32 channel) { return static_cast<float*>(Buffer(channel).mData); }

private:
	std::vector<std::byte> mBytes;
	std::vector<std::vector<float>> mSamples;
};

/// An instance as a host holds it: calls go through the component's methods.
class TFakeAudioUnit {
public:
	using TFactory = std::function<AudioComponentPlugInInterface*()>;

	explicit TFakeAudioUnit(const TFactory& factory) {
		mRecord.mDescription = {0x61756D66, 0x6B6D7137, 0x42726774};
		mRecord.mpPlugIn = factory();
		mOpened = mRecord.mpPlugIn->Open(mRecord.mpPlugIn, &mRecord);
	}

	~TFakeAudioUnit() { mRecord.mpPlugIn->Close(mRecord.mpPlugIn); }

	TFakeAudioUnit(const TFakeAudioUnit&) = delete;
	TFakeAudioUnit& operator=(const TFakeAudioUnit&) = delete;

	AudioUnit Unit() { return &mRecord; }

	template <class... TArguments>
	OSStatus Call(SInt16 selector, TArguments... arguments) {
		return AudioUnitCall(Unit(), selector, arguments...);
	}

	template <class T>
	OSStatus Get(AudioUnitPropertyID id, T& value, AudioUnitScope scope = 0, AudioUnitElement element = 0) {
		UInt32 size = sizeof(T);
		return AudioUnitGetProperty(Unit(), id, scope, element, &value, &size);
	}

	template <class T>
	OSStatus Set(AudioUnitPropertyID id, const T& value, AudioUnitScope scope = 0, AudioUnitElement element = 0) {
		return AudioUnitSetProperty(Unit(), id, scope, element, &value, sizeof(T));
	}

	/// Size and whether it can be written, as "4w", or the error.
	std::string Info(AudioUnitPropertyID id, AudioUnitScope scope = 0, AudioUnitElement element = 0) {
		UInt32 size = 0;
		Boolean writable = 0;
		const OSStatus status = AudioUnitGetPropertyInfo(Unit(), id, scope, element, &size, &writable);
		return status != noErr ? std::to_string(status) : std::to_string(size) + (writable ? "w" : "");
	}

	OSStatus SetFormat(AudioUnitScope scope, UInt32 channels, double rate, AudioUnitElement element = 0) {
		AudioStreamBasicDescription format;
		EXPECT_EQ(Get(kAudioUnitProperty_StreamFormat, format, scope, element), noErr);
		format.mChannelsPerFrame = channels;
		format.mSampleRate = rate;
		return Set(kAudioUnitProperty_StreamFormat, format, scope, element);
	}

	OSStatus Initialize() { return Call(kAudioUnitInitializeSelect); }

	OSStatus Uninitialize() { return Call(kAudioUnitUninitializeSelect); }

	OSStatus SetFrames(UInt32 frames) { return Set(kAudioUnitProperty_MaximumFramesPerSlice, frames); }

	OSStatus SetParameter(AudioUnitParameterID id, float value, AudioUnitScope scope = 0) {
		return Call(kAudioUnitSetParameterSelect, id, scope, AudioUnitElement{0}, AudioUnitParameterValue{value}, 0u);
	}

	float Parameter(AudioUnitParameterID id) {
		float value = -1.0f;
		EXPECT_EQ(Call(kAudioUnitGetParameterSelect, id, AudioUnitScope{0}, AudioUnitElement{0}, &value), noErr);
		return value;
	}

	OSStatus Midi(UInt32 status, UInt32 data1, UInt32 data2, UInt32 offset) {
		return Call(kMusicDeviceMIDIEventSelect, status, data1, data2, offset);
	}

	OSStatus Render(TFakeBuffers& buffers, UInt32 frames, UInt32 bus = 0) {
		AudioTimeStamp time{};
		time.mFlags = kAudioTimeStampSampleTimeValid;
		time.mSampleTime = mSampleTime.fetch_add(frames);
		AudioUnitRenderActionFlags flags = 0;
		return AudioUnitRender(Unit(), &flags, &time, bus, frames, buffers.Get());
	}

	/// Where the sound comes from; null for nowhere.
	OSStatus SetInput(AURenderCallback proc, void* refCon) {
		return Set(kAudioUnitProperty_SetRenderCallback, AURenderCallbackStruct{proc, refCon}, kAudioUnitScope_Input);
	}

	/// The state dictionary; null where there is none.
	AURef<AUDictionary> State() {
		AUDictionary* state = nullptr;
		EXPECT_EQ(Get(kAudioUnitProperty_ClassInfo, state), noErr);
		return AURef<AUDictionary>::Adopt(state);
	}

	OSStatus Load(const AUDictionary& state) {
		const AUDictionary* pointer = &state;
		return Set(kAudioUnitProperty_ClassInfo, pointer);
	}

	std::pair<SInt32, std::u16string> PresentPreset() {
		AUPreset preset;
		EXPECT_EQ(Get(kAudioUnitProperty_PresentPreset, preset), noErr);
		const auto name = AURef<const AUString>::Adopt(preset.presetName);
		return {preset.presetNumber, std::u16string(name->Units())};
	}

	OSStatus mOpened = noErr;

private:
	AudioComponentInstanceRecord mRecord;
	std::atomic<double> mSampleTime{0.0};
};

inline AURef<const AUObject> DataOf(std::vector<UInt8> bytes) {
	return AURef<const AUObject>::Adopt(new AUData(bytes));
}
