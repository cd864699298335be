// SPDX-License-Identifier: GPL-3.0-or-later
// The adapter's life: entering from the host, opening and closing, resuming, channels, and what the host is told.
#include "shell/vst2/TVstPluginShell.h"

#include "framework/document/observables/TObservableBang.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/values/ProductInfo.h"
#include "shell/HostQuery.h"
#include "shell/vst2/TVstPluginEditor.h"

#include <algorithm>
#include <memory>

namespace {

constexpr const char* kLogCategory = "VST Shell";

// Far above what any host asks for; what the effects keep for some seconds stays countable in an int32.
constexpr float kHighestSampleRate = 1.0e7f;
constexpr int32_t kLongestBlock = 1 << 20;
constexpr int32_t kUsualSampleRate = 44100;
constexpr int32_t kUsualBlock = 1024;

/// How an operation of the dispatcher plays the main thread.
enum class ERole { kNotAtAll, kWhenItsTurnComes, kIfItIsFree };

ERole RoleFor(VstInt32 opcode) {
	switch (opcode) {
	case effOpen:
	case effMainsChanged:
	case effSetProgramName:
	case effGetChunk:
	case effSetChunk:
	case effSetSpeakerArrangement:
	case effEditGetRect:
	case effEditOpen:
	case effEditClose:
		return ERole::kWhenItsTurnComes;
	case effEditIdle: // the next will do while the host works with the document on another thread
	case kEffectIdle:
		return ERole::kIfItIsFree;
	default:
		return ERole::kNotAtAll;
	}
}

} // namespace

TVstPluginShell::TVstPluginShell(
    TDocument* document, TEngine* engine, TGui* gui, audioMasterCallback host, TReleaser releaser)
    : TAudioPluginShell(document, engine, gui),
      AudioEffectX(host, document->NumberOfPrograms(), document->NumberOfParameters()),
      mReleaser(releaser),
      mpParameterMap(MakePtr<TPublishedParameters>(document, static_cast<TPublishedParameters::THost*>(this))) {
	cEffect.dispatcher = &TVstPluginShell::DispatchFromHost;
	cEffect.version = ProductInfo::kVst2Version;
	cEffect.uniqueID = document->UniqueId();
	cEffect.numInputs = 2 * engine->MaxInputChannels();
	cEffect.numOutputs = 2 * engine->MaxOutputChannels();
	cEffect.initialDelay = engine->LatencyInSamples();
	SetFlag(effFlagsIsSynth, document->IsInstrument());
	SetFlag(effFlagsCanReplacing, true);
	SetFlag(effFlagsProgramChunks, true);
	SetChannels(engine->MaxInputChannels(), engine->MaxOutputChannels());
	mBuffers.SetBlockSize(engine->BlockSize());
	if (engine->WantsMidiInput())
		mMidiInputEvents.reserve(kMostEvents);
	if (gui)
		SetEditor(std::make_unique<TVstEditor>(*gui));
	ObserveDocument();
}

// Entering

VstIntPtr TVstPluginShell::DispatchFromHost(
    AEffect* effect, int opcode, int index, VstIntPtr value, void* ptr, float opt) noexcept {
	if (!effect || !effect->object)
		return 0;
	auto* shell = static_cast<TVstPluginShell*>(static_cast<AudioEffectX*>(effect->object));
	if (opcode == effClose) {
		shell->End();
		return 1;
	}
	return HostQuery<VstIntPtr>(shell->StorageId(), 0, [&] { return shell->Dispatch(opcode, index, value, ptr, opt); });
}

VstIntPtr TVstPluginShell::Dispatch(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt) {
	const ERole role = RoleFor(opcode);
	if (role == ERole::kNotAtAll)
		return dispatcher(opcode, index, value, ptr, opt);
	const TThreadManager::THostScope scope(
	    kMainThread, role == ERole::kIfItIsFree ? TThreadManager::TPatience::kNone : TThreadManager::TPatience::kWait);
	if (!scope.IsTaken())
		return 0;
	TThreadCommunicator::Instance()->ProcessCommands();
	return dispatcher(opcode, index, value, ptr, opt);
}

