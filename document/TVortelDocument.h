// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDevice.h"
#include "document/TVortelProgram.h"
#include "document/TVortelProgramNameGenerator.h"
#include "framework/foundation/threads/TCriticalSection.h"
#include "framework/foundation/values/TParkMillerPRNG.h"
#include "shell/TAudioPluginShell.h"

#include <array>
#include <atomic>
#include <vector>

class TVortelDelayDevice;
class TVortelDistortionDevice;
class TVortelGaterDevice;
class TVortelLofiDevice;
class TVortelMasterDevice;
class TVortelModulatorDevice;
class TVortelRetriggerDevice;
class TVortelReverserDevice;
class TVortelShufflerDevice;
class TVortelStretcherDevice;
class TVortelTapeStopDevice;

/// All state of one plug-in instance: a bank of 16 programs, the eleven devices, the 210 parameters. Everything in it
/// is made once and rewritten in place, so that the audio thread can read it without a lock.
///
/// Commands and structure: main thread. What a host reads and sets (parameter values, the program index) and the active
/// program and scene: any thread. Indices from outside are checked: an unknown one reads as nothing and sets nothing.
class TVortelDocument final : public TAudioPluginShell::TDocument {
public:
	static constexpr int32_t kNumberOfPrograms = 16;
	static constexpr int32_t kNumberOfDevices = TVortelParameterTable::kNumberOfDevices;
	static constexpr int32_t kNumberOfParameters = TVortelParameterTable::kNumberOfParameters;

	/// What happens at the end of construction: the bank is loaded; where there is no such file, all programs are
	/// randomised if that is wanted. Else they are init programs.
	struct TOptions {
		TString mDefaultBank;
		bool mRandomizeOnLoad = false;
	};

	/// Keeps the audio side out while structure is replaced: from its construction on, until its end, every block
	/// passes dry and touches nothing of the document. Main thread; may be nested.
	class [[nodiscard]] TLoadGuard {
	public:
		explicit TLoadGuard(TVortelDocument& document);
		~TLoadGuard();
		TLoadGuard(const TLoadGuard&) = delete;
		TLoadGuard& operator=(const TLoadGuard&) = delete;

	private:
		TVortelDocument& mDocument;
	};

	TVortelDocument();
	explicit TVortelDocument(const TOptions& options);
	~TVortelDocument() override;

	/// The tables answer for any index: it is taken into their range. Only Parameter gives null outside 0 to 209.
	TVortelProgram* ActiveProgram() const noexcept { return mpProgram.load(std::memory_order_relaxed); }

	TVortelScene* ActiveScene() const noexcept { return mpScene.load(std::memory_order_relaxed); }

	TVortelSequencer* ActiveSequencer() const noexcept;
	TVortelProgram* Program(int32_t index) const noexcept;
	TVortelDevice* Device(int32_t index) const noexcept;
	TVortelDeviceParameter* Parameter(int32_t id) const noexcept;

	TObservableBaseType<int>& ActiveProgramIndex() noexcept { return mActiveProgramIndex; }

	TVortelMasterDevice* MasterDevice() const noexcept { return mpMasterDevice; }

	TVortelModulatorDevice* ModulatorDevice() const noexcept { return mpModulatorDevice; }

	TVortelTapeStopDevice* TapeStopDevice() const noexcept { return mpTapeStopDevice; }

	TVortelRetriggerDevice* RetriggerDevice() const noexcept { return mpRetriggerDevice; }

	TVortelReverserDevice* ReverserDevice() const noexcept { return mpReverserDevice; }

	TVortelStretcherDevice* StretcherDevice() const noexcept { return mpStretcherDevice; }

	TVortelLofiDevice* LofiDevice() const noexcept { return mpLofiDevice; }

	TVortelDistortionDevice* DistortionDevice() const noexcept { return mpDistortionDevice; }

	TVortelGaterDevice* GaterDevice() const noexcept { return mpGaterDevice; }

