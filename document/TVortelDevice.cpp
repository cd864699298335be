// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelDevice.h"

#include "document/TVortelDocument.h"

TVortelDevice::TVortelDevice(TVortelDocument* document, int32_t deviceIndex)
    : mpDocument(document),
      mDeviceIndex(deviceIndex),
      mName(TVortelParameterTable::Device(deviceIndex).mName),
      mFirstParameterId(TVortelParameterTable::Device(deviceIndex).mFirstId) {
	mpRandomWeight = Add(mFirstParameterId + VortelParameterIds::kWeight);
	document->ProgramChangedBang().AddObserver({this, &TVortelDevice::OnDocumentProgramChanged});
	document->SceneChangedBang().AddObserver({this, &TVortelDevice::OnDocumentSceneChanged});
}

int32_t TVortelDevice::NumberOfParameters() const noexcept {
	return mParameters.Count();
}

TVortelDeviceParameter* TVortelDevice::Parameter(int32_t listIndex) const noexcept {
	const bool known = listIndex >= 0 && listIndex < NumberOfParameters();
	return known ? mParameters[listIndex].Get() : nullptr;
}

void TVortelDevice::Init() {
	const TDocumentRoot::TActionGuard step(Document(), "Init Parameters");
	for (const auto& parameter : mParameters)
		parameter->ResetToDefault();
	OnInit();
}

void TVortelDevice::Randomize() {
	OnRandomize();
}

void TVortelDevice::Mutate() {
	OnMutate();
}

void TVortelDevice::PasteParameters(TVortelScene* source) {
	for (const auto& parameter : mParameters)
		parameter->SetValue(source->ParameterValue(parameter->Id()));
	OnPaste(source);
}

void TVortelDevice::CopyParameters(TVortelScene* target) {
	for (const auto& parameter : mParameters)
		target->SetParameterValue(parameter->Id(), parameter->Value());
	OnCopy(target);
}

void TVortelDevice::OnRandomize() {
	for (int32_t i = TVortelParameterTable::kNumberOfCommonParameters; i < NumberOfParameters(); ++i)
		Parameter(i)->Randomize(0.0f, 1.0f);
}

void TVortelDevice::OnMutate() {
	for (int32_t i = TVortelParameterTable::kNumberOfCommonParameters; i < NumberOfParameters(); ++i)
		Parameter(i)->Mutate(0.1f);
}

void TVortelDevice::NotifySceneChanged() {
	for (const auto& parameter : mParameters)
		parameter->ChangedBang().Bang();
	OnSceneChanged();
}

void TVortelDevice::AddCommonParameters() {
	using namespace VortelParameterIds;
	mpMixerMix = Add(mFirstParameterId + kMix);
	mpMixerPanning = Add(mFirstParameterId + kPanning);
	mpMixerVolume = Add(mFirstParameterId + kVolume);
	mpFilterType = Add(mFirstParameterId + kFilterType);
	mpFilterFrequency = Add(mFirstParameterId + kFilterFrequency);
	mpFilterQ = Add(mFirstParameterId + kFilterQ);
}

TPtr<TVortelDeviceParameter> TVortelDevice::AddUnused(int32_t id) {
	const TVortelParameterDeclaration& declaration = TVortelParameterTable::Declaration(id);
	auto parameter = MakePtr<TVortelDeviceParameter>(this, declaration, ConverterFor(declaration));
	Register(parameter);
	return parameter;
}

void TVortelDevice::AddUnusedParameters() {
	const TVortelDeviceDeclaration& device = TVortelParameterTable::Device(mDeviceIndex);
	for (int32_t id = device.mFirstId; id <= device.mLastId; ++id)
		if (!Document()->Parameter(id))
			AddUnused(id);
}

TPtr<TVortelValueConverter> TVortelDevice::ConverterFor(const TVortelParameterDeclaration& declaration) const {
	if (declaration.mConverterOf >= 0)
		return Document()->Parameter(declaration.mConverterOf)->Converter();
	return TVortelParameterTable::MakeConverter(declaration);
}

void TVortelDevice::Register(const TPtr<TVortelDeviceParameter>& parameter) {
	Document()->RegisterParameter(parameter);
}

void TVortelDevice::AppendToList(const TPtr<TVortelDeviceParameter>& parameter) {
	parameter->mListIndex = NumberOfParameters();
	mParameters.Append(parameter);
}

void TVortelDevice::FollowDocument() {
	TVortelDocument* document = Document();
	mpProgram.store(document ? document->ActiveProgram() : nullptr, std::memory_order_relaxed);
	mpScene.store(document ? document->ActiveScene() : nullptr, std::memory_order_relaxed);
}

// Each program change also brings a scene change, so the parameters' observers are told only once.
void TVortelDevice::OnDocumentProgramChanged(TObservable*, int32_t reason) {
	if (reason == kDidChange)
		FollowDocument();
}

void TVortelDevice::OnDocumentSceneChanged(TObservable*, int32_t reason) {
	if (reason != kDidChange)
		return;
	FollowDocument();
	NotifySceneChanged();
}