/// What the host has got of the instance is gone afterwards.
void TVstPluginShell::End() noexcept {
	HostQuery(StorageId(), 0, [this] {
		const TThreadManager::THostScope role(kMainThread);
		dispatcher(effClose, 0, 0, nullptr, 0.0f);
		SetEditor(nullptr);
		StopObserving();
		return 0;
	});
	HostQuery(TGlobalStorage::CurrentId(), 0, [this] {
		mReleaser(this);
		return 0;
	});
}

// Opening and closing

void TVstPluginShell::open() {
	if (mEffectOpen.exchange(true))
		return;
	needIdle(); // the format lends no timer
}

void TVstPluginShell::close() {
	mEffectOpen = false;
}

VstInt32 TVstPluginShell::fxIdle() {
	if (!TThreadManager::Instance()->IsCurrentThread(kMainThread))
		return 0;
	TThreadCommunicator::Instance()->ProcessCommands();
	return 1;
}

/// Main thread, or the audio thread of a host that has forgotten it.
void TVstPluginShell::resume() {
	mResumed = true;
	const float rate = updateSampleRate();
	const VstInt32 block = updateBlockSize();
	mpEngine->SetBlockSize(block >= 1 && block <= kLongestBlock ? block : kUsualBlock);
	mpEngine->SetSampleRate(rate >= 1.0f && rate <= kHighestSampleRate ? static_cast<int32_t>(rate) : kUsualSampleRate);
	mBuffers.SetBlockSize(mpEngine->BlockSize());
	mpEngine->Resume();
	FollowLatency();
	AudioEffectX::resume();
}

void TVstPluginShell::suspend() {
	AudioEffectX::suspend();
	mResumed = false;
	mpEngine->Suspend();
}

// Channels: the host counts single ones, the engine stereo pairs

void TVstPluginShell::SetChannels(int32_t inputs, int32_t outputs) {
	mpEngine->SetInputChannels(inputs);
	mpEngine->SetOutputChannels(outputs);
	mBuffers.SetCounts(static_cast<std::size_t>(inputs), static_cast<std::size_t>(outputs));
	mAccumulationBuffers.resize(2 * static_cast<std::size_t>(outputs));
}

bool TVstPluginShell::getSpeakerArrangement(VstSpeakerArrangement** input, VstSpeakerArrangement** output) {
	const auto fill = [](TVst2Arrangement& arrangement, int32_t pairs) {
		arrangement = {};
		arrangement.mType = kSpeakerArrStereo;
		arrangement.mChannels = 2 * pairs;
		return arrangement.Record();
	};
	*input = fill(mInputArrangement, mpEngine->InputChannels());
	*output = fill(mOutputArrangement, mpEngine->OutputChannels());
	return true;
}

bool TVstPluginShell::setSpeakerArrangement(VstSpeakerArrangement* input, VstSpeakerArrangement* output) {
	if (!AcceptsChannels(input->numChannels, output->numChannels))
		return false;
	SetChannels(input->numChannels / 2, output->numChannels / 2);
	return true;
}

bool TVstPluginShell::AcceptsChannels(int32_t inputs, int32_t outputs) const {
	const int32_t mostInputs = 2 * mpEngine->MaxInputChannels();
	const int32_t mostOutputs = 2 * mpEngine->MaxOutputChannels();
	if (inputs == mostInputs && outputs == mostOutputs)
		return true;
	if (mResumed) {
		TLog::Instance()->LogText(kLogCategory, "Host requests channel config change while plugin is running");
		return false;
	}
	if (inputs < 0 || outputs < 0 || inputs % 2 != 0 || outputs % 2 != 0 || outputs > mostOutputs)
		return false;
	return mpDocument->IsInstrument() ? inputs <= mostInputs : inputs == mostInputs && outputs >= 2;
}

// What the host is told