	TVortelDelayDevice* DelayDevice() const noexcept { return mpDelayDevice; }

	TVortelShufflerDevice* ShufflerDevice() const noexcept { return mpShufflerDevice; }

	/// Fired after the fact; who observes them asks the document.
	TObservableBang& ProgramChangedBang() noexcept { return mProgramChangedBang; }

	TObservableBang& SceneChangedBang() noexcept { return mSceneChangedBang; }

	TObservableBang& SequenceChangedBang() noexcept { return mSequenceChangedBang; }

	void FireAllBangs();

	/// Notes still trigger, but do not change the scene.
	TObservableBaseType<bool>& SceneLocked() noexcept { return mSceneLocked; }

	/// The display position selected in the editor.
	TObservableBaseType<int>& SelectedDevice() noexcept { return mSelectedDevice; }

	/// The display position soloed in the editor, -1 none.
	TObservableBaseType<int>& SoloRow() noexcept { return mSoloRow; }

	/// Held by the audio side for the whole of each call; see TLoadGuard.
	TCriticalSection& AudioLock() noexcept { return mAudioLock; }

	bool IsLoading() const noexcept { return mLoadDepth.load() > 0; }

	void InitProgram();
	void CopyProgram();
	void PasteProgram();
	void InitAllPrograms();

	/// Of the active scene.
	void InitScene();
	void CopyScene();
	void PasteScene();
	void InitEffects();
	void CopyEffects();
	void PasteEffects();
	void InitSequence();
	void CopySequence();
	void PasteSequence();
	/// Keeps the grid and what the clipboard leaves empty.
	void MixPasteSequence();
	void MirrorSequence();
	/// The rows change places along the order of the devices.
	void FlipSequence();

	/// Commands that draw from the general generator, on the active program and scene.
	void RandomizeProgramName();
	/// Fires no bang; the seed itself tells its observers.
	void RandomizeSeed();
	/// The effects alone: neither the weights nor the master change.
	void RandomizeEffects();
	void MutateEffects();
	/// Fills the used length with blocks, each on one device, picked by the weights. mix: over what is there. Without
	/// any weight nothing happens.
	void RandomizeSequence(bool mix);
	void MutateSequence();
	/// Seed, effects, sequence; withGrid: also beats and steps per beat.
	void RandomizeScene(bool withGrid);
	/// The grid stays.
	void MutateScene();
	/// Name, order and scene 0 of all sixteen. Program 0 is active afterwards.
	void RandomizeAllPrograms();

	/// What CopyParameters and PasteParameters of a single device use.
	TVortelScene* ParameterClipboard() const noexcept { return mpParameterClipboard.Get(); }

	int32_t ProductVersion() override;
	int32_t UniqueId() override;

	bool IsInstrument() override { return false; }

	int32_t NumberOfPrograms() override { return kNumberOfPrograms; }

	int32_t CurrentProgramIndex() override;
	void SetCurrentProgramIndex(int32_t index) override;

	TObservable* CurrentProgramIndexValue() override { return &mActiveProgramIndex; }

	TString ProgramName(int32_t index) override;
	void SetProgramName(int32_t index, const TString& name) override;

	/// For a load it fires once, at the end, if any name is another one then.
	TObservableBang* ProgramNameChangedBang() override { return &mProgramNameChangedBang; }

	int32_t NumberOfParameters() override { return kNumberOfParameters; }

	float ParameterValue(int32_t index) override;
	/// The value is taken into 0 to 1.
	void SetParameterValue(int32_t index, float value) override;
	TObservable* ParameterObservable(int32_t index) override;

	TObservable* ParameterListAboutToChangeValue() override { return nullptr; }

	TObservable* ParameterListChangedValue() override { return nullptr; }

	TString ParameterValueText(int32_t index, float value) override;
	bool ParameterValueFromText(int32_t index, const TString& text, float& value) override;
	TParameterTitle ParameterName(int32_t index) override;

