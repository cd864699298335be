// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelScene.h"

#include "tests/support/TFrameworkFixture.h"

#include <string>

class TVortelSceneTest : public TFrameworkFixture {
protected:
	void SetUp() override {
		TFrameworkFixture::SetUp();
		mpScene = MakePtr<TVortelScene>();
	}

	void TearDown() override {
		mpScene = nullptr;
		TFrameworkFixture::TearDown();
	}

	static std::string Repeated(const char* text, int count) {
		std::string repeated;
		for (int i = 0; i < count; ++i)
			repeated += (i ? " " : "") + std::string(text);
		return repeated;
	}

	/// As a file reads it.
	void Read(const char* member, const std::string& text) { Member(member).FromString(TString(text.c_str())); }

	std::string Written(const char* member) { return Member(member).ToString().CString(); }

	TPtr<TVortelScene> mpScene;

private:
	TSerializable& Member(const char* path) { return *dynamic_cast<TSerializable*>(mpScene->ValueAtPath(path)); }
};

TEST_F(TVortelSceneTest, InitTakesDefaultsOrZerosAndCopyTakesEverything) {
	EXPECT_EQ(mpScene->GaterStep(0), 1.0f);
	mpScene->SetParameterValue(209, 0.25f);
	mpScene->Seed().Set(5);
	mpScene->SetGaterStep(15, 0.5f);
	EXPECT_TRUE(mpScene->IsSkippedOnSave()) << "only the pattern is content";
	mpScene->Sequencer()->NumBeats().Set(7);
	mpScene->Sequencer()->Sequence(10).SetStep(9, kStepBlockStart);
	EXPECT_FALSE(mpScene->IsSkippedOnSave());
	const auto copy = MakePtr<TVortelScene>();
	copy->CopyFrom(*mpScene);
	EXPECT_EQ(copy->ParameterValue(209), 0.25f);
	EXPECT_EQ(copy->Seed().Get(), 5);
	EXPECT_EQ(copy->GaterStep(15), 0.5f);
	EXPECT_EQ(copy->Sequencer()->NumBeats().Get(), 7);
	EXPECT_EQ(copy->Sequencer()->Sequence(10).Step(9), kStepBlockStart);
	mpScene->Init(true);
	EXPECT_EQ(mpScene->ParameterValue(58), TVortelParameterTable::Defaults()[58]);
	EXPECT_EQ(mpScene->Seed().Get(), 31337);
	EXPECT_EQ(mpScene->GaterStep(15), 0.0f);
	EXPECT_FALSE(mpScene->HasContent());
	mpScene->Init(false);
	EXPECT_EQ(mpScene->ParameterValue(58), 0.0f);
}

TEST_F(TVortelSceneTest, ListsOfAnyLengthComeOutAtTheirSize) {
	mpScene->OnLoadBegin();
	EXPECT_EQ(mpScene->ParameterValue(209), TVortelParameterTable::Defaults()[209]);
	Read("/ParameterValues", Repeated("0.25", 300));
	EXPECT_EQ(Written("/ParameterValues"), Repeated("0.25", 210));
	Read("/ParameterValues", Repeated("0.25", 100) + " nan x inf 0.5");
	EXPECT_EQ(Written("/ParameterValues"), Repeated("0.25", 100) + " 0.0 0.0 0.0 0.5 " + Repeated("0.0", 106));

	Read("/GaterVolumeSteps", "0.25 0.25 0.25");
	mpScene->OnLoadEnd(true);
	EXPECT_EQ(Written("/GaterVolumeSteps"), "0.25 0.25 0.25 " + Repeated("0.0 1.0", 6) + " 0.0");
	Read("/GaterVolumeSteps", Repeated("0.25", 40));
	mpScene->OnLoadEnd(true);
	EXPECT_EQ(Written("/GaterVolumeSteps"), Repeated("0.25", 16));
	Read("/GaterVolumeSteps", "");
	mpScene->OnLoadEnd(false);
	EXPECT_EQ(Written("/GaterVolumeSteps"), Repeated("1.0 0.0", 8));
	Read("/Seed", "many");
	EXPECT_EQ(mpScene->Seed().Get(), 31337);
}
