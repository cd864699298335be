// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/CreateVortelDspDevices.h"

#include "document/TVortelDocument.h"
#include "document/TVortelEffectDevices.h"
#include "document/TVortelGaterDevice.h"
#include "document/TVortelMasterDevice.h"
#include "effects/TVortelDelayDspDevice.h"
#include "effects/TVortelDistortionDspDevice.h"
#include "effects/TVortelGaterDspDevice.h"
#include "effects/TVortelLofiDspDevice.h"
#include "effects/TVortelMasterDspDevice.h"
#include "effects/TVortelModulatorDspDevice.h"
#include "effects/TVortelRetriggerDspDevice.h"
#include "effects/TVortelReverserDspDevice.h"
#include "effects/TVortelShufflerDspDevice.h"
#include "effects/TVortelStretcherDspDevice.h"
#include "effects/TVortelTapeStopDspDevice.h"

TPtr<TVortelDspDevice> CreateVortelDspDevice(TVortelDocument& document, TVortelDspDevice::THost* host, int32_t index) {
	switch (index) {
	case 0:
		return MakePtr<TVortelMasterDspDevice>(document.MasterDevice(), host, index);
	case 1:
		return MakePtr<TVortelModulatorDspDevice>(document.ModulatorDevice(), host, index);
	case 2:
		return MakePtr<TVortelTapeStopDspDevice>(document.TapeStopDevice(), host, index);
	case 3:
		return MakePtr<TVortelRetriggerDspDevice>(document.RetriggerDevice(), host, index);
	case 4:
		return MakePtr<TVortelReverserDspDevice>(document.ReverserDevice(), host, index);
	case 5:
		return MakePtr<TVortelStretcherDspDevice>(document.StretcherDevice(), host, index);
	case 6:
		return MakePtr<TVortelLofiDspDevice>(document.LofiDevice(), host, index);
	case 7:
		return MakePtr<TVortelDistortionDspDevice>(document.DistortionDevice(), host, index);
	case 8:
		return MakePtr<TVortelGaterDspDevice>(document.GaterDevice(), host, index);
	case 9:
		return MakePtr<TVortelDelayDspDevice>(document.DelayDevice(), host, index);
	case 10:
		return MakePtr<TVortelShufflerDspDevice>(document.ShufflerDevice(), host, index);
	default:
		return nullptr;
	}
}

void CreateVortelDspDevices(TVortelDocument& document, TVortelDspDevice::THost& host) {
	for (int32_t index = 0; index < TVortelDocument::kNumberOfDevices; ++index)
		CreateVortelDspDevice(document, &host, index);
}
