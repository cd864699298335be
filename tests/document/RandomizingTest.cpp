// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelDocument.h"
#include "document/TVortelEffectDevices.h"
#include "document/TVortelGaterDevice.h"
#include "framework/foundation/values/TRandom.h"
#include "tests/support/TDocumentFixture.h"
#include "tests/support/TStringPrinter.h"

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>

namespace {

/// The general generator once more, in 64-bit arithmetic.
class TDraws {
public:
	explicit TDraws(uint64_t seed) : mState(seed) {}

	double operator()() {
		mState = (mState * 1103515245 + 12345) % 2147483648;
		return static_cast<double>(mState) / 2147483647.0;
	}

	double Between(double low, double high) { return low + (*this)() * (high - low); }

	/// 0 to highest.
	int64_t Whole(double highest) { return static_cast<int64_t>((*this)() * highest + 0.5); }

private:
	uint64_t mState;
};

/// A number that changes with each letter.
uint32_t Digest(const std::string& text, uint32_t start = 0) {
	return std::accumulate(text.begin(), text.end(), start, [](uint32_t digest, char letter) {
		return digest * 31 + static_cast<uint32_t>(letter);
	});
}

} // namespace

class RandomizingTest : public TDocumentFixture {
protected:
	/// Of the values of the effect alone, each weighted by its place.
	double SumOf(int32_t device) const {
		const TVortelDeviceDeclaration& declaration = TVortelParameterTable::Device(device);
		const int32_t first = declaration.mFirstId + 7;
		double sum = 0.0;
		for (int32_t id = first; id <= declaration.mLastId; ++id)
			sum += (id - first + 1) * static_cast<double>(mpDocument->ParameterValue(id));
		return sum;
	}

	double SumOfLevels() const {
		double sum = 0.0;
		for (int32_t i = 0; i < 16; ++i)
			sum += (i + 1) * static_cast<double>(mpDocument->ActiveScene()->GaterStep(i));
		return sum;
	}

	std::string AllRows() const {
		std::string text;
		for (int32_t device = 0; device < 11; ++device)
			text += std::string(mpDocument->ActiveSequencer()->Sequence(device).ToString().CString()) + "\n";
		return text;
	}
};

