// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/document/observables/TWeakReferenceable.h"
#include "framework/document/undo/TDocumentRoot.h"
#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/foundation/memory/TPtr.h"
#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TPointT.h"
#include "framework/gui/views/TMainFrameView.h"
#include "shell/TAudioPlayer.h"
#include "shell/TMidiEvent.h"
#include "shell/TTransportInfo.h"

#include <cstdint>
#include <span>

class TCommand;
class TObservable;
class TObservableBang;
class TStream;

/// What the adapters of all host formats have in common, and the three contracts through which an adapter talks to the
/// program behind it. The shell knows nothing of sequencers and effects, the program nothing of host formats.
///
/// A shell owns one TDocument, one TEngine and, where there is an editor, one TGui for as long as the instance lives.
/// It belongs to the main thread. Every call from the host opens a TGlobalStorageScope on StorageId() first.
class TAudioPluginShell : public TObserver, public TGlobalStorageAware {
public:
	using TSize = TPointT<int>;
	using TMidiEvent = ::TMidiEvent;

	class TDocument;
	class TEngine;
	class TGui;

	~TAudioPluginShell() override;

	TDocument* Document() const { return mpDocument.Get(); }

	TEngine* Engine() const { return mpEngine.Get(); }

	/// Null where the program has no editor.
	TGui* Gui() const { return mpGui.Get(); }

	virtual bool CanRequestWindowResize() { return false; }

	virtual bool RequestWindowResize(const TSize& /*oldSize*/, const TSize& /*newSize*/) { return false; }

	/// Bracket of one undo step: parameter changes of the GUI thread between the two are reported to the host as one
	/// edit per touched parameter.
	virtual void BeginHostEdits() {}

	virtual void EndHostEdits() {}

	virtual bool CanSendMidiEvents() { return false; }

	virtual void SendMidiEvents(std::span<const TMidiEvent> /*events*/) {}

protected:
	TAudioPluginShell(TDocument* document, TEngine* engine, TGui* gui);

	// Destroyed in reverse order: the editor first, the document last.
	TPtr<TDocument> mpDocument;
	TPtr<TEngine> mpEngine;
	TPtr<TGui> mpGui;
};

/// The document, as an adapter sees it. Main thread, but for SetParameterValue, SetCurrentProgramIndex and the plain
/// reads, which an adapter also calls on the audio thread.
class TAudioPluginShell::TDocument : public TDocumentRoot {
public:
	/// What a parameter is called in a host: "MOD:Rate" and the unit, which may be empty.
	struct TParameterTitle {
		TString mName;
		TString mUnit;
	};

	void UndoTransactionBegun() override;
	void UndoTransactionEnded() override;

	virtual int32_t ProductVersion() = 0;
	/// Four characters, the first in the highest byte.
	virtual int32_t UniqueId() = 0;
	virtual bool IsInstrument() = 0;

	virtual int32_t NumberOfPrograms() = 0;
	virtual int32_t CurrentProgramIndex() = 0;
	virtual void SetCurrentProgramIndex(int32_t index) = 0;
	virtual TObservable* CurrentProgramIndexValue() = 0;
	virtual TString ProgramName(int32_t index) = 0;
	virtual void SetProgramName(int32_t index, const TString& name) = 0;
	virtual TObservableBang* ProgramNameChangedBang() = 0;

	/// Parameter values are normalised, 0 to 1.
	virtual int32_t NumberOfParameters() = 0;
	virtual float ParameterValue(int32_t index) = 0;
	virtual void SetParameterValue(int32_t index, float value) = 0;
	virtual TObservable* ParameterObservable(int32_t index) = 0;
	/// Null where the list of parameters never changes.
	virtual TObservable* ParameterListAboutToChangeValue() = 0;
	virtual TObservable* ParameterListChangedValue() = 0;
	virtual TString ParameterValueText(int32_t index, float value) = 0;
	/// False leaves value alone.
	virtual bool ParameterValueFromText(int32_t index, const TString& text, float& value) = 0;
	virtual TParameterTitle ParameterName(int32_t index) = 0;

