// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelDocument.h"

#include "document/TVortelEffectDevices.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/files/TStream.h"
#include "framework/foundation/values/TRandom.h"
#include "tests/support/TDocumentFixture.h"

#include <cmath>
#include <cstdlib>
#include <future>
#include <limits>
#include <string>
#include <thread>
#include <vector>

namespace {

/// Notes each firing of the three bangs by a letter.
class TBangWatcher final : public TObserver {
public:
	explicit TBangWatcher(TVortelDocument& document) : mDocument(document) {
		document.ProgramChangedBang().AddObserver({this, &TBangWatcher::OnBang});
		document.SceneChangedBang().AddObserver({this, &TBangWatcher::OnBang});
		document.SequenceChangedBang().AddObserver({this, &TBangWatcher::OnBang});
	}

	void OnBang(TObservable* bang, int32_t reason) {
		if (reason != kDidChange)
			return;
		if (bang == &mDocument.ProgramChangedBang())
			mSeen += 'p';
		else
			mSeen += bang == &mDocument.SceneChangedBang() ? 's' : 'q';
	}

	std::string Take() { return std::exchange(mSeen, std::string()); }

private:
	TVortelDocument& mDocument;
	std::string mSeen;
};

class TNameWatcher final : public TObserver {
public:
	void OnChange(TObservable*, int32_t reason) { mCount += reason == kDidChange; }

	int mCount = 0;
};

} // namespace

class TVortelDocumentTest : public TDocumentFixture {
protected:
	TVortelSequence& Row(int32_t device) { return mpDocument->ActiveSequencer()->Sequence(device); }

	void SelectScene(int32_t index) { mpDocument->ActiveProgram()->ActiveSceneIndex().Set(index); }
};

TEST_F(TVortelDocumentTest, StartsWithSixteenInitPrograms) {
	EXPECT_EQ(mpDocument->ActiveProgram(), mpDocument->Program(0));
	EXPECT_EQ(mpDocument->ActiveScene(), mpDocument->Program(0)->Scene(0));
	for (int32_t i = 0; i < TVortelDocument::kNumberOfPrograms; ++i) {
		EXPECT_EQ(mpDocument->ProgramName(i), TString("Init"));
		EXPECT_TRUE(mpDocument->Program(i)->IsInitialized());
		EXPECT_EQ(mpDocument->Program(i)->Scene(127)->Seed().Get(), 128 * 31337);
		EXPECT_EQ(mpDocument->Program(i)->Scene(127)->ParameterValue(58), TVortelParameterTable::Defaults()[58]);
	}
	EXPECT_EQ(mpDocument->SoloRow().Get(), -1);
	EXPECT_EQ(mpDocument->ProductVersion(), 131333);
	EXPECT_EQ(mpDocument->UniqueId(), 0x6B6D7137); // "kmq7"
}

TEST_F(TVortelDocumentTest, TheTreeHoldsProgramsAndScenesByName) {
	EXPECT_EQ(mpDocument->ChildAtPath("/Program15/Scene127"), mpDocument->Program(15)->Scene(127));
	EXPECT_EQ(mpDocument->ChildAtPath("/Program3/Scene0/Sequencer"), mpDocument->Program(3)->Scene(0)->Sequencer());
	EXPECT_EQ(mpDocument->ValueAtPath("/ActiveProgramIndex"), mpDocument->CurrentProgramIndexValue());
	EXPECT_EQ(mpDocument->ElementName(), TString("VortelDocument"));
	EXPECT_EQ(mpDocument->Program(0)->ElementName(), TString("VortelProgram"));
	std::string names;
	for (const auto& member : mpDocument->Program(0)->Properties())
		names += std::string(member.mName.CString()) + " ";
	EXPECT_EQ(
	    names, "Name QuantizeFactor TriggerMode MasterMix MasterPanning MasterVolume DeviceOrder ActiveSceneIndex "
	           "SoftClip ");
	EXPECT_EQ(mpDocument->Children()[0].mName, TString("TempProgram"));
	EXPECT_EQ(mpDocument->Children()[0].mFlags, 0u);
}

TEST_F(TVortelDocumentTest, FollowsTheActiveProgramAndScene) {
	const auto watcher = MakePtr<TBangWatcher>(*mpDocument);
	SelectScene(3);
	EXPECT_EQ(mpDocument->ActiveScene(), mpDocument->Program(0)->Scene(3));
	EXPECT_EQ(watcher->Take(), "sq");
	mpDocument->SetCurrentProgramIndex(2);
	EXPECT_EQ(mpDocument->ActiveScene(), mpDocument->Program(2)->Scene(0));
	EXPECT_EQ(watcher->Take(), "sqp");
	// A program that is no longer active is not followed any more.
	mpDocument->Program(0)->ActiveSceneIndex().Set(9);
	EXPECT_EQ(watcher->Take(), "");
	mpDocument->ActiveProgramIndex().ForceSet(2);
	EXPECT_EQ(watcher->Take(), "");
}

