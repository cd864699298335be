// SPDX-License-Identifier: GPL-3.0-or-later
// The bundle as it lies on the disk: what it shows, what it says of itself, and that it comes and goes without a trace.
#include "shell/vst3/Vst3Ids.h"
#include "shell/vst3/Vst3Interfaces.h"
#include "tests/support/TTemporaryFolder.h"
#include "tests/vst3/TVst3Module.h"

#include <pluginterfaces/vst/ivstcomponent.h>
#include <pluginterfaces/vst/ivstunits.h>

#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

namespace fs = std::filesystem;

/// The result of each call of a life from creation to the last release.
std::string LiveOnce(const TVst3Module& module) {
	const auto component = module.Make<IComponent>(IComponent_iid);
	std::string results = std::to_string(component->initialize(nullptr));
	results += std::to_string(component->setActive(1));
	ProcessData data;
	results += std::to_string(AskFor<IAudioProcessor>(component, IAudioProcessor_iid)->process(data));
	return results + std::to_string(component->terminate());
}

std::u16string FirstProgram(const TVst3Module& module) {
	const auto component = module.Make<IComponent>(IComponent_iid);
	component->initialize(nullptr);
	String128 name{};
	AskFor<IUnitInfo>(component, IUnitInfo_iid)->getProgramName(kVst3Preset, 0, name);
	component->terminate();
	return name;
}

auto Count(const char* folder) {
	return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

bool IsMapped(const std::string& file) {
	std::ifstream maps("/proc/self/maps");
	for (std::string line; std::getline(maps, line);)
		if (line.ends_with(file))
			return true;
	return false;
}

} // namespace

TEST(BundleTest, ShowsItsEntryPointsAlone) {
	FILE* nm = popen("nm -D --defined-only " VORTEL_BUNDLE_BINARY, "r");
	ASSERT_NE(nm, nullptr);
	std::set<std::string> symbols;
	char name[512];
	while (std::fscanf(nm, "%*s %*s %511s", name) == 1)
		symbols.insert(name);
	pclose(nm);
	EXPECT_EQ(
	    symbols, (std::set<std::string>{"GetPluginFactory", "ModuleEntry", "ModuleExit", "bundleEntry", "bundleExit"}));
}

TEST(BundleTest, SaysTheSameInItsFileAndInItsFactory) {
	const TVst3Module module;
	IPluginFactory3& factory = module.Factory();
	std::ifstream file(fs::path(VORTEL_BUNDLE_BINARY).parent_path().parent_path() / "Resources/moduleinfo.json");
	const auto json = nlohmann::json::parse(file);
	PFactoryInfo maker;
	PClassInfo2 info;
	ASSERT_EQ(factory.getFactoryInfo(&maker), kResultOk);
	ASSERT_EQ(factory.countClasses(), 1);
	ASSERT_EQ(factory.getClassInfo2(0, &info), kResultOk);
	EXPECT_EQ(json["Factory Info"]["Vendor"], maker.vendor);
	EXPECT_EQ(json["Factory Info"]["URL"], maker.url);
	EXPECT_EQ(json["Factory Info"]["E-Mail"], maker.email);
	EXPECT_EQ(maker.flags, 0);
	const auto& described = json["Classes"].at(0);
	char id[33] = {};
	FUID::fromTUID(info.cid).toString(id);
	EXPECT_EQ(described["CID"], id);
	EXPECT_STREQ(id, "5653546B6D7137766F7274656C320000");
	EXPECT_EQ(described["Category"], info.category);
	EXPECT_EQ(described["Name"], info.name);
	EXPECT_EQ(described["Vendor"], info.vendor);
	EXPECT_EQ(described["Version"], info.version);
	EXPECT_EQ(described["SDKVersion"], info.sdkVersion);
	EXPECT_EQ(described["Sub Categories"].at(0), info.subCategories);
	EXPECT_EQ(described["Class Flags"], info.classFlags);
	EXPECT_EQ(described["Cardinality"], info.cardinality);
	PClassInfoW wide;
	ASSERT_EQ(factory.getClassInfoUnicode(0, &wide), kResultOk);
	EXPECT_EQ(std::u16string(wide.name), u"Vortel2");
	EXPECT_EQ(std::u16string(wide.version), u"2.1.5");
}

TEST(BundleTest, UnloadingLeavesNothingBehind) {
	const auto threads = Count("/proc/self/task");
	const auto handles = Count("/proc/self/fd");
	for (int round = 0; round < 3; ++round) {
		{
			const TVst3Module module;
			EXPECT_EQ(LiveOnce(module), "0000");
		}
		EXPECT_FALSE(IsMapped("/Vortel2.so"));
		EXPECT_EQ(Count("/proc/self/task"), threads);
		EXPECT_EQ(Count("/proc/self/fd"), handles);
	}
}

TEST(BundleTest, LoadsWithoutAHomeAndWithNoBankOrADamagedOne) {
	const TTemporaryFolder folder;
	const std::string copy = folder.PathOf("Vortel2.so");
	fs::copy_file(VORTEL_BUNDLE_BINARY, copy);
	folder.Write("file", "where a folder should be");
	for (const char* variable : {"HOME", "XDG_STATE_HOME", "XDG_CONFIG_HOME"})
		setenv(variable, folder.PathOf("file").c_str(), 1);
	const TVst3Module module(copy);
	EXPECT_EQ(LiveOnce(module), "0000");
	EXPECT_NE(FirstProgram(module), u"Init") << "made up at random where there is no bank";
	fs::create_directory(folder.PathOf("Vortel2.res"));
	folder.Write("Vortel2.res/DefaultBank.v2bnk", "<VortelDocument><Program0><Name>Half");
	EXPECT_EQ(LiveOnce(module), "0000");
	EXPECT_EQ(FirstProgram(module), u"Init") << "what cannot be read leaves a bank of init programs";
}
