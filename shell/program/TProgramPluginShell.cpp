// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/program/TProgramPluginShell.h"

#include "framework/document/observables/TObservableBang.h"
#include "framework/foundation/commands/TCommand.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "shell/ScaleSamples.h"

#include <algorithm>

TProgramPluginShell::TProgramPluginShell(TDocument* document, TEngine* engine, TGui* gui, THost* host)
    : TAudioPluginShell(document, engine, gui),
      mpHost(host),
      mpParameters(MakePtr<TPublishedParameters>(document, static_cast<TPublishedParameters::THost*>(this))),
      mLatency(engine->LatencyInSamples()) {
	engine->SetInputChannels(engine->MaxInputChannels());
	engine->SetOutputChannels(engine->MaxOutputChannels());
	document->CurrentProgramIndexValue()->AddObserver({this, &TProgramPluginShell::OnProgramIndex}, kDeliverDirectly);
	document->ProgramNameChangedBang()->AddObserver({this, &TProgramPluginShell::OnProgramNames});
	if (TObservable* list = document->ParameterListAboutToChangeValue())
		list->AddObserver({this, &TProgramPluginShell::OnParameterListAboutToChange}, kDeliverDirectly);
	mpParameters->Rebuild();
}

TProgramPluginShell::~TProgramPluginShell() {
	mpParameters->Clear();
}

void TProgramPluginShell::Setup(int32_t sampleRate, int32_t blockSize) {
	TGuiScope scope(*this);
	mpEngine->SetSampleRate(sampleRate);
	mpEngine->SetBlockSize(blockSize);
	mpEngine->Resume();
}

int32_t TProgramPluginShell::Process(const TBlock& block) {
	const TGlobalStorageScope storage(StorageId());
	const TThreadManager::THostScope role(kAudioThread);
	TThreadCommunicator::Instance()->ProcessCommands();

	if (const int32_t latency = mpEngine->LatencyInSamples(); latency != mLatency.load(std::memory_order_relaxed)) {
		mLatency.store(latency, std::memory_order_relaxed);
		ReportOnMainThread(TNews::kLatencyChanged);
	}
	const int32_t samples = std::clamp(block.mSamples, 0, mpEngine->BlockSize());
	if (block.mpTransport)
		mTransport = *block.mpTransport;
	ApplyParameterChanges(block.mParameterChanges);
	if (mpEngine->WantsSilentOutput()) {
		std::fill_n(block.mpLeftOut, samples, 0.0f);
		std::fill_n(block.mpRightOut, samples, 0.0f);
		return samples;
	}
	if (!block.mMidiEvents.empty() && mpEngine->WantsMidiInput())
		mpEngine->ProcessMidiEvents(block.mMidiEvents);
	RunEngine(block, samples);
	return samples;
}

void TProgramPluginShell::ApplyParameterChanges(std::span<const TParameterChange> changes) {
	for (const TParameterChange& change : changes) {
		if (change.mParameter < 0 || change.mParameter >= mpDocument->NumberOfParameters())
			continue;
		// The document outlives the engine's schedule.
		const auto apply = [document = mpDocument.Get(), parameter = change.mParameter, value = change.mValue] {
			document->SetParameterValue(parameter, value);
		};
		if (change.mSampleOffset < 1)
			apply();
		else
			mpEngine->ScheduleCommand(new TInvokeFunctionCommand(apply), change.mSampleOffset);
	}
}

// The engine works in place on the outputs, so that it has nothing to copy.
void TProgramPluginShell::RunEngine(const TBlock& block, int32_t samples) {
	ScaleSamples(block.mpLeftIn, block.mpLeftOut, samples, kEngineScale);
	ScaleSamples(block.mpRightIn, block.mpRightOut, samples, kEngineScale);
	mpEngine->Process(
	    {&block.mpLeftOut, 1}, {&block.mpRightOut, 1}, {&block.mpLeftOut, 1}, {&block.mpRightOut, 1}, samples,
	    block.mpTransport ? &mTransport : nullptr);
	ScaleSamples(block.mpLeftOut, block.mpLeftOut, samples, kHostScale);
	ScaleSamples(block.mpRightOut, block.mpRightOut, samples, kHostScale);
}

void TProgramPluginShell::Tick() {
	const TGuiScope scope(*this, TThreadManager::TPatience::kNone);
	if (scope.IsTaken())
		TThreadCommunicator::Instance()->ProcessCommands();
}

void TProgramPluginShell::WaitForAudioThread() {
	AsGui([] { TThreadCommunicator::Instance()->WaitForThread(kAudioThread); });
}

void TProgramPluginShell::SetParameterFromHost(int32_t parameter, float value) {
	AsGui([&] { mpParameters->SetFromHost(parameter, value); });
}

void TProgramPluginShell::SetCurrentProgramFromHost(int32_t program) {
	TGuiScope scope(*this);
	if (program < 0 || program >= mpDocument->NumberOfPrograms() || program == mpDocument->CurrentProgramIndex())
		return;
	mInHostProgramChange = true;
	mpDocument->SetCurrentProgramIndex(program);
	mInHostProgramChange = false;
}

void TProgramPluginShell::BeginEdit(int32_t parameter) {
	if (mpHost)
		mpHost->BeginEdit(parameter);
}

void TProgramPluginShell::PerformEdit(int32_t parameter, float value) {
	if (mpHost)
		mpHost->PerformEdit(parameter, value);
}

void TProgramPluginShell::EndEdit(int32_t parameter) {
	if (mpHost)
		mpHost->EndEdit(parameter);
}

// Direct delivery: on whichever thread changes the program. What follows from a program change is no edit of the user.
void TProgramPluginShell::OnProgramIndex(TObservable* /*observable*/, int32_t reason) {
	if (reason == kWillChange)
		mpParameters->CancelHostEdits();
	if (reason != kDidChange)
		return;
	const bool onMainThread = TThreadManager::Instance()->IsCurrentThread(kMainThread);
	ReportOnMainThread(onMainThread && mInHostProgramChange ? TNews::kProgramChangedByHost : TNews::kProgramChanged);
}

void TProgramPluginShell::OnProgramNames(TObservable* /*observable*/, int32_t reason) {
	if (reason == kDidChange && mpHost && !mInHostProgramChange)
		mpHost->ProgramNamesChanged();
}

void TProgramPluginShell::OnParameterListAboutToChange(TObservable* /*observable*/, int32_t reason) {
	if (reason == kDidChange)
		mpParameters->Rebuild();
}

// What travels keeps the shell until the host has been told.
void TProgramPluginShell::ReportOnMainThread(TNews news) {
	if (TThreadManager::Instance()->IsCurrentThread(kMainThread))
		Report(news);
	else if (mpHost)
		TThreadCommunicator::Instance()->Post(
		    kMainThread, [shell = TPtr<TProgramPluginShell>(this), news] { shell->Report(news); });
}

void TProgramPluginShell::Report(TNews news) {
	if (!mpHost)
		return;
	if (news == TNews::kLatencyChanged)
		mpHost->LatencyChanged(mLatency.load(std::memory_order_relaxed));
	else
		mpHost->ProgramChanged(mpDocument->CurrentProgramIndex(), news == TNews::kProgramChangedByHost);
}
