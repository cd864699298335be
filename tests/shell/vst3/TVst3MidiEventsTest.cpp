// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/vst3/TVst3MidiEvents.h"

#include <pluginterfaces/vst/ivstmidicontrollers.h>

#include <gtest/gtest.h>

using namespace Steinberg::Vst;

namespace {

void ExpectMidi(const std::optional<TMidiEvent>& midi, int status, int data1, int data2) {
	ASSERT_TRUE(midi);
	EXPECT_EQ(midi->mStatus, status);
	EXPECT_EQ(midi->mData1, data1);
	EXPECT_EQ(midi->mData2, data2);
	EXPECT_EQ(midi->mSampleOffset, 17);
}

std::optional<TMidiEvent> ThereAndBack(uint8_t status, uint8_t data1, uint8_t data2) {
	const auto event = Vst3MidiEvents::FromMidi({status, data1, data2, 17});
	return event ? Vst3MidiEvents::ToMidi(*event) : std::nullopt;
}

} // namespace

TEST(TVst3MidiEventsTest, EveryShortMessageSurvivesTheWayThroughTheHostsEvents) {
	for (int value = 1; value < 128; ++value) {
		const auto data = static_cast<uint8_t>(value);
		ExpectMidi(ThereAndBack(0x93, 60, data), 0x93, 60, value);
		ExpectMidi(ThereAndBack(0xA3, 60, data), 0xA3, 60, value);
		ExpectMidi(ThereAndBack(0xBF, data, data), 0xBF, value, value);
		ExpectMidi(ThereAndBack(0xC0, data, 0), 0xC0, value, 0);
		ExpectMidi(ThereAndBack(0xD0, data, 0), 0xD0, value, 0);
		ExpectMidi(ThereAndBack(0xE7, 127, data), 0xE7, 127, value);
	}
	EXPECT_FALSE(ThereAndBack(0xF8, 0, 0));
}

TEST(TVst3MidiEventsTest, NoteOffsBecomeNoteOnsOfVelocityZero) {
	ExpectMidi(ThereAndBack(0x81, 60, 100), 0x91, 60, 0);
	ExpectMidi(ThereAndBack(0x91, 60, 0), 0x91, 60, 0);
}

TEST(TVst3MidiEventsTest, WhatDoesNotFitIsTakenIntoItsRange) {
	Event event{};
	event.sampleOffset = 17;
	event.type = Event::kNoteOnEvent;
	event.noteOn = {99, 200, 0.0f, 7.0f, 0, -1};
	ExpectMidi(Vst3MidiEvents::ToMidi(event), 0x9F, 127, 127);
	event.noteOn = {-5, -5, 0.0f, std::numeric_limits<float>::quiet_NaN(), 0, -1};
	ExpectMidi(Vst3MidiEvents::ToMidi(event), 0x90, 0, 0);
	event.type = Event::kLegacyMIDICCOutEvent;
	event.midiCCOut = {kCtrlPolyPressure, 0, 1, 1};
	EXPECT_FALSE(Vst3MidiEvents::ToMidi(event));
	event.type = Event::kDataEvent;
	EXPECT_FALSE(Vst3MidiEvents::ToMidi(event));
}

TEST(TVst3MidiEventsTest, PitchBendParameterHasFourteenBits) {
	const auto bend = [](double value) {
		return Vst3MidiEvents::ToMidi(Vst3MidiEvents::MakeController(kPitchBend, value, 17));
	};
	ExpectMidi(bend(0.5), 0xE0, 0, 64);
	ExpectMidi(bend(1.0), 0xE0, 127, 127);
	ExpectMidi(bend(-3.0), 0xE0, 0, 0);
}
