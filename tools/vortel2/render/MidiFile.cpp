// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/render/MidiFile.h"

#include "tools/vortel2/files/InputFile.h"
#include "tools/vortel2/files/ToolErrors.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr double kMicrosecondsPerSecond = 1e6;
constexpr int32_t kInitialTempo = 500000; // microseconds per beat

/// A front-to-back reader that throws at the end instead of passing it.
class TByteReader {
public:
	TByteReader(const std::string& path, std::span<const uint8_t> bytes) : mPath(path), mBytes(bytes) {}

	bool AtEnd() const { return mBytes.empty(); }

	uint8_t Peek() const { return mBytes.empty() ? Fail() : mBytes[0]; }

	uint8_t Byte() { return Take(1)[0]; }

	uint32_t BigEndian(std::size_t size) {
		uint32_t value = 0;
		for (const uint8_t byte : Take(size))
			value = value << 8 | byte;
		return value;
	}

	/// Seven bits a byte, at most four bytes.
	uint32_t VariableLength() {
		uint32_t value = 0;
		for (int i = 0; i < 4; ++i) {
			const uint8_t byte = Byte();
			value = value << 7 | (byte & 0x7fu);
			if (byte < 0x80)
				return value;
		}
		Fail();
	}

	std::span<const uint8_t> Take(std::size_t size) {
		if (size > mBytes.size())
			Fail();
		const auto taken = mBytes.first(size);
		mBytes = mBytes.subspan(size);
		return taken;
	}

	/// A chunk's contents, if the next chunk has that name; else empty-handed, past the chunk.
	TByteReader Chunk(std::string_view& name) {
		const auto letters = Take(4);
		name = {reinterpret_cast<const char*>(letters.data()), letters.size()};
		const uint32_t size = BigEndian(4);
		return {mPath, Take(size)};
	}

	[[noreturn]] uint8_t Fail() const { throw TWorkError(mPath + ": is not a MIDI file, or a damaged one"); }

private:
	const std::string& mPath;
	std::span<const uint8_t> mBytes;
};

/// A channel message or, with status 0, a tempo change.
struct TTickEvent {
	uint64_t mTick;
	uint8_t mStatus;
	uint8_t mData1;
	uint8_t mData2;
	int32_t mTempo;
};

bool HasOneDataByte(uint8_t status) {
	return (status & 0xe0) == 0xc0;
}

class TTrackReader {
public:
	TTrackReader(TByteReader bytes, std::vector<TTickEvent>& events) : mBytes(bytes), mEvents(events) {}

	void Read() {
		while (!mBytes.AtEnd() && !mEnded) {
			mTick += mBytes.VariableLength();
			ReadEvent();
		}
	}

private:
	void ReadEvent() {
		const uint8_t status = mBytes.Peek() >= 0x80 ? mBytes.Byte() : mRunningStatus;
		if (status < 0x80)
			mBytes.Fail();
		if (status < 0xf0)
			ReadChannelEvent(status);
		else if (status == 0xff)
			ReadMetaEvent();
		else if (status == 0xf0 || status == 0xf7)
			mBytes.Take(mBytes.VariableLength());
		else
			mBytes.Fail();
		mRunningStatus = status < 0xf0 ? status : 0;
	}

	void ReadChannelEvent(uint8_t status) {
		const uint8_t data1 = mBytes.Byte();
		const uint8_t data2 = HasOneDataByte(status) ? uint8_t{0} : mBytes.Byte();
		if (data1 >= 0x80 || data2 >= 0x80)
			mBytes.Fail();
		mEvents.push_back({mTick, status, data1, data2, 0});
	}

	void ReadMetaEvent() {
		const uint8_t type = mBytes.Byte();
		const auto contents = mBytes.Take(mBytes.VariableLength());
		mEnded = type == 0x2f;
		if (type == 0x51 && contents.size() == 3)
			mEvents.push_back({mTick, 0, 0, 0, contents[0] << 16 | contents[1] << 8 | contents[2]});
	}

	TByteReader mBytes;
	std::vector<TTickEvent>& mEvents;
	uint64_t mTick = 0;
	uint8_t mRunningStatus = 0;
	bool mEnded = false;
};

