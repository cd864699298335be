// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelScene.h"

#include "tests/support/TFrameworkFixture.h"

#include <string>

class TVortelSceneTest : public TFrameworkFixture {
protected:
	static std::string Repeated(const char* text, int count) {
		std::string repeated;
		for (int i = 0; i < count; ++i)
			repeated += (i ? " " : "") + std::string(text);
		return repeated;
	}

	/// The leaf that a file reads under this name.
	static TSerializable& Member(TVortelScene& scene, const char* path) {
		return *dynamic_cast<TSerializable*>(scene.ValueAtPath(path));
	}
};

TEST_F(TVortelSceneTest, InitTakesDefaultsOrZeros) {
	const auto scene = MakePtr<TVortelScene>();
	EXPECT_EQ(scene->ParameterValue(58), 0.0f);
	EXPECT_EQ(scene->GaterStep(0), 1.0f);
	scene->Seed().Set(5);
	scene->SetGaterStep(3, 0.5f);
	scene->Sequencer()->Sequence(1).SetStep(0, kStepBlockStart);
	scene->Init(true);
	EXPECT_EQ(scene->ParameterValue(58), TVortelParameterTable::Defaults()[58]);
	EXPECT_EQ(scene->Seed().Get(), 31337);
	EXPECT_EQ(scene->GaterStep(3), 0.0f);
	EXPECT_FALSE(scene->HasContent());
	scene->Init(false);
	EXPECT_EQ(scene->ParameterValue(58), 0.0f);
}

TEST_F(TVortelSceneTest, OnlyThePatternCountsAsContent) {
	const auto scene = MakePtr<TVortelScene>();
	scene->SetParameterValue(20, 0.25f);
	scene->Seed().Set(1);
	scene->SetGaterStep(0, 0.5f);
	EXPECT_TRUE(scene->IsSkippedOnSave());
	scene->Sequencer()->Sequence(0).SetStep(63, kStepBlockStart);
	EXPECT_FALSE(scene->IsSkippedOnSave());
}

TEST_F(TVortelSceneTest, CopyTakesEverything) {
	const auto source = MakePtr<TVortelScene>();
	const auto target = MakePtr<TVortelScene>();
	source->SetParameterValue(209, 0.25f);
	source->Seed().Set(42);
	source->SetGaterStep(15, 0.75f);
	source->Sequencer()->NumBeats().Set(7);
	source->Sequencer()->Sequence(10).SetStep(9, kStepBlockStart);
	target->CopyFrom(*source);
	EXPECT_EQ(target->ParameterValue(209), 0.25f);
	EXPECT_EQ(target->Seed().Get(), 42);
	EXPECT_EQ(target->GaterStep(15), 0.75f);
	EXPECT_EQ(target->Sequencer()->NumBeats().Get(), 7);
	EXPECT_EQ(target->Sequencer()->Sequence(10).Step(9), kStepBlockStart);
}

TEST_F(TVortelSceneTest, ListsOfAnyLengthComeOutAtTheirSize) {
	const auto scene = MakePtr<TVortelScene>();
	scene->OnLoadBegin();
	EXPECT_EQ(scene->ParameterValue(209), TVortelParameterTable::Defaults()[209]);

	TSerializable& values = Member(*scene, "/ParameterValues");
	values.FromString(TString(Repeated("0.25", 300).c_str()));
	EXPECT_EQ(std::string(values.ToString().CString()), Repeated("0.25", 210));
	values.FromString(TString((Repeated("0.25", 100) + " nan x inf 0.5").c_str()));
	EXPECT_EQ(scene->ParameterValue(99), 0.25f);
	EXPECT_EQ(scene->ParameterValue(100), 0.0f);
	EXPECT_EQ(scene->ParameterValue(102), 0.0f);
	EXPECT_EQ(scene->ParameterValue(103), 0.5f);
	EXPECT_EQ(scene->ParameterValue(209), 0.0f); // not its default

	TSerializable& steps = Member(*scene, "/GaterVolumeSteps");
	steps.FromString("0.25 0.25 0.25");
	scene->OnLoadEnd(true);
	EXPECT_EQ(scene->GaterStep(2), 0.25f);
	EXPECT_EQ(scene->GaterStep(3), 0.0f);
	EXPECT_EQ(scene->GaterStep(14), 1.0f);
	steps.FromString(TString(Repeated("0.25", 40).c_str()));
	scene->OnLoadEnd(true);
	EXPECT_EQ(std::string(steps.ToString().CString()), Repeated("0.25", 16));
	steps.FromString("");
	scene->OnLoadEnd(false);
	EXPECT_EQ(scene->GaterStep(0), 1.0f);

	Member(*scene, "/Seed").FromString("many");
	EXPECT_EQ(scene->Seed().Get(), 31337);
}
