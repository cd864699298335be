// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TObservableBang.h"
#include "framework/foundation/threads/TThreadManager.h"
#include "shell/TAudioPluginShell.h"
#include "shell/TPublishedParameters.h"
#include "shell/vst3/SingleComponentEffect.h"
#include "shell/vst3/TVst3Buffers.h"
#include "shell/vst3/TVst3PointWalk.h"
#include "shell/vst3/TVst3Timer.h"
#include "shell/vst3/Vst3Ids.h"

#include <pluginterfaces/vst/ivstevents.h>
#include <pluginterfaces/vst/ivstparameterchanges.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// The adapter of VST 3: processor and edit controller in one object. Translates host calls into calls of document,
/// engine and GUI, and their changes into calls of the host's handler.
///
/// Every call opens the instance's storage first and lets no exception out. process plays the audio thread; what
/// builds up, takes down or replaces (initialize to terminate, states, setup) plays the main thread. The controller's
/// reads and setParamNormalized keep the role that the calling thread has: hosts make these calls on audio threads,
/// too, so they take no role and none of its locks.
///
/// The host is told of changes on the main thread only, and never from inside a call that brought the change: hosts
/// hold locks in those that their own answer would need.
class TVst3PluginShell final : public TAudioPluginShell,
                               public Steinberg::Vst::SingleComponentEffect,
                               public Steinberg::Vst::IMidiMapping,
                               private TPublishedParameters::THost,
                               private TVst3Timer::TTarget,
                               private TVst3PointWalk::TTarget {
public:
	/// Ends an instance: called when the host has given its last reference back; destroys the shell.
	using TReleaser = void (*)(TVst3PluginShell* shell);

	class TPluginParameter;
	class TPluginEditor;

	/// The host's first reference is counted already.
	TVst3PluginShell(TDocument* document, TEngine* engine, TGui* gui, TReleaser releaser);

	// FUnknown
	Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID interfaceId, void** object) override;
	Steinberg::uint32 PLUGIN_API addRef() override;
	Steinberg::uint32 PLUGIN_API release() override;

	// IPluginBase
	Steinberg::tresult PLUGIN_API initialize(Steinberg::FUnknown* context) override;
	Steinberg::tresult PLUGIN_API terminate() override;

	// IComponent
	Steinberg::tresult PLUGIN_API setActive(Steinberg::TBool state) override;

	// IAudioProcessor
	Steinberg::tresult PLUGIN_API setBusArrangements(
	    Steinberg::Vst::SpeakerArrangement* inputs, Steinberg::int32 numIns,
	    Steinberg::Vst::SpeakerArrangement* outputs, Steinberg::int32 numOuts) override;
	Steinberg::tresult PLUGIN_API canProcessSampleSize(Steinberg::int32 size) override;
	Steinberg::tresult PLUGIN_API setupProcessing(Steinberg::Vst::ProcessSetup& setup) override;
	Steinberg::tresult PLUGIN_API process(Steinberg::Vst::ProcessData& data) override;
	Steinberg::uint32 PLUGIN_API getLatencySamples() override;
	Steinberg::uint32 PLUGIN_API getTailSamples() override;

	// IEditController
	Steinberg::tresult PLUGIN_API setComponentState(Steinberg::IBStream* stream) override;
	Steinberg::tresult PLUGIN_API getParamStringByValue(
	    Steinberg::Vst::ParamID id, Steinberg::Vst::ParamValue value, Steinberg::Vst::String128 text) override;
	Steinberg::tresult PLUGIN_API getParamValueByString(
	    Steinberg::Vst::ParamID id, Steinberg::Vst::TChar* text, Steinberg::Vst::ParamValue& value) override;
	Steinberg::Vst::ParamValue PLUGIN_API
	plainParamToNormalized(Steinberg::Vst::ParamID id, Steinberg::Vst::ParamValue plain) override;
	Steinberg::Vst::ParamValue PLUGIN_API getParamNormalized(Steinberg::Vst::ParamID id) override;
	Steinberg::tresult PLUGIN_API
	setParamNormalized(Steinberg::Vst::ParamID id, Steinberg::Vst::ParamValue value) override;
	Steinberg::tresult PLUGIN_API setComponentHandler(Steinberg::Vst::IComponentHandler* handler) override;
	Steinberg::IPlugView* PLUGIN_API createView(Steinberg::FIDString name) override;

	// IMidiMapping
	Steinberg::tresult PLUGIN_API getMidiControllerAssignment(
	    Steinberg::int32 busIndex, Steinberg::int16 channel, Steinberg::Vst::CtrlNumber controller,
	    Steinberg::Vst::ParamID& id) override;

	// IUnitInfo: one unit, one list of programs
	Steinberg::int32 PLUGIN_API getUnitCount() override;
	Steinberg::tresult PLUGIN_API getUnitInfo(Steinberg::int32 index, Steinberg::Vst::UnitInfo& info) override;
	Steinberg::int32 PLUGIN_API getProgramListCount() override;
	Steinberg::tresult PLUGIN_API
	getProgramListInfo(Steinberg::int32 index, Steinberg::Vst::ProgramListInfo& info) override;
	Steinberg::tresult PLUGIN_API getProgramName(
	    Steinberg::Vst::ProgramListID list, Steinberg::int32 program, Steinberg::Vst::String128 name) override;

	// TAudioPluginShell
	bool CanRequestWindowResize() override { return true; }

	bool RequestWindowResize(const TSize& oldSize, const TSize& newSize) override;

	void BeginHostEdits() override;

	void EndHostEdits() override;

	bool CanSendMidiEvents() override { return true; }

	/// Audio thread. Events that are too many for one block are dropped.
	void SendMidiEvents(std::span<const TMidiEvent> events) override;

