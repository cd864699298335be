// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDevice.h"

/// The effects whose model is their parameters and nothing more (the Gater has a header of its own). Each member is
/// created in the order in which it stands here; that is the order of the device's list.
///
/// OnRandomize keeps to ranges in which the effect stays useful, and sets modes before the times that follow them.
/// RefreshStepped follows a mode parameter: times are continuous in the mode "Free" and move from power of two to power
/// of two in the others.

class TVortelModulatorDevice final : public TVortelDevice {
public:
	explicit TVortelModulatorDevice(TVortelDocument* document);

	void OnRandomize() override;

	TPtr<TVortelDeviceParameter> mpFrequency;
	TPtr<TVortelDeviceParameter> mpAmount;
	TPtr<TVortelDeviceParameter> mpOscVolume;
	TPtr<TVortelDeviceParameter> mpFMAmount;
	TPtr<TVortelDeviceParameter> mpFMAttack;
	TPtr<TVortelDeviceParameter> mpFMRelease;
	TPtr<TVortelDeviceParameter> mpSpread;
};

class TVortelTapeStopDevice final : public TVortelDevice {
public:
	explicit TVortelTapeStopDevice(TVortelDocument* document);

	void OnRandomize() override;

	void OnSceneChanged() override { RefreshStepped(); }

	void RefreshStepped();

	TPtr<TVortelDeviceParameter> mpSlowDown;
	TPtr<TVortelDeviceParameter> mpSpeedUp;
	TPtr<TVortelDeviceParameter> mpTimeMode;
	TPtr<TVortelDeviceParameter> mpPlayMode;
};

class TVortelRetriggerDevice final : public TVortelDevice {
public:
	explicit TVortelRetriggerDevice(TVortelDocument* document);

	void OnRandomize() override;

	void OnSceneChanged() override { RefreshStepped(); }

	void RefreshStepped();

	TPtr<TVortelDeviceParameter> mpTimeMode;
	TPtr<TVortelDeviceParameter> mpTimeA;
	TPtr<TVortelDeviceParameter> mpTimeB;
	TPtr<TVortelDeviceParameter> mpABTime;
	TPtr<TVortelDeviceParameter> mpDecay;
};

class TVortelReverserDevice final : public TVortelDevice {
public:
	explicit TVortelReverserDevice(TVortelDocument* document);

	void OnRandomize() override;

	void OnSceneChanged() override { RefreshStepped(); }

	void RefreshStepped();

	TPtr<TVortelDeviceParameter> mpTime;
	TPtr<TVortelDeviceParameter> mpTimeMode;
	TPtr<TVortelDeviceParameter> mpPointA;
	TPtr<TVortelDeviceParameter> mpPointB;
};

class TVortelStretcherDevice final : public TVortelDevice {
public:
	explicit TVortelStretcherDevice(TVortelDocument* document);

	void OnRandomize() override;

	TPtr<TVortelDeviceParameter> mpSpeed;
	TPtr<TVortelDeviceParameter> mpGrainSize;
	TPtr<TVortelDeviceParameter> mpSmoothing;
	TPtr<TVortelDeviceParameter> mpFMAmount;
	TPtr<TVortelDeviceParameter> mpFMAttack;
	TPtr<TVortelDeviceParameter> mpFMRelease;
	TPtr<TVortelDeviceParameter> mpJitter;
};

/// The bit depth is stepped in the type "Unsigned".
class TVortelLofiDevice final : public TVortelDevice {
public:
	explicit TVortelLofiDevice(TVortelDocument* document);

	void OnRandomize() override;

	void OnSceneChanged() override { RefreshStepped(); }

	void RefreshStepped();

	TPtr<TVortelDeviceParameter> mpFrequency;
	TPtr<TVortelDeviceParameter> mpBitDepth;
	TPtr<TVortelDeviceParameter> mpType;
	TPtr<TVortelDeviceParameter> mpFMAmount;
	TPtr<TVortelDeviceParameter> mpFMAttack;
	TPtr<TVortelDeviceParameter> mpFMRelease;
};

class TVortelDistortionDevice final : public TVortelDevice {
public:
	explicit TVortelDistortionDevice(TVortelDocument* document);

	void OnRandomize() override;

	TPtr<TVortelDeviceParameter> mpType;
	TPtr<TVortelDeviceParameter> mpDrive;
	TPtr<TVortelDeviceParameter> mpTone;
	TPtr<TVortelDeviceParameter> mpWetOut;
	TPtr<TVortelDeviceParameter> mpDryOut;
};

class TVortelDelayDevice final : public TVortelDevice {
public:
	explicit TVortelDelayDevice(TVortelDocument* document);

	void OnRandomize() override;

	void OnSceneChanged() override { RefreshStepped(); }

	void RefreshStepped();

	TPtr<TVortelDeviceParameter> mpTime;
	TPtr<TVortelDeviceParameter> mpTimeMode;
	TPtr<TVortelDeviceParameter> mpSlew;
	TPtr<TVortelDeviceParameter> mpFeedback;
	TPtr<TVortelDeviceParameter> mpSend;
	TPtr<TVortelDeviceParameter> mpReturn;
	TPtr<TVortelDeviceParameter> mpSpread;
};

class TVortelShufflerDevice final : public TVortelDevice {
public:
	explicit TVortelShufflerDevice(TVortelDocument* document);

	void OnRandomize() override;

	void OnSceneChanged() override { RefreshStepped(); }

	void RefreshStepped();

	TPtr<TVortelDeviceParameter> mpTimeMode;
	TPtr<TVortelDeviceParameter> mpMinTime;
	TPtr<TVortelDeviceParameter> mpMaxTime;
	TPtr<TVortelDeviceParameter> mpShuffleChance;
	TPtr<TVortelDeviceParameter> mpRange;
	TPtr<TVortelDeviceParameter> mpRepeatChance;
	TPtr<TVortelDeviceParameter> mpReverseChance;
};

using TVortelTapeStopTimeModeParameter = TVortelModeParameter<TVortelTapeStopDevice>;
using TVortelRetriggerTimeModeParameter = TVortelModeParameter<TVortelRetriggerDevice>;
using TVortelReverserTimeModeParameter = TVortelModeParameter<TVortelReverserDevice>;
using TVortelLofiModeParameter = TVortelModeParameter<TVortelLofiDevice>;
using TVortelDelayTimeModeParameter = TVortelModeParameter<TVortelDelayDevice>;
using TVortelShufflerTimeModeParameter = TVortelModeParameter<TVortelShufflerDevice>;
