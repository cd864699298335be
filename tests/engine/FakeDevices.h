// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/TVortelDspDevice.h"

#include <cstdint>
#include <string>
#include <vector>

/// Devices that write down what the engine does to them. An effect is silent while it runs, so it also shows in the
/// sound. These take the place of the real devices in the whole test program.
namespace FakeDevices {

struct TEvent {
	int32_t mDevice;
	char mWhat; // 's' start, 'r' retrigger
	int64_t mSample;

	friend bool operator==(const TEvent&, const TEvent&) = default;
};

struct TLog {
	int64_t mNow = 0; // kept by the test: the sample at which the present block begins
	std::vector<TEvent> mEvents;
	std::vector<int32_t> mProcessed; // devices in the order of their calls
	std::vector<int32_t> mSlices;    // lengths, of the last effect that ran
	std::vector<uint32_t> mSeeds;    // as one device heard them
	std::vector<float> mTempos;      // as one device heard them
	int32_t mSampleRate = 0;
	int32_t mBlockSize = 0;

	std::vector<int64_t> Samples(int32_t device, char what) const;
	/// Devices that began, in order.
	std::vector<int32_t> Started() const;
};

TLog& Log();

} // namespace FakeDevices
