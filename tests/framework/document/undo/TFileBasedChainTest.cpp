// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/document/undo/TFileBasedChain.h"

#include "framework/foundation/text/TReadableException.h"
#include "tests/framework/document/undo/TUndoDocument.h"
#include "tests/support/TFailingHeap.h"
#include "tests/support/TSmallDisk.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::StartsWith;

namespace {

namespace fs = std::filesystem;

class TFileBasedChainTest : public TUndoFixture {
protected:
	std::vector<std::string> Files() const {
		std::vector<std::string> files;
		for (const auto& entry : fs::recursive_directory_iterator(mFolder.PathOf("")))
			if (entry.is_regular_file())
				files.push_back(entry.path());
		return files;
	}
};

constexpr const char* kDiskError = "There was an error while writing an undo action to disk! (";
constexpr std::size_t kMuch = 100'000;

} // namespace

TEST_F(TFileBasedChainTest, FileComesWithTheFirstStepAndGoesWithTheDocument) {
	EXPECT_TRUE(Files().empty());
	SetNumber(1);
	SetNumber(2);
	ASSERT_EQ(Files().size(), 1u);
	EXPECT_TRUE(Files()[0].ends_with(".tmp"));
	EXPECT_NE(Files()[0].find("Vortel2_TmpPath-"), std::string::npos);
	EXPECT_NE(Files()[0].find("/Vortel2_TmpFile-"), std::string::npos);
	std::ifstream file(Files()[0], std::ios::binary);
	std::string start(43, ' ');
	file.read(start.data(), 43);
	EXPECT_EQ(start.substr(0, 23), std::string("\1\0\0\0\x0f\0\0\0ObservableState", 23));
	EXPECT_EQ(start.substr(27), "<?xml version=\"1");
	mpRoot = nullptr;
	for (const auto& entry : fs::recursive_directory_iterator(mFolder.PathOf("")))
		EXPECT_EQ(entry.path().filename().string().find("_Tmp"), std::string::npos) << entry.path();
}

TEST_F(TFileBasedChainTest, UnusableFolderIsToldOnceAndTheDocumentWorks) {
	UseTemporary(TDirectory("/proc/self/")); // nobody can create anything there
	mFolder.Write("side", "");
	Chain().AddSideFile(mFolder.Path("side"));
	SetNumber(1);
	SetNumber(2);
	EXPECT_EQ(Number(), 2);
	EXPECT_FALSE(mpRoot->CanUndo());
	EXPECT_FALSE(TFile(mFolder.Path("side")).Exists());
	EXPECT_THAT(
	    sTold, ElementsAre("Failed to create or access the system's temporary directory! Undo/Redo is disabled."));
}

TEST_F(TFileBasedChainTest, DamagedStepsAreNotUndone) {
	struct TDamage {
		uintmax_t mOffset;
		std::string mBytes; // empty: the file ends there
		const char* mReason;
	};

	for (const TDamage& damage : {
	         TDamage{8, "Unbeknown", "Failed to create an object of type 'UnbeknowneState'!"},
	         {4, "\xff\xff\xff\x7f", "Unexpected end of file!"},
	         {20, "", "Unexpected end of file!"},
	         {27, "<>", "Failed to parse a memory XML file"},
	         {0, std::string(4, '\0'), nullptr}, // another length than was written
	     }) {
		mpRoot = MakePtr<TUndoRoot>();
		SetNumber(1);
		const fs::path path = Files().at(0);
		const uintmax_t offset = fs::file_size(path) + damage.mOffset;
		SetNumber(2);
		if (damage.mBytes.empty())
			fs::resize_file(path, offset);
		else
			std::fstream(path, std::ios::in | std::ios::out).seekp(static_cast<std::streamoff>(offset))
			    << damage.mBytes;
		mpRoot->Undo();
		EXPECT_EQ(Number(), 2);
		EXPECT_TRUE(mpRoot->CanUndo());
		const std::string error = "There was an error while reading an undo action from disk. Undo/redo failed! (";
		if (damage.mReason)
			EXPECT_THAT(sTold, ElementsAre(StartsWith(error + damage.mReason)));
		else
			EXPECT_TRUE(sTold.empty());
		sTold.clear();
	}
}

