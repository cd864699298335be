// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelDevice.h"

#include "document/TVortelDocument.h"
#include "document/TVortelEffectDevices.h"
#include "document/TVortelGaterDevice.h"
#include "document/TVortelMasterDevice.h"
#include "tests/support/TDocumentFixture.h"
#include "tests/support/TJournal.h"

#include <string>
#include <vector>

class TVortelDeviceTest : public TDocumentFixture {
protected:
	float Default(int32_t id) const { return TVortelParameterTable::Defaults()[static_cast<std::size_t>(id)]; }

	void SelectScene(int32_t index) { mpDocument->ActiveProgram()->ActiveSceneIndex().Set(index); }

	std::string ValueText(int32_t id) const { return mpDocument->Parameter(id)->ValueText().CString(); }
};

TEST_F(TVortelDeviceTest, EveryIdHasAParameterAndEveryListItsOrder) {
	const int32_t kListed[] = {4, 14, 11, 12, 11, 14, 13, 12, 11, 14, 14};
	for (int32_t d = 0; d < TVortelDocument::kNumberOfDevices; ++d) {
		const TVortelDevice* device = mpDocument->Device(d);
		const TVortelDeviceDeclaration& declaration = TVortelParameterTable::Device(d);
		EXPECT_EQ(device->Parameter(0), device->mpRandomWeight.Get());
		int32_t listed = 0;
		for (int32_t id = declaration.mFirstId; id <= declaration.mLastId; ++id) {
			const TVortelDeviceParameter* parameter = mpDocument->Parameter(id);
			ASSERT_NE(parameter, nullptr) << id;
			EXPECT_EQ(parameter->Id(), id);
			EXPECT_EQ(TVortelParameterTable::DeviceOfParameter(id), d);
			EXPECT_EQ(parameter->Device(), device);
			EXPECT_EQ(parameter->ListIndex() < 0, parameter->Name() == TString("Unused")) << id;
			if (parameter->ListIndex() < 0)
				continue;
			++listed;
			EXPECT_EQ(device->Parameter(parameter->ListIndex()), parameter);
		}
		EXPECT_EQ(listed, device->NumberOfParameters());
		EXPECT_EQ(listed, kListed[d]) << d;
	}
	std::vector<int32_t> delay;
	for (int32_t i = 7; i < mpDocument->DelayDevice()->NumberOfParameters(); ++i)
		delay.push_back(mpDocument->DelayDevice()->Parameter(i)->Id());
	EXPECT_EQ(delay, (std::vector<int32_t>{177, 178, 180, 179, 181, 183, 182}));
	EXPECT_EQ(mpDocument->Parameter(30)->ToolTip(), TString("Tape Stop weight."));
}

TEST_F(TVortelDeviceTest, ValuesLiveInTheActiveSceneOrForTheMasterInTheProgram) {
	mpDocument->SetParameterValue(58, 0.5f);
	mpDocument->SetParameterValue(3, 0.25f);
	EXPECT_EQ(mpDocument->Program(0)->Scene(0)->ParameterValue(58), 0.5f);
	EXPECT_EQ(mpDocument->Program(0)->MasterVolume().Get(), 0.25f);
	SelectScene(5);
	EXPECT_EQ(mpDocument->ParameterValue(58), Default(58));
	EXPECT_EQ(mpDocument->ParameterValue(3), 0.25f);
	mpDocument->SetCurrentProgramIndex(7);
	EXPECT_EQ(mpDocument->ParameterValue(3), 0.5f);
}

TEST_F(TVortelDeviceTest, ChangesAreBracketed) {
	TVortelDeviceParameter& parameter = *mpDocument->Parameter(18);
	TJournal journal;
	const auto value = [&] { return std::to_string(parameter.Value()).substr(0, 4); };
	journal.Watch(parameter.ChangedBang(), [&](auto*, int32_t) { return ":" + value(); });
	journal.Watch(parameter.UserChangedBang(), [&](auto*, int32_t) { return "u:" + value(); });
	parameter.SetValueByUser(0.25f);
	EXPECT_EQ(journal.Told(), "2u:1.00 2:1.00 3:0.25 3u:0.25 ");
	parameter.SetValueFromText("50");
	EXPECT_EQ(journal.Told(), "2:0.25 3:0.50 ");
	parameter.SetValueFromText("half");
	parameter.SetValue(0.5f);
	EXPECT_EQ(journal.Told(), "");
}