	/// Files. The audio side passes dry meanwhile. Failures are told to the user; a bank that fails leaves what was
	/// read of it, a program that fails leaves the active program as it was. A bank that does not exist, and an empty
	/// path to save to, do nothing. True if the file was read or written.
	bool LoadBank(const TString& path);
	bool SaveBank(const TString& path);
	/// Of the active program.
	bool LoadProgram(const TString& path);
	bool SaveProgram(const TString& path);

	/// Host chunks: the text of a file of the same kind. Any thread of the host. Failures are only logged.
	void SaveBankChunk(TStream& stream) override;
	void LoadBankChunk(const TStream& stream) override;
	void SaveProgramChunk(TStream& stream) override;
	void LoadProgramChunk(const TStream& stream) override;

	/// Brings what a file of the version before has left here to this version, all programs with it.
	void UpgradeToVersion(int32_t version);

	void OnLoadEnd(bool success) override;

private:
	friend class TVortelDevice;

	void FillPrograms(const TOptions& options);
	void RegisterParameter(const TPtr<TVortelDeviceParameter>& parameter);
	void DeclareMembers();
	void CreateDevices();
	void InitDevices();
	template <class TDevice>
	void CreateDevice(TDevice*& device);
	void FillClipboards();
	void FireSceneBangs();
	std::vector<TString> ProgramNames() const;
	template <class TWork>
	void Replace(const TWork& work);

	void OnActiveProgramIndex(TObservable* observable, int32_t reason);
	void OnActiveSceneIndex(TObservable* observable, int32_t reason);
	void OnProgramName(TObservable* observable, int32_t reason);

	TPtr<TVortelProgram> mpTempProgram;
	TPtr<TVortelScene> mpTempScene;
	TObservableBaseType<int> mActiveProgramIndex{0};
	std::array<TPtr<TVortelProgram>, kNumberOfPrograms> mpPrograms;

	TPtr<TVortelProgram> mpProgramClipboard;
	TPtr<TVortelScene> mpSceneClipboard;
	TPtr<TVortelScene> mpParameterClipboard;
	TPtr<TVortelSequencer> mpSequencerClipboard;

	// The main thread writes, any thread reads; what they point to lives as long as the document.
	std::atomic<TVortelProgram*> mpProgram{nullptr};
	std::atomic<TVortelScene*> mpScene{nullptr};

	TObservableBaseType<bool> mSceneLocked{false};
	TObservableBaseType<int> mSelectedDevice{0};
	TObservableBaseType<int> mSoloRow{-1};
	TObservableBang mProgramChangedBang;
	TObservableBang mSceneChangedBang;
	TObservableBang mSequenceChangedBang;
	TObservableBang mProgramNameChangedBang;
	bool mHoldsNames = false; // while programs are replaced; main thread

	TVortelMasterDevice* mpMasterDevice = nullptr;
	TVortelModulatorDevice* mpModulatorDevice = nullptr;
	TVortelTapeStopDevice* mpTapeStopDevice = nullptr;
	TVortelRetriggerDevice* mpRetriggerDevice = nullptr;
	TVortelReverserDevice* mpReverserDevice = nullptr;
	TVortelStretcherDevice* mpStretcherDevice = nullptr;
	TVortelLofiDevice* mpLofiDevice = nullptr;
	TVortelDistortionDevice* mpDistortionDevice = nullptr;
	TVortelGaterDevice* mpGaterDevice = nullptr;
	TVortelDelayDevice* mpDelayDevice = nullptr;
	TVortelShufflerDevice* mpShufflerDevice = nullptr;
	std::array<TPtr<TVortelDevice>, kNumberOfDevices> mpDevices;
	std::array<TPtr<TVortelDeviceParameter>, kNumberOfParameters> mpParameters;

	/// For picking devices alone; goes on through the document's life.
	TParkMillerPRNG mRandom;
	TPtr<TVortelProgramNameGenerator> mpNameGenerator;
	std::atomic<int32_t> mLoadDepth{0};
	TCriticalSection mAudioLock;
};
