// SPDX-License-Identifier: GPL-3.0-or-later
// The controller's side of TVst3PluginShell: parameters, programs, and what the host is told.
#include "shell/vst3/TVst3PluginShell.h"

#include "shell/vst3/TVst3PluginEditor.h"
#include "shell/vst3/TVst3PluginParameter.h"
#include "shell/vst3/Vst3HostCall.h"
#include "shell/vst3/Vst3Text.h"

#include <pluginterfaces/vst/ivstmidicontrollers.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr std::array<std::pair<CtrlNumber, ParamID>, 5> kMidiMapping{{
    {kCtrlModWheel, kVst3ModulationWheel},
    {kCtrlVolume, kVst3Volume},
    {kCtrlSustainOnOff, kVst3Sustain},
    {kAfterTouch, kVst3ChannelPressure},
    {kPitchBend, kVst3Pitchbend},
}};

} // namespace

bool TVst3PluginShell::IsDocumentParameter(ParamID id) const {
	return id < static_cast<ParamID>(mpDocument->NumberOfParameters());
}

int32_t TVst3PluginShell::ProgramOf(double value) const {
	const int32_t programs = mpDocument->NumberOfPrograms();
	return std::clamp(static_cast<int32_t>(std::lround(std::clamp(value, 0.0, 1.0) * programs)), 0, programs - 1);
}

tresult PLUGIN_API TVst3PluginShell::setComponentState(IBStream* /*stream*/) {
	return kResultOk;
}

ParamValue PLUGIN_API TVst3PluginShell::getParamNormalized(ParamID id) {
	return HostQuery(StorageId(), 0.0, [this, id]() -> ParamValue {
		if (!IsInitialized())
			return 0.0;
		if (IsDocumentParameter(id))
			return mpDocument->ParameterValue(static_cast<int32_t>(id));
		switch (id) {
		case kVst3Bypass:
			return mBypass ? 1.0 : 0.0;
		case kVst3Preset:
			return static_cast<double>(mpDocument->CurrentProgramIndex()) / mpDocument->NumberOfPrograms();
		case kVst3GuiIdle:
			return mGuiIdleValue / 100.0;
		default:
			return SingleComponentEffect::getParamNormalized(id);
		}
	});
}

tresult PLUGIN_API TVst3PluginShell::setParamNormalized(ParamID id, ParamValue value) {
	return HostCall(StorageId(), [this, id, value]() -> tresult {
		if (!IsInitialized())
			return kNotInitialized;
		if (std::isnan(value))
			return kInvalidArgument;
		if (IsDocumentParameter(id)) {
			mpParameterMap->SetFromHost(static_cast<int32_t>(id), static_cast<float>(value));
			return kResultOk;
		}
		switch (id) {
		case kVst3Bypass:
			mBypass = value > 0.5;
			return kResultOk;
		case kVst3Preset:
			SetProgramFromHost(ProgramOf(value));
			return kResultOk;
		case kVst3GuiIdle:
			if (mUsesGuiIdleParameter)
				RunMainThreadCommands();
			return kResultOk;
		default:
			return SingleComponentEffect::setParamNormalized(id, value);
		}
	});
}

// No storage is opened: hosts convert values on the audio thread, and this is plain arithmetic.
ParamValue PLUGIN_API TVst3PluginShell::plainParamToNormalized(ParamID id, ParamValue plain) {
	if (id == kVst3Bypass)
		return plain > 0.5 ? 1.0 : 0.0;
	return SingleComponentEffect::plainParamToNormalized(id, plain);
}

tresult PLUGIN_API TVst3PluginShell::getParamStringByValue(ParamID id, ParamValue value, String128 text) {
	return HostCall(StorageId(), [this, id, value, text]() -> tresult {
		if (!text || std::isnan(value))
			return kInvalidArgument;
		switch (id) {
		case kVst3Bypass:
			CopyText(value > 0.5 ? u"On" : u"Off", text);
			return kResultOk;
		case kVst3Preset:
			CopyText(mpDocument->ProgramName(ProgramOf(value)).View(), text);
			return kResultOk;
		case kVst3GuiIdle:
			return kResultFalse;
		default:
			return SingleComponentEffect::getParamStringByValue(id, value, text);
		}
	});
}

