// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/FuzzFramework.h"
#include "tools/vortel2/files/ToolErrors.h"
#include "tools/vortel2/render/MidiFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
	try {
		double last = 0.0;
		for (const TMidiFileEvent& event : ReadMidiFile("song.mid", {data, size})) {
			FuzzFramework::Require(event.mSeconds >= last);
			FuzzFramework::Require(event.mStatus >= 0x80 && event.mStatus < 0xF0);
			FuzzFramework::Require(event.mData1 < 0x80 && event.mData2 < 0x80);
			last = event.mSeconds;
		}
	} catch (const TWorkError&) {
	}
	return 0;
}
