// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/audiounit/TAudioUnitPluginShell.h"

#include "framework/document/observables/TObservableBang.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/files/TLog.h"
#include "platform/TPlatform.h"
#include "shell/audiounit/AudioUnitCall.h"
#include "shell/audiounit/TAudioUnitPluginView.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <utility>

namespace {

constexpr const char* kLogCategory = "AU Shell";
constexpr std::size_t kMidiCapacity = 512;
constexpr int32_t kUsualSampleRate = 44100;
constexpr int32_t kUsualBlockSize = 1024;
// Far above what any host asks for; what the effects keep for some seconds stays countable in an int32.
constexpr double kHighestSampleRate = 1.0e7;

constexpr AUChannelInfo kEffectChannels[] = {{2, 2}, {1, 2}};
constexpr AUChannelInfo kInstrumentChannels[] = {{2, 2}, {1, 2}, {0, 2}};
constexpr AudioChannelLayoutTag kInputLayoutTags[] = {kAudioChannelLayoutTag_Mono, kAudioChannelLayoutTag_Stereo};
constexpr AudioChannelLayoutTag kOutputLayoutTags[] = {kAudioChannelLayoutTag_Stereo};

std::mutex sInstancesLock;
constinit std::map<AudioComponentInstance, TAudioUnitPluginShell*>* sInstances = nullptr; // while there are any

void AddInstance(AudioComponentInstance instance, TAudioUnitPluginShell* shell) {
	const std::lock_guard guard(sInstancesLock);
	if (!sInstances)
		sInstances = new std::map<AudioComponentInstance, TAudioUnitPluginShell*>;
	sInstances->insert_or_assign(instance, shell);
}

void RemoveInstance(AudioComponentInstance instance, const TAudioUnitPluginShell* shell) {
	const std::lock_guard guard(sInstancesLock);
	if (!sInstances)
		return;
	if (const auto found = sInstances->find(instance); found != sInstances->end() && found->second == shell)
		sInstances->erase(found);
	if (sInstances->empty())
		delete std::exchange(sInstances, nullptr);
}

UInt32 Busses(int32_t pairs) {
	return static_cast<UInt32>(std::max(pairs, 0));
}

} // namespace

TAudioUnitPluginShell::TAudioUnitPluginShell(
    TDocument* document, TEngine* engine, TGui* gui, AudioComponentInstance instance)
    : TAudioPluginShell(document, engine, gui),
      AUBase(instance, Busses(engine->MaxInputChannels()), Busses(engine->MaxOutputChannels())),
      AUMIDIBase(static_cast<AUBase&>(*this)),
      mpParameterMap(MakePtr<TPublishedParameters>(document, static_cast<TPublishedParameters::THost*>(this))) {
	engine->SetInputChannels(engine->MaxInputChannels());
	engine->SetOutputChannels(engine->MaxOutputChannels());
	UseIndexedParameters(static_cast<UInt32>(document->NumberOfParameters()));
	if (engine->WantsMidiInput())
		mMidiInputEvents.reserve(kMidiCapacity);
	ObserveDocument();
	if (AUSystem* system = AUSystem::Current())
		system->StartTimer(*this, TPlatform::kTickMilliseconds);
	AddInstance(instance, this);
}

TAudioUnitPluginShell::~TAudioUnitPluginShell() {
	CloseDown();
}

TAudioUnitPluginShell* TAudioUnitPluginShell::Find(AudioComponentInstance instance) {
	const std::lock_guard guard(sInstancesLock);
	if (!sInstances)
		return nullptr;
	const auto found = sInstances->find(instance);
	return found == sInstances->end() ? nullptr : found->second;
}

void TAudioUnitPluginShell::CloseDown() {
	if (std::exchange(mIsClosed, true))
		return;
	RemoveInstance(ComponentInstance(), this);
	mpView = nullptr;
	for (auto* view : std::exchange(mViews, {}))
		view->ShellIsGone();
	if (AUSystem* system = AUSystem::Current())
		system->StopTimer(*this);
	StopObserving();
}

