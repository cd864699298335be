// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pluginterfaces/fst/fst.h>

#include <cstdint>

// What hosts use and the header above has no number for.

enum EVst2HostOpcode : int32_t {
	kHostIoChanged = 13,
	kHostNeedIdle = 14, // the effect wants kEffectIdle
	kHostUpdateDisplay = 42
};

enum EVst2EffectOpcode : int32_t { kEffectIdle = 53, kEffectKeysRequired = 57 };

enum EVst2PinFlag : int32_t { kPinIsActive = 1, kPinIsStereo = 2 };

/// With room for the speakers that a host may go through; the header's record ends before the first.
struct TVst2Arrangement {
	static constexpr int32_t kMostChannels = 8;

	VstInt32 mType;
	VstInt32 mChannels;
	VstSpeakerProperties mSpeakers[kMostChannels];

	VstSpeakerArrangement* Record() { return reinterpret_cast<VstSpeakerArrangement*>(this); }
};