TEST_F(TVortelDocumentTest, UnknownIndicesReadAsNothingAndSetNothing) {
	for (const int32_t index : {-1, 16, 210, std::numeric_limits<int32_t>::max()}) {
		mpDocument->SetCurrentProgramIndex(index);
		mpDocument->SetProgramName(index, "x");
		EXPECT_TRUE(mpDocument->ProgramName(index).IsEmpty());
	}
	for (const int32_t id : {-1, 210, std::numeric_limits<int32_t>::min()}) {
		float value = 0.5f;
		mpDocument->SetParameterValue(id, 1.0f);
		EXPECT_EQ(mpDocument->ParameterValue(id), 0.0f);
		EXPECT_EQ(mpDocument->ParameterObservable(id), nullptr);
		EXPECT_TRUE(mpDocument->ParameterValueText(id, 0.5f).IsEmpty());
		EXPECT_FALSE(mpDocument->ParameterValueFromText(id, "1", value));
		EXPECT_TRUE(mpDocument->ParameterName(id).mName.IsEmpty());
	}
	EXPECT_EQ(mpDocument->CurrentProgramIndex(), 0);
	mpDocument->SetParameterValue(18, std::numeric_limits<float>::quiet_NaN());
	EXPECT_EQ(mpDocument->ParameterValue(18), 0.0f);
	mpDocument->SetParameterValue(18, 7.0f);
	EXPECT_EQ(mpDocument->ParameterValue(18), 1.0f);
	// What a file may hold
	mpDocument->ActiveProgramIndex().Set(1 << 20);
	EXPECT_EQ(mpDocument->ActiveProgram(), mpDocument->Program(15));
	SelectScene(-7);
	EXPECT_EQ(mpDocument->ActiveScene(), mpDocument->Program(15)->Scene(0));
}

TEST_F(TVortelDocumentTest, ProgramNamesChangeWithoutTheProgramBang) {
	const auto names = MakePtr<TNameWatcher>();
	const auto bangs = MakePtr<TBangWatcher>(*mpDocument);
	mpDocument->ProgramNameChangedBang()->AddObserver({names.Get(), &TNameWatcher::OnChange});
	mpDocument->SetProgramName(4, "Lead");
	EXPECT_EQ(mpDocument->Program(4)->Name().Get(), TString("Lead"));
	EXPECT_EQ(names->mCount, 1);
	EXPECT_EQ(bangs->Take(), "");
	for (const int32_t program : {4, 5}) // only programs with a pattern are kept
		mpDocument->Program(program)->Scene(0)->Sequencer()->Sequence(1).SetStep(0, 1);
	TStream bank;
	mpDocument->SaveBankChunk(bank);
	mpDocument->LoadBankChunk(bank);
	EXPECT_EQ(names->mCount, 1);
	mpDocument->SetProgramName(4, "Bass");
	mpDocument->SetProgramName(5, "Pad");
	mpDocument->LoadBankChunk(bank);
	EXPECT_EQ(names->mCount, 4);
}

TEST_F(TVortelDocumentTest, NewDocumentLeavesTheGeneratorsOfOthersAlone) {
	std::srand(1);
	const int next = std::rand();
	std::srand(1);
	TRandom::SetState(1);
	const double nextOfOurs = TRandom::Next();
	TRandom::SetState(1);
	const int32_t other = TGlobalStorage::CreateStorage();
	{
		const TGlobalStorageScope scope(other);
		InitializeFramework();
		MakePtr<TVortelDocument>();
		FinalizeFramework();
	}
	TGlobalStorage::DestroyStorage(other);
	EXPECT_EQ(std::rand(), next);
	EXPECT_EQ(TRandom::Next(), nextOfOurs);
}

TEST_F(TVortelDocumentTest, ParametersAsAHostSeesThem) {
	EXPECT_EQ(mpDocument->ParameterName(15).mName, TString("MOD:Freq"));
	EXPECT_EQ(mpDocument->ParameterName(15).mUnit, TString("Hz"));
	EXPECT_EQ(mpDocument->ParameterValueText(58, 0.0f), TString("1 beat"));
	float value = 0.0f;
	EXPECT_TRUE(mpDocument->ParameterValueFromText(58, "1 / 256th", value));
	EXPECT_EQ(value, 1.0f);
	EXPECT_EQ(mpDocument->ParameterObservable(58), &mpDocument->Parameter(58)->ChangedBang());
}

