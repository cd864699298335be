// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// A channel event of a Standard MIDI File at its time by the file's own tempo map.
struct TMidiFileEvent {
	double mSeconds;
	uint8_t mStatus;
	uint8_t mData1;
	uint8_t mData2; // 0 where the message has one data byte
};

/// A tempo from that time on.
struct TMidiTempo {
	double mSeconds;
	double mBeatsPerMinute;
};

/// Reads the channel events of a Standard MIDI File of format 0 or 1, of all tracks in time order; events at one tick
/// come by track, then as they stand. Meta events but the tempo are skipped, so are system exclusive ones. Trusts
/// nothing in the file. Throws TWorkError.
///
/// This is ours because the library at hand stops the program over damaged files.
std::vector<TMidiFileEvent> ReadMidiFile(const std::string& path);
/// The same for the file's contents; path is for messages.
std::vector<TMidiFileEvent> ReadMidiFile(const std::string& path, std::span<const uint8_t> contents);

/// The tempi of such a file in time order; the first is at 0.
std::vector<TMidiTempo> ReadMidiTempi(const std::string& path);
std::vector<TMidiTempo> ReadMidiTempi(const std::string& path, std::span<const uint8_t> contents);
