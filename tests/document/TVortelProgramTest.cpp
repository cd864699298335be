// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelProgram.h"

#include "tests/support/TFrameworkFixture.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

/// Notes each reason, and the device that stands at position 1 at that time.
class TOrderWatcher final : public TObserver {
public:
	explicit TOrderWatcher(TVortelProgram& program) : mProgram(program) {
		program.DeviceOrderChanged().AddObserver({this, &TOrderWatcher::OnOrder});
	}

	void OnOrder(TObservable*, int32_t reason) {
		if (reason == kWillChange || reason == kDidChange)
			mSeen.emplace_back(reason, mProgram.DeviceAtPosition(1));
	}

	TVortelProgram& mProgram;
	std::vector<std::pair<int32_t, int32_t>> mSeen;
};

} // namespace

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

	void LoadOrder(const char* text) {
		mpProgram->DeviceOrder().FromString(text);
		mpProgram->OnLoadEnd(true);
	}

	const std::vector<int32_t> kIdentity = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
	TPtr<TVortelProgram> mpProgram;
};

TEST_F(TVortelProgramTest, InitGivesEachSceneASeedOfItsOwn) {
	for (int32_t i = 0; i < TVortelProgram::kNumberOfScenes; ++i)
		EXPECT_EQ(mpProgram->Scene(i)->Seed().Get(), (i + 1) * 31337);
	EXPECT_TRUE(mpProgram->IsInitialized());
}

TEST_F(TVortelProgramTest, MovingAndSwappingKeepThePermutation) {
	mpProgram->MoveDevice(2, 5);
	EXPECT_EQ(Order(), (std::vector<int32_t>{0, 1, 3, 4, 5, 2, 6, 7, 8, 9, 10}));
	mpProgram->MoveDevice(5, 2);
	EXPECT_EQ(Order(), kIdentity);
	mpProgram->SwapDevices(1, 10);
	EXPECT_EQ(mpProgram->PositionOfDevice(1), 10);
	EXPECT_EQ(mpProgram->PositionOfDevice(11), -1);
	EXPECT_FALSE(mpProgram->IsInitialized());

	const auto before = Order();
	mpProgram->SwapDevices(0, 3);
	mpProgram->MoveDevice(0, 3);
	mpProgram->MoveDevice(3, 11);
	mpProgram->MoveDevice(-1, 3);
	EXPECT_EQ(Order(), before);
	EXPECT_FALSE(mpProgram->SetDeviceOrder({1, 0, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
	EXPECT_FALSE(mpProgram->SetDeviceOrder({0, 1, 1, 3, 4, 5, 6, 7, 8, 9, 10}));
	EXPECT_EQ(Order(), before);
	EXPECT_TRUE(mpProgram->SetDeviceOrder({0, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1}));
	EXPECT_EQ(mpProgram->DeviceAtPosition(1), 10);
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

TEST_F(TVortelProgramTest, OrderChangesInWholeBetweenItsTwoNotifications) {
	const auto watcher = MakePtr<TOrderWatcher>(*mpProgram);
	mpProgram->MoveDevice(1, 10);
	const std::vector<std::pair<int32_t, int32_t>> expected = {{kWillChange, 1}, {kDidChange, 2}};
	EXPECT_EQ(watcher->mSeen, expected);
}

TEST_F(TVortelProgramTest, DamagedOrdersBecomeTheIdentityOnLoad) {
	const auto watcher = MakePtr<TOrderWatcher>(*mpProgram);
	for (const char* damaged :
	     {"0 1 2 3 4 5 6 7 8 9", "", "1 0 2 3 4 5 6 7 8 9 10", "0 1 2 3 4 5 6 7 8 9 11", "0 1 1 3 4 5 6 7 8 9 10",
	      "0 10 9 8 7 6 5 4 3 2 1 0", "0 10 9 8 7 6 5 4 3 2 -1", "0 x 2 3"}) {
		LoadOrder(damaged);
		EXPECT_EQ(Order(), kIdentity) << damaged;
	}
	EXPECT_EQ(watcher->mSeen.size(), 8u);
	EXPECT_EQ(mpProgram->DeviceOrder().Count(), 11);
	LoadOrder("0 10 9 8 7 6 5 4 3 2 1");
	EXPECT_EQ(mpProgram->DeviceAtPosition(1), 10);
	EXPECT_EQ(watcher->mSeen.back(), (std::pair<int32_t, int32_t>{kDidChange, 10}));
}

TEST_F(TVortelProgramTest, LoadedNumbersAreNotTrusted) {
	mpProgram->TriggerMode().Set(99);
	mpProgram->OnLoadEnd(true);
	EXPECT_EQ(mpProgram->TriggerMode().Get(), kTriggerLatch);
	mpProgram->ActiveSceneIndex().Set(1 << 30);
	EXPECT_EQ(mpProgram->ActiveScene(), mpProgram->Scene(127));
	mpProgram->ActiveSceneIndex().Set(-5);
	EXPECT_EQ(mpProgram->ActiveScene(), mpProgram->Scene(0));
	mpProgram->DeviceOrder().FromString("0 99");
	EXPECT_EQ(mpProgram->DeviceAtPosition(1), 0);
	EXPECT_EQ(mpProgram->DeviceAtPosition(5), 0);
}

TEST_F(TVortelProgramTest, EverythingButTheNameMakesAProgramWorthSaving) {
	mpProgram->Name().Set("Renamed");
	mpProgram->ActiveSceneIndex().Set(3);
	EXPECT_TRUE(mpProgram->IsSkippedOnSave());

	const auto copy = MakePtr<TVortelProgram>();
	const auto expectKept = [&](auto&& change) {
		mpProgram->Init(true);
		change();
		EXPECT_FALSE(mpProgram->IsSkippedOnSave());
		copy->CopyFrom(*mpProgram);
		EXPECT_FALSE(copy->IsInitialized());
	};
	expectKept([&] { mpProgram->QuantizeFactor().Set(1); });
	expectKept([&] { mpProgram->TriggerMode().Set(1); });
	expectKept([&] { mpProgram->MasterMix().Set(0.5f); });
	expectKept([&] { mpProgram->MasterPanning().Set(0.25f); });
	expectKept([&] { mpProgram->MasterVolume().Set(0.25f); });
	expectKept([&] { mpProgram->SoftClip().Set(true); });
	expectKept([&] { mpProgram->SwapDevices(9, 10); });
	expectKept([&] { mpProgram->Scene(127)->Sequencer()->NumBeats().Set(1); });
}
