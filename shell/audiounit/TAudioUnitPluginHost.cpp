// SPDX-License-Identifier: GPL-3.0-or-later
// What a host asks TAudioUnitPluginShell and tells it: properties, parameters, states and presets.
#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TStream.h"
#include "shell/audiounit/TAudioUnitPluginShell.h"
#include "shell/audiounit/TAudioUnitPluginView.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>
#include <string>
#include <string_view>

namespace {

constexpr const char* kBankKey = "BankChunk";
constexpr const char* kProgramKey = "ProgramChunk"; // read, never written

struct TOwnProperty {
	AudioUnitPropertyID mId;
	UInt32 mSize;
	bool mIsWritable;
};

/// In the global scope.
constexpr TOwnProperty kOwnProperties[] = {
    {kAudioUnitProperty_InPlaceProcessing, sizeof(UInt32), true},
    {kAudioUnitProperty_CocoaUI, sizeof(AudioUnitCocoaViewInfo), false},
    {kAudioUnitProperty_ParameterStringFromValue, sizeof(AudioUnitParameterStringFromValue), false},
    {kAudioUnitProperty_ParameterValueFromString, sizeof(AudioUnitParameterValueFromString), false},
    {kMusicDeviceProperty_InstrumentCount, sizeof(UInt32), false},
};

const TOwnProperty* FindOwnProperty(AudioUnitPropertyID id) {
	const auto* const found = std::ranges::find(kOwnProperties, id, &TOwnProperty::mId);
	return found == std::end(kOwnProperties) ? nullptr : found;
}

bool IsText(AudioUnitPropertyID id) {
	return id == kAudioUnitProperty_ParameterStringFromValue || id == kAudioUnitProperty_ParameterValueFromString;
}

// Records come from hosts and need not be aligned.

template <class T>
T Read(const void* data) {
	T value;
	std::memcpy(&value, data, sizeof(T));
	return value;
}

template <class T>
OSStatus Write(void* data, const T& value) {
	std::memcpy(data, &value, sizeof(T));
	return noErr;
}

/// Of a path that ends with "/".
TString FileUrl(const TString& path) {
	constexpr std::string_view kPlain = "/-._~";
	constexpr const char* kDigits = "0123456789ABCDEF";
	std::string bytes;
	path.ToBytes(bytes, kFileSystemEncoding);
	std::string url = "file://";
	for (const char byte : bytes) {
		const auto code = static_cast<unsigned char>(byte);
		if ((code < 128 && std::isalnum(code) != 0) || kPlain.find(byte) != std::string_view::npos)
			url += byte;
		else
			url += {'%', kDigits[code / 16], kDigits[code % 16]};
	}
	return TString(url.c_str());
}

const AUString* NewText(const TString& text) {
	return new AUString(text.View());
}

/// As much of the text as has room, cut between characters.
template <std::size_t kRoom>
void CopyUtf8(const TString& text, char (&target)[kRoom]) {
	std::string bytes;
	text.ToBytes(bytes, kUtf8Encoding);
	std::size_t length = std::min(bytes.size(), kRoom - 1);
	while (length < bytes.size() && length > 0 && (static_cast<unsigned char>(bytes[length]) & 0xC0) == 0x80)
		--length;
	std::copy_n(bytes.begin(), length, target);
	target[length] = 0;
}

} // namespace

bool TAudioUnitPluginShell::IsParameter(AudioUnitParameterID id) const {
	return id < static_cast<AudioUnitParameterID>(mpDocument->NumberOfParameters());
}

// Properties

OSStatus TAudioUnitPluginShell::GetPropertyInfo(
    AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, UInt32& size, bool& writable) {
	const TOwnProperty* const own = FindOwnProperty(id);
	if (own && scope == kAudioUnitScope_Global) {
		if (id == kAudioUnitProperty_CocoaUI && !mpGui)
			return kAudioUnitErr_InvalidPropertyValue;
		size = own->mSize;
		writable = own->mIsWritable;
		return noErr;
	}
	if (own && IsText(id))
		return kAudioUnitErr_InvalidScope;
	const OSStatus status = AUBase::GetPropertyInfo(id, scope, element, size, writable);
	return status == kAudioUnitErr_InvalidProperty ? DelegateGetPropertyInfo(id, scope, element, size, writable)
	                                               : status;
}

