// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelProgram.h"

#include "tests/support/TFrameworkFixture.h"
#include "tests/support/TJournal.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

class TVortelProgramTest : public TFrameworkFixture {
protected:
	void SetUp() override {
		TFrameworkFixture::SetUp();
		mpProgram = MakePtr<TVortelProgram>();
		mpProgram->Init(true);
	}

	void TearDown() override {
		mpProgram = nullptr;
		TFrameworkFixture::TearDown();
	}

	std::vector<int32_t> Order() const {
		std::vector<int32_t> order;
		for (int32_t position = 0; position < TVortelProgram::kNumberOfDevices; ++position)
			order.push_back(mpProgram->DeviceAtPosition(position));
		return order;
	}

	const std::vector<int32_t> kIdentity = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
	TPtr<TVortelProgram> mpProgram;
};

TEST_F(TVortelProgramTest, MovingAndSwappingKeepThePermutation) {
	TJournal journal;
	journal.Watch(mpProgram->DeviceOrderChanged(), [this](auto*, int32_t) {
		return ":" + std::to_string(mpProgram->DeviceAtPosition(2));
	});
	mpProgram->MoveDevice(2, 5);
	EXPECT_EQ(journal.Told(), "2:2 3:3 ") << "in whole between its two notifications";
	EXPECT_EQ(Order(), (std::vector<int32_t>{0, 1, 3, 4, 5, 2, 6, 7, 8, 9, 10}));
	mpProgram->MoveDevice(5, 2);
	EXPECT_EQ(Order(), kIdentity);
	mpProgram->SwapDevices(1, 10);
	EXPECT_EQ(mpProgram->PositionOfDevice(1), 10);
	EXPECT_EQ(mpProgram->PositionOfDevice(11), -1);

	const auto before = Order();
	mpProgram->SwapDevices(0, 3);
	mpProgram->MoveDevice(0, 3);
	mpProgram->MoveDevice(3, 11);
	mpProgram->MoveDevice(-1, 3);
	EXPECT_FALSE(mpProgram->SetDeviceOrder({1, 0, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
	EXPECT_FALSE(mpProgram->SetDeviceOrder({0, 1, 1, 3, 4, 5, 6, 7, 8, 9, 10}));
	EXPECT_EQ(Order(), before);
}

TEST_F(TVortelProgramTest, RandomOrderIsAPermutationThatLeavesDevice0InFront) {
	for (int pass = 0; pass < 200; ++pass) {
		mpProgram->RandomizeDeviceOrder();
		const auto order = Order();
		EXPECT_EQ(order[0], 0);
		EXPECT_TRUE(std::is_permutation(order.begin(), order.end(), kIdentity.begin()));
	}
	EXPECT_NE(Order(), kIdentity);
}

TEST_F(TVortelProgramTest, LoadedMembersAreNotTrusted) {
	const auto loadOrder = [this](const char* text) {
		mpProgram->DeviceOrder().FromString(text);
		mpProgram->OnLoadEnd(true);
	};
	loadOrder("0 10 9 8 7 6 5 4 3 2 1");
	EXPECT_EQ(Order(), (std::vector<int32_t>{0, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1}));
	TJournal journal;
	journal.Watch(mpProgram->DeviceOrderChanged(), [](auto*, int32_t) { return ""; });
	for (const char* damaged :
	     {"0 1 2 3 4 5 6 7 8 9", "", "1 0 2 3 4 5 6 7 8 9 10", "0 1 2 3 4 5 6 7 8 9 11", "0 1 1 3 4 5 6 7 8 9 10",
	      "0 10 9 8 7 6 5 4 3 2 1 0", "0 10 9 8 7 6 5 4 3 2 -1", "0 x 2 3"}) {
		loadOrder(damaged);
		EXPECT_EQ(Order(), kIdentity) << damaged;
		EXPECT_EQ(journal.Told(), "3 ") << damaged;
		EXPECT_EQ(mpProgram->DeviceOrder().Count(), 11);
	}
	mpProgram->DeviceOrder().FromString("0 99"); // while it is read
	EXPECT_EQ(mpProgram->DeviceAtPosition(1), 0);
	EXPECT_EQ(mpProgram->DeviceAtPosition(5), 0);

	mpProgram->TriggerMode().Set(99);
	mpProgram->OnLoadEnd(true);
	EXPECT_EQ(mpProgram->TriggerMode().Get(), kTriggerLatch);
	mpProgram->ActiveSceneIndex().Set(1 << 30);
	EXPECT_EQ(mpProgram->ActiveScene(), mpProgram->Scene(127));
	mpProgram->ActiveSceneIndex().Set(-5);
	EXPECT_EQ(mpProgram->ActiveScene(), mpProgram->Scene(0));
}

TEST_F(TVortelProgramTest, EverythingButTheNameMakesAProgramWorthSaving) {
	mpProgram->Name().Set("Renamed");
	mpProgram->ActiveSceneIndex().Set(3);
	EXPECT_TRUE(mpProgram->IsSkippedOnSave());

	const std::function<void(TVortelProgram&)> kChanges[] = {
	    [](TVortelProgram& program) { program.QuantizeFactor().Set(1); },
	    [](TVortelProgram& program) { program.TriggerMode().Set(1); },
	    [](TVortelProgram& program) { program.MasterMix().Set(0.5f); },
	    [](TVortelProgram& program) { program.MasterPanning().Set(0.25f); },
	    [](TVortelProgram& program) { program.MasterVolume().Set(0.25f); },
	    [](TVortelProgram& program) { program.SoftClip().Set(true); },
	    [](TVortelProgram& program) { program.SwapDevices(9, 10); },
	    [](TVortelProgram& program) { program.Scene(127)->Sequencer()->NumBeats().Set(1); }};
	const auto copy = MakePtr<TVortelProgram>();
	for (const auto& change : kChanges) {
		mpProgram->Init(true);
		change(*mpProgram);
		EXPECT_FALSE(mpProgram->IsSkippedOnSave());
		copy->CopyFrom(*mpProgram);
		EXPECT_FALSE(copy->IsInitialized());
	}
}
