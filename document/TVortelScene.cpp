// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelScene.h"

#include "framework/document/TNameRules.h"

#include <cmath>

TVortelScene::TParameterList::TParameterList() :
	TSerializableList<float>(TVortelParameterTable::kNumberOfParameters) {}

void TVortelScene::TParameterList::FromString(const TString& text) {
	TSerializableList<float>::FromString(text);
	ForceSize();
	for (int32_t i = 0; i < Count(); ++i)
		if (!std::isfinite((*this)[i]))
			Store(i, 0.0f);
}

void TVortelScene::TParameterList::ForceSize() { Resize(TVortelParameterTable::kNumberOfParameters, 0.0f); }

TVortelScene::TVortelScene() : mpSequencer(MakePtr<TVortelSequencer>()), mGaterVolumeSteps(kNumberOfGaterSteps) {
	static const TString kParameterValuesName = TNameRules::MemberNameToElementName("mParameterValues");
	static const TString kSequencerName = TNameRules::MemberNameToElementName("mpSequencer");
	static const TString kSeedName = TNameRules::MemberNameToElementName("mSeed");
	static const TString kGaterVolumeStepsName = TNameRules::MemberNameToElementName("mGaterVolumeSteps");

	AddProperty(&mParameterValues, kParameterValuesName, kWrite);
	AddChild(mpSequencer.Get(), kSequencerName, kWrite);
	AddProperty(&mSeed, kSeedName, kWrite);
	AddProperty(&mGaterVolumeSteps, kGaterVolumeStepsName, kWrite);
	FinishDeclaration();
	InitGaterSteps(0);
}

void TVortelScene::Init(bool fromDefaults) {
	const auto& defaults = TVortelParameterTable::Defaults();
	for (int32_t id = 0; id < mParameterValues.Count(); ++id)
		SetParameterValue(id, fromDefaults ? defaults[static_cast<std::size_t>(id)] : 0.0f);
	mSeed.Set(kInitialSeed);
	mpSequencer->Clear();
	InitGaterSteps(0);
}

void TVortelScene::CopyFrom(const TVortelScene& source) {
	mpSequencer->CopyFrom(*source.mpSequencer, false);
	for (int32_t id = 0; id < mParameterValues.Count(); ++id)
		SetParameterValue(id, source.ParameterValue(id));
	mSeed.Set(source.mSeed.Get());
	for (int32_t i = 0; i < kNumberOfGaterSteps; ++i)
		SetGaterStep(i, source.GaterStep(i));
}

void TVortelScene::OnLoadBegin() { Init(true); }

void TVortelScene::OnLoadEnd(bool /*success*/) {
	mParameterValues.ForceSize();
	const int32_t present = mGaterVolumeSteps.Count();
	mGaterVolumeSteps.Resize(kNumberOfGaterSteps);
	InitGaterSteps(present);
}

void TVortelScene::InitGaterSteps(int32_t first) {
	for (int32_t i = first; i < kNumberOfGaterSteps; ++i)
		SetGaterStep(i, DefaultGaterStep(i));
}
