// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

/// One short MIDI message.
struct TMidiEvent {
	uint8_t mStatus = 0;
	uint8_t mData1 = 0;
	uint8_t mData2 = 0;
	int32_t mSampleOffset = 0; // from the start of the current block
};