tresult PLUGIN_API TVst3PluginShell::getParamValueByString(ParamID id, TChar* text, ParamValue& value) {
	return HostCall(StorageId(), [this, id, text, &value]() -> tresult {
		if (!text)
			return kInvalidArgument;
		if (id == kVst3GuiIdle)
			return kResultFalse;
		if (id == kVst3Preset)
			return ProgramFromText(text, value) ? kResultOk : kResultFalse;
		if (id != kVst3Bypass)
			return SingleComponentEffect::getParamValueByString(id, text, value);
		const TString word{std::u16string_view(text)};
		const bool isOn = word.CompareIgnoringCase("on") == 0;
		if (!isOn && word.CompareIgnoringCase("off") != 0)
			return kResultFalse;
		value = isOn ? 1.0 : 0.0;
		return kResultOk;
	});
}

/// Of programs with the same name, the first.
bool TVst3PluginShell::ProgramFromText(const TChar* text, ParamValue& value) const {
	for (int32_t program = 0; program < mpDocument->NumberOfPrograms(); ++program) {
		String128 name;
		CopyText(mpDocument->ProgramName(program).View(), name);
		if (std::u16string_view(name) != std::u16string_view(text))
			continue;
		value = static_cast<double>(program) / mpDocument->NumberOfPrograms();
		return true;
	}
	return false;
}

tresult PLUGIN_API TVst3PluginShell::setComponentHandler(IComponentHandler* handler) {
	return HostCall(StorageId(), [this, handler] { return SingleComponentEffect::setComponentHandler(handler); });
}

IPlugView* PLUGIN_API TVst3PluginShell::createView(FIDString name) {
	return HostQuery<IPlugView*>(StorageId(), nullptr, [&]() -> IPlugView* {
		const TThreadManager::THostScope role(kMainThread);
		if (!mpGui || !name || std::strcmp(name, ViewType::kEditor) != 0)
			return nullptr;
		mpEditor = new TPluginEditor(*this);
		return mpEditor;
	});
}

// Hosts ask in the middle of a process call.
tresult PLUGIN_API
TVst3PluginShell::getMidiControllerAssignment(int32 busIndex, int16 /*channel*/, CtrlNumber controller, ParamID& id) {
	if (!mpDocument->IsInstrument() || busIndex != 0)
		return kResultFalse;
	const auto found = std::ranges::find(kMidiMapping, controller, &std::pair<CtrlNumber, ParamID>::first);
	if (found == kMidiMapping.end())
		return kResultFalse;
	id = found->second;
	return kResultOk;
}

int32 PLUGIN_API TVst3PluginShell::getUnitCount() {
	return 1;
}

tresult PLUGIN_API TVst3PluginShell::getUnitInfo(int32 index, UnitInfo& info) {
	if (index != 0)
		return kResultFalse;
	info.id = kRootUnitId;
	info.parentUnitId = kNoParentUnitId;
	info.programListId = kVst3Preset;
	CopyText(u"Root Unit", info.name);
	return kResultOk;
}

int32 PLUGIN_API TVst3PluginShell::getProgramListCount() {
	return mpDocument->NumberOfPrograms() != 0 ? 1 : 0;
}

tresult PLUGIN_API TVst3PluginShell::getProgramListInfo(int32 index, ProgramListInfo& info) {
	if (index != 0)
		return kResultFalse;
	info.id = kVst3Preset;
	info.programCount = mpDocument->NumberOfPrograms();
	CopyText(u"Factory Presets", info.name);
	return kResultOk;
}

tresult PLUGIN_API TVst3PluginShell::getProgramName(ProgramListID list, int32 program, String128 name) {
	return HostCall(StorageId(), [this, list, program, name]() -> tresult {
		if (!name)
			return kInvalidArgument;
		if (list != kVst3Preset || program < 0 || program >= mpDocument->NumberOfPrograms())
			return kResultFalse;
		CopyText(mpDocument->ProgramName(program).View(), name);
		return kResultOk;
	});
}

