// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TVortelDevice.h"

#include <array>

/// The Gater: its parameters and a working copy of the active scene's sixteen step levels (0 to 1).
class TVortelGaterDevice final : public TVortelDevice {
public:
	explicit TVortelGaterDevice(TVortelDocument* document);

	void OnInit() override;
	void OnRandomize() override;
	void OnMutate() override;
	void OnPaste(TVortelScene* source) override;
	void OnCopy(TVortelScene* target) override;
	void OnSceneChanged() override;
	void RefreshStepped();

	/// 0 for an index outside 0 to 15.
	float StepLevel(int32_t index) const noexcept;
	/// Also writes the active scene. Ignores an index outside 0 to 15.
	void SetStepLevel(int32_t index, float level);

	/// Around changes of the levels by the operations of this device; SetStepLevel alone does not fire it.
	TObservableBang& StepsChangedBang() noexcept { return mStepsChangedBang; }

	TPtr<TVortelDeviceParameter> mpSmoothing;
	TPtr<TVortelDeviceParameter> mpTime;
	TPtr<TVortelDeviceParameter> mpTimeMode;
	TPtr<TVortelDeviceParameter> mpNumVolumeSteps;

private:
	template <class TLevel>
	void SetStepLevels(TLevel level);

	std::array<float, 16> mStepLevels;
	TObservableBang mStepsChangedBang;
};

using TVortelGaterTimeModeParameter = TVortelModeParameter<TVortelGaterDevice>;