	/// What a host keeps: the whole bank, or the current program. Any thread but the audio thread. A failure is logged
	/// and leaves the document as far as it got. A document that keeps nothing writes and reads nothing.
	virtual void SaveBankChunk(TStream& /*stream*/) {}

	virtual void LoadBankChunk(const TStream& /*stream*/) {}

	virtual void SaveProgramChunk(TStream& /*stream*/) {}

	virtual void LoadProgramChunk(const TStream& /*stream*/) {}

protected:
	TAudioPluginShell* Shell() const { return mpShell; }

private:
	friend class TAudioPluginShell;

	TAudioPluginShell* mpShell = nullptr;
};

/// The audio side, as an adapter sees it. Audio thread, but for the setup. Buffers are full scale at ±32768; channel
/// counts are stereo pairs.
class TAudioPluginShell::TEngine : public TAudioPlayer, public TWeakReferenceable {
public:
	using TMidiEvent = ::TMidiEvent;

	/// One entry per stereo pair in each list. Input and output buffers may be the same. transport may be null.
	virtual void Process(
	    std::span<float* const> leftIn, std::span<float* const> rightIn, std::span<float* const> leftOut,
	    std::span<float* const> rightOut, int32_t samples, const TTransportInfo* transport) = 0;
	/// Runs the command at that sample of the block that is about to be processed; at once for offset 0.
	virtual void ScheduleCommand(TCommand* command, int32_t sampleOffset) = 0;
	/// For a command that comes again by ScheduleAgain, so many samples later, from inside its Execute: at each sample
	/// it has the place among the commands that it would have, had it been scheduled there at first. Offsets above 0.
	virtual void ScheduleFirst(TCommand* command, int32_t sampleOffset) = 0;
	virtual void ScheduleAgain(TCommand* command, int32_t samples) = 0;

	virtual int32_t MaxInputChannels();
	virtual TString InputChannelName(int32_t index);

	virtual int32_t MaxOutputChannels() { return 1; }

	virtual TString OutputChannelName(int32_t index);

	virtual int32_t LatencyInSamples() { return 0; }

	/// True makes the adapter clear its outputs and skip Process.
	virtual bool WantsSilentOutput() { return false; }

	virtual void Suspend() {}

	virtual void Resume() {}

	virtual bool WantsMidiInput();

	/// Called before the Process of the block that the events belong to.
	virtual void ProcessMidiEvents(std::span<const TMidiEvent> /*events*/) {}

	virtual bool WantsMidiOutput() { return false; }

protected:
	explicit TEngine(TDocument* document);

	TDocument* Document() const { return mpDocument.Get(); }

	TAudioPluginShell* Shell() const { return mpShell; }

private:
	friend class TAudioPluginShell;

	TPtr<TDocument> mpDocument;
	TAudioPluginShell* mpShell = nullptr;
};

/// The editor's content, as an adapter sees it. It exists as long as the instance; the window around it comes and goes.
class TAudioPluginShell::TGui : public TMainFrameView {
public:
	TDocument* Document() const { return mpDocument.Get(); }

	/// Whether the host agreed.
	bool RequestWindowResize(const TSize& oldSize, const TSize& newSize);

	/// Makes what windows around this object stand on, and the views in it. Called before each opening. Throws
	/// TReadableException.
	virtual void Prepare() {}

	virtual bool WantsKeyboardInput() { return false; }

	/// Its change makes an adapter ask WantsKeyboardInput again. May be null.
	virtual TObservable* WantsKeyboardInputValue() { return nullptr; }

protected:
	explicit TGui(TDocument* document) : mpDocument(document) {}

private:
	friend class TAudioPluginShell;

	TAudioPluginShell* mpShell = nullptr;
	TPtr<TDocument> mpDocument;
};
