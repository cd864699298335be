// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelDocument.h"
#include "document/TVortelEffectDevices.h"
#include "document/TVortelGaterDevice.h"
#include "document/TVortelProgramNameWords.h"
#include "framework/foundation/TRandom.h"
#include "tests/support/TDocumentFixture.h"
#include "tests/support/TStringPrinter.h"

#include <cmath>
#include <numeric>
#include <set>
#include <sstream>

namespace {

int64_t Nearest(double value) {
	return static_cast<int64_t>(value + 0.5);
}

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
	int64_t Whole(double highest) { return Nearest((*this)() * highest); }

private:
	uint64_t mState;
};

/// The document's generator once more.
class TPicks {
public:
	double operator()() {
		mState = (mState * 16807) % 4294967296 % 2147483647;
		return static_cast<double>(mState) / 2147483647.0;
	}

private:
	uint64_t mState = 31337;
};

double FromLinear(double real, double low, double high) {
	return (real - low) / (high - low);
}

double FromHertz(double real, double low, double high) {
	return std::log10(99.0 * FromLinear(real, low, high) + 1.0) / 2.0;
}

double FromBeatTime(double real, double low, double high, bool stepped) {
	const double exponent = std::log2(stepped ? std::round(real) : real);
	const double position = FromLinear(stepped ? std::round(exponent) : exponent, std::log2(low), std::log2(high));
	return std::clamp(position, 0.0, 1.0);
}

/// What "Randomize scene." gives, worked out from the ranges alone.
class TExpectedScene {
public:
	TExpectedScene(TDraws& draws, TPicks& picks, const std::array<int64_t, 11>& weights) {
		mSeed = draws.Whole(99999998) + 1;
		Effects(draws);
		mBeats = draws.Whole(7) + 1;
		mDivisions = draws.Whole(6) + 2;
		const int64_t passes = draws.Whole(2) + 1;
		for (int64_t i = 0; i < passes; ++i)
			LayBlocks(draws, picks, weights);
	}

	int64_t mSeed;
	std::map<int, double> mValues; // by id, normalised
	std::array<double, 16> mLevels;
	int64_t mBeats;
	int64_t mDivisions;
	std::array<std::string, 11> mRows;

private:
	bool DrawMode(TDraws& draws, int id) {
		mValues[id] = draws();
		return Nearest(mValues[id] * 3.0) != 0;
	}

	void DrawTime(TDraws& draws, int id, double low, double high, double lowest, double highest, bool stepped) {
		mValues[id] = FromBeatTime(draws.Between(low, high), lowest, highest, stepped);
	}

	void DrawFollower(TDraws& draws, int depth) {
		mValues[depth] = draws.Between(0.25, 0.75);
		mValues[depth + 1] = draws.Between(0.0, 0.25);
		mValues[depth + 2] = draws.Between(0.125, 0.5);
	}

