// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelEffectDevices.h"
#include "framework/foundation/values/TRandom.h"

#include <array>

void TVortelModulatorDevice::OnRandomize() {
	mpFrequency->RandomizeReal(1.0f, 2000.0f);
	mpAmount->Randomize(0.5f, 1.0f);
	mpOscVolume->SetValue(0.0f);
	mpFMAmount->Randomize(0.25f, 0.75f);
	mpFMAttack->Randomize(0.0f, 0.25f);
	mpFMRelease->Randomize(0.125f, 0.5f);
	mpSpread->RandomizeReal(-50.0f, 50.0f);
}

void TVortelTapeStopDevice::OnRandomize() {
	mpTimeMode->Randomize(0.0f, 1.0f);
	mpSlowDown->Randomize(0.0f, 1.0f);
	mpSpeedUp->Randomize(0.0f, 1.0f);
	mpPlayMode->Randomize(0.0f, 1.0f);
}

void TVortelRetriggerDevice::OnRandomize() {
	mpTimeMode->Randomize(0.0f, 1.0f);
	mpTimeA->RandomizeReal(8.0f, 128.0f);
	mpTimeB->RandomizeReal(8.0f, 128.0f);
	mpABTime->RandomizeReal(1.0f, 16.0f);
	mpDecay->Randomize(0.0f, mpTimeA->Value() * 0.5f);
}

void TVortelReverserDevice::OnRandomize() {
	mpTimeMode->Randomize(0.0f, 1.0f);
	mpTime->RandomizeReal(1.0f, 64.0f);
	mpPointA->Randomize(0.0f, 0.5f);
	mpPointB->Randomize(mpPointA->Value() + 0.1f, 1.0f);
}

void TVortelStretcherDevice::OnRandomize() {
	mpSpeed->Randomize(0.0f, 0.66f);
	mpGrainSize->RandomizeReal(1.0f, 50.0f);
	mpSmoothing->Randomize(0.25f, 1.0f);
	mpFMAmount->Randomize(0.25f, 0.75f);
	mpFMAttack->Randomize(0.0f, 0.25f);
	mpFMRelease->Randomize(0.125f, 0.5f);
	mpJitter->Randomize(0.0f, 0.5f);
}

void TVortelLofiDevice::OnRandomize() {
	mpType->SetRealValue(static_cast<float>(RoundHalfAway(TRandom::Next())));
	mpBitDepth->RandomizeReal(3.0f, 10.0f);
	mpFrequency->RandomizeReal(50.0f, 15000.0f);
	mpFMAmount->Randomize(0.25f, 0.75f);
	mpFMAttack->Randomize(0.0f, 0.25f);
	mpFMRelease->Randomize(0.125f, 0.5f);
}

void TVortelDistortionDevice::OnRandomize() {
	mpType->Randomize(0.0f, 1.0f);
	const auto type = mpType->Choice<EVortelDistortionType>();
	if (type == EVortelDistortionType::kShape || type == EVortelDistortionType::kFold)
		mpDrive->Randomize(0.2f, 0.8f);
	else
		mpDrive->Randomize(0.1f, 0.6f);
	mpTone->RandomizeReal(-50.0f, 50.0f);
	mpWetOut->Randomize(0.4f, 0.8f);
	mpDryOut->SetValue((1.0f - mpWetOut->Value()) * 0.6f);
}

void TVortelDelayDevice::OnRandomize() {
	mpTimeMode->Randomize(0.0f, 1.0f);
	mpTime->RandomizeReal(8.0f, 64.0f);
	mpFeedback->Randomize(0.5f, 0.75f);
	mpSlew->Randomize(0.0f, 0.75f);
	mpSend->Randomize(0.6f, 0.9f);
	if (mpFeedback->Value() > 0.66f)
		mpReturn->Randomize(0.66f, 0.75f);
	else
		mpReturn->Randomize(0.8f, 1.0f);
	mpSpread->RandomizeReal(-50.0f, 50.0f);
}

void TVortelShufflerDevice::OnRandomize() {
	static constexpr std::array<float, 3> kMinTimes{4.0f, 8.0f, 16.0f};
	mpTimeMode->SetRealValue(static_cast<float>(RoundHalfAway(TRandom::Next())));
	const float time = kMinTimes[static_cast<std::size_t>(RoundHalfAway(TRandom::Next() * 2.0))];
	mpMinTime->SetRealValue(time);
	mpMaxTime->SetRealValue(time * static_cast<float>(RoundHalfAway(TRandom::Next() * 2.0) + 1));
	mpRange->Randomize(0.0f, 1.0f);
	mpShuffleChance->Randomize(0.5f, 1.0f);
	mpRepeatChance->Randomize(0.0f, 0.5f);
	mpReverseChance->Randomize(0.0f, 0.5f);
}
