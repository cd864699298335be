// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/TVortelDspDevice.h"
#include "effects/blocks/TVortelSoftClipper.h"

/// The stage around all effects: captures the host's whole buffer before them, and after them mixes it with what they
/// made, pans, sets the volume and, if the program says so, clips softly. Its values are the program's, not the
/// scene's. Never started or stopped; called for every buffer.
class TVortelMasterDspDevice final : public TVortelDspDevice {
public:
	TVortelMasterDspDevice(TVortelDevice* device, THost* host, int32_t index);

	void CaptureDry(float* left, float* right, int count) override { KeepDry(left, right, count); }

	void Process(float* left, float* right, int count) override;

private:
	TVortelSoftClipper mSoftClip;
};
