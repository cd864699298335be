// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/TVortelMasterDspDevice.h"

#include "document/TVortelMasterDevice.h"
#include "tests/effects/TDspDeviceFixture.h"

class TVortelMasterDspDeviceTest : public TDspDeviceFixture {
protected:
	void SetUp() override {
		TDspDeviceFixture::SetUp();
		mpMaster = Attach(MakePtr<TVortelMasterDspDevice>(mpDocument->MasterDevice(), nullptr, 0));
	}

	void TearDown() override {
		mpMaster = nullptr;
		TDspDeviceFixture::TearDown();
	}

	TVortelProgram& Program() { return *mpDocument->ActiveProgram(); }

	/// Effects that turn the sound into `wet` stand between the two calls.
	TStereo ProcessBlock(TStereo dry, TStereo wet) {
		mpMaster->CaptureDry(dry.mLeft.data(), dry.mRight.data(), static_cast<int>(dry.Size()));
		mpMaster->Process(wet.mLeft.data(), wet.mRight.data(), static_cast<int>(wet.Size()));
		return wet;
	}

	static TStereo Noise(uint32_t seed) {
		return {TestSignals::Noise(251, 60000.0f, seed), TestSignals::Noise(251, 60000.0f, seed + 1)};
	}

	void LetRampsArrive() {
		for (int i = 0; i < 60; ++i)
			ProcessBlock(Noise(1), Noise(2));
	}

	TPtr<TVortelMasterDspDevice> mpMaster;
};

TEST_F(TVortelMasterDspDeviceTest, NeutralAtEitherEndOfTheMixIsBitExact) {
	TStereo negativeZeros = {TSignal(251, -0.0f), TSignal(251, -0.0f)};
	EXPECT_EQ(ProcessBlock(Noise(1), Noise(3)), Noise(3));
	EXPECT_TRUE(std::signbit(ProcessBlock(Noise(1), negativeZeros).mLeft[0]));
	Program().MasterMix().Set(0.0f);
	LetRampsArrive();
	const float bad = std::nanf("");
	EXPECT_EQ(ProcessBlock(Noise(1), {TSignal(251, bad), TSignal(251, bad)}), Noise(1));
}

TEST_F(TVortelMasterDspDeviceTest, FollowsTheProgramsMixPanAndVolumeSmoothly) {
	Program().MasterMix().Set(0.0f);
	const TStereo first =
	    ProcessBlock({TSignal(251, 1000.0f), TSignal(251, 1000.0f)}, {TSignal(251, 0.0f), TSignal(251, 0.0f)});
	EXPECT_NEAR(first.mLeft[0], 1000.0f / 64.0f, 1e-2f);
	EXPECT_GT(first.mLeft[250], 950.0f);
	Program().MasterPanning().Set(0.0f);
	Program().MasterVolume().Set(1.0f);
	LetRampsArrive();
	const TStereo last = ProcessBlock({TSignal(251, 1000.0f), TSignal(251, 1000.0f)}, Noise(1));
	EXPECT_NEAR(last.mLeft[0], 2000.0 * std::sqrt(2.0), 1.0);
	EXPECT_NEAR(last.mRight[0], 0.0, 30.0);
}

TEST_F(TVortelMasterDspDeviceTest, SoftClipBendsWhatIsLoudFromTheNextBlockOn) {
	Program().SoftClip().Set(true);
	const TStereo wet = Noise(3);
	const TStereo clipped = ProcessBlock(Noise(1), wet);
	for (std::size_t i = 0; i < wet.Size(); ++i) {
		EXPECT_LT(std::abs(clipped.mRight[i]), 32767.0f);
		if (std::abs(wet.mLeft[i]) < 27851.0f)
			EXPECT_EQ(clipped.mLeft[i], wet.mLeft[i]);
		else
			EXPECT_LT(std::abs(clipped.mLeft[i]), std::abs(wet.mLeft[i]) + 0.01f);
	}
	Program().SoftClip().Set(false);
	EXPECT_EQ(ProcessBlock(Noise(1), wet), wet);
}
