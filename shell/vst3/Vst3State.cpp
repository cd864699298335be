// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/vst3/Vst3State.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

using namespace Steinberg;

namespace {

constexpr int32 kPortion = 65536;

bool ReadAll(IBStream& stream, uint8_t* target, int32 bytes) {
	while (bytes > 0) {
		int32 got = 0;
		if (stream.read(target, bytes, &got) != kResultOk || got < 1 || got > bytes)
			return false;
		target += got;
		bytes -= got;
	}
	return true;
}

// Hosts that take everything need not say so.
bool WriteAll(IBStream& stream, std::span<const uint8_t> bytes) {
	const auto size = static_cast<int32>(bytes.size());
	int32 written = size;
	return stream.write(const_cast<uint8_t*>(bytes.data()), size, &written) == kResultOk && written == size;
}

} // namespace

bool Vst3State::Write(IBStream& stream, const TStream& chunk) {
	const std::span<const uint8_t> bytes = chunk.Bytes();
	if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int32>::max()))
		return false;
	const auto length = static_cast<int32>(bytes.size());
	return WriteAll(stream, {reinterpret_cast<const uint8_t*>(&length), sizeof(length)}) &&
	       (bytes.empty() || WriteAll(stream, bytes));
}

bool Vst3State::Read(IBStream& stream, TStream& chunk) {
	int32 length = 0;
	if (!ReadAll(stream, reinterpret_cast<uint8_t*>(&length), sizeof(length)) || length < 0)
		return false;
	chunk.Clear();
	for (int32 done = 0; done < length;) {
		const int32 portion = std::min(length - done, kPortion);
		chunk.SetSize(done + portion);
		if (!ReadAll(stream, chunk.Bytes().data() + done, portion))
			return false;
		done += portion;
	}
	return true;
}