OSStatus
TAudioUnitPluginShell::GetProperty(AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, void* data) {
	if (scope == kAudioUnitScope_Global) {
		switch (id) {
		case kAudioUnitProperty_InPlaceProcessing:
			return Write(data, UInt32{mInPlaceProcessing});
		case kAudioUnitProperty_CocoaUI:
			return GetViewInfo(data);
		case kAudioUnitProperty_ParameterStringFromValue:
			return GetParameterText(data);
		case kAudioUnitProperty_ParameterValueFromString:
			return GetParameterFromText(data);
		case kMusicDeviceProperty_InstrumentCount:
			return Write(data, UInt32{0});
		default:
			break;
		}
	}
	const OSStatus status = AUBase::GetProperty(id, scope, element, data);
	return status == kAudioUnitErr_InvalidProperty ? DelegateGetProperty(id, scope, element, data) : status;
}

OSStatus TAudioUnitPluginShell::SetProperty(
    AudioUnitPropertyID id, AudioUnitScope scope, AudioUnitElement element, const void* data, UInt32 size) {
	if (const TOwnProperty* own = FindOwnProperty(id); own && scope == kAudioUnitScope_Global) {
		if (!own->mIsWritable)
			return kAudioUnitErr_PropertyNotWritable;
		if (size < own->mSize)
			return kAudioUnitErr_InvalidPropertyValue;
		mInPlaceProcessing = Read<UInt32>(data) != 0;
		return noErr;
	}
	const OSStatus status = AUBase::SetProperty(id, scope, element, data, size);
	return status == kAudioUnitErr_InvalidProperty ? DelegateSetProperty(id, scope, element, data, size) : status;
}

OSStatus TAudioUnitPluginShell::GetViewInfo(void* data) const {
	if (!mpGui)
		return kAudioUnitErr_InvalidPropertyValue;
	// Code lies two folders deep in a bundle.
	const TString bundle = TDirectory::Around(Folders::ModulePath()).Ascend().Ascend().Path();
	return Write(data, AudioUnitCocoaViewInfo{NewText(FileUrl(bundle)), new AUString(kAudioUnitViewFactoryName)});
}

OSStatus TAudioUnitPluginShell::GetParameterText(void* data) const {
	auto record = Read<AudioUnitParameterStringFromValue>(data);
	if (!IsParameter(record.inParamID))
		return kAudioUnitErr_InvalidParameter;
	const auto id = static_cast<int32_t>(record.inParamID);
	const float value = record.inValue ? Read<float>(record.inValue) : mpDocument->ParameterValue(id);
	if (std::isnan(value))
		return kAudioUnitErr_InvalidParameterValue;
	record.outString = NewText(mpDocument->ParameterValueText(id, value));
	return Write(data, record);
}

OSStatus TAudioUnitPluginShell::GetParameterFromText(void* data) const {
	auto record = Read<AudioUnitParameterValueFromString>(data);
	if (!IsParameter(record.inParamID))
		return kAudioUnitErr_InvalidParameter;
	if (record.inString)
		mpDocument->ParameterValueFromText(
		    static_cast<int32_t>(record.inParamID), TString(record.inString->Units()), record.outValue);
	return Write(data, record);
}

// Parameters

OSStatus
TAudioUnitPluginShell::GetParameterInfo(AudioUnitScope scope, AudioUnitParameterID id, AudioUnitParameterInfo& info) {
	if (scope != kAudioUnitScope_Global)
		return AUBase::GetParameterInfo(scope, id, info);
	if (!IsParameter(id))
		return kAudioUnitErr_InvalidParameter;
	const auto parameter = static_cast<int32_t>(id);
	const TDocument::TParameterTitle title = mpDocument->ParameterName(parameter);
	info = {};
	CopyUtf8(title.mName, info.name);
	info.cfNameString = NewText(title.mName);
	info.unitName = NewText(title.mUnit);
	info.unit = kAudioUnitParameterUnit_CustomUnit;
	info.maxValue = 1.0f;
	info.defaultValue = mpDocument->ParameterValue(parameter);
	info.flags = kAudioUnitParameterFlag_IsReadable | kAudioUnitParameterFlag_IsWritable |
	             kAudioUnitParameterFlag_IsHighResolution | kAudioUnitParameterFlag_ValuesHaveStrings |
	             kAudioUnitParameterFlag_HasCFNameString | kAudioUnitParameterFlag_CFNameRelease;
	return noErr;
}

