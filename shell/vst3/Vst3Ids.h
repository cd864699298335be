// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/vst3/Vst3Interfaces.h"

#include <pluginterfaces/vst/vsttypes.h>

/// Parameter ids. Below these, a document's parameters have their index as id.
enum EVst3ParameterId : Steinberg::Vst::ParamID {
	kVst3Sustain = 0x7ffffff7,
	kVst3Volume = 0x7ffffff8,
	kVst3ModulationWheel = 0x7ffffff9,
	kVst3ChannelPressure = 0x7ffffffa,
	kVst3Pitchbend = 0x7ffffffb,
	kVst3GuiIdle = 0x7ffffffc,
	kVst3Preset = 0x7ffffffd, // the program list has the same id
	kVst3Bypass = 0x7ffffffe  // no parameter object stands behind it, but hosts may send it
};
