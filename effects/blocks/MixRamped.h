// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class TRampGroup;

/// The mix stage while its ramps move. They are mix, pan and volume in this order, 0 to 1, and take a step before each
/// sample:
///
///     wet = (dry * (1 - mix) + wet * mix) * gain * 2 * volume
///
/// with sqrt(1 - pan) and sqrt(pan) as left and right gain, scaled to 1 in the middle. In place, any count, audio
/// thread. The widest vectors of the processor do it; results are those of single steps in float, bit for bit.
/// Returns the samples done: all, or those until every ramp is at its target.
int MixRamped(
    TRampGroup& ramps, const float* dryLeft, const float* dryRight, float* left, float* right, int count) noexcept;

/// What constant power gives in the middle, where the gains of the mix stage are 1.
inline constexpr float kCenterGain = 0.70710677f;
