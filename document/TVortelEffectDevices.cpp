// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelEffectDevices.h"

namespace {

/// A time is stepped unless the mode is "Free".
void StepUnlessFree(
    const TPtr<TVortelDeviceParameter>& mode, std::initializer_list<const TPtr<TVortelDeviceParameter>*> times) {
	const bool stepped = mode->RealValue() != 0.0f;
	for (const auto* time : times)
		(*time)->Converter()->SetStepped(stepped);
}

} // namespace

TVortelModulatorDevice::TVortelModulatorDevice(TVortelDocument* document) : TVortelDevice(document, 1) {
	AddCommonParameters();
	mpFrequency = Add(17);
	mpAmount = Add(18);
	mpOscVolume = Add(19);
	mpFMAmount = Add(20);
	mpFMAttack = Add(21);
	mpFMRelease = Add(22);
	mpSpread = Add(23);
	AddUnusedParameters();
}

TVortelTapeStopDevice::TVortelTapeStopDevice(TVortelDocument* document) : TVortelDevice(document, 2) {
	AddCommonParameters();
	mpSlowDown = Add(37);
	mpSpeedUp = Add(38);
	mpTimeMode = Add<TVortelTapeStopTimeModeParameter>(39);
	mpPlayMode = Add(40);
	AddUnusedParameters();
}

void TVortelTapeStopDevice::RefreshStepped() {
	StepUnlessFree(mpTimeMode, {&mpSlowDown});
}

TVortelRetriggerDevice::TVortelRetriggerDevice(TVortelDocument* document) : TVortelDevice(document, 3) {
	AddCommonParameters();
	mpTimeMode = Add<TVortelRetriggerTimeModeParameter>(57);
	mpTimeA = Add(58);
	mpTimeB = Add(59);
	mpABTime = Add(60);
	mpDecay = Add(61);
	AddUnusedParameters();
}

void TVortelRetriggerDevice::RefreshStepped() {
	StepUnlessFree(mpTimeMode, {&mpTimeA, &mpABTime});
}

TVortelReverserDevice::TVortelReverserDevice(TVortelDocument* document) : TVortelDevice(document, 4) {
	AddCommonParameters();
	mpTime = Add(77);
	mpTimeMode = Add<TVortelReverserTimeModeParameter>(78);
	mpPointA = Add(79);
	mpPointB = Add(80);
	AddUnusedParameters();
}

void TVortelReverserDevice::RefreshStepped() {
	StepUnlessFree(mpTimeMode, {&mpTime});
}

TVortelStretcherDevice::TVortelStretcherDevice(TVortelDocument* document) : TVortelDevice(document, 5) {
	AddCommonParameters();
	mpSpeed = Add(97);
	mpGrainSize = Add(98);
	mpSmoothing = Add(99);
	mpFMAmount = Add(100);
	mpFMAttack = Add(101);
	mpFMRelease = Add(102);
	mpJitter = Add(103);
	AddUnusedParameters();
}

TVortelLofiDevice::TVortelLofiDevice(TVortelDocument* document) : TVortelDevice(document, 6) {
	AddCommonParameters();
	mpFrequency = Add(117);
	mpBitDepth = Add(118);
	mpType = Add<TVortelLofiModeParameter>(119);
	mpFMAmount = Add(120);
	mpFMAttack = Add(121);
	mpFMRelease = Add(122);
	AddUnusedParameters();
}

void TVortelLofiDevice::RefreshStepped() {
	mpBitDepth->Converter()->SetStepped(mpType->RealValue() == 1.0f);
}

TVortelDistortionDevice::TVortelDistortionDevice(TVortelDocument* document) : TVortelDevice(document, 7) {
	AddCommonParameters();
	mpType = Add(137);
	mpDrive = Add(138);
	mpTone = Add(139);
	mpWetOut = Add(140);
	mpDryOut = Add(141);
	AddUnusedParameters();
}

TVortelDelayDevice::TVortelDelayDevice(TVortelDocument* document) : TVortelDevice(document, 9) {
	AddCommonParameters();
	mpTime = Add(177);
	mpTimeMode = Add<TVortelDelayTimeModeParameter>(178);
	mpSlew = Add(180);
	mpFeedback = Add(179);
	mpSend = Add(181);
	mpReturn = Add(183);
	mpSpread = Add(182);
	AddUnusedParameters();
}

void TVortelDelayDevice::RefreshStepped() {
	StepUnlessFree(mpTimeMode, {&mpTime});
}

TVortelShufflerDevice::TVortelShufflerDevice(TVortelDocument* document) : TVortelDevice(document, 10) {
	AddCommonParameters();
	mpTimeMode = Add<TVortelShufflerTimeModeParameter>(197);
	mpMinTime = Add(198);
	mpMaxTime = Add(199);
	mpShuffleChance = Add(200);
	mpRange = Add(201);
	mpRepeatChance = Add(202);
	mpReverseChance = Add(203);
	AddUnusedParameters();
}

void TVortelShufflerDevice::RefreshStepped() {
	StepUnlessFree(mpTimeMode, {&mpMinTime});
}
