// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/memory/Memory.h"

#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/foundation/memory/TStlAllocator.h"
#include "framework/foundation/process/Framework.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/foundation/text/TReadableException.h"
#include "tests/support/TFailingHeap.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <vector>

namespace {

constexpr std::size_t kMebibyte = 0x100000;

void* Allocate(std::size_t size) {
	return Memory::Allocate("test", size);
}

void* AllocateAligned(std::size_t size, std::size_t alignment) {
	return Memory::AllocateAligned("test", size, alignment);
}

bool IsAligned(const void* memory, std::size_t alignment) {
	return std::bit_cast<std::uintptr_t>(memory) % alignment == 0;
}

int sWarnings = 0;

void CountWarning(const TString& title, const TString& text, TMessageKind kind) {
	if (kind == kWarningMessage && title == "Warning" && text.Find("!restart! Vortel2.\n\nThis message") > 0)
		++sWarnings;
}

/// Runs in a process of its own, since the low-memory step happens once in the life of a process.
[[noreturn]] void ExhaustTheHeap() {
	const TGlobalStorageScope scope(TGlobalStorage::CreateStorage());
	InitializeFramework();
	TSystemGlobals::Instance()->SetMessageDialogFunction(&CountWarning);
	TFailingHeap heap;
	heap->mFails = true;
	EXPECT_THROW(Allocate(2 * kMebibyte), TOutOfMemoryException);
	const bool leftPoolAlone = heap->mFrees == 0 && !TThreadCommunicator::Instance()->HasCommandsFor(kMainThread);
	std::memset(Allocate(1024), 1, 1024);
	const int freesAfterFirstUse = heap->mFrees;
	Allocate(1024);
	const int freesAfterSecondUse = heap->mFrees;
	heap->mFails = false;
	TThreadCommunicator::Instance()->ProcessCommands();
	std::fprintf(
	    stderr, "left %d reserve %d %d warnings %d", leftPoolAlone, freesAfterFirstUse, freesAfterSecondUse, sWarnings);
	std::_Exit(testing::Test::HasFailure() ? 1 : 0);
}

} // namespace

TEST(MemoryDeathTest, FirstUseOfThePoolGivesTheReserveBackAndWarnsOnce) {
	GTEST_FLAG_SET(death_test_style, "threadsafe");
	EXPECT_EXIT(ExhaustTheHeap(), testing::ExitedWithCode(0), "left 1 reserve 1 1 warnings 1");
}

TEST(MemoryTest, SmallRequestsLiveOnInThePool) {
	TFailingHeap heap;
	void* fromHeap = Allocate(100);
	heap->mFails = true;
	char* block = static_cast<char*>(Allocate(100));
	std::strcpy(block, "content");
	block = static_cast<char*>(Memory::Reallocate(block, 300000));
	EXPECT_THROW(Memory::Reallocate(block, 8 * kMebibyte), TOutOfMemoryException);
	EXPECT_STREQ(block, "content") << "a failure leaves the old memory";
	EXPECT_THROW(Memory::Reallocate(fromHeap, 200), TOutOfMemoryException);

	const int freesOfHeap = heap->mFrees;
	Memory::Free(block);
	EXPECT_EQ(heap->mFrees, freesOfHeap);
	Memory::Free(fromHeap);
	EXPECT_EQ(heap->mFrees, freesOfHeap + 1);
}

TEST(MemoryTest, SizesOfNothingAndBeyondTheAddressSpace) {
	EXPECT_EQ(Allocate(0), nullptr);
	EXPECT_EQ(AllocateAligned(0, 16), nullptr);
	Memory::Free(nullptr);
	Memory::FreeAligned(nullptr);
	EXPECT_THROW(AllocateAligned(SIZE_MAX - 8, 16), TOutOfMemoryException);
	EXPECT_THROW(AllocateAligned(16, SIZE_MAX), TOutOfMemoryException);
	EXPECT_THROW(TStlAllocator<double>().allocate(SIZE_MAX / 4), TOutOfMemoryException);
}

TEST(MemoryTest, AlignedBlocksStandOnTheRaisedAlignmentAndKeepNoSparePages) {
	TFailingHeap heap;
	const std::size_t page = Memory::PageSize();
	for (const std::size_t wanted : {1u, 4u, 16u, 17u, 32u, 100u, 4096u, 65536u}) {
		for (const std::size_t size : {1u, 4080u, 4096u, 100000u}) {
			const std::size_t raised = std::max<std::size_t>(std::bit_ceil(wanted), 16);
			void* block = AllocateAligned(size, wanted);
			EXPECT_TRUE(IsAligned(block, raised));
			const std::size_t offset = std::max(raised % page, raised < page ? std::size_t{0} : page);
			EXPECT_EQ(heap->mReservedBytes, (offset + size + page - 1) / page * page) << wanted << " " << size;
			std::memset(block, 1, size);
			Memory::FreeAligned(block);
			EXPECT_EQ(heap->mReservedBytes, 0u);
		}
	}
}

TEST(MemoryTest, LargeAlignedBlocksAreZeroAndNotResidentBeforeTheyAreWritten) {
	const std::size_t page = Memory::PageSize();
	char* block = static_cast<char*>(AllocateAligned(64 * kMebibyte, page));
	std::vector<unsigned char> isResident(64 * kMebibyte / page);
	ASSERT_EQ(mincore(block, 64 * kMebibyte, isResident.data()), 0);
	EXPECT_EQ(std::ranges::count_if(isResident, [](int flags) { return flags & 1; }), 0);
	EXPECT_TRUE(std::all_of(block, block + 3 * page, [](char byte) { return byte == 0; }));
	Memory::FreeAligned(block);
}

TEST(MemoryTest, AlignedBlocksComeFromThePoolWhenThePagesRunOut) {
	TFailingHeap heap;
	heap->mFails = true;
	void* probe = Allocate(10);
	Memory::Free(probe);
	for (const std::size_t alignment : {4u, 16u, 32u, 4096u}) {
		void* block = AllocateAligned(1000, alignment);
		EXPECT_TRUE(IsAligned(block, std::max<std::size_t>(alignment, 16)));
		std::memset(block, 1, 1000);
		Memory::FreeAligned(block);
		EXPECT_EQ(Allocate(10), probe) << "the whole pool block came back";
		Memory::Free(probe);
	}
	EXPECT_THROW(AllocateAligned(kMebibyte, 16), TOutOfMemoryException);
}

TEST(MemoryTest, FailureToReleasePagesIsPrintedAndSurvived) {
	TFailingHeap heap;
	heap->mReportsFailedRelease = true;
	testing::internal::CaptureStderr();
	Memory::FreeAligned(AllocateAligned(100, 0x10000));
	// Which of the two is spare depends on where the pages lie.
	EXPECT_THAT(
	    testing::internal::GetCapturedStderr(),
	    testing::ContainsRegex("memalign\\(10000, 64\\) failed to deallocate extra (header|footer) space\\.\n"
	                           "(.*\n)?free_memalign\\(0x[0-9a-f]+\\) failed!\n"));
}

TEST(MemoryTest, OutOfMemoryExceptionIsReadyBeforehand) {
	TOutOfMemoryException::PrepareMessage();
	{
		TFailingHeap heap;
		heap->mFails = true;
		const TOutOfMemoryException exception;
		EXPECT_EQ(heap->mAllocations, 0);
		EXPECT_EQ(exception.Message(), "Out of Memory! Please try to free up some memory and try again.");
	}
	TOutOfMemoryException::ReleaseMessage();
	EXPECT_TRUE(TOutOfMemoryException().Message().IsEmpty());
}
