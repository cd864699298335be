// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelGaterDevice.h"

#include "document/TVortelScene.h"
#include "framework/foundation/values/TRandom.h"

#include <algorithm>

TVortelGaterDevice::TVortelGaterDevice(TVortelDocument* document) : TVortelDevice(document, kGaterDevice) {
	using namespace VortelParameterIds::Gater;
	for (int32_t i = 0; i < TVortelScene::kNumberOfGaterSteps; ++i)
		mStepLevels[static_cast<std::size_t>(i)] = TVortelScene::DefaultGaterStep(i);
	AddCommonParameters();
	mpSmoothing = Add(kSmoothing);
	mpTime = Add(kTime);
	mpTimeMode = Add<TVortelGaterTimeModeParameter>(kTimeMode);
	mpNumVolumeSteps = Add(kNumVolumeSteps);
	AddUnusedParameters();
}

template <class TLevel>
void TVortelGaterDevice::SetStepLevels(TLevel level) {
	mStepsChangedBang.BangBegin();
	for (int32_t i = 0; i < TVortelScene::kNumberOfGaterSteps; ++i)
		SetStepLevel(i, level(i));
	mStepsChangedBang.Bang();
}

void TVortelGaterDevice::OnInit() {
	SetStepLevels([](int32_t i) { return TVortelScene::DefaultGaterStep(i); });
	mpNumVolumeSteps->SetRealValue(8.0f);
}

void TVortelGaterDevice::OnRandomize() {
	mpTimeMode->Randomize(0.0f, 1.0f);
	mpTime->RandomizeReal(8.0f, 128.0f);
	mpSmoothing->Randomize(0.0f, 0.333f);
	SetStepLevels([](int32_t i) {
		const double level = TRandom::Next() * 0.4;
		return static_cast<float>(i % 2 == 0 ? level + 0.6 : level);
	});
	mpNumVolumeSteps->RandomizeReal(2.0f, 8.0f);
}

void TVortelGaterDevice::OnMutate() {
	TVortelDevice::OnMutate();
	SetStepLevels([this](int32_t i) {
		const double level = static_cast<double>(StepLevel(i)) + (TRandom::Next() * 0.2 - 0.1);
		return static_cast<float>(std::clamp(level, 0.0, 1.0));
	});
}

void TVortelGaterDevice::OnPaste(TVortelScene* source) {
	SetStepLevels([source](int32_t i) { return source->GaterStep(i); });
}

void TVortelGaterDevice::OnCopy(TVortelScene* target) {
	for (int32_t i = 0; i < TVortelScene::kNumberOfGaterSteps; ++i)
		target->SetGaterStep(i, StepLevel(i));
}

void TVortelGaterDevice::OnSceneChanged() {
	RefreshStepped();
	if (const TVortelScene* scene = Scene())
		SetStepLevels([scene](int32_t i) { return scene->GaterStep(i); });
}

void TVortelGaterDevice::RefreshStepped() {
	mpTime->Converter()->SetStepped(mpTimeMode->Choice<EVortelTimeMode>() != EVortelTimeMode::kFree);
}

float TVortelGaterDevice::StepLevel(int32_t index) const noexcept {
	const bool known = index >= 0 && index < TVortelScene::kNumberOfGaterSteps;
	return known ? mStepLevels[static_cast<std::size_t>(index)] : 0.0f;
}

void TVortelGaterDevice::SetStepLevel(int32_t index, float level) {
	if (index < 0 || index >= TVortelScene::kNumberOfGaterSteps)
		return;
	mStepLevels[static_cast<std::size_t>(index)] = level;
	if (TVortelScene* scene = Scene())
		scene->SetGaterStep(index, level);
}
