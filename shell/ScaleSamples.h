// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

/// Between a host's scale of ±1 and the engine's of ±32768. Both factors are powers of two, so going there and back
/// loses nothing.
inline constexpr float kEngineScale = 32768.0f;
inline constexpr float kHostScale = 1.0f / kEngineScale;

/// Audio thread. target may be source; any other overlap is not allowed. No alignment is asked for.
void ScaleSamples(const float* source, float* target, int32_t samples, float factor) noexcept;

/// Whether every sample is 0 (and not -0). Audio thread; reads no further than the first that is not.
bool IsSilence(const float* samples, int32_t count) noexcept;
