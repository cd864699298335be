// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/CreateVortelDspDevices.h"

#include "document/TVortelDocument.h"
#include "document/TVortelEffectDevices.h"
#include "document/TVortelMasterDevice.h"
#include "effects/TVortelMasterDspDevice.h"
#include "effects/TVortelPassThroughDspDevice.h"
#include "effects/TVortelRetriggerDspDevice.h"

TPtr<TVortelDspDevice> CreateVortelDspDevice(TVortelDocument& document, TVortelDspDevice::THost* host, int32_t index) {
	switch (index) {
	case 0:
		return MakePtr<TVortelMasterDspDevice>(document.MasterDevice(), host, index);
	case 3:
		return MakePtr<TVortelRetriggerDspDevice>(document.RetriggerDevice(), host, index);
	default:
		return MakePtr<TVortelPassThroughDspDevice>(document.Device(index), host, index);
	}
}

void CreateVortelDspDevices(TVortelDocument& document, TVortelDspDevice::THost& host) {
	for (int32_t index = 0; index < TVortelDocument::kNumberOfDevices; ++index)
		CreateVortelDspDevice(document, &host, index);
}