void TVstPluginShell::ObserveDocument() {
	if (TObservable* program = mpDocument->CurrentProgramIndexValue())
		program->AddObserver({this, &TVstPluginShell::OnProgramIndex}, kDeliverDirectly);
	if (TObservable* names = mpDocument->ProgramNameChangedBang())
		names->AddObserver({this, &TVstPluginShell::OnProgramNames});
	if (TObservable* list = mpDocument->ParameterListAboutToChangeValue())
		list->AddObserver({this, &TVstPluginShell::OnParameterListAboutToChange}, kDeliverDirectly);
	if (TObservable* list = mpDocument->ParameterListChangedValue())
		list->AddObserver({this, &TVstPluginShell::OnParameterListChanged});
	mpParameterMap->Rebuild();
}

void TVstPluginShell::StopObserving() {
	mpParameterMap->Clear();
	if (TObservable* program = mpDocument->CurrentProgramIndexValue())
		program->RemoveObserver({this, &TVstPluginShell::OnProgramIndex});
	if (TObservable* names = mpDocument->ProgramNameChangedBang())
		names->RemoveObserver({this, &TVstPluginShell::OnProgramNames});
	if (TObservable* list = mpDocument->ParameterListAboutToChangeValue())
		list->RemoveObserver({this, &TVstPluginShell::OnParameterListAboutToChange});
	if (TObservable* list = mpDocument->ParameterListChangedValue())
		list->RemoveObserver({this, &TVstPluginShell::OnParameterListChanged});
}

void TVstPluginShell::BeginHostEdits() {
	mpParameterMap->BeginHostEdits();
}

void TVstPluginShell::EndHostEdits() {
	mpParameterMap->EndHostEdits();
}

void TVstPluginShell::BeginEdit(int32_t parameter) {
	beginEdit(parameter);
}

void TVstPluginShell::PerformEdit(int32_t parameter, float value) {
	setParameterAutomated(parameter, value);
}

void TVstPluginShell::EndEdit(int32_t parameter) {
	endEdit(parameter);
}

// Direct delivery: on whichever thread changes the program. What follows from a program change is no edit of the user.
void TVstPluginShell::OnProgramIndex(TObservable* /*observable*/, int32_t reason) {
	if (reason == kWillChange)
		mpParameterMap->CancelHostEdits();
	if (reason == kDidChange && !mInHostProgramChange)
		ReportOnMainThread(TNews::kDisplay);
}

void TVstPluginShell::OnProgramNames(TObservable* /*observable*/, int32_t reason) {
	if (reason == kDidChange && !mInHostProgramChange)
		ReportOnMainThread(TNews::kDisplay);
}

void TVstPluginShell::OnParameterListAboutToChange(TObservable* /*observable*/, int32_t reason) {
	if (reason != kDidChange)
		return;
	mpParameterMap->Rebuild();
	if (!mInHostProgramChange)
		ReportOnMainThread(TNews::kAllParameters);
}

void TVstPluginShell::OnParameterListChanged(TObservable* /*observable*/, int32_t reason) {
	if (reason == kDidChange)
		ReportOnMainThread(TNews::kDisplay);
}

// A state change is reported when it is over: hosts hold a lock around it that their answer may need, too. What travels
// keeps the shell until the host has been told.
void TVstPluginShell::ReportOnMainThread(TNews news) {
	if (TThreadManager::Instance()->IsCurrentThread(kMainThread) && !mpParameterMap->IsInStateChange())
		Report(news);
	else
		TThreadCommunicator::Instance()->Post(
		    kMainThread, [shell = TPtr<TVstPluginShell>(this), news] { shell->Report(news); });
}

void TVstPluginShell::Report(TNews news) {
	if (!mEffectOpen)
		return;
	if (news == TNews::kAllParameters)
		for (int32_t i = 0; i < mpDocument->NumberOfParameters(); ++i)
			setParameterAutomated(i, mpDocument->ParameterValue(i));
	updateDisplay();
}
