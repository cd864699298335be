// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/TMidiEvent.h"
#include "shell/vst3/Vst3Interfaces.h"

#include <pluginterfaces/vst/ivstevents.h>

#include <cstdint>
#include <optional>

/// Between the host's event records and short MIDI messages. Audio thread. Values that do not fit are taken into their
/// range; normalised ones go to the nearest step, so that what a host made of a MIDI value comes out as that value.
namespace Vst3MidiEvents {

/// Empty for what has no short message.
std::optional<TMidiEvent> ToMidi(const Steinberg::Vst::Event& event);
std::optional<Steinberg::Vst::Event> FromMidi(const TMidiEvent& midi);

/// A controller that a host sends as a parameter: its number or one of the codes 128 (channel pressure) and 129
/// (pitch bend). value is normalised; NaN counts as 0.
Steinberg::Vst::Event MakeController(int32_t controller, double value, int32_t sampleOffset);

} // namespace Vst3MidiEvents
