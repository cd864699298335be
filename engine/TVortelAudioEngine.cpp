// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/TVortelAudioEngine.h"

#include "effects/CreateVortelDspDevices.h"
#include "engine/TFlushToZeroScope.h"
#include "engine/TVortelEngineCommands.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kTempoWithoutHost = 120.0f;
constexpr int32_t kFirstTableSeed = 31337; // before the first scene's seed replaces it

/// A tempo that is no positive number counts as not given.
float UsableTempo(float tempo) {
	if (!std::isfinite(tempo) || tempo <= 0.0f)
		return kTempoWithoutHost;
	return std::clamp(tempo, TVortelAudioEngine::kSlowestTempo, TVortelAudioEngine::kFastestTempo);
}

} // namespace

TVortelAudioEngine::TVortelAudioEngine(TVortelDocument* document)
    : TEngine(document),
      mpVortelDocument(document),
      mpScheduler(MakePtr<TCommandScheduler>()),
      mpObservedProgram(document->ActiveProgram()) {
	CreateVortelDspDevices(*document, *this);
	FillRandomTable(kFirstTableSeed);
	SetProgram(mpObservedProgram);
	mpEditedScene = mpObservedProgram->ActiveScene();
	ObserveDocument();
}

void TVortelAudioEngine::RegisterDevice(int32_t index, TVortelDspDevice* device) {
	mDevices[static_cast<std::size_t>(index)] = device;
}

void TVortelAudioEngine::SampleRateChanged(int32_t rate) {
	for (const auto& device : mDevices)
		device->SetSampleRate(rate);
	SetTempo(mTempo);
}

void TVortelAudioEngine::BlockSizeChanged(int32_t samples) {
	for (const auto& device : mDevices)
		device->SetBlockSize(samples);
}

void TVortelAudioEngine::SetTempo(float tempo) {
	mTempo = tempo;
	mDivisions = Grid().mDivisions;
	mSamplesPerBeat = SampleRate() * 60 / static_cast<double>(tempo);
	mSamplesPerStep = mSamplesPerBeat / mDivisions;
	for (const auto& device : mDevices)
		device->SetTempo(tempo);
}

void TVortelAudioEngine::Process(
    std::span<float* const> leftIn, std::span<float* const> rightIn, std::span<float* const> leftOut,
    std::span<float* const> rightOut, int32_t samples, const TTransportInfo* transport) {
	const TCriticalSection::TGuard guard(mpVortelDocument->AudioLock());
	if (InputChannels() < 1 || OutputChannels() < 1 || samples < 0)
		return;
	float* left = leftOut[0];
	float* right = rightOut[0];
	if (leftIn[0] != left || rightIn[0] != right) {
		std::copy_n(leftIn[0], samples, left);
		std::copy_n(rightIn[0], samples, right);
	}
	if (mpVortelDocument->IsLoading())
		return;
	// More than the host has announced runs as several blocks.
	for (int32_t done = 0; done < samples; done += BlockSize()) {
		RunBlock(left + done, right + done, std::min(samples - done, BlockSize()), transport);
		transport = nullptr;
	}
}

inline void TVortelAudioEngine::RunDevices(float* left, float* right, int32_t samples) {
	if (mRunningCount == kStale)
		CollectRunning();
	bool hasEnded = false;
	for (int32_t i = 0; i < mRunningCount; ++i) {
		TVortelDspDevice& device = *mRunning[static_cast<std::size_t>(i)];
		device.CaptureDry(left, right, samples);
		device.Process(left, right, samples);
		hasEnded |= !device.IsRunning();
	}
	if (hasEnded)
		mRunningCount = kStale;
}