// The converter follows the scene, not the parameter that was last written.
TEST_F(TVortelDeviceTest, TimesAreSteppedUnlessTheModeIsFreeAndBitDepthWhileUnsigned) {
	const std::pair<int32_t, std::vector<int32_t>> kModes[] = {{39, {37, 38}}, {57, {58, 59, 60}}, {78, {77}},
	                                                           {159, {158}},   {178, {177}},       {197, {198, 199}}};
	for (const auto& [mode, times] : kModes) {
		mpDocument->Parameter(mode)->SetValueFromText("Free");
		for (const int32_t time : times) {
			const TVortelValueConverter* converter = mpDocument->Parameter(time)->Converter();
			EXPECT_FALSE(converter->IsStepped());
			SelectScene(1);
			EXPECT_TRUE(converter->IsStepped());
			SelectScene(0);
			EXPECT_FALSE(converter->IsStepped());
		}
	}
	EXPECT_EQ(ValueText(58), "1 / 64.00");
	mpDocument->SetParameterValue(118, mpDocument->Parameter(118)->Converter()->NormalizedFromReal(7.25f));
	EXPECT_EQ(ValueText(118), "7.25");
	mpDocument->Parameter(119)->SetValueFromText("Unsigned");
	EXPECT_EQ(ValueText(118), "7");
	SelectScene(1);
	EXPECT_EQ(ValueText(118), "8.00");
	EXPECT_EQ(ValueText(58), "1 / 64th");
}

TEST_F(TVortelDeviceTest, CommandsOfADeviceReachItsListAndThoseOfTheMasterTheWeights) {
	const auto clipboard = MakePtr<TVortelScene>();
	for (int32_t id = 0; id < TVortelDocument::kNumberOfParameters; ++id)
		mpDocument->SetParameterValue(id, 0.9f);
	mpDocument->MasterDevice()->CopyParameters(clipboard.Get());
	mpDocument->ModulatorDevice()->Init();
	for (int32_t id = 10; id <= 23; ++id)
		EXPECT_EQ(mpDocument->ParameterValue(id), Default(id)) << id;
	EXPECT_EQ(mpDocument->ParameterValue(24), 0.9f) << "fills up the Modulator's ids";
	EXPECT_EQ(mpDocument->ParameterValue(30), 0.9f);

	mpDocument->MasterDevice()->Init();
	for (int32_t d = 0; d < TVortelDocument::kNumberOfDevices; ++d)
		EXPECT_EQ(mpDocument->Device(d)->mpRandomWeight->Value(), 0.5f);
	EXPECT_EQ(mpDocument->ParameterValue(3), 0.9f);
	EXPECT_EQ(mpDocument->ParameterValue(31), 0.9f);
	mpDocument->MasterDevice()->PasteParameters(clipboard.Get());
	EXPECT_EQ(mpDocument->ParameterValue(10), 0.9f);
	EXPECT_EQ(mpDocument->ParameterValue(11), Default(11));
}

TEST_F(TVortelDeviceTest, GaterLevelsFollowSceneClipboardAndInit) {
	TVortelGaterDevice& gater = *mpDocument->GaterDevice();
	TJournal journal;
	journal.Watch(gater.StepsChangedBang(), [](auto*, int32_t) { return ""; });
	gater.SetStepLevel(1, 0.75f);
	gater.SetStepLevel(16, 0.75f);
	EXPECT_EQ(gater.StepLevel(16), 0.0f);
	EXPECT_EQ(mpDocument->ActiveScene()->GaterStep(1), 0.75f);
	EXPECT_EQ(journal.Told(), "");

	const auto clipboard = MakePtr<TVortelScene>();
	gater.CopyParameters(clipboard.Get());
	SelectScene(1);
	EXPECT_EQ(gater.StepLevel(1), 0.0f);
	EXPECT_EQ(journal.Told(), "2 3 ");
	gater.PasteParameters(clipboard.Get());
	EXPECT_EQ(gater.StepLevel(1), 0.75f);
	gater.mpNumVolumeSteps->SetRealValue(3.0f);
	gater.Init();
	EXPECT_EQ(gater.StepLevel(1), 0.0f);
	EXPECT_EQ(gater.mpNumVolumeSteps->RealValue(), 8.0f);
	EXPECT_EQ(mpDocument->Program(0)->Scene(0)->GaterStep(1), 0.75f);
}
