// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelDevice.h"

#include "document/TVortelDocument.h"
#include "document/TVortelEffectDevices.h"
#include "document/TVortelGaterDevice.h"
#include "document/TVortelMasterDevice.h"
#include "tests/support/TDocumentFixture.h"

#include <string>
#include <vector>

namespace {

/// Counts the changes of a bang and what the watched value was after each.
class TWatcher final : public TObserver {
public:
	TWatcher(TObservable& observable, const TVortelDeviceParameter& parameter) : mParameter(parameter) {
		observable.AddObserver({this, &TWatcher::OnChange});
	}

	void OnChange(TObservable*, int32_t reason) {
		if (reason == kWillChange || reason == kDidChange)
			mSeen.emplace_back(reason, mParameter.Value());
	}

	const TVortelDeviceParameter& mParameter;
	std::vector<std::pair<int32_t, float>> mSeen;
};

} // namespace

class TVortelDeviceTest : public TDocumentFixture {
protected:
	/// Moves every value away from its default, in the scene and in the program.
	void Disturb() {
		for (int32_t id = 0; id < TVortelDocument::kNumberOfParameters; ++id)
			mpDocument->SetParameterValue(id, 0.9f);
	}

	std::string ValueText(int32_t id) const { return mpDocument->Parameter(id)->ValueText().CString(); }
};

TEST_F(TVortelDeviceTest, EveryIdHasAParameterAndEveryListItsOrder) {
	for (int32_t d = 0; d < TVortelDocument::kNumberOfDevices; ++d) {
		const TVortelDevice* device = mpDocument->Device(d);
		const TVortelDeviceDeclaration& declaration = TVortelParameterTable::Device(d);
		EXPECT_EQ(device->DeviceIndex(), d);
		EXPECT_EQ(device->Parameter(0), device->mpRandomWeight.Get());
		int listed = 0;
		for (int32_t id = declaration.mFirstId; id <= declaration.mLastId; ++id) {
			const TVortelDeviceParameter* parameter = mpDocument->Parameter(id);
			ASSERT_NE(parameter, nullptr) << id;
			EXPECT_EQ(parameter->Id(), id);
			EXPECT_EQ(parameter->Device(), device);
			EXPECT_EQ(parameter->ListIndex() < 0, parameter->Name() == TString("Unused")) << id;
			if (parameter->ListIndex() < 0)
				continue;
			++listed;
			EXPECT_EQ(device->Parameter(parameter->ListIndex()), parameter);
		}
		EXPECT_EQ(listed, device->NumberOfParameters());
	}
	std::vector<int32_t> delay;
	for (int32_t i = 7; i < mpDocument->DelayDevice()->NumberOfParameters(); ++i)
		delay.push_back(mpDocument->DelayDevice()->Parameter(i)->Id());
	EXPECT_EQ(delay, (std::vector<int32_t>{177, 178, 180, 179, 181, 183, 182}));
	EXPECT_EQ(mpDocument->MasterDevice()->mpFilterQ->Id(), 6);
	EXPECT_EQ(
	    mpDocument->Parameter(100)->ToolTip(),
	    TString("How much the grain size is modulated by the envelope follower."));
	EXPECT_EQ(mpDocument->Parameter(30)->ToolTip(), TString("Tape Stop weight."));
}

TEST_F(TVortelDeviceTest, ValuesLiveInTheActiveSceneOrForTheMasterInTheProgram) {
	mpDocument->SetParameterValue(58, 0.5f);
	mpDocument->SetParameterValue(3, 0.25f);
	EXPECT_EQ(mpDocument->Program(0)->Scene(0)->ParameterValue(58), 0.5f);
	EXPECT_EQ(mpDocument->Program(0)->MasterVolume().Get(), 0.25f);
	mpDocument->ActiveProgram()->ActiveSceneIndex().Set(5);
	EXPECT_EQ(mpDocument->ParameterValue(58), TVortelParameterTable::Defaults()[58]);
	EXPECT_EQ(mpDocument->ParameterValue(3), 0.25f);
	mpDocument->SetCurrentProgramIndex(7);
	EXPECT_EQ(mpDocument->ParameterValue(3), 0.5f);
}