OSStatus TAudioUnitPluginShell::GetParameter(
    AudioUnitParameterID id, AudioUnitScope scope, AudioUnitElement element, AudioUnitParameterValue& value) {
	if (scope != kAudioUnitScope_Global)
		return AUBase::GetParameter(id, scope, element, value);
	if (!IsParameter(id))
		return kAudioUnitErr_InvalidParameter;
	value = mpDocument->ParameterValue(static_cast<int32_t>(id));
	return noErr;
}

OSStatus TAudioUnitPluginShell::SetParameter(
    AudioUnitParameterID id, AudioUnitScope scope, AudioUnitElement element, AudioUnitParameterValue value,
    UInt32 offset) {
	if (scope != kAudioUnitScope_Global)
		return AUBase::SetParameter(id, scope, element, value, offset);
	if (!IsParameter(id))
		return kAudioUnitErr_InvalidParameter;
	if (std::isnan(value))
		return kAudioUnitErr_InvalidParameterValue;
	mpParameterMap->SetFromHost(static_cast<int32_t>(id), std::clamp(value, 0.0f, 1.0f));
	return noErr;
}

// States and presets

OSStatus TAudioUnitPluginShell::SaveState(AUDictionary*& state) {
	const TThreadManager::THostScope role(kMainThread);
	TStream chunk;
	mpDocument->SaveBankChunk(chunk);
	const OSStatus status = AUBase::SaveState(state);
	if (status != noErr || chunk.IsEmpty())
		return status;
	auto dictionary = AURef<AUDictionary>::Adopt(state);
	dictionary->Set(kBankKey, AURef<const AUObject>::Adopt(new AUData(chunk.Bytes())));
	dictionary.Detach();
	return noErr;
}

OSStatus TAudioUnitPluginShell::RestoreState(const AUDictionary& state) {
	const TThreadManager::THostScope role(kMainThread);
	if (const OSStatus status = AUBase::RestoreState(state); status != noErr)
		return status;
	const TPublishedParameters::TStateChange change(*mpParameterMap);
	if (const auto* program = state.Find<AUData>(kProgramKey))
		mpDocument->LoadProgramChunk(TStream(program->Bytes()));
	else if (const auto* bank = state.Find<AUData>(kBankKey))
		mpDocument->LoadBankChunk(TStream(bank->Bytes()));
	return noErr;
}

OSStatus TAudioUnitPluginShell::GetPresets(const AUArray** presets) {
	if (mpDocument->NumberOfPrograms() < 1)
		return kAudioUnitErr_InvalidProperty;
	if (!presets)
		return noErr;
	const TThreadManager::THostScope role(kMainThread);
	auto array = AURef<AUArray>::Make();
	for (int32_t i = 0; i < mpDocument->NumberOfPrograms(); ++i)
		array->Append(i, AURef<const AUString>::Make(mpDocument->ProgramName(i).View()));
	*presets = array.Detach();
	return noErr;
}

OSStatus TAudioUnitPluginShell::NewFactoryPresetSet(const AUPreset& preset) {
	if (preset.presetNumber < 0 || preset.presetNumber >= mpDocument->NumberOfPrograms())
		return kAudioUnitErr_InvalidParameter;
	const TThreadManager::THostScope role(kMainThread);
	mInHostProgramChange = true;
	mpDocument->SetCurrentProgramIndex(preset.presetNumber);
	mInHostProgramChange = false;
	mpParameterMap->Rebuild();
	SetPresentPreset(
	    preset.presetNumber, AURef<const AUString>::Make(mpDocument->ProgramName(preset.presetNumber).View()));
	return noErr;
}
