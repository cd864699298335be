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
	case kMasterDevice:
		return MakePtr<TVortelMasterDspDevice>(document.MasterDevice(), host, index);
	case kModulatorDevice:
		return MakePtr<TVortelModulatorDspDevice>(document.ModulatorDevice(), host, index);
	case kTapeStopDevice:
		return MakePtr<TVortelTapeStopDspDevice>(document.TapeStopDevice(), host, index);
	case kRetriggerDevice:
		return MakePtr<TVortelRetriggerDspDevice>(document.RetriggerDevice(), host, index);
	case kReverserDevice:
		return MakePtr<TVortelReverserDspDevice>(document.ReverserDevice(), host, index);
	case kStretcherDevice:
		return MakePtr<TVortelStretcherDspDevice>(document.StretcherDevice(), host, index);
	case kLofiDevice:
		return MakePtr<TVortelLofiDspDevice>(document.LofiDevice(), host, index);
	case kDistortionDevice:
		return MakePtr<TVortelDistortionDspDevice>(document.DistortionDevice(), host, index);
	case kGaterDevice:
		return MakePtr<TVortelGaterDspDevice>(document.GaterDevice(), host, index);
	case kDelayDevice:
		return MakePtr<TVortelDelayDspDevice>(document.DelayDevice(), host, index);
	case kShufflerDevice:
		return MakePtr<TVortelShufflerDspDevice>(document.ShufflerDevice(), host, index);
	default:
		return nullptr;
	}
}

void CreateVortelDspDevices(TVortelDocument& document, TVortelDspDevice::THost& host) {
	for (int32_t index = 0; index < TVortelDocument::kNumberOfDevices; ++index)
		CreateVortelDspDevice(document, &host, index);
}