private:
	using TArrangements = std::span<const Steinberg::Vst::SpeakerArrangement>;

	/// Bits: what the host has not been told yet.
	enum TNews : uint32_t {
		kProgramChangedByHost = 1,
		kProgramChanged = 2,
		kProgramNamesChanged = 4,
		kLatencyIsAnother = 8
	};

	struct TWalksEndWithBlock;

	~TVst3PluginShell() override = default;

	Steinberg::tresult LoadComponent(Steinberg::IBStream* stream) override;
	Steinberg::tresult SaveComponent(Steinberg::IBStream* stream) override;

	Steinberg::tresult LoadController(Steinberg::IBStream* /*stream*/) override { return Steinberg::kResultOk; }

	Steinberg::tresult SaveController(Steinberg::IBStream* /*stream*/) override { return Steinberg::kResultOk; }

	void GreetHost(Steinberg::FUnknown* context);
	void AddBusses();
	void SetBusCounts(std::size_t inputs, std::size_t outputs);
	void AddParameters();
	TPtr<TVst3PointWalk> MakeWalk(Steinberg::Vst::ParamID id);
	void StartTimer();
	void ObserveDocument();
	void StopObserving();
	Steinberg::tresult CloseDown();
	Steinberg::tresult ArrangeBusses(TArrangements inputs, TArrangements outputs);
	bool AcceptEffect(TArrangements inputs, TArrangements outputs) const;
	bool AcceptInstrument(TArrangements inputs, TArrangements outputs) const;
	void SetActive(bool active);
	void ReplaceState(const TStream& chunk);
	std::vector<float> ParameterValues() const;

	Steinberg::tresult ProcessBlock(Steinberg::Vst::ProcessData& data);
	void FollowLatency();
	void ReadTransport(const Steinberg::Vst::ProcessContext* context);
	void ApplyParameterChanges(Steinberg::Vst::IParameterChanges& changes);
	void ApplyQueue(Steinberg::Vst::IParamValueQueue& queue);
	TVst3PointWalk* WalkOf(Steinberg::Vst::ParamID id);
	void ApplyPoint(Steinberg::Vst::ParamID id, double value) override;
	void ReceivePoint(Steinberg::Vst::ParamID id, int32_t offset, double value);
	int32_t OffsetInBlock(int32_t offset) const override;
	void AdvanceGuiIdle(Steinberg::Vst::IParameterChanges* changes);
	void ReceiveEvents(Steinberg::Vst::IEventList* list);
	void ReceiveEvent(const Steinberg::Vst::Event& event);
	void HandOverMidiInput();
	void Bypass(Steinberg::Vst::ProcessData& data);
	void RunEngine(Steinberg::Vst::ProcessData& data);
	void SendEvents(Steinberg::Vst::IEventList* list);

	int32_t ProgramOf(double value) const;
	bool ProgramFromText(const Steinberg::Vst::TChar* text, Steinberg::Vst::ParamValue& value) const;
	bool IsDocumentParameter(Steinberg::Vst::ParamID id) const;
	void SetProgramFromHost(int32_t program);

	void OnTimer() noexcept override;
	void RunMainThreadCommands();

	void BeginEdit(int32_t parameter) override;
	void PerformEdit(int32_t parameter, float value) override;
	void EndEdit(int32_t parameter) override;

	void OnProgramIndex(TObservable* observable, int32_t reason);
	void OnProgramNames(TObservable* observable, int32_t reason);
	void OnParameterListAboutToChange(TObservable* observable, int32_t reason);
	void OnParameterListChanged(TObservable* observable, int32_t reason);
	void RefreshTitles();
	bool IsMainThreadInStateChange() const;
	void ReportOnMainThread(TNews news);
	void ReportLater(TNews news);
	void OnNews(TObservable* observable, int32_t reason);
	void Report(uint32_t news);

	const TReleaser mReleaser;
	std::atomic<int32_t> mReferenceCount{1};

	std::size_t mMadeInputs = 0; // busses made by initialize; a host may do with fewer
	std::size_t mMadeOutputs = 0;
	std::atomic<bool> mBypass{false};
	std::atomic<bool> mActive{false};
	std::atomic<int32_t> mLatency;

	// Audio thread
	std::vector<TMidiEvent> mMidiInputEvents;
	std::vector<Steinberg::Vst::Event> mMidiOutputEvents;
	std::vector<TPtr<TVst3PointWalk>> mWalks; // by parameter
	TPtr<TVst3PointWalk> mpPresetWalk;
	std::vector<TVst3PointWalk*> mWalksOfBlock;
	TVst3Buffers mBuffers;
	TTransportInfo mTransport;
	int32_t mBlockSamples = 0; // of the block that is being processed
	int32_t mGuiIdleSampleCounter = 0;

	bool mUsesGuiIdleParameter = false;
	std::atomic<double> mGuiIdleValue{0.0}; // 0 to 99

	// The host is changing the program. A change that another thread makes in the same instant may be taken for the
	// host's; all that costs is the request to read the values again.
	std::atomic<bool> mInHostProgramChange{false};

	std::atomic<uint32_t> mNews{0}; // that the bang brings to the main thread
	TObservableBang mNewsBang;

	bool mRenamedByState = false; // main thread

	TPtr<TPublishedParameters> mpParameterMap;
	Steinberg::IPtr<TVst3Timer> mpTimer;
	TString mHostName;
	float mHostScale = 0.0f;           // what the host has told an editor; 0: nothing
	int mHostScaleFactor = 0;          // what became of it
	TPluginEditor* mpEditor = nullptr; // the one made last, while the host holds it; main thread
};
