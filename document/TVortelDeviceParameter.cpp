// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelDeviceParameter.h"

#include "document/TVortelDevice.h"
#include "document/TVortelProgram.h"
#include "document/TVortelScene.h"
#include "framework/foundation/values/TRandom.h"

#include <algorithm>
#include <cmath>

namespace {

float Uniform(float low, float high) {
	return static_cast<float>(low + TRandom::Next() * (static_cast<double>(high) - low));
}

/// Tells a bang's observers before and after.
class TBracket {
public:
	explicit TBracket(TObservableBang& bang) : mBang(bang) { mBang.BangBegin(); }

	~TBracket() { mBang.Bang(); }

private:
	TObservableBang& mBang;
};

float ProgramValue(
    const TVortelDeviceParameter& parameter, TObservableBaseType<float>& (TVortelProgram::*value)() noexcept) {
	const TVortelDevice* device = parameter.Device();
	TVortelProgram* program = device ? device->Program() : nullptr;
	return program ? (program->*value)().Get() : parameter.Default();
}

void SetProgramValue(
    const TVortelDeviceParameter& parameter, TObservableBaseType<float>& (TVortelProgram::*value)() noexcept,
    float newValue) {
	const TVortelDevice* device = parameter.Device();
	if (TVortelProgram* program = device ? device->Program() : nullptr)
		(program->*value)().Set(newValue);
}

} // namespace

TVortelDeviceParameter::TVortelDeviceParameter(
    TVortelDevice* device, const TVortelParameterDeclaration& declaration, const TPtr<TVortelValueConverter>& converter)
    : mpDevice(device),
      mDeclaration(declaration),
      mName(declaration.mName),
      mpConverter(converter),
      mDefault(TVortelParameterTable::Defaults()[static_cast<std::size_t>(declaration.mId)]) {}

TString TVortelDeviceParameter::ToolTip() const {
	const TVortelDeviceDeclaration& device =
	    TVortelParameterTable::Device(TVortelParameterTable::DeviceOfParameter(Id()));
	const TString toolTip = mDeclaration.mToolTip;
	return Id() == device.mFirstId + VortelParameterIds::kWeight ? TString(device.mName) + toolTip : toolTip;
}

void TVortelDeviceParameter::ResetToDefault() {
	SetValue(mDefault);
}

float TVortelDeviceParameter::NormalizedValue() const {
	const TVortelDevice* device = Device();
	const TVortelScene* scene = device ? device->Scene() : nullptr;
	return scene ? scene->ParameterValue(Id()) : mDefault;
}

void TVortelDeviceParameter::SetNormalizedValue(float value) {
	const TVortelDevice* device = Device();
	if (TVortelScene* scene = device ? device->Scene() : nullptr)
		scene->SetParameterValue(Id(), value);
}

float TVortelDeviceParameter::RealValue() const {
	return mpConverter->RealFromNormalized(Value());
}

// A value that is the same is stored all the same: what a file has brought may read as something else than it is.
void TVortelDeviceParameter::SetValue(float value) {
	if (Value() == value) {
		SetNormalizedValue(value);
		return;
	}
	const TBracket bracket(mChangedBang);
	SetNormalizedValue(value);
}

void TVortelDeviceParameter::SetValueByUser(float value) {
	const TBracket bracket(mUserChangedBang);
	SetValue(value);
}

void TVortelDeviceParameter::SetRealValue(float real) {
	SetValue(mpConverter->NormalizedFromReal(real));
}

void TVortelDeviceParameter::SetRealValueByUser(float real) {
	SetValueByUser(mpConverter->NormalizedFromReal(real));
}

TString TVortelDeviceParameter::ValueText() const {
	return ValueTextFor(Value());
}

TString TVortelDeviceParameter::ValueTextFor(float value) const {
	return mpConverter->TextFromNormalized(value);
}

void TVortelDeviceParameter::SetValueFromText(const TString& text) {
	float value = 0.0f;
	if (ParseValueText(text, &value))
		SetValue(value);
}

bool TVortelDeviceParameter::ParseValueText(const TString& text, float* value) const {
	return mpConverter->NormalizedFromText(value, text);
}

void TVortelDeviceParameter::Randomize(float low, float high) {
	SetValue(Uniform(low, high));
}

void TVortelDeviceParameter::RandomizeReal(float low, float high) {
	const float real = Uniform(low, high);
	SetRealValue(mpConverter->IsStepped() ? std::round(real) : real);
}

void TVortelDeviceParameter::Mutate(float amount) {
	const float value = Value();
	Randomize(std::max(0.0f, value - amount), std::min(1.0f, value + amount));
}

float TVortelMasterMixParameter::NormalizedValue() const {
	return ProgramValue(*this, &TVortelProgram::MasterMix);
}

void TVortelMasterMixParameter::SetNormalizedValue(float value) {
	SetProgramValue(*this, &TVortelProgram::MasterMix, value);
}

float TVortelMasterPanningParameter::NormalizedValue() const {
	return ProgramValue(*this, &TVortelProgram::MasterPanning);
}

void TVortelMasterPanningParameter::SetNormalizedValue(float value) {
	SetProgramValue(*this, &TVortelProgram::MasterPanning, value);
}

float TVortelMasterVolumeParameter::NormalizedValue() const {
	return ProgramValue(*this, &TVortelProgram::MasterVolume);
}

void TVortelMasterVolumeParameter::SetNormalizedValue(float value) {
	SetProgramValue(*this, &TVortelProgram::MasterVolume, value);
}