TEST_F(RandomizingTest, EachNumberOfASceneIsTheOneDrawn) {
	struct TDrawn {
		std::array<uint32_t, 5> mWhole; // generator's state before; seed, beats, steps per beat; digest of the rows
		std::array<double, 12> mReal;   // sums of devices 1 to 10 and of the Gater's levels; what is drawn next
	};

	const TDrawn kDrawn[] = {
	    {{1, 51387008, 4, 4, 0x2707f9aau},
	     {10.04227, 1.75910, 8.05889, 6.85310, 9.54673, 8.55730, 7.16314, 2.34227, 17.91239, 10.07803, 67.72613,
	      0.73258}},
	    {{7, 59705605, 6, 7, 0xfa2c2d5du},
	     {10.92081, 5.18910, 4.96122, 4.61480, 10.29461, 10.02390, 6.67676, 2.92188, 17.72461, 8.42026, 63.60233,
	      0.94068}},
	    {{19, 76342801, 3, 6, 0x89e33f88u},
	     {9.64830, 7.04911, 6.74123, 3.83866, 9.12046, 9.13338, 5.50735, 4.59886, 18.08681, 10.43804, 64.55473,
	      0.41290}},
	    {{43, 9617193, 5, 4, 0x84b2f213u},
	     {10.33203, 6.76912, 7.21480, 5.87451, 8.86217, 5.53494, 6.56854, 4.17863, 17.01458, 10.80695, 65.65953,
	      0.89101}},
	    {{91, 76165973, 7, 5, 0xbb3b7203u},
	     {10.59618, 6.20914, 8.39311, 4.53480, 7.99548, 8.60038, 7.57125, 3.76707, 17.40573, 10.21143, 71.46914,
	      0.94800}},
	    {{187, 9263538, 6, 3, 0x55f73905u},
	     {7.14075, 3.08917, 6.47939, 4.61802, 7.85210, 5.45619, 5.33569, 4.37220, 16.89113, 11.97953, 67.48834,
	      0.06682}},
	    {{379, 75458664, 3, 4, 0x66059d45u},
	     {10.68117, 2.84925, 8.65988, 6.51334, 9.08554, 6.32358, 6.63719, 3.39231, 17.40110, 10.63829, 66.32675,
	      0.21551}},
	    {{763, 7848920, 4, 7, 0x47d26551u},
	     {10.42241, 7.36940, 10.02086, 5.37050, 6.78222, 6.88650, 7.09179, 4.19410, 17.89735, 11.83326, 62.00358,
	      0.44680}},
	    {{1531, 72629429, 6, 6, 0x1a354254u},
	     {11.20241, 7.40970, 5.55759, 6.42307, 9.59567, 5.84816, 6.40098, 3.79801, 19.76119, 9.84575, 69.75722,
	      0.04696}},
	};
	for (int32_t device = 0; device < 11; ++device)
		mpDocument->Device(device)->mpRandomWeight->SetRealValue(static_cast<float>((device * 37) % 100));
	for (const auto& [whole, real] : kDrawn) { // the rows' generator goes on from scene to scene
		SCOPED_TRACE(whole[0]);
		TRandom::SetState(whole[0]);
		mpDocument->RandomizeScene(true);
		TVortelScene& scene = *mpDocument->ActiveScene();
		EXPECT_EQ(scene.Seed().Get(), whole[1]);
		EXPECT_EQ(scene.Sequencer()->NumBeats().Get(), whole[2]);
		EXPECT_EQ(scene.Sequencer()->NumStepsPerBeat().Get(), whole[3]);
		EXPECT_EQ(Digest(AllRows()), whole[4]) << AllRows();
		for (int32_t device = 1; device < 11; ++device)
			EXPECT_NEAR(SumOf(device), real[static_cast<std::size_t>(device - 1)], 5e-5) << device;
		EXPECT_NEAR(SumOfLevels(), real[10], 5e-5);
		EXPECT_NEAR(TRandom::Next(), real[11], 1e-5) << "as many draws";
	}
}

TEST_F(RandomizingTest, MutatedValuesMoveALittle) {
	TRandom::SetState(7);
	mpDocument->RandomizeScene(true);
	mpDocument->GaterDevice()->SetStepLevel(0, 1.0f);
	TVortelScene& scene = *mpDocument->ActiveScene();
	const auto before = MakePtr<TVortelScene>();
	for (uint32_t round = 0; round < 200; ++round) {
		before->CopyFrom(scene);
		TRandom::SetState(round);
		TDraws draws(round);
		mpDocument->MutateScene();

		const int64_t moved = before->Seed().Get() + draws.Whole(31337) - 15668;
		EXPECT_EQ(scene.Seed().Get(), std::clamp<int64_t>(moved, 1, 99999999));
		for (int32_t device = 1; device < 11; ++device) {
			const TVortelDevice& effect = *mpDocument->Device(device);
			for (int32_t i = 0; i < effect.NumberOfParameters(); ++i) {
				const int32_t id = effect.Parameter(i)->Id();
				const double old = static_cast<double>(before->ParameterValue(id));
				const bool isMoved = i >= 7; // behind the mixer and the filter
				const double value = isMoved ? draws.Between(std::max(0.0, old - 0.1), std::min(1.0, old + 0.1)) : old;
				EXPECT_NEAR(scene.ParameterValue(id), value, isMoved ? 1e-6 : 0.0) << id;
			}
			for (int32_t i = 0; device == 8 && i < 16; ++i) {
				const double level = static_cast<double>(before->GaterStep(i)) + draws.Between(-0.1, 0.1);
				EXPECT_NEAR(scene.GaterStep(i), std::clamp(level, 0.0, 1.0), 1e-6);
			}
		}
		EXPECT_EQ(scene.Sequencer()->StepCount(), before->Sequencer()->StepCount());
	}
	scene.Seed().Set(std::numeric_limits<int32_t>::max()); // as a file may say
	mpDocument->MutateScene();
	EXPECT_EQ(scene.Seed().Get(), 99999999);
}

