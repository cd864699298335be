// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/TVortelDspDevice.h"

class TVortelDocument;

/// Makes the eleven devices of a document, by index; each registers with the host, which keeps it.
void CreateVortelDspDevices(TVortelDocument& document, TVortelDspDevice::THost& host);

/// One of them, for index 0 to 10. The host may be null; then the caller keeps the device.
TPtr<TVortelDspDevice> CreateVortelDspDevice(TVortelDocument& document, TVortelDspDevice::THost* host, int32_t index);
