// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDocument.h"
#include "effects/TVortelDspDevice.h"
#include "engine/TRelaxed.h"
#include "engine/TStepGrid.h"
#include "framework/foundation/commands/TCommandScheduler.h"
#include "framework/foundation/values/TParkMillerPRNG.h"
#include "shell/TAudioPluginShell.h"

#include <array>
#include <cstdint>
#include <span>

/// All audio passes through this. Owns the eleven DSP devices, runs them in the order of the current program, cuts each
/// block where something is scheduled, and plays the sequencer: which effects are on at which sample.
///
/// Audio thread, except where it says GUI. Process and ProcessMidiEvents hold the document's audio lock; while the
/// document is loading, audio passes dry and MIDI is dropped. Made on the main thread; holds the document.
/// Beats are quarter notes.
class alignas(64) TVortelAudioEngine final : public TAudioPluginShell::TEngine, public TVortelDspDevice::THost {
public:
	static constexpr int32_t kNumberOfDevices = TVortelParameterTable::kNumberOfDevices;
	static constexpr int32_t kNone = -1;
	/// What a host's tempo is taken into, beats per minute. Lengths derived within it fit an int32 at any rate.
	static constexpr float kSlowestTempo = 0.1f;
	static constexpr float kFastestTempo = 1000000.0f;

	explicit TVortelAudioEngine(TVortelDocument* document);

	void Process(
	    std::span<float* const> leftIn, std::span<float* const> rightIn, std::span<float* const> leftOut,
	    std::span<float* const> rightOut, int32_t samples, const TTransportInfo* transport) override;
	void ScheduleCommand(TCommand* command, int32_t sampleOffset) override;
	void ScheduleFirst(TCommand* command, int32_t sampleOffset) override;
	void ScheduleAgain(TCommand* command, int32_t samples) override;

	bool WantsMidiInput() override { return true; }

	/// An event with an offset of 0 or less takes effect here, the others when Process reaches their sample.
	void ProcessMidiEvents(std::span<const TMidiEvent> events) override;

	int32_t SampleRate() const override { return TAudioPlayer::SampleRate(); }

	int32_t BlockSize() const override { return TAudioPlayer::BlockSize(); }

	float Tempo() const override { return mTempo; }

	void RegisterDevice(int32_t index, TVortelDspDevice* device) override;

	/// GUI: the device that the randomizer row has picked, kNone if it has none.
	int32_t RandomDevice() const { return mRandomDevice; }

	/// GUI: the step that plays of the scene that is being edited; kNone if none does.
	int32_t PlayingStep() const;
	/// GUI: where that step lies, in beats from the start of the loop; kNone if none plays.
	double PlayingPosition() const;

private:
	friend class TVortelMidiEventCommand;
	friend class TVortelNewStepCommand;
	friend class TVortelApplyMIDISceneChangeCommand;

	void InputChannelsChanged(int32_t) override {}

	void OutputChannelsChanged(int32_t) override {}

	void SampleRateChanged(int32_t rate) override;
	void BlockSizeChanged(int32_t samples) override;

	void RunBlock(float* left, float* right, int32_t samples, const TTransportInfo* transport);
	void RunDevices(float* left, float* right, int32_t samples);
	void CollectRunning();
	void AdvancePosition(int32_t samples);
	void CatchUp();
	void SetPosition(double position);
	void ApplyTransport(const TTransportInfo& transport);
	void SetTempo(float tempo);

	void ObserveDocument();
	void OnProgramIndex(TObservable* observable, int32_t reason);
	void OnSceneLocked(TObservable* observable, int32_t reason);
	void OnSoloRow(TObservable* observable, int32_t reason);
	void OnSceneIndex(TObservable* observable, int32_t reason);
	void OnDeviceOrder(TObservable* observable, int32_t reason);
	void SetProgram(TVortelProgram* program);
	void SetScene(TVortelScene* scene);
	void FollowScene();
	void ReadDeviceOrder();
	void FillRandomTable(int32_t seed);

	TStepGrid Grid() const noexcept { return TStepGrid::Of(*mpScene->Sequencer()); }

	int32_t TriggerMode() const { return mpProgram->TriggerMode().Get(); }

	void StartSequencer();
	void StopSequencer();
	void RemovePendingSteps();
	void AdvanceStep();
	bool EnterStep(int32_t step);
	void ChooseRandomDevice(uint8_t randomizerStep);
	int32_t PickRandomDevice(double position) const;
	void SwitchDevices(int32_t step, uint8_t randomizerStep);
	void SwitchSoloed(int32_t step, uint8_t randomizerStep);
	void ApplyStep(int32_t device, uint8_t step);

	void HandleMidiEvent(const TMidiEvent& event);
	void MidiNoteOn(int32_t note, int32_t velocity);
	void MidiNoteOff(int32_t note);
	bool ScheduleAtGridPoint(int32_t note);
	void ApplyMidiSceneChange(int32_t note);

	const TPtr<TVortelDocument> mpVortelDocument;
	const TPtr<TCommandScheduler> mpScheduler;

	// Programs and scenes live as long as the document.
	TVortelProgram* mpObservedProgram = nullptr; // whose scene index is followed
	TVortelProgram* mpProgram = nullptr;         // that plays
	TRelaxed<TVortelScene*> mpEditedScene = nullptr;
	TRelaxed<TVortelScene*> mpScene = nullptr; // that plays

	TRelaxed<float> mTempo = 120.0f; // beats per minute
	double mSamplesPerBeat = 0.0;
	TRelaxed<double> mSamplesPerStep = 0.0;
	int32_t mDivisions = 0; // what mSamplesPerStep was worked out with

	bool mHostIsPlaying = false;
	double mHostPosition = 0.0;        // beats
	TRelaxed<bool> mIsRunning = false; // the sequencer
	TRelaxed<double> mPosition = 0.0;  // of the sequencer, in beats, from 0 up to the loop's length
	bool mPositionIsBehind = false;    // the host's has moved on since
	double mStartPosition = 0.0;       // host position at which a run by note began
	int32_t mCurrentStep = kNone;      // last acted on
	int32_t mHeldNotes = 0;
	TRelaxed<int32_t> mRandomDevice = kNone;
	int32_t mSoloedRow = kNone; // position in the processing order
	bool mIgnoreMidiNotePitch = false;

	// Device ids by position; position 0 stands for the master.
	std::array<int32_t, kNumberOfDevices> mProcessingOrder{};
	// By device id: 0 is the master, which brackets each host block and is not in the chain.
	std::array<TPtr<TVortelDspDevice>, kNumberOfDevices> mDevices;
	// The effects that run, in processing order; the count is kStale when one has begun or ended, or the order changed.
	std::array<TVortelDspDevice*, kNumberOfDevices> mRunning{};
	static constexpr int32_t kStale = -1;
	int32_t mRunningCount = kStale;

	static constexpr std::size_t kRandomTableSize = 4096;
	TParkMillerPRNG mRandom;
	int32_t mRandomTableSeed = 0;
	std::array<double, kRandomTableSize> mRandomTable{};
};