TEST_F(TFileBasedChainTest, FullDiskLosesTheStepAndNoOther) {
	TSmallDisk disk("size=512k");
	if (!disk.IsMounted())
		GTEST_SKIP() << TSmallDisk::kNotMounted;
	UseTemporary((*disk).Directory());
	const std::string much(kMuch, 'x');
	const auto step = [&](int number, bool isLarge) {
		mpRoot->BeginAction();
		mpRoot->BeginUndoableAction("Step", true);
		mpRoot->mpTop->mNumber.Set(number);
		if (isLarge)
			mpRoot->mpTop->mpBag->SetData(much.data(), much.size());
		mpRoot->EndAction();
	};
	step(1, false);
	disk.Fill();
	disk->Write("side", "");
	Chain().AddSideFile(disk->Path("side"));
	step(2, true); // would continue the first
	EXPECT_THAT(std::exchange(sTold, {}), ElementsAre(StartsWith(kDiskError)));
	EXPECT_FALSE(TFile(disk->Path("side")).Exists());
	fs::remove(disk->PathOf("filling"));
	step(3, false);
	mpRoot->Undo();
	EXPECT_EQ(Number(), 2) << "does not continue what is lost";
	disk.Fill();
	int number = 2;
	while (sTold.empty() && number < 100) // small ones still fit into the last block of the file
		SetNumber(++number);
	EXPECT_GT(number, 3);
	EXPECT_THAT(std::exchange(sTold, {}), ElementsAre(StartsWith(kDiskError)));
	mpRoot->Undo();
	EXPECT_EQ(Number(), number - 2) << "what is there can be read while the disk is full";
	while (mpRoot->CanUndo() && sTold.empty())
		mpRoot->Undo();
	EXPECT_EQ(Number(), 0);
	mpRoot->Redo();
	EXPECT_EQ(Number(), 1);
	fs::remove(disk->PathOf("filling"));
	step(4, true);
	mpRoot->Undo();
	EXPECT_EQ(Number(), 1) << "with room again, steps are kept again";
	EXPECT_TRUE(sTold.empty());
}

TEST_F(TFileBasedChainTest, StepLacksWhatMemoryHadNoRoomFor) {
	const std::string much(2'000'000, 'x'); // more than the reserve gives at once
	const auto leaf = MakePtr<TUndoLeaf>();
	leaf->mpBag->SetData(much.data(), much.size());
	mpRoot->mpTop->mpLeaves->Insert(&*leaf);
	mpRoot->mpTop->mpLeaves->Insert(new TUndoLeaf);
	{
		TFailingHeap heap;
		heap->mFails = true;
		Do([](TUndoLeaf& top) {
			top.mNumber.Set(1);
			top.mpLeaves->Remove(0);
		});
		EXPECT_THAT(
		    std::exchange(sTold, {}), ElementsAre("Out of memory!\nUndo will not work for the last performed action."));
		Do([&leaf](TUndoLeaf& top) { top.mpLeaves->Insert(&*leaf); });
		EXPECT_THAT(
		    std::exchange(sTold, {}), ElementsAre("Out of memory!\nRedo will not work for the last performed action."));
	}
	const auto& leaves = *mpRoot->mpTop->mpLeaves;
	EXPECT_EQ(leaves.Size(), 2) << "the changes themselves went on";
	mpRoot->Undo();
	EXPECT_EQ(leaves.Size(), 1);
	mpRoot->Undo();
	EXPECT_EQ(Number(), 0);
	mpRoot->Redo();
	EXPECT_EQ(Number(), 1);
	EXPECT_EQ(leaves.Size(), 1) << "what cannot be undone is not done again either";
}

TEST_F(TFileBasedChainTest, StepIsLostWhenMemoryRunsOutAtItsEnd) {
	const std::string much(400'000, 'x'); // as a state it fits into the reserve, the step does not
	mpRoot->BeginAction();
	mpRoot->mpTop->mpBag->SetData(much.data(), much.size());
	for (char c : {'a', 'b', 'c'})
		mpRoot->mpTop->mpBag->SetData(&c, 1);
	mpRoot->mHooks.clear();
	{
		TFailingHeap heap;
		heap->mFails = true;
		std::vector<void*> reserve;
		EXPECT_THROW(for (;;) reserve.push_back(Memory::Allocate("test", 300'000)), TOutOfMemoryException);
		mpRoot->EndAction();
		for (void* block : reserve)
			Memory::Free(block);
	}
	EXPECT_THAT(sTold, ElementsAre("Out of memory!\nUndo will not work for the last performed action."));
	EXPECT_EQ(mpRoot->mHooks, ")");
	EXPECT_FALSE(mpRoot->IsActionOpen());
	EXPECT_FALSE(mpRoot->CanUndo());
	SetNumber(1);
	EXPECT_TRUE(mpRoot->CanUndo());
}
