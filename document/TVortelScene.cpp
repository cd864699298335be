// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelScene.h"

#include "framework/document/nodes/TNameRules.h"

#include <array>
#include <cmath>

TVortelScene::TParameterList::TParameterList() : TSerializableList<float>(TVortelParameterTable::kNumberOfParameters) {}

// The list keeps its size also in between: automation goes on while a file is read.
void TVortelScene::TParameterList::FromString(const TString& text) {
	std::u16string_view rest = text.View();
	StoreEach([&](int32_t) {
		const auto value = rest.empty() ? 0.0f : ParseElement<float>(TakeElement(rest));
		return std::isfinite(value) ? value : 0.0f;
	});
}

TVortelScene::TVortelScene() : mpSequencer(MakePtr<TVortelSequencer>()), mGaterVolumeSteps(kNumberOfGaterSteps) {
	using TNameRules::MemberNameToElementName;
	ReserveMembers(3, 1);
	AddProperty(&mParameterValues, MemberNameToElementName("mParameterValues"), kWrite);
	AddChild(mpSequencer.Get(), MemberNameToElementName("mpSequencer"), kWrite);
	AddProperty(&mSeed, MemberNameToElementName("mSeed"), kWrite);
	AddProperty(&mGaterVolumeSteps, MemberNameToElementName("mGaterVolumeSteps"), kWrite);
	FinishDeclaration();
	InitGaterSteps(0);
}

void TVortelScene::Init(bool fromDefaults) {
	static constexpr std::array<float, TVortelParameterTable::kNumberOfParameters> kZeros{};
	mParameterValues.StoreAll(fromDefaults ? TVortelParameterTable::Defaults() : kZeros);
	mSeed.Set(kInitialSeed);
	mpSequencer->Clear();
	InitGaterSteps(0);
}

void TVortelScene::CopyFrom(const TVortelScene& source) {
	mpSequencer->CopyFrom(*source.mpSequencer, false);
	mParameterValues.StoreEach([&](int32_t id) { return source.ParameterValue(id); });
	mSeed.Set(source.mSeed.Get());
	mGaterVolumeSteps.StoreEach([&](int32_t i) { return source.GaterStep(i); });
}

void TVortelScene::OnLoadBegin() {
	Init(true);
}

void TVortelScene::OnLoadEnd(bool /*success*/) {
	const int32_t present = mGaterVolumeSteps.Count();
	mGaterVolumeSteps.Resize(kNumberOfGaterSteps);
	InitGaterSteps(present);
}

void TVortelScene::InitGaterSteps(int32_t first) {
	mGaterVolumeSteps.StoreEach([&](int32_t i) { return i < first ? GaterStep(i) : DefaultGaterStep(i); });
}