void TAudioUnitPluginShell::ObserveDocument() {
	if (TObservable* program = mpDocument->CurrentProgramIndexValue())
		program->AddObserver({this, &TAudioUnitPluginShell::OnProgramIndex}, kDeliverDirectly);
	if (TObservable* names = mpDocument->ProgramNameChangedBang())
		names->AddObserver({this, &TAudioUnitPluginShell::OnProgramNames});
	if (TObservable* list = mpDocument->ParameterListAboutToChangeValue())
		list->AddObserver({this, &TAudioUnitPluginShell::OnParameterListAboutToChange}, kDeliverDirectly);
	if (TObservable* list = mpDocument->ParameterListChangedValue())
		list->AddObserver({this, &TAudioUnitPluginShell::OnParameterListChanged});
	if (TObservable* keys = mpGui ? mpGui->WantsKeyboardInputValue() : nullptr)
		keys->AddObserver({this, &TAudioUnitPluginShell::OnWantsKeyboardInput});
	mpParameterMap->Rebuild();
}

void TAudioUnitPluginShell::StopObserving() {
	mpParameterMap->Clear();
	if (TObservable* program = mpDocument->CurrentProgramIndexValue())
		program->RemoveObserver({this, &TAudioUnitPluginShell::OnProgramIndex});
	if (TObservable* names = mpDocument->ProgramNameChangedBang())
		names->RemoveObserver({this, &TAudioUnitPluginShell::OnProgramNames});
	if (TObservable* list = mpDocument->ParameterListAboutToChangeValue())
		list->RemoveObserver({this, &TAudioUnitPluginShell::OnParameterListAboutToChange});
	if (TObservable* list = mpDocument->ParameterListChangedValue())
		list->RemoveObserver({this, &TAudioUnitPluginShell::OnParameterListChanged});
	if (TObservable* keys = mpGui ? mpGui->WantsKeyboardInputValue() : nullptr)
		keys->RemoveObserver({this, &TAudioUnitPluginShell::OnWantsKeyboardInput});
}

// Initialising

OSStatus TAudioUnitPluginShell::Initialize() {
	const TThreadManager::THostScope role(kMainThread);
	const TLayout layout = CheckLayout();
	const auto log = TLog::Instance();
	if (!layout.mIsAccepted) {
		log->Log(
		    kLogCategory, "Initialization failed. Neglecting invalid channel configuration %d/%d.",
		    layout.mInputChannels, layout.mOutputChannels);
		return kAudioUnitErr_FormatNotSupported;
	}
	const int32_t rate = WorkingSampleRate();
	const int32_t blockSize = WorkingBlockSize();
	SetMaxFramesPerSlice(static_cast<UInt32>(blockSize));
	mpEngine->SetBlockSize(blockSize);
	mpEngine->SetSampleRate(rate);
	mpEngine->SetInputChannels(static_cast<int32_t>(InputBusses()));
	mpEngine->SetOutputChannels(static_cast<int32_t>(OutputBusses()));
	mBuffers.SetUp(InputBusses(), OutputBusses(), blockSize);
	const OSStatus status = AUBase::Initialize();
	if (status != noErr)
		log->Log(kLogCategory, "Initialization failed with error %d", static_cast<int>(status));
	else
		log->Log(
		    kLogCategory, "Initialized with %d/%d in/outputs at %dHz with %d samples", layout.mInputChannels,
		    layout.mOutputChannels, rate, blockSize);
	return status;
}

