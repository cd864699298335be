// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelEffectDevices.h"

namespace {

/// A time is stepped unless the mode is "Free".
void StepUnlessFree(
    const TPtr<TVortelDeviceParameter>& mode, std::initializer_list<const TPtr<TVortelDeviceParameter>*> times) {
	const bool stepped = mode->Choice<EVortelTimeMode>() != EVortelTimeMode::kFree;
	for (const auto* time : times)
		(*time)->Converter()->SetStepped(stepped);
}

} // namespace

TVortelModulatorDevice::TVortelModulatorDevice(TVortelDocument* document) : TVortelDevice(document, kModulatorDevice) {
	using namespace VortelParameterIds::Modulator;
	AddCommonParameters();
	mpFrequency = Add(kFrequency);
	mpAmount = Add(kAmount);
	mpOscVolume = Add(kOscVolume);
	mpFMAmount = Add(kFMAmount);
	mpFMAttack = Add(kFMAttack);
	mpFMRelease = Add(kFMRelease);
	mpSpread = Add(kSpread);
	AddUnusedParameters();
}

TVortelTapeStopDevice::TVortelTapeStopDevice(TVortelDocument* document) : TVortelDevice(document, kTapeStopDevice) {
	using namespace VortelParameterIds::TapeStop;
	AddCommonParameters();
	mpSlowDown = Add(kSlowDown);
	mpSpeedUp = Add(kSpeedUp);
	mpTimeMode = Add<TVortelTapeStopTimeModeParameter>(kTimeMode);
	mpPlayMode = Add(kPlayMode);
	AddUnusedParameters();
}

void TVortelTapeStopDevice::RefreshStepped() {
	StepUnlessFree(mpTimeMode, {&mpSlowDown});
}

TVortelRetriggerDevice::TVortelRetriggerDevice(TVortelDocument* document) : TVortelDevice(document, kRetriggerDevice) {
	using namespace VortelParameterIds::Retrigger;
	AddCommonParameters();
	mpTimeMode = Add<TVortelRetriggerTimeModeParameter>(kTimeMode);
	mpTimeA = Add(kTimeA);
	mpTimeB = Add(kTimeB);
	mpABTime = Add(kABTime);
	mpDecay = Add(kDecay);
	AddUnusedParameters();
}

void TVortelRetriggerDevice::RefreshStepped() {
	StepUnlessFree(mpTimeMode, {&mpTimeA, &mpABTime});
}

TVortelReverserDevice::TVortelReverserDevice(TVortelDocument* document) : TVortelDevice(document, kReverserDevice) {
	using namespace VortelParameterIds::Reverser;
	AddCommonParameters();
	mpTime = Add(kTime);
	mpTimeMode = Add<TVortelReverserTimeModeParameter>(kTimeMode);
	mpPointA = Add(kPointA);
	mpPointB = Add(kPointB);
	AddUnusedParameters();
}

void TVortelReverserDevice::RefreshStepped() {
	StepUnlessFree(mpTimeMode, {&mpTime});
}

TVortelStretcherDevice::TVortelStretcherDevice(TVortelDocument* document) : TVortelDevice(document, kStretcherDevice) {
	using namespace VortelParameterIds::Stretcher;
	AddCommonParameters();
	mpSpeed = Add(kSpeed);
	mpGrainSize = Add(kGrainSize);
	mpSmoothing = Add(kSmoothing);
	mpFMAmount = Add(kFMAmount);
	mpFMAttack = Add(kFMAttack);
	mpFMRelease = Add(kFMRelease);
	mpJitter = Add(kJitter);
	AddUnusedParameters();
}

TVortelLofiDevice::TVortelLofiDevice(TVortelDocument* document) : TVortelDevice(document, kLofiDevice) {
	using namespace VortelParameterIds::Lofi;
	AddCommonParameters();
	mpFrequency = Add(kFrequency);
	mpBitDepth = Add(kBitDepth);
	mpType = Add<TVortelLofiModeParameter>(kType);
	mpFMAmount = Add(kFMAmount);
	mpFMAttack = Add(kFMAttack);
	mpFMRelease = Add(kFMRelease);
	AddUnusedParameters();
}

void TVortelLofiDevice::RefreshStepped() {
	mpBitDepth->Converter()->SetStepped(mpType->Choice<EVortelBitDepthType>() == EVortelBitDepthType::kUnsigned);
}

TVortelDistortionDevice::TVortelDistortionDevice(TVortelDocument* document)
    : TVortelDevice(document, kDistortionDevice) {
	using namespace VortelParameterIds::Distortion;
	AddCommonParameters();
	mpType = Add(kType);
	mpDrive = Add(kDrive);
	mpTone = Add(kTone);
	mpWetOut = Add(kWetOut);
	mpDryOut = Add(kDryOut);
	AddUnusedParameters();
}

TVortelDelayDevice::TVortelDelayDevice(TVortelDocument* document) : TVortelDevice(document, kDelayDevice) {
	using namespace VortelParameterIds::Delay;
	AddCommonParameters();
	mpTime = Add(kTime);
	mpTimeMode = Add<TVortelDelayTimeModeParameter>(kTimeMode);
	mpSlew = Add(kSlew);
	mpFeedback = Add(kFeedback);
	mpSend = Add(kSend);
	mpReturn = Add(kReturn);
	mpSpread = Add(kSpread);
	AddUnusedParameters();
}

void TVortelDelayDevice::RefreshStepped() {
	StepUnlessFree(mpTimeMode, {&mpTime});
}

TVortelShufflerDevice::TVortelShufflerDevice(TVortelDocument* document) : TVortelDevice(document, kShufflerDevice) {
	using namespace VortelParameterIds::Shuffler;
	AddCommonParameters();
	mpTimeMode = Add<TVortelShufflerTimeModeParameter>(kTimeMode);
	mpMinTime = Add(kMinTime);
	mpMaxTime = Add(kMaxTime);
	mpShuffleChance = Add(kShuffleChance);
	mpRange = Add(kRange);
	mpRepeatChance = Add(kRepeatChance);
	mpReverseChance = Add(kReverseChance);
	AddUnusedParameters();
}

void TVortelShufflerDevice::RefreshStepped() {
	StepUnlessFree(mpTimeMode, {&mpMinTime});
}