TEST_F(TVortelDeviceTest, ChangesAreBracketed) {
	TVortelDeviceParameter& parameter = *mpDocument->Parameter(18);
	const auto changed = MakePtr<TWatcher>(parameter.ChangedBang(), parameter);
	const auto userChanged = MakePtr<TWatcher>(parameter.UserChangedBang(), parameter);
	const std::vector<std::pair<int32_t, float>> expected = {{kWillChange, 1.0f}, {kDidChange, 0.25f}};
	parameter.SetValueByUser(0.25f);
	EXPECT_EQ(changed->mSeen, expected);
	EXPECT_EQ(userChanged->mSeen, expected);
	parameter.SetValueFromText("50");
	EXPECT_EQ(parameter.Value(), 0.5f);
	EXPECT_EQ(userChanged->mSeen.size(), 2u);
	parameter.SetValueFromText("half");
	EXPECT_EQ(changed->mSeen.size(), 4u);
}

TEST_F(TVortelDeviceTest, TimesAreSteppedUnlessTheModeIsFree) {
	const std::pair<int32_t, std::vector<int32_t>> kModes[] = {{39, {37, 38}}, {57, {58, 59, 60}}, {78, {77}},
	                                                           {159, {158}},   {178, {177}},       {197, {198, 199}}};
	for (const auto& [mode, times] : kModes) {
		for (const int32_t time : times)
			EXPECT_TRUE(mpDocument->Parameter(time)->Converter()->IsStepped());
		mpDocument->Parameter(mode)->SetValueFromText("Free");
		for (const int32_t time : times)
			EXPECT_FALSE(mpDocument->Parameter(time)->Converter()->IsStepped());
	}
	EXPECT_EQ(ValueText(58), "1 / 64.00");
	// The converter follows the scene, not the parameter that was last written.
	mpDocument->ActiveProgram()->ActiveSceneIndex().Set(1);
	EXPECT_EQ(ValueText(58), "1 / 64th");
	EXPECT_TRUE(mpDocument->GaterDevice()->mpTime->Converter()->IsStepped());
	mpDocument->ActiveProgram()->ActiveSceneIndex().Set(0);
	EXPECT_FALSE(mpDocument->GaterDevice()->mpTime->Converter()->IsStepped());
}

TEST_F(TVortelDeviceTest, BitDepthIsSteppedWhileUnsigned) {
	mpDocument->SetParameterValue(118, mpDocument->Parameter(118)->Converter()->NormalizedFromReal(7.25f));
	EXPECT_EQ(ValueText(118), "7.25");
	mpDocument->Parameter(119)->SetValueFromText("Unsigned");
	EXPECT_EQ(ValueText(118), "7");
	mpDocument->ActiveProgram()->ActiveSceneIndex().Set(1);
	EXPECT_EQ(ValueText(118), "8.00");
}

TEST_F(TVortelDeviceTest, InitResetsTheWholeListAndNothingElse) {
	Disturb();
	mpDocument->SetParameterValue(24, 0.9f); // fills up the Modulator's ids
	mpDocument->ModulatorDevice()->Init();
	const auto& defaults = TVortelParameterTable::Defaults();
	for (int32_t id = 10; id <= 23; ++id)
		EXPECT_EQ(mpDocument->ParameterValue(id), defaults[static_cast<std::size_t>(id)]) << id;
	EXPECT_EQ(mpDocument->ParameterValue(24), 0.9f);
	EXPECT_EQ(mpDocument->ParameterValue(30), 0.9f);

	mpDocument->MasterDevice()->Init();
	for (int32_t d = 0; d < TVortelDocument::kNumberOfDevices; ++d)
		EXPECT_EQ(mpDocument->Device(d)->mpRandomWeight->Value(), 0.5f);
	EXPECT_EQ(mpDocument->ParameterValue(3), 0.9f);
	EXPECT_EQ(mpDocument->ParameterValue(31), 0.9f);
}