TAudioUnitPluginShell::TLayout TAudioUnitPluginShell::CheckLayout() {
	TLayout layout;
	const auto log = TLog::Instance();
	log->Log(
	    kLogCategory, "Initializing with %d input and %d output busses. Checking bus layouts...",
	    static_cast<int>(InputBusses()), static_cast<int>(OutputBusses()));
	CheckInputs(layout);
	CheckOutputs(layout);
	if (InputBusses() > Busses(mpEngine->MaxInputChannels()) ||
	    OutputBusses() > Busses(mpEngine->MaxOutputChannels())) {
		log->LogText(kLogCategory, "Total channel counts exceed maximum supported channels. Rejecting layout...");
		layout.mIsAccepted = false;
	}
	layout.mIsAccepted = HasChannels(layout) && layout.mIsAccepted;
	return layout;
}

void TAudioUnitPluginShell::CheckInputs(TLayout& layout) {
	for (UInt32 bus = 0; bus < InputBusses(); ++bus) {
		const UInt32 channels = Input(bus).mFormat.mChannelsPerFrame;
		layout.mInputChannels += static_cast<int>(channels);
		if ((channels == 0 && mpDocument->IsInstrument()) || channels == 1 || channels == 2)
			continue;
		TLog::Instance()->Log(
		    kLogCategory, "Input bus %d is neither mono nor stereo. Rejecting layout...", static_cast<int>(bus));
		layout.mIsAccepted = false;
	}
}

void TAudioUnitPluginShell::CheckOutputs(TLayout& layout) {
	for (UInt32 bus = 0; bus < OutputBusses(); ++bus) {
		const UInt32 channels = Output(bus).mFormat.mChannelsPerFrame;
		layout.mOutputChannels += static_cast<int>(channels);
		if (channels == 2)
			continue;
		TLog::Instance()->Log(kLogCategory, "Output bus %d is not stereo. Rejecting layout...", static_cast<int>(bus));
		layout.mIsAccepted = false;
	}
}

bool TAudioUnitPluginShell::HasChannels(const TLayout& layout) const {
	const bool isInstrument = mpDocument->IsInstrument();
	if (layout.mOutputChannels != 0 && (isInstrument || layout.mInputChannels != 0))
		return true;
	TLog::Instance()->LogText(
	    kLogCategory, isInstrument ? "Synths need at least one output channel. Rejecting layout..."
	                               : "Effects need at least one input and one output channel. Rejecting layout...");
	return false;
}

int32_t TAudioUnitPluginShell::HostSampleRate() {
	if (OutputBusses() == 0)
		return kUsualSampleRate;
	const double rate = Output(0).mFormat.mSampleRate;
	return rate >= 1.0 && rate <= kHighestSampleRate ? static_cast<int32_t>(rate) : 0;
}

int32_t TAudioUnitPluginShell::WorkingSampleRate() {
	const int32_t rate = HostSampleRate();
	if (rate >= 1)
		return rate;
	TLog::Instance()->LogText(kLogCategory, "Fixed bogus sample rate from host. Assume 44100 Hz...");
	return kUsualSampleRate;
}

int32_t TAudioUnitPluginShell::WorkingBlockSize() {
	if (MaxFramesPerSlice() >= 1)
		return static_cast<int32_t>(MaxFramesPerSlice());
	TLog::Instance()->LogText(kLogCategory, "Fixed bogus blocksize from host. Assume 1024 samples...");
	return kUsualBlockSize;
}

// No role: hosts also reset between two renders, on the thread that renders.
OSStatus TAudioUnitPluginShell::Reset(AudioUnitScope scope, AudioUnitElement element) {
	mpEngine->Suspend();
	mpEngine->Resume();
	return AUBase::Reset(scope, element);
}

OSStatus TAudioUnitPluginShell::SetBusCount(AudioUnitScope scope, UInt32 count) {
	if (IsInitialized())
		return kAudioUnitErr_Initialized;
	if (scope == kAudioUnitScope_Input && count > Busses(mpEngine->MaxInputChannels()))
		return kAudioUnitErr_InvalidPropertyValue;
	if (scope == kAudioUnitScope_Output && count > Busses(mpEngine->MaxOutputChannels()))
		return kAudioUnitErr_InvalidPropertyValue;
	return AUBase::SetBusCount(scope, count);
}

