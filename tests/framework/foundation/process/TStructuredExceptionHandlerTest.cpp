// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/process/TStructuredExceptionHandler.h"

#include "tests/support/TLogFolder.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using testing::ContainsRegex;

struct TStructuredExceptionHandlerTest : testing::Test {
	[[noreturn]] void Crash() { siglongjmp(mHandler.TopFrame()->mBuffer, 1); }

	TLogFolder mFolder;
	TStructuredExceptionHandler mHandler;
};

} // namespace

TEST_F(TStructuredExceptionHandlerTest, JumpEndsTheInnermostGuardedCallAndIsReported) {
	bool innerReturned = true;
	const bool outerReturned = mHandler.Guard([&] { innerReturned = mHandler.Guard([&] { Crash(); }); });
	EXPECT_FALSE(innerReturned);
	EXPECT_TRUE(outerReturned);
	EXPECT_THAT(mFolder.Logged(), ContainsRegex("CrashLog:   0 0x[0-9a-f]+ - "));
	EXPECT_THROW(mHandler.Guard([] { throw std::runtime_error("passes"); }), std::runtime_error);
	EXPECT_EQ(mHandler.TopFrame(), nullptr);
}

TEST_F(TStructuredExceptionHandlerTest, ReportNamesFunctionsInReadableForm) {
	std::vector<int> values = {2, 1};
	// The C library's sort stands on the stack and is a symbol that every build can name.
	static TStructuredExceptionHandler* spHandler = &mHandler;
	std::qsort(values.data(), values.size(), sizeof(int), [](const void* a, const void* b) {
		spHandler->ReportCrash();
		return *static_cast<const int*>(a) - *static_cast<const int*>(b);
	});
	EXPECT_THAT(mFolder.Logged(), ContainsRegex("CrashLog: +[0-9]+ 0x[0-9a-f]+ - [a-z_]+ \\+ 0x[0-9a-f]+ /"));
}

TEST_F(TStructuredExceptionHandlerTest, RecordsAreZeroedAndStayInPlaceHoweverDeepTheStack) {
	std::vector<TStructuredExceptionHandler::TSigJmpBuffer*> frames;
	for (int i = 0; i < 100; ++i) {
		frames.push_back(mHandler.PushFrame());
		const auto* bytes = reinterpret_cast<const unsigned char*>(frames.back());
		EXPECT_TRUE(std::all_of(bytes, bytes + sizeof *frames.back(), [](int byte) { return byte == 0; }));
		std::memset(frames.back(), 0xFF, sizeof *frames.back());
	}
	std::thread([&] {
		EXPECT_EQ(mHandler.TopFrame(), nullptr) << "each thread has its own stack";
		EXPECT_FALSE(mHandler.Guard([&] { Crash(); }));
	}).join();
	for (; !frames.empty(); frames.pop_back()) {
		EXPECT_EQ(mHandler.TopFrame(), frames.back());
		mHandler.PopFrame();
	}
}
