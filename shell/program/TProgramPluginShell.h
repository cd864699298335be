// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/threads/TThreadManager.h"
#include "shell/TAudioPluginShell.h"
#include "shell/TPublishedParameters.h"

#include <atomic>
#include <cstdint>
#include <span>
#include <utility>

/// The adapter of our own host format: a program that runs the plug-in as a host does (command line, tests,
/// benchmarks). It behaves like every adapter: each call opens the instance's storage and takes the thread's role
/// itself, so the caller's threads need no preparation. One thread at a time may play the host's audio thread, one the
/// GUI; they may be the same.
class TProgramPluginShell final : public TAudioPluginShell, private TPublishedParameters::THost {
public:
	/// What the host is told. All of it arrives on the main thread: in the call that changed something or in a Tick.
	class THost {
	public:
		virtual ~THost() = default;

		virtual void BeginEdit(int32_t /*parameter*/) {}

		virtual void PerformEdit(int32_t /*parameter*/, float /*value*/) {}

		virtual void EndEdit(int32_t /*parameter*/) {}

		/// byHost: the answer to the host's own SetCurrentProgramFromHost.
		virtual void ProgramChanged(int32_t /*program*/, bool /*byHost*/) {}

		virtual void ProgramNamesChanged() {}

		virtual void LatencyChanged(int32_t /*samples*/) {}
	};

	struct TParameterChange {
		int32_t mSampleOffset = 0; // from the start of the block
		int32_t mParameter = 0;
		float mValue = 0.0f; // normalised
	};

	/// One host block. Samples are full scale at ±1. An output may be the input of the same side; otherwise inputs
	/// stay as they are. Changes and events are in time order, at equal offsets changes come first.
	struct TBlock {
		const float* mpLeftIn = nullptr;
		const float* mpRightIn = nullptr;
		float* mpLeftOut = nullptr;
		float* mpRightOut = nullptr;
		int32_t mSamples = 0;
		const TTransportInfo* mpTransport = nullptr; // null: the host gives no transport
		std::span<const TParameterChange> mParameterChanges;
		std::span<const TMidiEvent> mMidiEvents;
	};

	/// Opens the storage and takes the main thread's role for its life: what a call of the host's GUI thread does.
	class [[nodiscard]] TGuiScope {
	public:
		explicit TGuiScope(
		    const TProgramPluginShell& shell, TThreadManager::TPatience patience = TThreadManager::TPatience::kWait)
		    : mStorage(shell.StorageId()),
		      mRole(kMainThread, patience) {}

		bool IsTaken() const { return mRole.IsTaken(); }

	private:
		TGlobalStorageScope mStorage;
		TThreadManager::THostScope mRole;
	};

	/// host may be null and must outlive the shell.
	TProgramPluginShell(TDocument* document, TEngine* engine, TGui* gui, THost* host);

	/// Any thread, while no Process runs. Hertz; the largest block in samples.
	void Setup(int32_t sampleRate, int32_t blockSize);

	/// Audio thread. A block longer than the block size is cut; returns the samples processed. Allocates nothing.
	int32_t Process(const TBlock& block);

	/// GUI thread: runs a function of the program as the GUI would, and returns its result.
	template <class TFunction>
	decltype(auto) AsGui(TFunction&& function) {
		TGuiScope scope(*this);
		return std::forward<TFunction>(function)();
	}

	/// GUI thread, to be called every 10 ms or so: runs what was posted to the main thread. Leaves that to the next
	/// tick while another thread works on the document.
	void Tick();
	/// GUI thread: returns when what it posted to the audio thread has run; with a stopped host it runs here.
	void WaitForAudioThread();

	/// GUI thread: the host's own changes. They are not reported back as edits.
	void SetParameterFromHost(int32_t parameter, float value);
	void SetCurrentProgramFromHost(int32_t program);

	void BeginHostEdits() override { mpParameters->BeginHostEdits(); }

	void EndHostEdits() override { mpParameters->EndHostEdits(); }

private:
	~TProgramPluginShell() override;

	/// Adapters tell the host only on the main thread; from others these travel there.
	enum class TNews : int32_t { kProgramChanged, kProgramChangedByHost, kLatencyChanged };

	void BeginEdit(int32_t parameter) override;
	void PerformEdit(int32_t parameter, float value) override;
	void EndEdit(int32_t parameter) override;

	void OnProgramIndex(TObservable* observable, int32_t reason);
	void OnProgramNames(TObservable* observable, int32_t reason);
	void OnParameterListAboutToChange(TObservable* observable, int32_t reason);

	void ReportOnMainThread(TNews news);
	void Report(TNews news);

	void ApplyParameterChanges(std::span<const TParameterChange> changes);
	void RunEngine(const TBlock& block, int32_t samples);

	THost* mpHost;
	TPtr<TPublishedParameters> mpParameters;
	TTransportInfo mTransport; // audio thread
	std::atomic<int32_t> mLatency{0};
	bool mInHostProgramChange = false; // main thread
};