Float64 TAudioUnitPluginShell::GetLatency() {
	const int32_t rate = HostSampleRate();
	return mpEngine->LatencyInSamples() / static_cast<double>(rate >= 1 ? rate : kUsualSampleRate);
}

std::span<const AUChannelInfo> TAudioUnitPluginShell::SupportedNumChannels() {
	if (!mpDocument->IsInstrument())
		return kEffectChannels;
	return mpEngine->MaxInputChannels() >= 1 ? std::span<const AUChannelInfo>(kInstrumentChannels)
	                                         : std::span(kInstrumentChannels).last(1);
}

std::span<const AudioChannelLayoutTag>
TAudioUnitPluginShell::GetChannelLayoutTags(AudioUnitScope scope, AudioUnitElement /*element*/) {
	if (scope == kAudioUnitScope_Input && mpEngine->MaxInputChannels() != 0)
		return kInputLayoutTags;
	if (scope == kAudioUnitScope_Output && mpEngine->MaxOutputChannels() != 0)
		return kOutputLayoutTags;
	return {};
}

// The editor and the main thread's work

bool TAudioUnitPluginShell::RequestWindowResize(const TSize& /*oldSize*/, const TSize& newSize) {
	if (mpView && mpView->IsInWindow()) {
		TLog::Instance()->Log(
		    kLogCategory, "Resizing editor window %p to w:%d h:%d...", static_cast<void*>(mpView), newSize.mX,
		    newSize.mY);
		mpView->Resize({newSize.mX, newSize.mY});
		return true;
	}
	TLog::Instance()->LogText(kLogCategory, "Failed to resize editor window: Window is not open or not embedded");
	return false;
}

void TAudioUnitPluginShell::OnTimer() {
	if (mpView && mpView->IsOpen())
		return;
	AudioUnitHostCall(StorageId(), [] {
		// The next tick will do while the host works with the document on another thread.
		const TThreadManager::THostScope role(kMainThread, TThreadManager::TPatience::kNone);
		if (role.IsTaken())
			TThreadCommunicator::Instance()->ProcessCommands();
		return noErr;
	});
}

void TAudioUnitPluginShell::OnWantsKeyboardInput(TObservable* /*observable*/, int32_t reason) {
	if (reason == kDidChange && mpView)
		mpView->updateShellWindowWantKeys();
}

// Telling the host

void TAudioUnitPluginShell::BeginHostEdits() {
	mpParameterMap->BeginHostEdits();
}

void TAudioUnitPluginShell::EndHostEdits() {
	mpParameterMap->EndHostEdits();
}

void TAudioUnitPluginShell::BeginEdit(int32_t parameter) {
	NotifyListeners(kAudioUnitEvent_BeginParameterChangeGesture, static_cast<AudioUnitParameterID>(parameter));
}

void TAudioUnitPluginShell::PerformEdit(int32_t parameter, float /*value*/) {
	NotifyListeners(kAudioUnitEvent_ParameterValueChange, static_cast<AudioUnitParameterID>(parameter));
}

void TAudioUnitPluginShell::EndEdit(int32_t parameter) {
	NotifyListeners(kAudioUnitEvent_EndParameterChangeGesture, static_cast<AudioUnitParameterID>(parameter));
}

void TAudioUnitPluginShell::NotifyListeners(UInt32 eventType, AudioUnitParameterID parameter) const {
	if (AUSystem* system = AUSystem::Current())
		system->NotifyListeners({eventType, {ComponentInstance(), parameter, kAudioUnitScope_Global, 0}});
}