/// What one tick lasts: a part of a beat, or a fixed time with a division in frames of film.
struct TDivision {
	int32_t mTicksPerBeat = 0; // 0: fixed
	double mSecondsPerTick = 0.0;

	double SecondsPerTick(int32_t tempo) const {
		return mTicksPerBeat == 0 ? mSecondsPerTick : tempo / (mTicksPerBeat * kMicrosecondsPerSecond);
	}
};

TDivision ReadDivision(TByteReader& header) {
	const uint32_t division = header.BigEndian(2);
	if (division < 0x8000)
		return division == 0 ? (header.Fail(), TDivision{}) : TDivision{static_cast<int32_t>(division), 0.0};
	const int framesPerSecond = -static_cast<int8_t>(division >> 8);
	const int ticksPerFrame = static_cast<int>(division & 0xff);
	if (framesPerSecond < 24 || framesPerSecond > 30 || ticksPerFrame == 0)
		header.Fail();
	// 29 stands for the 29.97 frames of drop-frame time code.
	const double frames = framesPerSecond == 29 ? 30000.0 / 1001.0 : framesPerSecond;
	return {0, 1.0 / (frames * ticksPerFrame)};
}

struct TContents {
	std::vector<TMidiFileEvent> mEvents;
	std::vector<TMidiTempo> mTempi;
};

double BeatsPerMinute(int32_t tempo) {
	return 60.0 * kMicrosecondsPerSecond / std::max(tempo, 1);
}

/// Counts from the last tempo change, so that nothing adds up over a long file.
TContents WithSeconds(const std::vector<TTickEvent>& events, const TDivision& division) {
	TContents result{{}, {{0.0, BeatsPerMinute(kInitialTempo)}}};
	double anchorSeconds = 0.0;
	uint64_t anchorTick = 0;
	double secondsPerTick = division.SecondsPerTick(kInitialTempo);
	for (const TTickEvent& event : events) {
		const double seconds = anchorSeconds + static_cast<double>(event.mTick - anchorTick) * secondsPerTick;
		if (event.mStatus != 0) {
			result.mEvents.push_back({seconds, event.mStatus, event.mData1, event.mData2});
		} else {
			anchorSeconds = seconds;
			anchorTick = event.mTick;
			secondsPerTick = division.SecondsPerTick(event.mTempo);
			result.mTempi.push_back({seconds, BeatsPerMinute(event.mTempo)});
		}
	}
	return result;
}

TContents ReadContents(const std::string& path, std::span<const uint8_t> contents) {
	TByteReader file(path, contents);
	std::string_view name;
	TByteReader header = file.Chunk(name);
	if (name != "MThd")
		file.Fail();
	const uint32_t format = header.BigEndian(2);
	const uint32_t tracks = header.BigEndian(2);
	const TDivision division = ReadDivision(header);
	if (format > 1)
		throw TWorkError(path + ": is a MIDI file of format " + std::to_string(format) + ", not 0 or 1");

	std::vector<TTickEvent> events;
	for (uint32_t track = 0; track < tracks;) {
		TByteReader chunk = file.Chunk(name);
		if (name != "MTrk")
			continue;
		TTrackReader(chunk, events).Read();
		++track;
	}
	std::stable_sort(
	    events.begin(), events.end(), [](const TTickEvent& a, const TTickEvent& b) { return a.mTick < b.mTick; });
	return WithSeconds(events, division);
}

std::span<const uint8_t> AsBytes(const std::string& bytes) {
	return {reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()};
}

} // namespace

std::vector<TMidiFileEvent> ReadMidiFile(const std::string& path, std::span<const uint8_t> contents) {
	return ReadContents(path, contents).mEvents;
}

std::vector<TMidiFileEvent> ReadMidiFile(const std::string& path) {
	return ReadMidiFile(path, AsBytes(ReadInputFile(path)));
}

std::vector<TMidiTempo> ReadMidiTempi(const std::string& path, std::span<const uint8_t> contents) {
	return ReadContents(path, contents).mTempi;
}

std::vector<TMidiTempo> ReadMidiTempi(const std::string& path) {
	return ReadMidiTempi(path, AsBytes(ReadInputFile(path)));
}
