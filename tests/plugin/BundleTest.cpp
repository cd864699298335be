// SPDX-License-Identifier: GPL-3.0-or-later
// The bundle as it lies on the disk: what it shows, what it says of itself, and that it comes and goes without a trace.
#include "tests/support/TTemporaryFolder.h"

#include <pluginterfaces/base/ipluginbase.h>
#include <pluginterfaces/base/smartpointer.h>
#include <pluginterfaces/vst/ivstaudioprocessor.h>
#include <pluginterfaces/vst/ivstcomponent.h>

#include <dlfcn.h>
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

class TModule {
public:
	explicit TModule(const std::string& path) : mpHandle(dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL)) {
		if (!mpHandle)
			throw std::runtime_error(dlerror());
	}

	~TModule() { dlclose(mpHandle); }

	TModule(const TModule&) = delete;
	TModule& operator=(const TModule&) = delete;

	IPtr<IPluginFactory3> Factory() const {
		const auto get = reinterpret_cast<IPluginFactory* (*)()>(dlsym(mpHandle, "GetPluginFactory"));
		const IPtr<IPluginFactory> factory = owned(get());
		void* found = nullptr;
		factory->queryInterface(IPluginFactory3_iid, &found);
		return owned(static_cast<IPluginFactory3*>(found));
	}

	/// The result of each call of a life from creation to the last release.
	static std::string LiveOnce(IPluginFactory3& factory) {
		PClassInfo info;
		void* made = nullptr;
		factory.getClassInfo(0, &info);
		std::string results = std::to_string(factory.createInstance(info.cid, IComponent_iid, &made));
		auto* component = static_cast<IComponent*>(made);
		results += std::to_string(component->initialize(nullptr));
		results += std::to_string(component->setActive(1));
		component->queryInterface(IAudioProcessor_iid, &made);
		const IPtr<IAudioProcessor> processor = owned(static_cast<IAudioProcessor*>(made));
		ProcessData data;
		results += std::to_string(processor->process(data));
		results += std::to_string(component->terminate());
		component->release();
		return results;
	}

private:
	void* mpHandle;
};

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
	const TModule module(VORTEL_BUNDLE_BINARY);
	const auto factory = module.Factory();
	std::ifstream file(fs::path(VORTEL_BUNDLE_BINARY).parent_path().parent_path() / "Resources/moduleinfo.json");
	const auto json = nlohmann::json::parse(file);
	PFactoryInfo maker;
	PClassInfo2 info;
	ASSERT_EQ(factory->getFactoryInfo(&maker), kResultOk);
	ASSERT_EQ(factory->countClasses(), 1);
	ASSERT_EQ(factory->getClassInfo2(0, &info), kResultOk);
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
	ASSERT_EQ(factory->getClassInfoUnicode(0, &wide), kResultOk);
	EXPECT_EQ(std::u16string(wide.name), u"Vortel2");
	EXPECT_EQ(std::u16string(wide.version), u"2.1.5");
}

TEST(BundleTest, UnloadingLeavesNothingBehind) {
	const auto threads = Count("/proc/self/task");
	const auto handles = Count("/proc/self/fd");
	for (int round = 0; round < 3; ++round) {
		{
			const TModule module(VORTEL_BUNDLE_BINARY);
			EXPECT_EQ(TModule::LiveOnce(*module.Factory()), "00000");
		}
		EXPECT_FALSE(IsMapped("/Vortel2.so"));
		EXPECT_EQ(Count("/proc/self/task"), threads);
		EXPECT_EQ(Count("/proc/self/fd"), handles);
	}
}

TEST(BundleTest, LoadsWithoutResourcesAndWithoutAHome) {
	const TTemporaryFolder folder;
	const std::string copy = folder.PathOf("Vortel2.so");
	fs::copy_file(VORTEL_BUNDLE_BINARY, copy);
	folder.Write("file", "where a folder should be");
	for (const char* variable : {"HOME", "XDG_STATE_HOME", "XDG_CONFIG_HOME"})
		setenv(variable, folder.PathOf("file").c_str(), 1);
	const TModule module(copy);
	EXPECT_EQ(TModule::LiveOnce(*module.Factory()), "00000");
}