void TVortelAudioEngine::RunBlock(float* left, float* right, int32_t samples, const TTransportInfo* transport) {
	const TFlushToZeroScope flushToZero;
	FollowScene();
	TVortelDspDevice& master = *mDevices[0];
	TCommandScheduler& scheduler = *mpScheduler;
	master.CaptureDry(left, right, samples);
	if (transport)
		ApplyTransport(*transport);
	for (int32_t remaining = samples; remaining > 0;) {
		const int32_t length = scheduler.Advance(remaining);
		if (mRunningCount != 0) [[unlikely]]
			RunDevices(left + (samples - remaining), right + (samples - remaining), length);
		if (mHostIsPlaying) {
			mHostPosition += length / mSamplesPerBeat;
			mPositionIsBehind = true;
		} else if (mIsRunning) {
			AdvancePosition(length);
		}
		remaining -= length;
	}
	CatchUp();
	master.Process(left, right, samples);
}

void TVortelAudioEngine::CollectRunning() {
	mRunningCount = 0;
	for (std::size_t position = 1; position < mProcessingOrder.size(); ++position) {
		TVortelDspDevice* device = mDevices[static_cast<std::size_t>(mProcessingOrder[position])].Get();
		if (device->IsRunning())
			mRunning[static_cast<std::size_t>(mRunningCount++)] = device;
	}
}

void TVortelAudioEngine::AdvancePosition(int32_t samples) {
	mPosition = MusicalTime::Wrap(mPosition + samples / mSamplesPerBeat, Grid().mBeats);
}

/// Follows the host: at the end of a block, before that if a step asks, and before what it is worked out from changes.
void TVortelAudioEngine::CatchUp() {
	if (!mPositionIsBehind)
		return;
	const double loop = Grid().mBeats;
	SetPosition(MusicalTime::Wrap(MusicalTime::Lift(mHostPosition - mStartPosition, loop), loop));
}

void TVortelAudioEngine::SetPosition(double position) {
	mPosition = position;
	mPositionIsBehind = false;
}

void TVortelAudioEngine::ApplyTransport(const TTransportInfo& transport) {
	const auto isValid = [&transport](uint32_t flag) { return (transport.mFlags & flag) != 0; };
	const float tempo = isValid(TTransportInfo::kTempoValid) ? UsableTempo(transport.mTempo) : kTempoWithoutHost;
	const double position = isValid(TTransportInfo::kBeatPositionValid) ? transport.mBeatPosition : 0.0;
	const bool isPlaying = isValid(TTransportInfo::kIsPlayingValid) && transport.mIsPlaying;

	if (tempo != mTempo)
		SetTempo(tempo);
	mHostPosition = std::isfinite(position) ? position : 0.0;
	if (isPlaying == mHostIsPlaying)
		return;
	if (isPlaying) {
		mHostIsPlaying = true;
		if (TriggerMode() == kTriggerHost)
			StartSequencer();
	} else {
		StopSequencer();
		mHostPosition = 0.0;
		mHostIsPlaying = false;
	}
}

void TVortelAudioEngine::ScheduleCommand(TCommand* command, int32_t sampleOffset) {
	mpScheduler->Schedule(command, sampleOffset);
}

void TVortelAudioEngine::ScheduleFirst(TCommand* command, int32_t sampleOffset) {
	mpScheduler->ScheduleFirst(command, sampleOffset);
}

void TVortelAudioEngine::ScheduleAgain(TCommand* command, int32_t samples) {
	mpScheduler->ScheduleAgain(command, samples);
}

void TVortelAudioEngine::ProcessMidiEvents(std::span<const TMidiEvent> events) {
	const TCriticalSection::TGuard guard(mpVortelDocument->AudioLock());
	if (mpVortelDocument->IsLoading())
		return;
	FollowScene();
	for (const TMidiEvent& event : events)
		mpScheduler->Schedule(new TVortelMidiEventCommand(this, event), event.mSampleOffset);
}

