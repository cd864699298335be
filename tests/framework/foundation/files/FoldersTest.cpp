// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/Folders.h"

#include "framework/foundation/files/FileOperations.h"
#include "platform/headless/THeadlessFolders.h"
#include "tests/support/TSmallDisk.h"
#include "tests/support/TStringPrinter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

struct FoldersTest : testing::Test {
	FoldersTest() { Folders::UseSystem(&mSystem); }

	~FoldersTest() override { Folders::UseSystem(nullptr); }

	void MakeFolder(const std::string& name) { fs::create_directories(mFolder.PathOf(name)); }

	/// What the resource folder is for a module at that place, without the path of the test's folder.
	std::string ResourcesFor(const std::string& module) {
		const std::string path = Folders::ResourceBaseOf(mFolder.Path(module)).Path().CString();
		const std::string root = mFolder.PathOf("");
		return path.starts_with(root) ? path.substr(root.size()) : path;
	}

	TTemporaryFolder mFolder;
	THeadlessFolders mSystem{mFolder.Directory()};
};

} // namespace

TEST_F(FoldersTest, SettingsComeFromTheNewestOlderVersion) {
	for (const char* version : {"V2.0.9", "V2.1.3", "V2.1", "V3.0.0", "V2.1.6", "Skin"}) {
		MakeFolder(std::string("Preferences/") + version);
		mFolder.Write(std::string("Preferences/") + version + "/Config.xml", version);
	}
	const std::string older = "Preferences/V2.1.3/";
	for (const char* name : {"a.DB", "Template one", "notes.txt"})
		mFolder.Write(older + name, name);
	for (const char* name : {"Themes/deep", "CrashBackups old"})
		MakeFolder(older + name);
	mFolder.Write(older + "Themes/deep/leaf", "leaf");
	EXPECT_EQ(Folders::Preferences().Path(), mFolder.Path("Preferences/V2.1.5/"));
	EXPECT_EQ(mFolder.Read("Preferences/V2.1.5/Config.xml"), "V2.1.3");
	EXPECT_EQ(mFolder.Read("Preferences/V2.1.5/Themes/deep/leaf"), "leaf");
	EXPECT_EQ(mFolder.Read("Preferences/V2.1.3/a.DB"), "a.DB") << "stays where it was";
	EXPECT_THAT(Folders::Preferences().ListFiles("*"), ElementsAre("Config.xml", "Template one", "a.DB"));
	EXPECT_THAT(Folders::Preferences().ListFolders("*"), ElementsAre("Themes"));
}

TEST_F(FoldersTest, OwnSettingsAndOtherPeoplesFilesAreNotOverwritten) {
	mFolder.Write("Preferences", "a file");
	EXPECT_FALSE(Folders::Preferences().Exists());
	EXPECT_EQ(mFolder.Read("Preferences"), "a file");
	fs::remove(mFolder.PathOf("Preferences"));
	Folders::Forget();
	for (const char* name : {"Preferences/V2.0.0", "Preferences/V2.1.5"}) {
		MakeFolder(name);
		mFolder.Write(std::string(name) + "/config.DB", name);
	}
	EXPECT_EQ(Folders::Preferences().ListFiles("*").Count(), 1);
	EXPECT_EQ(mFolder.Read("Preferences/V2.1.5/config.DB"), "Preferences/V2.1.5");
}

TEST_F(FoldersTest, TemporaryFolderIsTheProcesssOwnAndComesBack) {
	const TDirectory folder = Folders::Temporary();
	EXPECT_EQ(folder.Path(), mFolder.Path("Vortel2-0-" + std::to_string(getpid()) + "/"));
	EXPECT_TRUE(folder.Delete());
	EXPECT_EQ(Folders::Temporary(), folder);
	EXPECT_TRUE(folder.Exists());
	Folders::Forget();
	EXPECT_THAT(mFolder.Names(), IsEmpty()) << "an empty one does not stay behind";
}

TEST_F(FoldersTest, TemporaryFolderOfSomebodyElseIsNotUsed) {
	MakeFolder("elsewhere");
	fs::create_directory_symlink("elsewhere", mFolder.PathOf("Vortel2-0-" + std::to_string(getpid())));
	EXPECT_EQ(Folders::Temporary(), mFolder.Directory());
	Folders::Forget();
	EXPECT_TRUE(mFolder.Directory().Exists());
}

TEST_F(FoldersTest, ResourcesOfABundleLieInIt) {
	const std::string module = "plugins/Vortel2.vst3/Contents/x86_64-linux/Vortel2.so";
	EXPECT_EQ(Folders::BundleOf(mFolder.Path(module)).Path(), mFolder.Path("plugins/"));
	EXPECT_EQ(ResourcesFor(module), "plugins/Vortel2.vst3/Contents/Resources/");
	MakeFolder("plugins/Vortel2.res");
	EXPECT_EQ(ResourcesFor(module), "plugins/Vortel2.res/") << "beside the bundle wins";
}

TEST_F(FoldersTest, ResourcesOfAProgramLieBesideItOrInTheSharedFolder) {
	EXPECT_EQ(ResourcesFor("local/bin/vortel2"), "local/share/vortel2/");
	EXPECT_EQ(ResourcesFor("local/lib/vst/Vortel2.so"), "local/share/vortel2/");
	EXPECT_EQ(ResourcesFor("build/vortel2"), "/usr/share/vortel2/");
	MakeFolder("local/bin/vortel2.res");
	EXPECT_EQ(ResourcesFor("local/bin/vortel2"), "local/bin/vortel2.res/");
	EXPECT_TRUE(Folders::ModulePath().EndsWith("/foundation-tests")) << "without a path of its own, too";
	MakeFolder("checkout/Projects/Brightfen/XVortel");
	const std::string module = "checkout/build/debug/bin/vortel2";
	EXPECT_EQ(ResourcesFor(module), "checkout/build/debug/share/vortel2/");
	mFolder.Write("checkout/.git", "");
	EXPECT_EQ(ResourcesFor(module), "checkout/Projects/Brightfen/XVortel/Resources/");
}
