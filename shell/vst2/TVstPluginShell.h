// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TStream.h"
#include "framework/foundation/threads/TThreadManager.h"
#include "shell/TAudioPluginShell.h"
#include "shell/TPublishedParameters.h"
#include "shell/TStereoBuffers.h"
#include "shell/vst2/AudioEffectX.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// The adapter of VST 2. Translates host calls into calls of document, engine and GUI, and their changes into calls of
/// the host.
///
/// Every call opens the instance's storage first and lets no exception out. process, processReplacing and processEvents
/// play the audio thread. Of the dispatcher's operations those that build up, take down or replace (open, resume,
/// chunks, arrangements, the editor) play the main thread, whichever of the host's threads they come on; they also run
/// what waits for the main thread, because the format lends no timer and not every host gives idle calls while the
/// editor is closed. All others keep the role that the calling thread has: hosts also ask on audio threads.
///
/// The host is told of changes on the main thread only, but for events, and never from inside a call that brought the
/// change.
class TVstPluginShell final : public TAudioPluginShell,
                              public AVstSdk::AudioEffectX,
                              private TPublishedParameters::THost {
public:
	/// Ends an instance: called when the host closes it; destroys the shell.
	using TReleaser = void (*)(TVstPluginShell* shell);

	class TVstEditor;

	TVstPluginShell(TDocument* document, TEngine* engine, TGui* gui, audioMasterCallback host, TReleaser releaser);

	// AudioEffectX
	void open() override;
	void close() override;
	void resume() override;
	void suspend() override;
	void process(float** inputs, float** outputs, VstInt32 samples) override;
	void processReplacing(float** inputs, float** outputs, VstInt32 samples) override;
	VstInt32 processEvents(VstEvents* events) override;
	void setParameter(VstInt32 index, float value) override;
	float getParameter(VstInt32 index) override;
	void getParameterName(VstInt32 index, char* text) override;
	void getParameterLabel(VstInt32 index, char* text) override;
	void getParameterDisplay(VstInt32 index, char* text) override;
	VstInt32 getProgram() override;
	void setProgram(VstInt32 index) override;
	void setProgramName(char* text) override;
	void getProgramName(char* text) override;
	bool getProgramNameIndexed(VstInt32 category, VstInt32 index, char* text) override;
	VstInt32 getChunk(void** data, bool isPreset) override;
	VstInt32 setChunk(void* data, VstInt32 size, bool isPreset) override;
	bool getInputProperties(VstInt32 index, VstPinProperties* pin) override;
	bool getOutputProperties(VstInt32 index, VstPinProperties* pin) override;
	bool getSpeakerArrangement(VstSpeakerArrangement** input, VstSpeakerArrangement** output) override;
	bool setSpeakerArrangement(VstSpeakerArrangement* input, VstSpeakerArrangement* output) override;
	bool getEffectName(char* text) override;
	bool getVendorString(char* text) override;
	bool getProductString(char* text) override;
	VstInt32 getVendorVersion() override;
	VstInt32 canDo(char* text) override;
	VstIntPtr vendorSpecific(VstInt32 index, VstIntPtr value, void* ptr, float opt) override;
	bool keysRequired() override;
	VstInt32 fxIdle() override;

	// TAudioPluginShell
	bool CanRequestWindowResize() override { return true; }

	bool RequestWindowResize(const TSize& oldSize, const TSize& newSize) override;
	void BeginHostEdits() override;
	void EndHostEdits() override;

	bool CanSendMidiEvents() override { return true; }

	/// Audio thread.
	void SendMidiEvents(std::span<const TMidiEvent> events) override;

	static constexpr std::size_t kMostEvents = 512; // in one call

private:
	friend class TVstPluginShellIoChangedCommand;

	enum class TNews : int32_t { kDisplay, kAllParameters };

	/// A VstEvents with room.
	struct TEventList {
		VstInt32 mCount;
		VstIntPtr mReserved;
		std::array<VstEvent*, kMostEvents> mEvents;
	};

	~TVstPluginShell() override = default;

	static VstIntPtr
	DispatchFromHost(AEffect* effect, int opcode, int index, VstIntPtr value, void* ptr, float opt) noexcept;
	VstIntPtr Dispatch(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);
	void End() noexcept;

	void ObserveDocument();
	void StopObserving();
	TVstEditor* OwnEditor() const;

	void SetChannels(int32_t inputs, int32_t outputs);
	bool AcceptsChannels(int32_t inputs, int32_t outputs) const;
	bool IsProgram(VstInt32 index) const;
	bool IsParameter(VstIntPtr index) const;
	VstIntPtr WriteParameterText(VstInt32 index, float value, void* text);
	VstIntPtr ReadParameterText(VstInt32 index, void* text);

	void ProcessBlock(float** inputs, float** outputs, VstInt32 samples);
	void ProcessAndAdd(float** inputs, float** outputs, VstInt32 samples);
	void RunEngine(float** inputs, float** outputs, int32_t samples);
	void StartBlock();
	bool ClearIfSilent(float** outputs, VstInt32 samples);
	void FollowLatency();
	const TTransportInfo* ReadTransport();
	void ReceiveEvents(const VstEvents* events);
	void HandOverMidiInput();
	void SendBatch(std::span<const TMidiEvent> events);

	void BeginEdit(int32_t parameter) override;
	void PerformEdit(int32_t parameter, float value) override;
	void EndEdit(int32_t parameter) override;

	void OnProgramIndex(TObservable* observable, int32_t reason);
	void OnProgramNames(TObservable* observable, int32_t reason);
	void OnParameterListAboutToChange(TObservable* observable, int32_t reason);
	void OnParameterListChanged(TObservable* observable, int32_t reason);
	void ReportOnMainThread(TNews news);
	void Report(TNews news);

	const TReleaser mReleaser;
	std::atomic<bool> mEffectOpen{false};
	std::atomic<bool> mResumed{false};
	// The host is changing the program. A change that another thread makes in the same instant may be taken for the
	// host's; all that costs is an update of its display.
	std::atomic<bool> mInHostProgramChange{false};
	std::atomic<bool> mSerializeParameters{false}; // the host has asked whether we do
	std::atomic<bool> mHostHasViewAsConfig{false}; // the host has asked for that, too
	TStream mChunk;                                // what the host has got a pointer to
	TPtr<TPublishedParameters> mpParameterMap;
	TVst2Arrangement mInputArrangement{};
	TVst2Arrangement mOutputArrangement{};

	// Audio thread
	TEventList mEventList{};
	std::array<VstMidiEvent, kMostEvents> mEvents{};
	std::vector<TMidiEvent> mMidiInputEvents;
	TStereoBuffers mBuffers;
	std::vector<std::vector<float>>
	    mAccumulationBuffers; // one per output channel, for hosts that have outputs added to
	TTransportInfo mTransport;
};
