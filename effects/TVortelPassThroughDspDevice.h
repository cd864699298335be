// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/TVortelDspDevice.h"

/// An effect that leaves the sound to the frame: filter, mix, pan, volume and fades work, the effect itself is a wire.
class TVortelPassThroughDspDevice final : public TVortelDspDevice {
public:
	TVortelPassThroughDspDevice(TVortelDevice* device, THost* host, int32_t index)
	    : TVortelDspDevice(device, host, index) {
		FinishConstruction();
	}
};
