// SPDX-License-Identifier: GPL-3.0-or-later
// What a host's audio thread calls neither allocates nor locks.
#include "shell/audiounit/TAudioUnitPluginShell.h"
#include "tests/audiounit/TTestSession.h"
#include "tests/plugin/AudioThreadLocks.h"
#include "tests/support/TRealTimeWatch.h"

#include <gtest/gtest.h>

#include <thread>

TEST(AudioUnitRealTimeTest, AudioThreadNeitherAllocatesNorLocks) {
	constexpr UInt32 kBlock = 128;
	TTestUnit unit(MakeTestState(1));
	unit.mInput[0].assign(kBlock, 0.1f);
	unit.mInput[1].assign(kBlock, -0.1f);
	unit.Start(44100.0, kBlock);
	const auto* shell = TAudioUnitPluginShell::Find(unit.Unit());
	const auto locks = LocksOfTheAudioThread(shell->StorageId(), static_cast<TVortelDocument&>(*shell->Document()));
	std::size_t offences = 0;
	std::string first;
	std::thread([&] {
		TFakeBuffers buffers(2, kBlock);
		AudioUnitParameterEvent event{};
		event.eventType = kParameterEvent_Immediate;
		const auto runBlock = [&](UInt32 number) {
			event.parameter = number % 210;
			event.eventValues.immediate = {3, static_cast<float>(number % 7) / 7.0f};
			unit.Call(kAudioUnitScheduleParametersSelect, static_cast<const AudioUnitParameterEvent*>(&event), 1u);
			unit.SetParameter(209 - number % 210, static_cast<float>(number % 5) / 5.0f);
			unit.Parameter(number % 210);
			for (UInt32 i = 0; i < (number % 100 == 7 ? 520u : 3u); ++i) // also more than there is room for
				unit.Midi(0x90, i % 4, 100, i % kBlock);
			if (number % 10 == 0)
				unit.Midi(0xC0, number / 10 % 2, 0, 5);
			unit.mLendsBuffers = number % 3 == 0;
			unit.Set(kAudioUnitProperty_InPlaceProcessing, UInt32{number % 4 == 0});
			unit.Render(buffers, kBlock);
			if (number % 50 == 0)
				unit.Call(kAudioUnitResetSelect, AudioUnitScope{0}, AudioUnitElement{0});
			unit.mBeat += kBlock * 140.0 / 60.0 / 44100.0;
		};
		// Entering the storage takes its lock, by design; here that happens once, outside.
		const TGlobalStorageScope storage(shell->StorageId());
		runBlock(0);
		for (UInt32 block = 1; block < 600; ++block) {
			const TRealTimeWatch watch(locks);
			runBlock(block);
		}
		offences = TRealTimeWatch::NumberOfOffences();
		first = TRealTimeWatch::FirstOffence();
	}).join();
	EXPECT_EQ(offences, 0u) << first;
}
