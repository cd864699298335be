// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelDocument.h"

#include "framework/foundation/values/ProductInfo.h"

namespace {

bool IsProgram(int32_t index) {
	return index >= 0 && index < TVortelDocument::kNumberOfPrograms;
}

// Not-a-number becomes 0.
float ClampNormalized(float value) {
	return value > 0.0f ? (value < 1.0f ? value : 1.0f) : 0.0f;
}

} // namespace

int32_t TVortelDocument::ProductVersion() {
	return ProductInfo::kDocumentVersion;
}

int32_t TVortelDocument::UniqueId() {
	return ProductInfo::kPluginCode;
}

int32_t TVortelDocument::CurrentProgramIndex() {
	return mActiveProgramIndex.Get();
}

void TVortelDocument::SetCurrentProgramIndex(int32_t index) {
	if (IsProgram(index))
		mActiveProgramIndex.Set(index);
}

TString TVortelDocument::ProgramName(int32_t index) {
	return IsProgram(index) ? Program(index)->Name().Get() : TString();
}

void TVortelDocument::SetProgramName(int32_t index, const TString& name) {
	if (IsProgram(index))
		Program(index)->Name().Set(name);
}

float TVortelDocument::ParameterValue(int32_t index) {
	const TVortelDeviceParameter* parameter = Parameter(index);
	return parameter ? parameter->Value() : 0.0f;
}

void TVortelDocument::SetParameterValue(int32_t index, float value) {
	if (TVortelDeviceParameter* parameter = Parameter(index))
		parameter->SetValue(ClampNormalized(value));
}

TObservable* TVortelDocument::ParameterObservable(int32_t index) {
	TVortelDeviceParameter* parameter = Parameter(index);
	return parameter ? &parameter->ChangedBang() : nullptr;
}

TString TVortelDocument::ParameterValueText(int32_t index, float value) {
	const TVortelDeviceParameter* parameter = Parameter(index);
	return parameter ? parameter->ValueTextFor(value) : TString();
}

bool TVortelDocument::ParameterValueFromText(int32_t index, const TString& text, float& value) {
	const TVortelDeviceParameter* parameter = Parameter(index);
	return parameter && parameter->ParseValueText(text, &value);
}

TVortelDocument::TParameterTitle TVortelDocument::ParameterName(int32_t index) {
	const TVortelDeviceParameter* parameter = Parameter(index);
	if (!parameter)
		return {};
	return {TVortelParameterTable::HostName(index), parameter->Converter()->Unit()};
}
