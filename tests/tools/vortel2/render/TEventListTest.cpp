// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/render/TEventList.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// "offset:status,data1" of each MIDI event, then "offset=parameter" of each change.
std::string Describe(const TEventList::TBlock& block) {
	std::string text;
	for (const TMidiEvent& event : block.mMidiEvents)
		text += std::to_string(event.mSampleOffset) + ":" + std::to_string(event.mStatus) + "," +
		        std::to_string(event.mData1) + " ";
	for (const auto& change : block.mParameterChanges)
		text += std::to_string(change.mSampleOffset) + "=" + std::to_string(change.mParameter) + " ";
	return text;
}

TEST(TEventListTest, EventsGoToTheNearestSampleOfTheirBlock) {
	TEventList events(1000);
	events.AddAutomation({{{5, 0.0, 0.0f}, {6, 0.0994, 0.0f}, {7, 0.0995, 0.0f}, {8, 9.0, 0.0f}}});
	events.AddNotes({{{60, 100, 0.0104, 0.15}}});
	EXPECT_EQ(Describe(events.NextBlock(100)), "10:144,60 0=5 99=6 ");
	EXPECT_EQ(Describe(events.NextBlock(1)), "0=7 ");
	EXPECT_EQ(Describe(events.NextBlock(100)), "49:128,60 ");
	EXPECT_EQ(Describe(events.NextBlock(100)), "");
}

TEST(TEventListTest, AtOneSampleTheCommandLineComesBeforeTheFile) {
	TEventList events(1000);
	// The file's events lie a hair before the options', at the same sample.
	events.AddFile({{{0.0099, 0x90, 1, 1}, {0.0098, 0xc0, 2, 0}}});
	events.AddNotes({{{61, 100, 0.01, 0.02}, {62, 100, 0.005, 0.01}}});
	EXPECT_EQ(Describe(events.NextBlock(100)), "5:144,62 10:144,61 10:128,62 10:192,2 10:144,1 20:128,61 ");
}

TEST(TEventListTest, TimesBeyondAnySoundNeverCome) {
	TEventList events(384000);
	events.AddFile({{{1e300, 0x90, 1, 1}}});
	EXPECT_EQ(Describe(events.NextBlock(65536)), "");
}

} // namespace
