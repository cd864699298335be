// SPDX-License-Identifier: GPL-3.0-or-later
// What the host asks TVstPluginShell and sets in it: parameters, programs, chunks, pins, abilities.
#include "shell/vst2/TVstPluginShell.h"

#include "framework/foundation/files/TLog.h"
#include "framework/foundation/values/ProductInfo.h"
#include "shell/HostQuery.h"
#include "shell/vst2/Vst2Text.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string_view>

namespace {

constexpr const char* kLogCategory = "VST Shell";

constexpr std::size_t kParameterTitleLimit = 16;
constexpr std::size_t kParameterTextLimit = 24;
constexpr std::size_t kProgramNameLimit = 24;
constexpr std::size_t kHostProgramNameLimit = 64;
constexpr std::size_t kProductTextLimit = 64;
constexpr std::size_t kVendorCallTextLimit = 256;

constexpr VstInt32 kYes = 1;
constexpr VstInt32 kNo = -1;
constexpr VstInt32 kUnknown = 0;
constexpr auto kViewAsConfig = static_cast<VstInt32>(0xbeef0000u);

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> texts) {
	return std::ranges::find(texts, text) != texts.end();
}

bool FillPin(VstPinProperties* pin, const TString& label) {
	*pin = {};
	Vst2Text::Write(label, pin->label, sizeof(pin->label));
	Vst2Text::Write(label, pin->shortLabel, sizeof(pin->shortLabel));
	pin->flags = kPinIsActive | kPinIsStereo;
	return true;
}

bool LeavePinEmpty(VstPinProperties* pin) {
	*pin = {};
	return true;
}

} // namespace

bool TVstPluginShell::IsParameter(VstIntPtr index) const {
	return index >= 0 && index < mpDocument->NumberOfParameters();
}

bool TVstPluginShell::IsProgram(VstInt32 index) const {
	return index >= 0 && index < mpDocument->NumberOfPrograms();
}

// Parameters

void TVstPluginShell::setParameter(VstInt32 index, float value) {
	HostQuery(StorageId(), 0, [&] {
		if (!std::isnan(value))
			mpParameterMap->SetFromHost(index, std::clamp(value, 0.0f, 1.0f));
		return 0;
	});
}

float TVstPluginShell::getParameter(VstInt32 index) {
	return HostQuery(StorageId(), 0.0f, [&] { return IsParameter(index) ? mpDocument->ParameterValue(index) : 0.0f; });
}

void TVstPluginShell::getParameterName(VstInt32 index, char* text) {
	if (IsParameter(index))
		Vst2Text::Write(mpDocument->ParameterName(index).mName, text, kParameterTitleLimit);
}

void TVstPluginShell::getParameterLabel(VstInt32 index, char* text) {
	if (IsParameter(index))
		Vst2Text::Write(mpDocument->ParameterName(index).mUnit, text, kParameterTitleLimit);
}

// Hosts put the label behind it.
void TVstPluginShell::getParameterDisplay(VstInt32 index, char* text) {
	if (!IsParameter(index))
		return;
	TString value = mpDocument->ParameterValueText(index, mpDocument->ParameterValue(index));
	const TString unit = mpDocument->ParameterName(index).mUnit;
	if (!unit.IsEmpty() && value.EndsWith(unit)) {
		value = value.SubString(0, value.Length() - unit.Length());
		value.Trim();
	}
	Vst2Text::Write(value, text, kParameterTextLimit);
}

// Programs

VstInt32 TVstPluginShell::getProgram() {
	return mpDocument->CurrentProgramIndex();
}

void TVstPluginShell::setProgram(VstInt32 index) {
	mInHostProgramChange = true;
	mpDocument->SetCurrentProgramIndex(index);
	mInHostProgramChange = false;
}

void TVstPluginShell::setProgramName(char* text) {
	mpDocument->SetProgramName(mpDocument->CurrentProgramIndex(), Vst2Text::Read(text, kHostProgramNameLimit));
}

void TVstPluginShell::getProgramName(char* text) {
	getProgramNameIndexed(0, mpDocument->CurrentProgramIndex(), text);
}

bool TVstPluginShell::getProgramNameIndexed(VstInt32 /*category*/, VstInt32 index, char* text) {
	if (!IsProgram(index))
		return false;
	Vst2Text::Write(mpDocument->ProgramName(index), text, kProgramNameLimit);
	return true;
}

// Chunks

VstInt32 TVstPluginShell::getChunk(void** data, bool isPreset) {
	mChunk.Clear();
	if (isPreset)
		mpDocument->SaveProgramChunk(mChunk);
	else
		mpDocument->SaveBankChunk(mChunk);
	*data = mChunk.Bytes().data();
	return static_cast<VstInt32>(mChunk.Size());
}

