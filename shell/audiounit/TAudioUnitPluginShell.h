// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audiounit/AUBase.h"
#include "platform/audiounit/AUMIDIBase.h"
#include "platform/audiounit/AUSystem.h"
#include "shell/TAudioPluginShell.h"
#include "shell/TPublishedParameters.h"
#include "shell/audiounit/TAudioUnitBuffers.h"

#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

class Vortel215vst3AudioUnitPluginShellView;

/// The adapter of Audio Units. Unlike other hosts' plug-ins an Audio Unit fetches its input itself, has its layout of
/// busses checked only when it is initialised, and is shown by a view that the host makes through a class it looks up.
///
/// The component's methods open the instance's storage and catch what is thrown. Render plays the audio thread; what
/// builds up, takes down or replaces (Initialize, Cleanup, states, presets) plays the main thread; all else keeps the
/// role that the calling thread has. The host is told of changes on the main thread only, and of a state that it has
/// brought itself only after that call.
class TAudioUnitPluginShell final : public TAudioPluginShell,
                                    public AUBase,
                                    public AUMIDIBase,
                                    private TPublishedParameters::THost,
                                    private AUSystem::TTimerTarget {
public:
	/// Main thread.
	TAudioUnitPluginShell(TDocument* document, TEngine* engine, TGui* gui, AudioComponentInstance instance);

	/// The shell of a component instance; null if there is none. Any thread.
	static TAudioUnitPluginShell* Find(AudioComponentInstance instance);

	/// Ends everything that could call the instance from outside. Before the last reference goes; main thread.
	void CloseDown();

	// AUBase

	OSStatus Version() override { return mpDocument->ProductVersion(); }

	OSStatus Initialize() override;
	OSStatus Reset(AudioUnitScope scope, AudioUnitElement element) override;
	OSStatus Render(AudioUnitRenderActionFlags& flags, const AudioTimeStamp& timeStamp, UInt32 frames) override;
	OSStatus GetPropertyInfo(
	    AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, UInt32& size, bool& writable) override;
	OSStatus GetProperty(AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, void* data) override;
	OSStatus SetProperty(
	    AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, const void* data, UInt32 size) override;
	OSStatus GetParameterInfo(AudioUnitScope scope, AudioUnitParameterID id, AudioUnitParameterInfo& info) override;
	OSStatus GetParameter(
	    AudioUnitParameterID id, AudioUnitScope scope, AudioUnitElement element,
	    AudioUnitParameterValue& value) override;
	/// The offset is ignored: a value acts at once.
	OSStatus SetParameter(
	    AudioUnitParameterID id, AudioUnitScope scope, AudioUnitElement element, AudioUnitParameterValue value,
	    UInt32 offset) override;

	bool CanScheduleParameters() const override { return false; }

	OSStatus SaveState(AUDictionary*& state) override;
	OSStatus RestoreState(const AUDictionary& state) override;
	OSStatus GetPresets(const AUArray** presets) override;
	OSStatus NewFactoryPresetSet(const AUPreset& preset) override;
	Float64 GetLatency() override;
	std::span<const AUChannelInfo> SupportedNumChannels() override;
	std::span<const AudioChannelLayoutTag>
	GetChannelLayoutTags(AudioUnitScope scope, AudioUnitElement element) override;
	OSStatus SetBusCount(AudioUnitScope scope, UInt32 count) override;

	// AUMIDIBase

	OSStatus HandleMidiEvent(UInt8 status, UInt8 channel, UInt8 data1, UInt8 data2, UInt32 offset) override;

	// TAudioPluginShell

	bool CanRequestWindowResize() override { return true; }

	bool RequestWindowResize(const TSize& oldSize, const TSize& newSize) override;
	void BeginHostEdits() override;
	void EndHostEdits() override;

private:
	friend class Vortel215vst3AudioUnitPluginShellView;

	enum class TNews : int32_t {
		kProgramChanged,
		kProgramChangedElsewhere, // on another thread than the main one
		kProgramNamesChanged,
		kParametersReplaced,
		kParametersChanged
	};

	struct TLayout {
		int mInputChannels = 0;
		int mOutputChannels = 0;
		bool mIsAccepted = true;
	};

	~TAudioUnitPluginShell() override;

	void ObserveDocument();
	void StopObserving();

	TLayout CheckLayout();
	void CheckInputs(TLayout& layout);
	void CheckOutputs(TLayout& layout);
	bool HasChannels(const TLayout& layout) const;
	int32_t WorkingSampleRate();
	int32_t WorkingBlockSize();
	/// Of the first output, cut to whole hertz; 0 where it is none that an engine could run at.
	int32_t HostSampleRate();

	OSStatus RenderSilence(UInt32 frames);
	OSStatus CollectInputs(const AudioTimeStamp& timeStamp, UInt32 frames);
	OSStatus CollectOutputs(UInt32 frames);
	bool LendInput(std::size_t bus);
	void HandOverMidiInput();
	void ReadTransport();

	bool IsParameter(AudioUnitParameterID id) const;
	OSStatus GetViewInfo(void* data) const;
	OSStatus GetParameterText(void* data) const;
	OSStatus GetParameterFromText(void* data) const;

	void OnTimer() override;

	void BeginEdit(int32_t parameter) override;
	void PerformEdit(int32_t parameter, float value) override;
	void EndEdit(int32_t parameter) override;

	void OnProgramIndex(TObservable* observable, int32_t reason);
	void OnProgramNames(TObservable* observable, int32_t reason);
	void OnParameterListAboutToChange(TObservable* observable, int32_t reason);
	void OnParameterListChanged(TObservable* observable, int32_t reason);
	void OnWantsKeyboardInput(TObservable* observable, int32_t reason);
	void ReportOnMainThread(TNews news);
	void Report(TNews news);
	void ReportProperties(std::span<const AudioUnitPropertyID> ids);
	void FollowProgram();
	void NotifyListeners(UInt32 eventType, AudioUnitParameterID parameter) const;

	bool mIsClosed = false; // main thread
	std::atomic<bool> mInPlaceProcessing{false};

	// Audio thread
	std::vector<TMidiEvent> mMidiInputEvents;
	TAudioUnitBuffers mBuffers;
	TTransportInfo mTransport;

	// The host is changing the program. A change that another thread makes in the same instant may be taken for the
	// host's; all that costs is the request to read the values again.
	std::atomic<bool> mInHostProgramChange{false};

	TPtr<TPublishedParameters> mpParameterMap;
	// Main thread; hosts hold the views.
	std::vector<Vortel215vst3AudioUnitPluginShellView*> mViews;
	Vortel215vst3AudioUnitPluginShellView* mpView = nullptr; // the one that shows the editor, if any does
};