// What a program or scene change on the audio thread would have to register and unregister is registered here for all
// programs, once, because registering allocates. The handlers ignore the programs that do not matter at present.
void TVortelAudioEngine::ObserveDocument() {
	for (int32_t i = 0; i < TVortelDocument::kNumberOfPrograms; ++i) {
		TVortelProgram& program = *mpVortelDocument->Program(i);
		program.ActiveSceneIndex().AddObserver({this, &TVortelAudioEngine::OnSceneIndex});
		program.DeviceOrder().AddObserver({this, &TVortelAudioEngine::OnDeviceOrder});
	}
	mpVortelDocument->ActiveProgramIndex().AddObserver({this, &TVortelAudioEngine::OnProgramIndex});
	mpVortelDocument->SceneLocked().AddObserver({this, &TVortelAudioEngine::OnSceneLocked});
	mpVortelDocument->SoloRow().AddObserver({this, &TVortelAudioEngine::OnSoloRow});
}

void TVortelAudioEngine::OnProgramIndex(TObservable* /*observable*/, int32_t reason) {
	if (reason != kObserverAdded && reason != kDidChange)
		return;
	TVortelProgram* program = mpVortelDocument->Program(mpVortelDocument->ActiveProgramIndex().Get());
	if (program == mpObservedProgram)
		return;
	mpObservedProgram = program;
	mpEditedScene = program->ActiveScene();
	SetProgram(program);
}

void TVortelAudioEngine::OnSceneLocked(TObservable* /*observable*/, int32_t /*reason*/) {
	mIgnoreMidiNotePitch = mpVortelDocument->SceneLocked().Get();
}

void TVortelAudioEngine::OnSoloRow(TObservable* /*observable*/, int32_t /*reason*/) {
	const int32_t row = mpVortelDocument->SoloRow().Get();
	mSoloedRow = row >= 0 && row < kNumberOfDevices ? row : kNone;
}

// A change that playback itself made has already set the scene that plays.
void TVortelAudioEngine::OnSceneIndex(TObservable* observable, int32_t reason) {
	if (reason != kDidChange || observable != &mpObservedProgram->ActiveSceneIndex())
		return;
	TVortelScene* scene = mpObservedProgram->ActiveScene();
	mpEditedScene = scene;
	if (NotificationSourceThread() == kMainThread)
		SetScene(scene);
}

void TVortelAudioEngine::OnDeviceOrder(TObservable* observable, int32_t reason) {
	if (reason == kDidChange && observable == &mpProgram->DeviceOrder())
		ReadDeviceOrder();
}

void TVortelAudioEngine::ReadDeviceOrder() {
	for (int32_t position = 0; position < kNumberOfDevices; ++position)
		mProcessingOrder[static_cast<std::size_t>(position)] =
		    std::clamp(mpProgram->DeviceAtPosition(position), 0, kNumberOfDevices - 1);
	mRunningCount = kStale;
}

void TVortelAudioEngine::SetProgram(TVortelProgram* program) {
	if (program == mpProgram)
		return;
	mpProgram = program;
	for (const auto& device : mDevices)
		device->SetProgram(program);
	ReadDeviceOrder();
	SetScene(program->ActiveScene());
}

void TVortelAudioEngine::SetScene(TVortelScene* scene) {
	if (scene == mpScene)
		return;
	CatchUp();
	mpScene = scene;
	for (const auto& device : mDevices)
		device->SetScene(scene);
	FillRandomTable(scene->Seed().Get());
	SetTempo(mTempo);
}

// The playing scene's seed and grid are looked at when a block begins, which is when a notification would arrive.
void TVortelAudioEngine::FollowScene() {
	FillRandomTable(mpScene->Seed().Get());
	if (Grid().mDivisions != mDivisions)
		SetTempo(mTempo);
}

void TVortelAudioEngine::FillRandomTable(int32_t seed) {
	if (seed == mRandomTableSeed)
		return;
	mRandomTableSeed = seed;
	mRandom.SetSeed(static_cast<unsigned int>(seed));
	for (double& number : mRandomTable)
		number = mRandom.NextDouble();
}
