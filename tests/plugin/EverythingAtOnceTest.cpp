// SPDX-License-Identifier: GPL-3.0-or-later
// All effects, automation, notes, program and scene changes on the audio thread, and a GUI that edits, loads and reads
// at the same time. Run under the thread sanitizer this finds races; on its own it finds what real-time code must not
// do.
#include "framework/foundation/files/TStream.h"
#include "tests/plugin/AudioThreadLocks.h"
#include "tests/plugin/TInstanceDriver.h"
#include "tests/support/TRealTimeWatch.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

namespace {

TStream StreamOf(const std::string& text) {
	return TStream(std::span(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
}

/// The host keeps its session and loads what it kept, or something that has more of everything than there is room for.
void KeepAndLoad(TVortelDocument& document, int32_t turn) {
	TStream stream;
	switch (turn % 3) {
	case 0:
		document.SaveBankChunk(stream);
		return document.LoadBankChunk(stream);
	case 1:
		document.SaveProgramChunk(stream);
		return document.LoadProgramChunk(stream);
	default:
		std::string numbers;
		for (int i = 0; i < 2000; ++i)
			numbers += "0.25 ";
		document.SaveBankChunk(stream);
		document.LoadBankChunk(StreamOf(
		    "<VortelDocument doc_version=\"3\"><Program0><DeviceOrder>" + numbers + "</DeviceOrder><Scene0>" +
		    "<ParameterValues>" + numbers + "</ParameterValues><GaterVolumeSteps>" + numbers +
		    "</GaterVolumeSteps></Scene0></Program0></VortelDocument>"));
		document.LoadBankChunk(stream);
	}
}

/// One round of what a user does, on the GUI's thread.
void EditOnce(TProgramInstance& instance, int32_t round) {
	const TProgramPluginShell::TGuiScope scope(instance.Shell());
	TVortelDocument& document = instance.Document();
	TVortelProgram& program = *document.ActiveProgram();
	for (int32_t id = round % 3; id < TVortelDocument::kNumberOfParameters; id += 3)
		document.SetParameterValue(id, static_cast<float>((round * 37 + id) % 100) / 100.0f);
	program.ActiveSceneIndex().Set(round % 4);
	program.SwapDevices(1 + round % 10, 1 + round * 3 % 10);
	program.TriggerMode().Set(round % 3);
	program.QuantizeFactor().Set(round % 4);
	document.ActiveSequencer()->NumStepsPerBeat().Set(2 + round % 7);
	document.ActiveSequencer()->NumBeats().Set(1 + round % 8);
	document.ActiveSequencer()->Sequence(round % 11).SetStep(round % 16, static_cast<uint8_t>(round % 3));
	document.ActiveScene()->Seed().Set(round);
	document.SoloRow().Set(round % 5 == 0 ? round % 11 : -1);
	document.SceneLocked().Set(round % 4 == 0);
	if (round % 8 == 0)
		document.SetCurrentProgramIndex(round / 8 % 2);
	if (round % 16 == 0) {
		TVortelDocument::TLoadGuard guard(document);
		document.Program(1)->Scene(2)->CopyFrom(*document.Program(0)->Scene(1));
	}
	if (round % 16 == 8)
		KeepAndLoad(document, round / 16);
	for (int32_t id = 0; id < TVortelDocument::kNumberOfParameters; id += 7)
		document.ParameterValue(id);
	instance.Engine().PlayingStep();
	instance.Engine().RandomDevice();
	instance.Engine().Tempo();
}

struct TOutcome {
	bool mIsFinite = true;
	std::size_t mOffences = 0;
	std::string mFirstOffence;
};

TOutcome PlayWhileEditing(TProgramInstance& instance, int32_t blocks) {
	TInstanceDriver driver(instance);
	driver.FillScenes();
	const std::vector<const void*> locks = LocksOfTheAudioThread(instance.Shell().StorageId(), instance.Document());
	TOutcome outcome;
	std::atomic<bool> isPlaying{true};
	std::thread audio([&] {
		// The first block of a thread may look up its storage and make its role's node.
		const TGlobalStorageScope storage(instance.Shell().StorageId());
		driver.BusyBlock(0);
		for (int32_t block = 1; block < blocks; ++block) {
			{
				const TRealTimeWatch watch(locks);
				driver.BusyBlock(block);
			}
			outcome.mIsFinite = outcome.mIsFinite && driver.IsFinite();
		}
		outcome.mOffences = TRealTimeWatch::NumberOfOffences();
		outcome.mFirstOffence = TRealTimeWatch::FirstOffence();
		isPlaying = false;
	});
	for (int32_t round = 0; isPlaying; ++round) {
		EditOnce(instance, round);
		instance.Shell().Tick();
		if (round % 32 == 0)
			instance.Shell().WaitForAudioThread();
		std::this_thread::yield();
	}
	audio.join();
	return outcome;
}

} // namespace

TEST(EverythingAtOnceTest, AudioAndGuiShareADocument) {
	const auto instance = TProgramInstance::Create();
	const TOutcome outcome = PlayWhileEditing(*instance, 2000);
	EXPECT_TRUE(outcome.mIsFinite);
	EXPECT_EQ(outcome.mOffences, 0u) << outcome.mFirstOffence;
}

TEST(EverythingAtOnceTest, TwoInstancesWithTwoThreadsEach) {
	const auto first = TProgramInstance::Create();
	const auto second = TProgramInstance::Create();
	TOutcome outcomeOfSecond;
	std::thread other([&] { outcomeOfSecond = PlayWhileEditing(*second, 700); });
	const TOutcome outcomeOfFirst = PlayWhileEditing(*first, 700);
	other.join();
	for (const TOutcome& outcome : {outcomeOfFirst, outcomeOfSecond}) {
		EXPECT_TRUE(outcome.mIsFinite);
		EXPECT_EQ(outcome.mOffences, 0u) << outcome.mFirstOffence;
	}
}