TEST_F(TVortelDocumentTest, ClipboardsAreFilledFromTheStart) {
	Row(3).SetStep(0, kStepBlockStart);
	mpDocument->SetParameterValue(58, 0.0f);
	mpDocument->PasteSequence();
	EXPECT_TRUE(Row(3).IsEmpty());
	mpDocument->PasteEffects();
	EXPECT_EQ(mpDocument->ParameterValue(58), TVortelParameterTable::Defaults()[58]);
	SelectScene(6);
	mpDocument->PasteScene();
	EXPECT_EQ(mpDocument->ActiveScene()->Seed().Get(), 31337);
	mpDocument->SetProgramName(0, "x");
	mpDocument->PasteProgram();
	EXPECT_EQ(mpDocument->ProgramName(0), TString("Init"));
	EXPECT_EQ(mpDocument->ActiveScene(), mpDocument->Program(0)->Scene(0));
}

TEST_F(TVortelDocumentTest, SceneCommands) {
	const auto watcher = MakePtr<TBangWatcher>(*mpDocument);
	SelectScene(2);
	Row(1).SetStep(0, kStepBlockStart);
	mpDocument->SetParameterValue(110, 0.25f);
	mpDocument->CopyScene();
	mpDocument->CopyEffects();
	watcher->Take();
	mpDocument->InitScene();
	EXPECT_EQ(watcher->Take(), "sq");
	EXPECT_TRUE(Row(1).IsEmpty());
	EXPECT_EQ(mpDocument->ParameterValue(110), 0.5f);
	EXPECT_EQ(mpDocument->ActiveScene()->Seed().Get(), 3 * 31337);
	mpDocument->PasteEffects();
	EXPECT_EQ(mpDocument->ParameterValue(110), 0.25f);
	EXPECT_TRUE(Row(1).IsEmpty());
	mpDocument->InitEffects();
	EXPECT_EQ(mpDocument->ParameterValue(110), 0.5f);
	mpDocument->PasteScene();
	EXPECT_EQ(mpDocument->ParameterValue(110), 0.25f);
	EXPECT_EQ(Row(1).Step(0), kStepBlockStart);
}

TEST_F(TVortelDocumentTest, ProgramCommands) {
	const auto watcher = MakePtr<TBangWatcher>(*mpDocument);
	mpDocument->SetCurrentProgramIndex(5);
	mpDocument->ActiveProgram()->SwapDevices(1, 2);
	SelectScene(4);
	mpDocument->SelectedDevice().Set(3);
	mpDocument->CopyProgram();
	watcher->Take();
	mpDocument->InitProgram();
	EXPECT_EQ(watcher->Take(), "sqpsq"); // the scene index goes back first
	EXPECT_EQ(mpDocument->ActiveScene(), mpDocument->Program(5)->Scene(0));
	EXPECT_EQ(mpDocument->SelectedDevice().Get(), 0);
	mpDocument->PasteProgram();
	EXPECT_EQ(mpDocument->ActiveProgram()->DeviceAtPosition(1), 2);
	EXPECT_EQ(mpDocument->ActiveScene(), mpDocument->Program(5)->Scene(4));
	mpDocument->InitAllPrograms();
	EXPECT_EQ(mpDocument->ActiveScene(), mpDocument->Program(0)->Scene(0));
	EXPECT_TRUE(mpDocument->Program(5)->IsInitialized());
}

TEST_F(TVortelDocumentTest, SequenceCommands) {
	const auto watcher = MakePtr<TBangWatcher>(*mpDocument);
	Row(2).FromString("*+");
	mpDocument->CopySequence();
	mpDocument->InitSequence();
	Row(4).FromString("-*");
	mpDocument->MixPasteSequence();
	mpDocument->MirrorSequence();
	EXPECT_EQ(watcher->Take(), "qqq");
	EXPECT_EQ(Row(2).Step(14), kStepBlockStart);
	EXPECT_EQ(Row(2).Step(15), kStepBlockContinue);
	EXPECT_EQ(Row(4).Step(14), kStepBlockStart);
	mpDocument->ActiveSequencer()->NumBeats().Set(1 << 20); // as a damaged file would
	mpDocument->MirrorSequence();
	EXPECT_EQ(Row(2).Step(48), kStepBlockStart);
}

TEST_F(TVortelDocumentTest, RandomCommandsTellOfTheirOwnChange) {
	const auto watcher = MakePtr<TBangWatcher>(*mpDocument);
	const auto bangsAfter = [&](void (TVortelDocument::*command)()) {
		(mpDocument.Get()->*command)();
		return watcher->Take();
	};
	EXPECT_EQ(bangsAfter(&TVortelDocument::RandomizeProgramName), "p");
	EXPECT_EQ(bangsAfter(&TVortelDocument::RandomizeSeed), "");
	EXPECT_EQ(bangsAfter(&TVortelDocument::RandomizeEffects), "s");
	EXPECT_EQ(bangsAfter(&TVortelDocument::MutateEffects), "s");
	EXPECT_EQ(bangsAfter(&TVortelDocument::MutateSequence), "q");
	EXPECT_EQ(bangsAfter(&TVortelDocument::MutateScene), "sq");
	EXPECT_TRUE(bangsAfter(&TVortelDocument::RandomizeAllPrograms).ends_with("psq"));
}

