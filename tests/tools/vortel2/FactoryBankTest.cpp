// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/tools/vortel2/RunVortel2.h"
#include "tools/vortel2/documents/DocumentFiles.h"
#include "tools/vortel2/documents/TInstance.h"
#include "tools/vortel2/render/TScenePlayer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

namespace {

constexpr const char* kBank = VORTEL2_SOURCE_FOLDER "/resources/DefaultBank.v2bnk";
constexpr const char* kSource = VORTEL2_SOURCE_FOLDER "/resources/factory-bank.txt";
constexpr const char* kPage = VORTEL2_SOURCE_FOLDER "/docs/factory-bank.md";
constexpr int32_t kFirstKey = 36;
/// Scenes that end in silence on purpose: program, scene.
const std::set<std::pair<int32_t, int32_t>> kSilentScenes{};

std::string Contents(const char* path) {
	std::ifstream file(path, std::ios::binary);
	return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<int32_t> UsedScenes(const TVortelProgram& program) {
	std::vector<int32_t> scenes;
	for (int32_t i = 0; i < TVortelProgram::kNumberOfScenes; ++i)
		if (program.Scene(i)->HasContent())
			scenes.push_back(i);
	return scenes;
}

template <class TFunction>
auto InBank(const TFunction& function) {
	const TInstance instance;
	return instance.WithDocument([&](TVortelDocument& document) {
		DocumentFiles::LoadBank(document, kBank);
		return function(document);
	});
}

class FactoryBankTest : public TVortel2Test {};

class FactoryBankSoundTest : public testing::TestWithParam<int32_t> {};

} // namespace

TEST_F(FactoryBankTest, IsWhatItsSourceDescribes) {
	ASSERT_EQ(Run({"bank", "build", kSource, "built.v2bnk"}).mErrors, "");
	EXPECT_TRUE(Bytes("built.v2bnk") == Contents(kBank)) << "run scripts/factory-bank.sh";
}

TEST_F(FactoryBankTest, OffersEveryEffectAndTriggerModeOnTheKeyboard) {
	InBank([](TVortelDocument& document) {
		std::set<int32_t> modes;
		std::set<int32_t> devices;
		std::set<std::string> names;
		for (int32_t i = 0; i < TVortelDocument::kNumberOfPrograms; ++i) {
			TVortelProgram& program = *document.Program(i);
			names.insert(program.Name().Get().CString());
			modes.insert(program.TriggerMode().Get());
			const std::vector<int32_t> scenes = UsedScenes(program);
			EXPECT_GE(scenes.size(), 9u) << i;
			for (std::size_t scene = 0; scene < scenes.size(); ++scene)
				EXPECT_EQ(scenes[scene], scene == 0 ? 0 : kFirstKey + static_cast<int32_t>(scene) - 1) << i;
			for (const int32_t scene : scenes)
				for (int32_t device = 0; device < TVortelDocument::kNumberOfDevices; ++device)
					if (!program.Scene(scene)->Sequencer()->Sequence(device).IsEmpty())
						devices.insert(device);
		}
		EXPECT_EQ(names.size(), 16u);
		EXPECT_EQ(modes.size(), 3u);
		EXPECT_EQ(devices.size(), 11u);
		EXPECT_EQ(document.ActiveScene(), document.Program(0)->Scene(0));
	});
}

TEST_F(FactoryBankTest, PageListsProgramsAndScenes) {
	const std::string page = Contents(kPage);
	std::istringstream source(Contents(kSource));
	for (std::string line; std::getline(source, line);) {
		if (line.starts_with("program ")) {
			EXPECT_NE(page.find(". " + line.substr(8) + "\n"), std::string::npos) << line;
		}
		if (line.starts_with("scene ")) {
			const std::size_t blank = line.find(' ', 6);
			const std::string row = "| " + line.substr(6, blank - 6) + " | " + line.substr(blank + 1) + " |";
			EXPECT_NE(page.find(row), std::string::npos) << line;
		}
	}
}

TEST_P(FactoryBankSoundTest, ScenesKeepTheLevelOfTheLoop) {
	const TScenePlayer player(kBank);
	TMemorySource loop(player.Loop());
	const double dryRms = TLevels::Measure(loop).Rms();
	const auto scenes = InBank([](TVortelDocument& document) { return UsedScenes(*document.Program(GetParam())); });
	for (const int32_t scene : scenes) {
		SCOPED_TRACE(scene);
		const TStereoSound sound = player.Play(GetParam(), scene);
		EXPECT_FALSE(sound.mLeft == player.Loop().mLeft); // something happens
		TMemorySource source(sound);
		const TLevels levels = TLevels::Measure(source);
		EXPECT_LT(levels.mPeak, 1.0);
		const double decibels = 20.0 * std::log10(levels.Rms() / dryRms);
		EXPECT_LT(decibels, 3.0);
		EXPECT_TRUE(decibels > -3.0 || kSilentScenes.contains({GetParam(), scene})) << decibels;
	}
}

INSTANTIATE_TEST_SUITE_P(Programs, FactoryBankSoundTest, testing::Range(0, 16));