// Direct delivery: on whichever thread changes the program. What follows from a program change is no edit of the user.
void TAudioUnitPluginShell::OnProgramIndex(TObservable* /*observable*/, int32_t reason) {
	if (reason == kWillChange)
		mpParameterMap->CancelHostEdits();
	if (reason != kDidChange || mInHostProgramChange)
		return;
	if (!TThreadManager::Instance()->IsCurrentThread(kMainThread))
		return ReportOnMainThread(TNews::kProgramChangedElsewhere);
	// A host that has just brought a state asks for the present preset at once, or sets one of its own.
	FollowProgram();
	ReportOnMainThread(TNews::kProgramChanged);
}

void TAudioUnitPluginShell::OnProgramNames(TObservable* /*observable*/, int32_t reason) {
	if (reason == kDidChange)
		ReportOnMainThread(TNews::kProgramNamesChanged);
}

void TAudioUnitPluginShell::OnParameterListAboutToChange(TObservable* /*observable*/, int32_t reason) {
	if (reason != kDidChange)
		return;
	mpParameterMap->Rebuild();
	UseIndexedParameters(static_cast<UInt32>(mpDocument->NumberOfParameters()));
	if (!mInHostProgramChange)
		ReportOnMainThread(TNews::kParametersReplaced);
}

void TAudioUnitPluginShell::OnParameterListChanged(TObservable* /*observable*/, int32_t reason) {
	if (reason == kDidChange)
		ReportOnMainThread(TNews::kParametersChanged);
}

// What travels keeps the shell until the host has been told.
void TAudioUnitPluginShell::ReportOnMainThread(TNews news) {
	if (TThreadManager::Instance()->IsCurrentThread(kMainThread) && !mpParameterMap->IsInStateChange())
		Report(news);
	else
		TThreadCommunicator::Instance()->Post(
		    kMainThread, [shell = TPtr<TAudioUnitPluginShell>(this), news] { shell->Report(news); });
}

void TAudioUnitPluginShell::FollowProgram() {
	const int32_t program = mpDocument->CurrentProgramIndex();
	SetPresentPreset(program, AURef<const AUString>::Make(mpDocument->ProgramName(program).View()));
}

void TAudioUnitPluginShell::Report(TNews news) {
	static constexpr AudioUnitPropertyID kPreset[] = {kAudioUnitProperty_PresentPreset};
	static constexpr AudioUnitPropertyID kNames[] = {
	    kAudioUnitProperty_FactoryPresets, kAudioUnitProperty_PresentPreset};
	static constexpr AudioUnitPropertyID kAll[] = {
	    kAudioUnitProperty_ParameterList, kAudioUnitProperty_ParameterInfo, kAudioUnitProperty_FactoryPresets,
	    kAudioUnitProperty_PresentPreset};
	static constexpr AudioUnitPropertyID kParameters[] = {
	    kAudioUnitProperty_ParameterList, kAudioUnitProperty_ParameterInfo};
	if (mIsClosed)
		return;
	switch (news) {
	case TNews::kProgramChangedElsewhere:
		FollowProgram();
		[[fallthrough]];
	case TNews::kProgramChanged:
		mpParameterMap->Rebuild();
		ReportProperties(kPreset);
		return NotifyListeners(kAudioUnitEvent_ParameterValueChange, kAUParameterListener_AnyParameter);
	case TNews::kProgramNamesChanged:
		if (PresentPresetNumber() == mpDocument->CurrentProgramIndex())
			FollowProgram();
		return ReportProperties(kNames);
	case TNews::kParametersReplaced:
		NotifyListeners(kAudioUnitEvent_ParameterValueChange, kAUParameterListener_AnyParameter);
		return ReportProperties(kAll);
	case TNews::kParametersChanged:
		return ReportProperties(kParameters);
	}
}

void TAudioUnitPluginShell::ReportProperties(std::span<const AudioUnitPropertyID> ids) {
	for (const AudioUnitPropertyID id : ids)
		PropertyChanged(id, kAudioUnitScope_Global, 0);
}
