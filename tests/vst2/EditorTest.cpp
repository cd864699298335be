// SPDX-License-Identifier: GPL-3.0-or-later
// The editor in a VST 2 host's window, on whichever of the host's threads.
#include "tests/support/THostWindow.h"
#include "tests/support/TXvfb.h"
#include "tests/vst2/TVst2Host.h"

#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

namespace {

class Vst2EditorTest : public testing::Test {
protected:
	void SetUp() override {
		if (!mServer.IsRunning())
			GTEST_SKIP() << "Xvfb is not installed";
		mpEffect = std::make_unique<TVst2Effect>(mModule.Make());
		mpEffect->Do(effOpen);
	}

	void Idle(int count = 3) {
		for (; count > 0; --count) {
			std::this_thread::sleep_for(std::chrono::milliseconds(10));
			mpEffect->Do(effEditIdle);
		}
	}

	TXvfb mServer{"2000x700x24"};
	TVst2Host mHost;
	TVst2Module mModule;
	std::unique_ptr<TVst2Effect> mpEffect;
};

TEST_F(Vst2EditorTest, OpensDrawsAndLeavesNothingBehindOnAThreadOfItsOwn) {
	THostWindow window;
	ERect* rect = nullptr;
	ASSERT_EQ(mpEffect->Do(effEditGetRect, 0, 0, &rect), 1);
	EXPECT_EQ(rect->right, THostWindow::kWidth);
	EXPECT_EQ(rect->bottom, THostWindow::kHeight);
	EXPECT_EQ(mpEffect->Do(effEditOpen), 0) << "no parent";
	// Idle, chunks and blocks come on other threads, as with hosts that serve editors on one of their own.
	std::jthread host([&](const std::stop_token& stop) {
		std::vector<float> buffer(512);
		while (!stop.stop_requested()) {
			mpEffect->Process(buffer.data(), buffer.data(), buffer.data(), buffer.data(), 512);
			mpEffect->Load(mpEffect->Chunk());
			std::this_thread::sleep_for(std::chrono::milliseconds(30));
		}
	});
	std::thread([&] {
		for (int round = 0; round < 3; ++round) {
			ASSERT_EQ(mpEffect->Do(effEditOpen, 0, 0, window.Parent()), 1);
			// An idle call that finds the document in use is left out.
			for (int tries = 0; tries < 500 && window.NumberOfColors() <= 100; ++tries)
				Idle(1);
			EXPECT_GT(window.NumberOfColors(), 100u);
			mpEffect->Do(effEditClose);
			EXPECT_EQ(window.NumberOfChildren(), 0);
			Idle();
			mpEffect->Do(effEditClose);
		}
	}).join();
}

TEST_F(Vst2EditorTest, TakesTheOrdersOfHosts) {
	auto window = std::make_unique<THostWindow>();
	EXPECT_EQ(mpEffect->Do(effEditOpen, 0, 0, window->Parent()), 1);
	EXPECT_EQ(mpEffect->Do(effEditOpen, 0, 0, window->Parent()), 1) << "again, without having been closed";
	Idle();
	EXPECT_EQ(window->NumberOfChildren(), 1);
	// The parent goes first.
	window->Destroy();
	Idle(5);
	mpEffect->Do(effEditClose);
	EXPECT_EQ(mpEffect->Do(effEditOpen, 0, 0, window->Parent()), 0) << "there is no such window any more";
	// The effect is closed with the editor open.
	THostWindow other;
	EXPECT_EQ(mpEffect->Do(effEditOpen, 0, 0, other.Parent()), 1);
	Idle();
	mpEffect->Close();
	EXPECT_EQ(other.NumberOfChildren(), 0);
}

} // namespace
