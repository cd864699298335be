// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/process/Framework.h"

#include "framework/foundation/commands/TCommandPoolGlobals.h"
#include "framework/foundation/commands/TThreadCommunicator.h"
#include "framework/foundation/instance/TGlobalStorage.h"
#include "framework/foundation/threads/TThreadManager.h"
#include "framework/foundation/values/TParkMillerPRNG.h"
#include "framework/foundation/values/TRandom.h"
#include "framework/foundation/values/TSineTables.h"
#include "tests/support/TFrameworkFixture.h"

#include <cmath>

namespace {

using TFrameworkTest = TFrameworkFixture;

}

TEST_F(TFrameworkTest, EndOfOneInstanceRunsWhatItHasQueuedAndLeavesTheOthers) {
	const int32_t other = TGlobalStorage::CreateStorage();
	bool ran = false;
	{
		TGlobalStorageScope scope(other);
		InitializeFramework();
		EXPECT_TRUE(TThreadManager::Instance()->IsCurrentThread(kMainThread));
		TThreadCommunicator::Instance()->Post(kAudioThread, [&ran] { ran = true; });
		FinalizeFramework();
		EXPECT_EQ(TThreadCommunicator::Instance(), nullptr);
		EXPECT_EQ(TCommandPoolGlobals::Instance(), nullptr);
	}
	TGlobalStorage::DestroyStorage(other);
	EXPECT_TRUE(ran);
	EXPECT_NE(TCommandPoolGlobals::Instance(), nullptr);
}

TEST_F(TFrameworkTest, SineTablesGiveAnyAngleByAddition) {
	for (const int angle : {0, 1, 1023, 1024, 500000, 1048575}) {
		const auto& coarse = TSineTables::Coarse()[static_cast<std::size_t>(angle / 1024)];
		const auto& fine = TSineTables::Fine()[static_cast<std::size_t>(angle % 1024)];
		const double radians = angle * 6.283185307179586 / 1048576;
		EXPECT_NEAR(coarse.mSine * fine.mCosine + coarse.mCosine * fine.mSine, std::sin(radians), 1e-15);
	}
	EXPECT_NEAR(TSineTables::Coarse().back().mCosine, 1, 1e-15);
	EXPECT_DOUBLE_EQ(TSineTables::Fine().back().mSine, TSineTables::Coarse()[1].mSine);
}

TEST(TRandomTest, GeneratorFollowsItsRecurrence) {
	TRandom::SetState(1);
	EXPECT_DOUBLE_EQ(TRandom::Next(), 1103527590 / 2147483647.0);
	EXPECT_DOUBLE_EQ(TRandom::Next(), 377401575 / 2147483647.0);
}

TEST(TRandomTest, RoundsHalvesAwayFromZero) {
	EXPECT_EQ(RoundHalfAway(0.5), 1);
	EXPECT_EQ(RoundHalfAway(2.5), 3);
	EXPECT_EQ(RoundHalfAway(-2.5), -3);
	EXPECT_EQ(RoundHalfAway(-0.49), 0);
}

TEST(TParkMillerPRNGTest, ProductIsCutTo32BitsBeforeTheDivision) {
	TParkMillerPRNG random;
	for (const unsigned int expected : {16807u, 282475249u, 1622647863u, 947787490u})
		EXPECT_EQ(random.NextInt(), expected);
	random.SetSeed(0);
	EXPECT_EQ(random.NextDouble(), 0.0);
}