TEST_F(TVortelDeviceTest, RandomizeAndMutateLeaveTheCommonControlsAlone) {
	TVortelDevice& device = *mpDocument->DistortionDevice();
	device.Randomize();
	for (int32_t i = 0; i < 7; ++i)
		EXPECT_EQ(device.Parameter(i)->Value(), device.Parameter(i)->Default());
	std::vector<float> before;
	for (int32_t i = 7; i < device.NumberOfParameters(); ++i)
		before.push_back(device.Parameter(i)->Value());
	EXPECT_NE(before, std::vector<float>(before.size(), before[0]));
	for (int pass = 0; pass < 50; ++pass) {
		for (int32_t i = 0; i < device.NumberOfParameters() - 7; ++i) {
			const auto at = static_cast<std::size_t>(i);
			before[at] = device.Parameter(i + 7)->Value();
		}
		device.Mutate();
		for (int32_t i = 0; i < device.NumberOfParameters() - 7; ++i) {
			const float value = device.Parameter(i + 7)->Value();
			EXPECT_NEAR(value, before[static_cast<std::size_t>(i)], 0.1001f);
			EXPECT_TRUE(value >= 0.0f && value <= 1.0f);
		}
	}
}

TEST_F(TVortelDeviceTest, RandomRealValuesFollowTheSteps) {
	TVortelDeviceParameter& range = *mpDocument->ShufflerDevice()->mpRange;
	for (int pass = 0; pass < 50; ++pass) {
		range.RandomizeReal(2.0f, 6.0f);
		const float real = range.RealValue();
		EXPECT_TRUE(real == static_cast<float>(static_cast<int>(real)) && real >= 2.0f && real <= 6.0f) << real;
	}
}

TEST_F(TVortelDeviceTest, CopyAndPasteOfTheMasterAreTheWeights) {
	const auto clipboard = MakePtr<TVortelScene>();
	mpDocument->SetParameterValue(70, 0.75f);
	mpDocument->SetParameterValue(77, 0.25f);
	mpDocument->MasterDevice()->CopyParameters(clipboard.Get());
	mpDocument->ReverserDevice()->Init();
	mpDocument->MasterDevice()->PasteParameters(clipboard.Get());
	EXPECT_EQ(mpDocument->ParameterValue(70), 0.75f);
	EXPECT_EQ(mpDocument->ParameterValue(77), TVortelParameterTable::Defaults()[77]);
}

TEST_F(TVortelDeviceTest, GaterLevelsFollowSceneClipboardAndInit) {
	TVortelGaterDevice& gater = *mpDocument->GaterDevice();
	const auto watcher = MakePtr<TWatcher>(gater.StepsChangedBang(), *gater.mpNumVolumeSteps);
	gater.SetStepLevel(1, 0.75f);
	gater.SetStepLevel(16, 0.75f);
	EXPECT_EQ(gater.StepLevel(16), 0.0f);
	EXPECT_EQ(mpDocument->ActiveScene()->GaterStep(1), 0.75f);
	EXPECT_TRUE(watcher->mSeen.empty());

	const auto clipboard = MakePtr<TVortelScene>();
	gater.CopyParameters(clipboard.Get());
	mpDocument->ActiveProgram()->ActiveSceneIndex().Set(1);
	EXPECT_EQ(gater.StepLevel(1), 0.0f);
	EXPECT_EQ(watcher->mSeen.size(), 2u);
	gater.PasteParameters(clipboard.Get());
	EXPECT_EQ(mpDocument->Program(0)->Scene(1)->GaterStep(1), 0.75f);
	gater.mpNumVolumeSteps->SetRealValue(3.0f);
	gater.Init();
	EXPECT_EQ(mpDocument->Program(0)->Scene(1)->GaterStep(1), 0.0f);
	EXPECT_EQ(gater.mpNumVolumeSteps->RealValue(), 8.0f);
	EXPECT_EQ(mpDocument->Program(0)->Scene(0)->GaterStep(1), 0.75f);
}