VstInt32 TVstPluginShell::setChunk(void* data, VstInt32 size, bool isPreset) {
	if (data && size >= 1) {
		const TPublishedParameters::TStateChange change(*mpParameterMap);
		const TStream chunk(std::span(static_cast<const uint8_t*>(data), static_cast<std::size_t>(size)));
		if (isPreset)
			mpDocument->LoadProgramChunk(chunk);
		else
			mpDocument->LoadBankChunk(chunk);
	}
	mChunk.Clear();
	return 0;
}

// Pins

bool TVstPluginShell::getInputProperties(VstInt32 index, VstPinProperties* pin) {
	if (index >= 0 && index < 2 * mpEngine->InputChannels())
		return FillPin(pin, mpEngine->InputChannelName(index));
	if (index >= 0 && index < 2 * mpEngine->MaxInputChannels())
		return LeavePinEmpty(pin);
	TLog::Instance()->Log(kLogCategory, "Host queries unregistered input pin: %d", index);
	return false;
}

bool TVstPluginShell::getOutputProperties(VstInt32 index, VstPinProperties* pin) {
	if (index >= 0 && index < 2 * mpEngine->OutputChannels())
		return FillPin(pin, mpEngine->OutputChannelName(index));
	if (index >= 0 && index < 2 * mpEngine->MaxOutputChannels())
		return LeavePinEmpty(pin);
	TLog::Instance()->Log(kLogCategory, "Host queries unregistered output pin: %d", index);
	return false;
}

// Who and what it is

bool TVstPluginShell::getEffectName(char* text) {
	Vst2Text::Write(ProductInfo::kProductName, text, kProductTextLimit);
	return true;
}

bool TVstPluginShell::getProductString(char* text) {
	return getEffectName(text);
}

bool TVstPluginShell::getVendorString(char* text) {
	Vst2Text::Write(ProductInfo::kVendorName, text, kProductTextLimit);
	return true;
}

VstInt32 TVstPluginShell::getVendorVersion() {
	return ProductInfo::kVst2Version;
}

bool TVstPluginShell::keysRequired() {
	return mpGui && (mpGui->WantsKeyboardInputValue() || mpGui->WantsKeyboardInput());
}

VstInt32 TVstPluginShell::canDo(char* text) {
	if (!text)
		return kNo;
	if (IsOneOf(text, {"receiveVstEvents", "receiveVstMidiEvent", "receiveVstMidiEvents"}))
		return mpEngine->WantsMidiInput() ? kYes : kNo;
	if (IsOneOf(text, {"sendVstEvents", "sendVstMidiEvent", "sendVstMidiEvents"}))
		return mpEngine->WantsMidiOutput() ? kYes : kNo;
	if (IsOneOf(text, {"receiveVstTimeInfo", "conformsToWindowRules", "supportsViewDpiScaling"}))
		return kYes;
	if (IsOneOf(text, {"openCloseAnyThread", "midiProgramNames"}))
		return kNo;
	if (IsOneOf(text, {"canSerializeParameters"})) {
		mSerializeParameters = true;
		return kYes;
	}
	if (IsOneOf(text, {"hasCockosViewAsConfig"})) {
		if (!mHostHasViewAsConfig.exchange(true))
			TLog::Instance()->LogText(kLogCategory, "Accepted 'hasCockosViewAsConfig' host canDo...");
		return kViewAsConfig;
	}
	TLog::Instance()->Log(kLogCategory, "Unsupported host canDo: %s", text);
	return kUnknown;
}

// A host that writes values as texts into its project.
VstIntPtr TVstPluginShell::vendorSpecific(VstInt32 index, VstIntPtr value, void* ptr, float opt) {
	if (index == CCONST('S', 'e', 'r', 'P') && value == CCONST('s', 'C', 'e', 'A'))
		return 1;
	if (!mSerializeParameters || !ptr || !IsParameter(value))
		return 0;
	const auto parameter = static_cast<VstInt32>(value);
	if (index == effGetParamDisplay)
		return WriteParameterText(parameter, opt, ptr);
	return index == effString2Parameter ? ReadParameterText(parameter, ptr) : 0;
}

VstIntPtr TVstPluginShell::WriteParameterText(VstInt32 index, float value, void* text) {
	if (std::isnan(value))
		return 0;
	Vst2Text::Write(mpDocument->ParameterValueText(index, value), text, kVendorCallTextLimit);
	return 1;
}

/// The text gives way to its value as a number.
VstIntPtr TVstPluginShell::ReadParameterText(VstInt32 index, void* text) {
	float value = 0.0f;
	if (!mpDocument->ParameterValueFromText(index, Vst2Text::Read(text, kVendorCallTextLimit), value))
		return -1;
	Vst2Text::Write(TString::ToString(value, "%f"), text, kVendorCallTextLimit);
	return 1;
}