	void Effects(TDraws& draws) {
		mValues[17] = FromHertz(draws.Between(1, 2000), 1, 5000);
		mValues[18] = draws.Between(0.5, 1);
		mValues[19] = 0.0;
		DrawFollower(draws, 20);
		mValues[23] = FromLinear(draws.Between(-50, 50), -180, 180);

		for (const int id : {39, 37, 38, 40})
			mValues[id] = draws();

		bool stepped = DrawMode(draws, 57);
		DrawTime(draws, 58, 8, 128, 4, 256, stepped);
		DrawTime(draws, 59, 8, 128, 4, 256, stepped);
		DrawTime(draws, 60, 1, 16, 1, 16, stepped);
		mValues[61] = draws() * mValues[58] / 2.0;

		stepped = DrawMode(draws, 78);
		DrawTime(draws, 77, 1, 64, 1, 256, stepped);
		mValues[79] = draws() / 2.0;
		mValues[80] = draws.Between(mValues[79] + 0.1, 1);

		mValues[97] = draws() * 0.66;
		mValues[98] = FromLinear(draws.Between(1, 50), 1, 100);
		mValues[99] = draws.Between(0.25, 1);
		DrawFollower(draws, 100);
		mValues[103] = draws() / 2.0;

		mValues[119] = static_cast<double>(draws.Whole(1));
		const double bits = draws.Between(3, 10);
		mValues[118] = FromLinear(mValues[119] == 1.0 ? std::round(bits) : bits, 1, 13);
		mValues[117] = FromHertz(draws.Between(50, 15000), 1, 22050);
		DrawFollower(draws, 120);

		mValues[137] = draws();
		const int64_t type = Nearest(mValues[137] * 3.0);
		const bool isSoft = type == 1 || type == 2;
		mValues[138] = draws.Between(isSoft ? 0.2 : 0.1, isSoft ? 0.8 : 0.6);
		mValues[139] = FromLinear(draws.Between(-50, 50), -100, 100);
		mValues[140] = draws.Between(0.4, 0.8);
		mValues[141] = (1.0 - mValues[140]) * 0.6;

		stepped = DrawMode(draws, 159);
		DrawTime(draws, 158, 8, 128, 4, 256, stepped);
		mValues[157] = draws() * 0.333;
		for (std::size_t i = 0; i < 16; ++i)
			mLevels[i] = draws() * 0.4 + (i % 2 == 0 ? 0.6 : 0.0);
		mValues[160] = FromLinear(std::round(draws.Between(2, 8)), 2, 16);

		stepped = DrawMode(draws, 178);
		DrawTime(draws, 177, 8, 64, 4, 256, stepped);
		mValues[179] = draws.Between(0.5, 0.75);
		mValues[180] = draws() * 0.75;
		mValues[181] = draws.Between(0.6, 0.9);
		const bool isLong = mValues[179] > 0.66;
		mValues[183] = draws.Between(isLong ? 0.66 : 0.8, isLong ? 0.75 : 1.0);
		mValues[182] = FromLinear(draws.Between(-50, 50), -100, 100);

		const int64_t even = draws.Whole(1);
		mValues[197] = static_cast<double>(even) / 3.0;
		const double shortest = std::exp2(static_cast<double>(2 + draws.Whole(2)));
		mValues[198] = FromBeatTime(shortest, 4, 256, even == 1);
		mValues[199] = FromBeatTime(shortest * static_cast<double>(draws.Whole(2) + 1), 4, 256, even == 1);
		mValues[201] = draws();
		mValues[200] = draws.Between(0.5, 1);
		mValues[202] = draws() / 2.0;
		mValues[203] = draws() / 2.0;
	}

	void LayBlocks(TDraws& draws, TPicks& picks, const std::array<int64_t, 11>& weights) {
		for (std::string& row : mRows)
			row.resize(64, '-');
		const int64_t total = std::accumulate(weights.begin(), weights.end(), int64_t{0});
		int64_t remaining = 0;
		std::size_t row = 0;
		char step = '*';
		for (int64_t i = 0; i < mBeats * mDivisions; ++i) {
			if (remaining == 0) {
				double x = picks();
				for (row = 0; static_cast<double>(weights[row]) / static_cast<double>(total) <= x; ++row)
					x -= static_cast<double>(weights[row]) / static_cast<double>(total);
				remaining = std::min(mDivisions - i % mDivisions, draws.Whole(static_cast<double>(mDivisions - 1)) + 1);
				step = '*';
			}
			mRows[row][static_cast<std::size_t>(i)] = step;
			--remaining;
			step = '+';
		}
	}
};

std::vector<std::string> Words(const char* text) {
	std::vector<std::string> words;
	std::istringstream stream(text);
	for (std::string word; std::getline(stream, word, ',');)
		words.push_back(word);
	return words;
}

} // namespace

class RandomizingTest : public TDocumentFixture {
protected:
	std::string RowText(int32_t device) const {
		return mpDocument->ActiveSequencer()->Sequence(device).ToString().CString();
	}

	std::string AllRows() const {
		std::string text;
		for (int32_t device = 0; device < 11; ++device)
			text += RowText(device) + "\n";
		return text;
	}

	std::array<float, 210> Values() const {
		std::array<float, 210> values;
		for (int32_t id = 0; id < 210; ++id)
			values[static_cast<std::size_t>(id)] = mpDocument->ParameterValue(id);
		return values;
	}

	void ExpectScene(const TExpectedScene& expected) const {
		TVortelScene& scene = *mpDocument->ActiveScene();
		EXPECT_EQ(scene.Seed().Get(), expected.mSeed);
		EXPECT_EQ(scene.Sequencer()->NumBeats().Get(), expected.mBeats);
		EXPECT_EQ(scene.Sequencer()->NumStepsPerBeat().Get(), expected.mDivisions);
		for (const auto& [id, value] : expected.mValues)
			EXPECT_NEAR(scene.ParameterValue(id), value, 2e-6) << id;
		for (int32_t i = 0; i < 16; ++i)
			EXPECT_NEAR(scene.GaterStep(i), expected.mLevels[static_cast<std::size_t>(i)], 1e-6) << i;
		for (int32_t device = 0; device < 11; ++device) {
			const std::string& row = expected.mRows[static_cast<std::size_t>(device)];
			EXPECT_EQ(RowText(device), row.find('*') == std::string::npos ? "" : row) << device;
		}
	}
};

