// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/render/MidiFile.h"

#include "tools/vortel2/files/ToolErrors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <random>
#include <smf.h>
#include <unistd.h>

namespace {

std::vector<TMidiFileEvent> Read(const std::string& bytes) {
	return ReadMidiFile("song.mid", {reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
}

std::string BigEndian(std::size_t value, int size) {
	std::string bytes;
	for (int i = size - 1; i >= 0; --i)
		bytes += static_cast<char>(value >> (8 * i) & 0xff);
	return bytes;
}

std::string Track(const std::string& events) {
	return "MTrk" + BigEndian(events.size(), 4) + events;
}

std::string File(std::size_t format, std::size_t division, const std::vector<std::string>& tracks) {
	std::string file =
	    "MThd" + BigEndian(6, 4) + BigEndian(format, 2) + BigEndian(tracks.size(), 2) + BigEndian(division, 2);
	for (const std::string& track : tracks)
		file += track;
	return file;
}

using namespace std::string_literals;

TEST(MidiFileTest, RunningStatusSystemExclusiveAndUnknownChunksAreRead) {
	const std::string track = Track("\x00\x90\x3c\x40"s     // note on at 0
	                                "\x60\x3d\x41"s         // another, status kept, at tick 96
	                                "\x00\xf0\x02\x01\xf7"s // system exclusive
	                                "\x81\x40\xc5\x07"s     // program change 192 ticks later
	                                "\x00\xff\x2f\x00"s
	                                "\x00\x90\x00\x00"s); // behind the end
	const std::string junk = "JUNK" + BigEndian(3, 4) + "abc";
	const auto events = Read(File(1, 96, {junk + track}));
	EXPECT_THROW(Read(File(1, 96, {junk + track.substr(0, 12)})), TWorkError);
	ASSERT_EQ(events.size(), 3u);
	EXPECT_EQ(events[1].mSeconds, 0.5);
	EXPECT_EQ(events[1].mStatus, 0x90);
	EXPECT_EQ(events[1].mData1, 0x3d);
	EXPECT_EQ(events[2].mSeconds, 1.5);
	EXPECT_EQ(events[2].mStatus, 0xc5);
	EXPECT_EQ(events[2].mData1, 7);
}

TEST(MidiFileTest, TimeCodeDivisionHasNoTempo) {
	const std::string track = Track("\x00\xff\x51\x03\x01\x00\x00"s
	                                "\x64\x90\x3c\x40"s);
	EXPECT_EQ(Read(File(0, 0xe728, {track})).at(0).mSeconds, 0.1); // 25 frames of 40 ticks
	EXPECT_NEAR(Read(File(0, 0xe328, {track})).at(0).mSeconds, 100.0 / 40 / 29.97, 1e-6);
}

TEST(MidiFileTest, WhatIsNoMidiFileIsRefused) {
	const std::string track = Track("\x00\x90\x3c\x40"s);
	EXPECT_EQ(Read(File(0, 96, {track})).size(), 1u);
	for (const std::string& bytes :
	     {""s, "RIFF"s, File(2, 96, {track}), File(0, 0, {track}), File(0, 0x8028, {track}), File(0, 0xe700, {track}),
	      File(0, 96, {Track("\x00\x3c\x40"s)}), File(0, 96, {Track("\x00\x90\x3c\x80"s)}),
	      File(0, 96, {Track("\x00\xf8"s)}), File(0, 96, {Track("\xff\xff\xff\xff\x7f\x90\x3c\x40"s)})})
		EXPECT_THROW(Read(bytes), TWorkError) << testing::PrintToString(bytes);
}

/// A second implementation writes a file with tempo changes in one track and notes in others, and says when they are.
class TSmfFile {
public:
	TSmfFile() : mpSong(smf_new()) {
		EXPECT_EQ(smf_set_ppqn(mpSong, 384), 0);
		std::mt19937 random(3);
		for (int i = 0; i < 4; ++i)
			smf_add_track(mpSong, smf_track_new());
		for (int i = 0; i < 40; ++i) {
			const int tempo = 200000 + static_cast<int>(random() % 800000);
			smf_track_add_event_pulses(smf_get_track_by_number(mpSong, 1), TempoEvent(tempo), 150 * i);
			const int track = 2 + static_cast<int>(random() % 3);
			const int note = static_cast<int>(random() % 128);
			smf_track_add_event_pulses(
			    smf_get_track_by_number(mpSong, track), smf_event_new_from_bytes(0x90, note, 1 + i),
			    static_cast<int>(random() % 6000));
		}
	}

	~TSmfFile() { smf_delete(mpSong); }

	std::string Bytes() {
		char name[] = "/tmp/vortel2-song-XXXXXX";
		close(mkstemp(name));
		EXPECT_EQ(smf_save(mpSong, name), 0);
		std::ifstream file(name, std::ios::binary);
		std::string bytes{std::istreambuf_iterator<char>(file), {}};
		std::remove(name);
		return bytes;
	}

	/// Seconds by velocity, which is different in each note.
	double SecondsOf(int velocity) {
		smf_rewind(mpSong);
		while (smf_event_t* event = smf_get_next_event(mpSong))
			if (event->midi_buffer[0] == 0x90 && event->midi_buffer[2] == velocity)
				return event->time_seconds;
		return -1.0;
	}

private:
	static smf_event_t* TempoEvent(int microseconds) {
		const uint8_t bytes[] = {
		    0xff,
		    0x51,
		    3,
		    static_cast<uint8_t>(microseconds >> 16),
		    static_cast<uint8_t>(microseconds >> 8 & 0xff),
		    static_cast<uint8_t>(microseconds & 0xff)};
		return smf_event_new_from_pointer(const_cast<uint8_t*>(bytes), sizeof bytes);
	}

	smf_t* mpSong;
};

TEST(MidiFileTest, TimesAgreeWithAnotherImplementation) {
	TSmfFile song;
	const auto events = Read(song.Bytes());
	ASSERT_EQ(events.size(), 40u);
	for (std::size_t i = 0; i < events.size(); ++i) {
		EXPECT_NEAR(events[i].mSeconds, song.SecondsOf(events[i].mData2), 1e-9);
		EXPECT_GE(events[i].mSeconds, i == 0 ? 0.0 : events[i - 1].mSeconds);
	}
}

TEST(MidiFileTest, DamagedFilesEndInAMessageOrInEvents) {
	const std::string whole = TSmfFile().Bytes();
	std::mt19937 random(1);
	int refused = 0;
	for (int round = 0; round < 3000; ++round) {
		std::string bytes = whole.substr(0, random() % 4 == 0 ? random() % whole.size() : whole.size());
		for (int i = 0; i < 3 && !bytes.empty(); ++i)
			bytes[random() % bytes.size()] = static_cast<char>(random());
		try {
			for (const TMidiFileEvent& event : Read(bytes)) {
				ASSERT_TRUE(std::isfinite(event.mSeconds));
				ASSERT_TRUE(event.mStatus >= 0x80 && event.mStatus < 0xf0 && event.mData1 < 128 && event.mData2 < 128);
			}
		} catch (const TWorkError&) {
			++refused;
		}
	}
	EXPECT_GT(refused, 500);
}

} // namespace
