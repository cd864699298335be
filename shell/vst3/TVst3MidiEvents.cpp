// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/vst3/TVst3MidiEvents.h"

#include <pluginterfaces/vst/ivstmidicontrollers.h>

#include <algorithm>
#include <cmath>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

enum EStatus : uint8_t {
	kNoteOff = 0x80,
	kNoteOn = 0x90,
	kPolyPressure = 0xA0,
	kController = 0xB0,
	kProgramChange = 0xC0,
	kChannelPressure = 0xD0,
	kPitchBendChange = 0xE0
};

constexpr double kHighest7Bit = 127.0;
constexpr double kHighest14Bit = 16383.0;

int32_t Scaled(double value, double highest) {
	return value > 0.0 ? static_cast<int32_t>(std::lround(std::min(value, 1.0) * highest)) : 0;
}

uint8_t Scaled7(double value) {
	return static_cast<uint8_t>(Scaled(value, kHighest7Bit));
}

uint8_t Clamp7(int value) {
	return static_cast<uint8_t>(std::clamp(value, 0, 127));
}

uint8_t Status(EStatus status, int channel) {
	return static_cast<uint8_t>(status + std::clamp(channel, 0, 15));
}

std::optional<TMidiEvent> FromLegacy(const LegacyMIDICCOutEvent& cc, int32_t offset) {
	const uint8_t value = Clamp7(cc.value);
	if (cc.controlNumber < kAfterTouch)
		return TMidiEvent{Status(kController, cc.channel), cc.controlNumber, value, offset};
	switch (cc.controlNumber) {
	case kAfterTouch:
		return TMidiEvent{Status(kChannelPressure, cc.channel), value, 0, offset};
	case kPitchBend:
		return TMidiEvent{Status(kPitchBendChange, cc.channel), value, Clamp7(cc.value2), offset};
	case kCtrlProgramChange:
		return TMidiEvent{Status(kProgramChange, cc.channel), value, 0, offset};
	default:
		return std::nullopt;
	}
}

Event MakeEvent(uint16_t type, int32_t offset) {
	Event event{};
	event.type = type;
	event.sampleOffset = offset;
	return event;
}

Event MakeLegacy(int32_t controller, int channel, int value, int value2, int32_t offset) {
	Event event = MakeEvent(Event::kLegacyMIDICCOutEvent, offset);
	event.midiCCOut.controlNumber = static_cast<uint8>(controller);
	event.midiCCOut.channel = static_cast<int8>(channel);
	event.midiCCOut.value = static_cast<int8>(value & 0x7F);
	event.midiCCOut.value2 = static_cast<int8>(value2 & 0x7F);
	return event;
}

Event MakeNote(uint16_t type, int channel, const TMidiEvent& midi) {
	Event event = MakeEvent(type, midi.mSampleOffset);
	const auto midiChannel = static_cast<int16>(channel);
	const auto pitch = static_cast<int16>(midi.mData1);
	const float velocity = static_cast<float>(midi.mData2) / 127.0f;
	if (type == Event::kNoteOnEvent)
		event.noteOn = {midiChannel, pitch, 0.0f, velocity, 0, -1};
	else if (type == Event::kNoteOffEvent)
		event.noteOff = {midiChannel, pitch, velocity, -1, 0.0f};
	else
		event.polyPressure = {midiChannel, pitch, velocity, -1};
	return event;
}

} // namespace

std::optional<TMidiEvent> Vst3MidiEvents::ToMidi(const Event& event) {
	const int32_t offset = event.sampleOffset;
	switch (event.type) {
	case Event::kNoteOnEvent:
		return TMidiEvent{
		    Status(kNoteOn, event.noteOn.channel), Clamp7(event.noteOn.pitch), Scaled7(event.noteOn.velocity), offset};
	case Event::kNoteOffEvent:
		return TMidiEvent{Status(kNoteOn, event.noteOff.channel), Clamp7(event.noteOff.pitch), 0, offset};
	case Event::kPolyPressureEvent:
		return TMidiEvent{
		    Status(kPolyPressure, event.polyPressure.channel), Clamp7(event.polyPressure.pitch),
		    Scaled7(event.polyPressure.pressure), offset};
	case Event::kLegacyMIDICCOutEvent:
		return FromLegacy(event.midiCCOut, offset);
	default:
		return std::nullopt;
	}
}

std::optional<Event> Vst3MidiEvents::FromMidi(const TMidiEvent& midi) {
	const int channel = midi.mStatus & 0x0F;
	switch (midi.mStatus & 0xF0) {
	case kNoteOff:
		return MakeNote(Event::kNoteOffEvent, channel, midi);
	case kNoteOn:
		return MakeNote(midi.mData2 > 0 ? Event::kNoteOnEvent : Event::kNoteOffEvent, channel, midi);
	case kPolyPressure:
		return MakeNote(Event::kPolyPressureEvent, channel, midi);
	case kController:
		return MakeLegacy(midi.mData1, channel, midi.mData2, 0, midi.mSampleOffset);
	case kProgramChange:
		return MakeLegacy(kCtrlProgramChange, channel, midi.mData1, 0, midi.mSampleOffset);
	case kChannelPressure:
		return MakeLegacy(kAfterTouch, channel, midi.mData1, 0, midi.mSampleOffset);
	case kPitchBendChange:
		return MakeLegacy(kPitchBend, channel, midi.mData1, midi.mData2, midi.mSampleOffset);
	default:
		return std::nullopt;
	}
}

Event Vst3MidiEvents::MakeController(int32_t controller, double value, int32_t sampleOffset) {
	if (controller != kPitchBend)
		return MakeLegacy(controller, 0, Scaled7(value), 0, sampleOffset);
	const int32_t bend = Scaled(value, kHighest14Bit);
	return MakeLegacy(controller, 0, bend & 0x7F, bend >> 7, sampleOffset);
}