TEST_F(RandomizingTest, EachNumberOfASceneIsTheOneDrawn) {
	std::array<int64_t, 11> weights;
	for (int32_t device = 0; device < 11; ++device) {
		weights[static_cast<std::size_t>(device)] = (device * 37) % 100;
		mpDocument->Device(device)->mpRandomWeight->SetRealValue(static_cast<float>((device * 37) % 100));
	}
	TPicks picks; // goes on from scene to scene
	for (uint32_t seed = 1; seed < 3000; seed = seed * 2 + 5) {
		SCOPED_TRACE(seed);
		TRandom::SetState(seed);
		TDraws draws(seed);
		mpDocument->RandomizeScene(true);
		ExpectScene(TExpectedScene(draws, picks, weights));
		EXPECT_NEAR(TRandom::Next(), draws(), 1e-12); // as many draws
	}
}

TEST_F(RandomizingTest, MutatedValuesMoveALittle) {
	TRandom::SetState(7);
	mpDocument->RandomizeScene(true);
	mpDocument->GaterDevice()->SetStepLevel(0, 1.0f);
	TVortelScene& scene = *mpDocument->ActiveScene();
	for (int round = 0; round < 200; ++round) {
		const auto before = Values();
		const int32_t seed = scene.Seed().Get();
		const int32_t steps = scene.Sequencer()->StepCount();
		std::array<float, 16> levels;
		for (int32_t i = 0; i < 16; ++i)
			levels[static_cast<std::size_t>(i)] = scene.GaterStep(i);
		TRandom::SetState(static_cast<uint32_t>(round));
		TDraws draws(static_cast<uint64_t>(round));
		mpDocument->MutateScene();

		const int64_t moved = seed + draws.Whole(31337) - 15668;
		EXPECT_EQ(scene.Seed().Get(), std::clamp<int64_t>(moved, 1, 99999999));
		for (int32_t device = 1; device < 11; ++device) {
			TVortelDevice& effect = *mpDocument->Device(device);
			for (int32_t i = 7; i < effect.NumberOfParameters(); ++i) {
				const int32_t id = effect.Parameter(i)->Id();
				const double old = static_cast<double>(before[static_cast<std::size_t>(id)]);
				const double value = draws.Between(std::max(0.0, old - 0.1), std::min(1.0, old + 0.1));
				EXPECT_NEAR(mpDocument->ParameterValue(id), value, 1e-6) << id;
			}
			for (int32_t i = 0; device == 8 && i < 16; ++i) {
				const double level =
				    static_cast<double>(levels[static_cast<std::size_t>(i)]) + draws.Between(-0.1, 0.1);
				EXPECT_NEAR(scene.GaterStep(i), std::clamp(level, 0.0, 1.0), 1e-6);
			}
			for (int32_t i = 0; i < 7; ++i)
				EXPECT_EQ(effect.Parameter(i)->Value(), before[static_cast<std::size_t>(effect.Parameter(i)->Id())]);
		}
		EXPECT_EQ(scene.Sequencer()->StepCount(), steps);
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
	const std::array lists{
	    Words(TVortelProgramNameWords::kAdverbs), Words(TVortelProgramNameWords::kAdjectives),
	    Words(TVortelProgramNameWords::kNouns)};
	EXPECT_EQ(lists[0].size(), 291u);
	EXPECT_EQ(lists[1].size(), 683u);
	EXPECT_EQ(lists[2].size(), 574u);
	for (const auto& list : lists)
		EXPECT_EQ(std::set<std::string>(list.begin(), list.end()).size(), list.size());
	EXPECT_EQ(lists[0][290] + lists[1][682] + lists[2][0] + lists[2][573], "ZealouslyZig-ZaggedAdventureTrip Hop");

	for (uint32_t seed = 0; seed < 2000; ++seed) {
		TRandom::SetState(seed);
		TDraws draws(seed);
		const int64_t grammar = draws.Whole(3);
		std::vector<std::size_t> kinds{0, 1};
		if (grammar == 1)
			kinds = {1, 2};
		else if (grammar > 1)
			kinds = {draws() < 0.5 ? 0u : 1u, 1, 2};
		std::string expected;
		std::string previous;
		for (const std::size_t kind : kinds) {
			std::string word = previous;
			while (previous.empty() ? word.empty() : word.substr(0, 2) == previous.substr(0, 2))
				word = lists[kind][static_cast<std::size_t>(draws.Whole(static_cast<double>(lists[kind].size() - 1)))];
			expected += (expected.empty() ? "" : " ") + word;
			previous = word;
		}
		EXPECT_STREQ(generator->Generate().CString(), expected.c_str());
		EXPECT_NEAR(TRandom::Next(), draws(), 1e-12);
	}
}