void TVst3PluginShell::SetProgramFromHost(int32_t program) {
	if (program == mpDocument->CurrentProgramIndex())
		return;
	mInHostProgramChange = true;
	mpDocument->SetCurrentProgramIndex(program);
	mInHostProgramChange = false;
}

void TVst3PluginShell::BeginHostEdits() {
	mpParameterMap->BeginHostEdits();
}

void TVst3PluginShell::EndHostEdits() {
	mpParameterMap->EndHostEdits();
}

void TVst3PluginShell::BeginEdit(int32_t parameter) {
	if (IComponentHandler* handler = ComponentHandler())
		handler->beginEdit(static_cast<ParamID>(parameter));
}

void TVst3PluginShell::PerformEdit(int32_t parameter, float value) {
	if (IComponentHandler* handler = ComponentHandler())
		handler->performEdit(static_cast<ParamID>(parameter), value);
}

void TVst3PluginShell::EndEdit(int32_t parameter) {
	if (IComponentHandler* handler = ComponentHandler())
		handler->endEdit(static_cast<ParamID>(parameter));
}

// Direct delivery: on whichever thread changes the program. What follows from a program change is no edit of the user.
void TVst3PluginShell::OnProgramIndex(TObservable* /*observable*/, int32_t reason) {
	if (reason == kWillChange)
		mpParameterMap->CancelHostEdits();
	if (reason == kDidChange && !IsMainThreadInStateChange())
		ReportOnMainThread(mInHostProgramChange ? kProgramChangedByHost : kProgramChanged);
}

void TVst3PluginShell::OnProgramNames(TObservable* /*observable*/, int32_t reason) {
	if (reason != kDidChange)
		return;
	if (IsMainThreadInStateChange())
		mRenamedByState = true;
	else if (!mInHostProgramChange)
		ReportOnMainThread(kProgramNamesChanged);
}

void TVst3PluginShell::OnParameterListAboutToChange(TObservable* /*observable*/, int32_t reason) {
	if (reason != kDidChange)
		return;
	mpParameterMap->Rebuild();
	ReportOnMainThread(kProgramChanged);
}

void TVst3PluginShell::OnParameterListChanged(TObservable* /*observable*/, int32_t reason) {
	if (reason == kDidChange)
		ReportOnMainThread(kProgramChanged);
}

bool TVst3PluginShell::IsMainThreadInStateChange() const {
	return mpParameterMap->IsInStateChange() && TThreadManager::Instance()->IsCurrentThread(kMainThread);
}

void TVst3PluginShell::ReportOnMainThread(TNews news) {
	if (TThreadManager::Instance()->IsCurrentThread(kMainThread) && !mpParameterMap->IsInStateChange())
		Report(news);
	else
		ReportLater(news);
}

// The news of any number of changes travels once and needs no memory, however long the main thread sleeps.
void TVst3PluginShell::ReportLater(TNews news) {
	mNews.fetch_or(news);
	mNewsBang.Bang();
}

void TVst3PluginShell::OnNews(TObservable* /*observable*/, int32_t reason) {
	if (reason == kDidChange)
		Report(mNews.exchange(0));
}

void TVst3PluginShell::Report(uint32_t news) {
	IComponentHandler* handler = ComponentHandler();
	if (!handler)
		return;
	if (news & kLatencyIsAnother)
		handler->restartComponent(kLatencyChanged);
	if (news & kProgramChanged)
		RefreshTitles();
	const auto units = AskFor<IUnitHandler>(handler, IUnitHandler_iid);
	if (units && (news & (kProgramChangedByHost | kProgramChanged | kProgramNamesChanged)))
		units->notifyProgramListChange(kVst3Preset, mpDocument->CurrentProgramIndex());
	if (news & (kProgramChanged | kProgramNamesChanged))
		handler->restartComponent(kParamValuesChanged);
}

void TVst3PluginShell::RefreshTitles() {
	for (int32_t i = 0; i < mpDocument->NumberOfParameters(); ++i)
		if (Parameter* parameter = FindParameter(static_cast<ParamID>(i)))
			static_cast<TPluginParameter*>(parameter)->RefreshTitle();
}
