// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelMasterDevice.h"

#include "document/TVortelDocument.h"

TVortelMasterDevice::TVortelMasterDevice(TVortelDocument* document) : TVortelDevice(document, kMasterDevice) {
	using namespace VortelParameterIds;
	mpMixerMix = Add<TVortelMasterMixParameter>(kMix);
	mpMixerPanning = Add<TVortelMasterPanningParameter>(kPanning);
	mpMixerVolume = Add<TVortelMasterVolumeParameter>(kVolume);
	mpFilterType = AddUnused(kFilterType);
	mpFilterFrequency = AddUnused(kFilterFrequency);
	mpFilterQ = AddUnused(kFilterQ);
	AddUnusedParameters();
}

template <class TAction>
void TVortelMasterDevice::ForEachWeight(TAction action) {
	for (int32_t i = 0; i < TVortelDocument::kNumberOfDevices; ++i)
		action(*Document()->Device(i)->mpRandomWeight);
}

void TVortelMasterDevice::Init() {
	const TDocumentRoot::TActionGuard step(Document(), "Init Parameters");
	ForEachWeight([](TVortelDeviceParameter& weight) { weight.ResetToDefault(); });
	OnInit();
}

// The hooks of the base act on the device's own parameters, of which the master has none.
void TVortelMasterDevice::Randomize() {
	ForEachWeight([](TVortelDeviceParameter& weight) { weight.Randomize(0.0f, 1.0f); });
	OnRandomize();
}

void TVortelMasterDevice::Mutate() {
	ForEachWeight([](TVortelDeviceParameter& weight) { weight.Mutate(0.1f); });
	OnMutate();
}

void TVortelMasterDevice::PasteParameters(TVortelScene* source) {
	ForEachWeight([source](TVortelDeviceParameter& weight) { weight.SetValue(source->ParameterValue(weight.Id())); });
	OnPaste(source);
}

void TVortelMasterDevice::CopyParameters(TVortelScene* target) {
	ForEachWeight([target](TVortelDeviceParameter& weight) { target->SetParameterValue(weight.Id(), weight.Value()); });
	OnCopy(target);
}
