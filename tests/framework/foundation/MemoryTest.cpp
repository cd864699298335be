// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/Memory.h"

#include "framework/foundation/Framework.h"
#include "framework/foundation/TGlobalStorage.h"
#include "framework/foundation/TReadableException.h"
#include "framework/foundation/TStlAllocator.h"
#include "framework/foundation/TSystemGlobals.h"
#include "framework/foundation/TThreadCommunicator.h"
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

std::size_t ResidentPages(void* memory, std::size_t size) {
	const std::size_t pageSize = Memory::PageSize();
	const std::size_t excess = reinterpret_cast<std::uintptr_t>(memory) % pageSize;
	std::vector<unsigned char> pages((size + excess + pageSize - 1) / pageSize);
	EXPECT_EQ(mincore(static_cast<std::byte*>(memory) - excess, size + excess, pages.data()), 0);
	return static_cast<std::size_t>(std::count_if(pages.begin(), pages.end(), [](int page) { return page & 1; }));
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

	bool thrown = false;
	try {
		Memory::Allocate("test", 2 * kMebibyte);
	} catch (const TOutOfMemoryException&) {
		thrown = true;
	}
	const bool leftPoolAlone = heap->mFrees == 0 && !TThreadCommunicator::Instance()->HasCommandsFor(kMainThread);

	std::memset(Memory::Allocate("test", 1024), 1, 1024);
	const bool gaveReserveBack = heap->mFrees == 1;
	Memory::Allocate("test", 1024);
	const int freesAfterSecondUse = heap->mFrees;
	heap->mFails = false;
	TThreadCommunicator::Instance()->ProcessCommands();
	std::fprintf(
	    stderr, "thrown %d left %d reserve %d %d warnings %d", thrown, leftPoolAlone, gaveReserveBack,
	    freesAfterSecondUse, sWarnings);
	std::_Exit(0);
}

} // namespace

TEST(MemoryDeathTest, FirstUseOfThePoolGivesTheReserveBackAndWarnsOnce) {
	GTEST_FLAG_SET(death_test_style, "threadsafe");
	EXPECT_EXIT(ExhaustTheHeap(), testing::ExitedWithCode(0), "thrown 1 left 1 reserve 1 1 warnings 1");
}

TEST(MemoryTest, SmallRequestsLiveOnInThePool) {
	TFailingHeap heap;
	void* fromHeap = Memory::Allocate("test", 100);
	heap->mFails = true;
	char* block = static_cast<char*>(Memory::Allocate("test", 100));
	std::strcpy(block, "content");
	block = static_cast<char*>(Memory::Reallocate(block, 300000));
	EXPECT_STREQ(block, "content");
	EXPECT_THROW(Memory::Reallocate(block, 8 * kMebibyte), TOutOfMemoryException);
	EXPECT_STREQ(block, "content") << "a failure leaves the old memory";
	EXPECT_THROW(Memory::Reallocate(fromHeap, 200), TOutOfMemoryException);

	const int freesOfHeap = heap->mFrees;
	Memory::Free(block);
	EXPECT_EQ(heap->mFrees, freesOfHeap);
	Memory::Free(fromHeap);
	EXPECT_EQ(heap->mFrees, freesOfHeap + 1);
}

TEST(MemoryTest, ExhaustedPoolThrowsAndRecovers) {
	TFailingHeap heap;
	heap->mFails = true;
	std::vector<void*> blocks;
	const auto fill = [&] {
		for (;;)
			blocks.push_back(Memory::Allocate("test", kMebibyte - 1));
	};
	EXPECT_THROW(fill(), TOutOfMemoryException);
	EXPECT_EQ(blocks.size(), 3u);
	for (void* block : blocks)
		Memory::Free(block);
	Memory::Free(Memory::Allocate("test", kMebibyte - 1));
}

TEST(MemoryTest, NothingAskedNothingGiven) {
	EXPECT_EQ(Memory::Allocate("test", 0), nullptr);
	EXPECT_EQ(Memory::AllocateAligned("test", 0, 16), nullptr);
	Memory::Free(nullptr);
	Memory::FreeAligned(nullptr);
}

TEST(MemoryTest, AlignedBlocksStandOnTheRaisedAlignmentAndKeepNoSparePages) {
	TFailingHeap heap;
	const std::size_t page = Memory::PageSize();
	for (const std::size_t wanted : {1u, 4u, 16u, 17u, 32u, 100u, 4096u, 65536u}) {
		for (const std::size_t size : {1u, 4080u, 4096u, 100000u}) {
			const std::size_t raised = std::max<std::size_t>(std::bit_ceil(wanted), 16);
			void* block = Memory::AllocateAligned("test", size, wanted);
			EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % raised, 0u);
			const std::size_t offset = std::max(raised % page, raised < page ? std::size_t{0} : page);
			EXPECT_EQ(heap->mReservedBytes, (offset + size + page - 1) / page * page) << wanted << " " << size;
			std::memset(block, 1, size);
			Memory::FreeAligned(block);
			EXPECT_EQ(heap->mReservedBytes, 0u);
		}
	}
}

TEST(MemoryTest, LargeAlignedBlocksAreZeroAndNotResidentBeforeTheyAreWritten) {
	constexpr std::size_t kSize = 64 * kMebibyte;
	char* block = static_cast<char*>(Memory::AllocateAligned("test", kSize, 32));
	EXPECT_LE(ResidentPages(block, kSize), 1u);
	EXPECT_TRUE(std::all_of(block, block + 3 * Memory::PageSize(), [](char byte) { return byte == 0; }));
	Memory::FreeAligned(block);
}

TEST(MemoryTest, AlignedBlocksComeFromThePoolWhenThePagesRunOut) {
	TFailingHeap heap;
	heap->mFails = true;
	void* probe = Memory::Allocate("test", 10);
	Memory::Free(probe);
	for (const std::size_t alignment : {4u, 16u, 32u, 4096u}) {
		void* block = Memory::AllocateAligned("test", 1000, alignment);
		EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % std::max<std::size_t>(alignment, 16), 0u);
		std::memset(block, 1, 1000);
		Memory::FreeAligned(block);
		EXPECT_EQ(Memory::Allocate("test", 10), probe) << "the whole pool block came back";
		Memory::Free(probe);
	}
	EXPECT_THROW(Memory::AllocateAligned("test", kMebibyte, 16), TOutOfMemoryException);
}

TEST(MemoryTest, SizesBeyondTheAddressSpaceThrow) {
	EXPECT_THROW(Memory::AllocateAligned("test", SIZE_MAX - 8, 16), TOutOfMemoryException);
	EXPECT_THROW(Memory::AllocateAligned("test", 16, SIZE_MAX), TOutOfMemoryException);
	EXPECT_THROW(TStlAllocator<double>().allocate(SIZE_MAX / 4), TOutOfMemoryException);
}

TEST(MemoryTest, FailureToReleasePagesIsPrintedAndSurvived) {
	TFailingHeap heap;
	heap->mReportsFailedRelease = true;
	testing::internal::CaptureStderr();
	void* block = Memory::AllocateAligned("test", 100, 0x10000);
	std::memset(block, 1, 100);
	Memory::FreeAligned(block);
	const std::string printed = testing::internal::GetCapturedStderr();
	EXPECT_THAT(
	    printed,
	    testing::ContainsRegex("memalign\\(10000, 64\\) failed to deallocate extra (header|footer) space\\.\n"))
	    << "which of the two depends on where the pages lie";
	EXPECT_THAT(printed, testing::ContainsRegex("free_memalign\\(0x[0-9a-f]+\\) failed!\n"));
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