TEST_F(TVortelDocumentTest, FlipFollowsTheOrderOfTheDevices) {
	Row(0).SetStep(0, kStepBlockStart);
	Row(5).SetStep(5, kStepBlockStart);
	mpDocument->FlipSequence();
	EXPECT_EQ(Row(10).Step(0), kStepBlockStart);
	EXPECT_TRUE(Row(0).IsEmpty());
	EXPECT_EQ(Row(5).Step(5), kStepBlockStart);
	mpDocument->ActiveProgram()->MoveDevice(10, 1);
	mpDocument->FlipSequence(); // device 10, now second, changes places with device 8, now last but one
	EXPECT_EQ(Row(8).Step(0), kStepBlockStart);
	EXPECT_TRUE(Row(10).IsEmpty());
}

TEST_F(TVortelDocumentTest, LoadGuardWaitsForTheBlockThatRuns) {
	std::promise<void> insideBlock;
	std::promise<void> endBlock;
	std::atomic<bool> blockEnded{false};
	std::thread audio([&] {
		const TCriticalSection::TGuard block(mpDocument->AudioLock());
		insideBlock.set_value();
		endBlock.get_future().wait();
		blockEnded = true;
	});
	insideBlock.get_future().wait();
	std::thread releaser([&] {
		while (!mpDocument->IsLoading()) // the flag stands before the guard waits
			std::this_thread::yield();
		endBlock.set_value();
	});
	{
		const TVortelDocument::TLoadGuard guard(*mpDocument);
		EXPECT_TRUE(blockEnded);
		EXPECT_TRUE(mpDocument->AudioLock().try_lock());
		mpDocument->AudioLock().unlock();
		{ const TVortelDocument::TLoadGuard inner(*mpDocument); }
		EXPECT_TRUE(mpDocument->IsLoading());
	}
	EXPECT_FALSE(mpDocument->IsLoading());
	audio.join();
	releaser.join();
}

TEST_F(TVortelDocumentTest, EndOfALoadTellsEveryone) {
	const auto watcher = MakePtr<TBangWatcher>(*mpDocument);
	mpDocument->OnLoadEnd(true);
	EXPECT_EQ(watcher->Take(), "psq");
}

TEST_F(TVortelDocumentTest, ProgramChangeFromTheAudioThreadReachesTheModelOnTheMainThread) {
	std::thread([this] {
		const TGlobalStorageScope storage(StorageId());
		const TThreadManager::TScope role(kAudioThread, -1);
		mpDocument->SetCurrentProgramIndex(9);
		EXPECT_EQ(mpDocument->ActiveProgram(), mpDocument->Program(0));
	}).join();
	TThreadCommunicator::Instance()->ProcessCommands();
	EXPECT_EQ(mpDocument->ActiveProgram(), mpDocument->Program(9));
	EXPECT_EQ(mpDocument->RetriggerDevice()->Scene(), mpDocument->Program(9)->Scene(0));
}

TEST_F(TVortelDocumentTest, AutomationOnTheAudioThreadWhileTheUserEdits) {
	std::atomic<bool> done{false};
	std::thread audio([&] {
		const TGlobalStorageScope storage(StorageId());
		const TVortelValueConverter* speed = mpDocument->RetriggerDevice()->mpTimeA->Converter();
		for (int i = 0; !done; ++i) {
			const TThreadManager::TScope role(kAudioThread, -1);
			TThreadCommunicator::Instance()->ProcessCommands();
			mpDocument->SetParameterValue(57, static_cast<float>(i % 4) / 3.0f);
			const TVortelScene* scene = mpDocument->ActiveScene();
			const float real = speed->RealFromNormalized(scene->ParameterValue(58));
			EXPECT_TRUE(real >= 4.0f && real <= 256.0f);
			EXPECT_LE(scene->Sequencer()->Sequence(3).Step(i % 80), kStepBlockContinue);
			EXPECT_EQ(mpDocument->ActiveProgram()->DeviceAtPosition(0), 0);
		}
	});
	for (int i = 0; i < 200; ++i) {
		TThreadCommunicator::Instance()->ProcessCommands();
		mpDocument->SetCurrentProgramIndex(i % 3);
		SelectScene(i % 7);
		Row(3).Randomize(1, 4);
		mpDocument->ActiveProgram()->RandomizeDeviceOrder();
		mpDocument->SetParameterValue(58, static_cast<float>(i % 10) / 9.0f);
		EXPECT_FALSE(mpDocument->Parameter(58)->ValueText().IsEmpty());
	}
	done = true;
	audio.join();
}
