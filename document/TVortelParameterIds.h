// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

/// The names of what TVortelParameterTable declares: devices, the ids of their own parameters, and the values of those
/// that choose. The numbers are part of the file format and known to hosts.

/// Device indices.
enum EVortelDevice : int32_t {
	kMasterDevice = 0, // in the document also the row that picks effects at random
	kModulatorDevice = 1,
	kTapeStopDevice = 2,
	kRetriggerDevice = 3,
	kReverserDevice = 4,
	kStretcherDevice = 5,
	kLofiDevice = 6,
	kDistortionDevice = 7,
	kGaterDevice = 8,
	kDelayDevice = 9,
	kShufflerDevice = 10
};

namespace VortelParameterIds {

/// Offsets of the common parameters from a device's first id; the ids themselves for the master.
enum ECommon : int32_t { kWeight, kMix, kPanning, kVolume, kFilterType, kFilterFrequency, kFilterQ };

namespace Modulator {
enum EId : int32_t { kFrequency = 17, kAmount, kOscVolume, kFMAmount, kFMAttack, kFMRelease, kSpread };
}

namespace TapeStop {
enum EId : int32_t { kSlowDown = 37, kSpeedUp, kTimeMode, kPlayMode };
}

namespace Retrigger {
enum EId : int32_t { kTimeMode = 57, kTimeA, kTimeB, kABTime, kDecay };
}

namespace Reverser {
enum EId : int32_t { kTime = 77, kTimeMode, kPointA, kPointB };
}

namespace Stretcher {
enum EId : int32_t { kSpeed = 97, kGrainSize, kSmoothing, kFMAmount, kFMAttack, kFMRelease, kJitter };
}

namespace Lofi {
enum EId : int32_t { kFrequency = 117, kBitDepth, kType, kFMAmount, kFMAttack, kFMRelease };
}

namespace Distortion {
enum EId : int32_t { kType = 137, kDrive, kTone, kWetOut, kDryOut };
}

namespace Gater {
enum EId : int32_t { kSmoothing = 157, kTime, kTimeMode, kNumVolumeSteps };
}

namespace Delay {
enum EId : int32_t { kTime = 177, kTimeMode, kFeedback, kSlew, kSend, kSpread, kReturn };
}

namespace Shuffler {
enum EId : int32_t { kTimeMode = 197, kMinTime, kMaxTime, kShuffleChance, kRange, kRepeatChance, kReverseChance };
}

} // namespace VortelParameterIds

/// What they sound like and what the editor calls them. The texts that a host shows for 2 to 4 are "Bandpass",
/// "Bandstop" and "Highpass".
enum class EVortelFilterType : int32_t { kOff = 0, kLowpass = 1, kHighpass = 2, kBandpass = 3, kBandstop = 4 };

/// How a beat time is meant. "Free" and "Even" differ only in the values that the parameter takes.
enum class EVortelTimeMode : int32_t { kFree = 0, kEven = 1, kTriplet = 2, kDotted = 3 };

enum class EVortelPlayMode : int32_t { kStopStart = 0, kStop = 1, kStartStop = 2, kStart = 3 };

enum class EVortelBitDepthType : int32_t { kSigned = 0, kUnsigned = 1 };

enum class EVortelDistortionType : int32_t { kRazor = 0, kShape = 1, kFold = 2, kShift = 3 };