TEST_F(RandomizingTest, OnlyWeightedDevicesGetBlocks) {
	for (int32_t device = 0; device < 11; ++device)
		mpDocument->Device(device)->mpRandomWeight->SetValue(0.0f);
	mpDocument->ActiveSequencer()->Sequence(4).FromString("*+*-*");
	const std::string rows = AllRows();
	mpDocument->RandomizeSequence(false);
	mpDocument->RandomizeSequence(true);
	EXPECT_EQ(AllRows(), rows);
	mpDocument->Device(6)->mpRandomWeight->SetValue(0.005f); // a hundredth, but in single precision alone
	mpDocument->RandomizeSequence(false);
	EXPECT_TRUE(mpDocument->ActiveSequencer()->Sequence(4).IsEmpty());
	for (int32_t step = 0; step < 16; ++step)
		EXPECT_NE(mpDocument->ActiveSequencer()->Sequence(6).Step(step), kStepEmpty);
	mpDocument->ActiveSequencer()->NumStepsPerBeat().Set(std::numeric_limits<int32_t>::max());
	mpDocument->RandomizeSequence(false);
	mpDocument->ActiveSequencer()->NumStepsPerBeat().Set(-3);
	mpDocument->RandomizeSequence(false);
	EXPECT_TRUE(mpDocument->ActiveSequencer()->Sequence(6).IsEmpty());
}

TEST_F(RandomizingTest, AllProgramsGetANameAnOrderAndAScene) {
	mpDocument->SetCurrentProgramIndex(3);
	mpDocument->ActiveProgram()->ActiveSceneIndex().Set(5);
	mpDocument->SetParameterValue(1, 0.25f);
	TRandom::SetState(1);
	mpDocument->RandomizeAllPrograms();
	EXPECT_EQ(mpDocument->ActiveScene(), mpDocument->Program(0)->Scene(0));
	for (int32_t i = 0; i < TVortelDocument::kNumberOfPrograms; ++i) {
		TVortelProgram& program = *mpDocument->Program(i);
		EXPECT_GE(program.Name().Get().CountChar(u' '), 1);
		int32_t moved = 0;
		for (int32_t position = 1; position < 11; ++position)
			moved += program.DeviceAtPosition(position) != position;
		EXPECT_GE(moved, 2);
		EXPECT_TRUE(program.Scene(0)->HasContent());
		EXPECT_FALSE(program.Scene(1)->HasContent());
		EXPECT_EQ(program.MasterMix().Get(), i == 3 ? 0.25f : 1.0f);
		EXPECT_EQ(program.ActiveSceneIndex().Get(), 0);
	}
}

TEST_F(RandomizingTest, NamesAreTheWordsDrawn) {
	const auto generator = MakePtr<TVortelProgramNameGenerator>();
	const std::pair<uint32_t, const char*> kNames[] = {
	    {0, "Powerfully Classic"},
	    {600, "Brainy Number"},
	    {700, "Wonkily Different Resistors"},
	    {1800, "Agreeable Tense Polyrhythm"}};
	for (const auto& [state, name] : kNames) {
		TRandom::SetState(state);
		EXPECT_STREQ(generator->Generate().CString(), name);
	}
	TRandom::SetState(0);
	uint32_t digest = 0;
	for (int i = 0; i < 4000; ++i)
		digest = Digest(generator->Generate().CString(), digest);
	EXPECT_EQ(digest, 3778285270u) << "of all the words in all the places";
}
