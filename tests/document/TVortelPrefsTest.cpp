// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TVortelPrefs.h"

#include "framework/foundation/files/Folders.h"
#include "framework/foundation/process/TSystemGlobals.h"
#include "framework/graphics/surfaces/EarlyScaleFactor.h"
#include "framework/gui/events/TBaseViewsPrefs.h"
#include "platform/headless/THeadlessFolders.h"
#include "tests/support/TFrameworkFixture.h"
#include "tests/support/TSmallDisk.h"
#include "tests/support/TStringPrinter.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kFile = "Preferences/V2.1.5/Config.xml";

std::vector<std::string> sMessages;

void Note(const TString& title, const TString& text, TMessageKind) {
	sMessages.push_back(std::string(title.CString()) + ": " + text.CString());
}

/// Two instances in one process, each with preferences of its own.
class TVortelPrefsTest : public TFrameworkFixture {
protected:
	void SetUp() override {
		TFrameworkFixture::SetUp();
		sMessages.clear();
		UseFolder(mFolder);
		TBaseViewsPrefs::Create([] { return new TBaseViewsPrefs; }, [](TBaseViewsPrefs* prefs) { delete prefs; });
		TSystemGlobals::Instance()->SetMessageDialogFunction(&Note);
		mOtherId = TGlobalStorage::CreateStorage();
	}

	void TearDown() override {
		TVortelPrefs::Destroy();
		TGlobalStorage::DestroyStorage(mOtherId);
		TBaseViewsPrefs::Destroy();
		Folders::UseSystem(nullptr);
		TFrameworkFixture::TearDown();
	}

	void UseFolder(const TTemporaryFolder& folder) {
		mSystem.emplace(folder.Directory());
		Folders::UseSystem(&*mSystem);
	}

	template <class TWork>
	void InOtherInstance(const TWork& work) {
		const TGlobalStorageScope scope(mOtherId);
		work();
	}

	static TVortelPrefs& Start() {
		TVortelPrefs::Create();
		return *TVortelPrefs::Instance();
	}

	static TVortelPrefs& Restart() {
		TVortelPrefs::Destroy();
		return Start();
	}

	void WriteFile(const std::string& text, const char* version = "V2.1.5") {
		std::filesystem::create_directories(mFolder.PathOf(std::string("Preferences/") + version));
		mFolder.Write(std::string("Preferences/") + version + "/Config.xml", text);
	}

	std::string FileFor(const std::string& members) const {
		return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<VortelPrefs doc_version=\"0\">\n" + members +
		       "</VortelPrefs>\n";
	}

	TTemporaryFolder mFolder;

private:
	std::optional<THeadlessFolders> mSystem;
	int32_t mOtherId = -1;
};

} // namespace

TEST_F(TVortelPrefsTest, FirstEndMakesTheFile) {
	Start();
	EXPECT_TRUE(TVortelPrefs::Instance()->RandomizeOnLoad().Get());
	TVortelPrefs::Destroy();
	EXPECT_EQ(
	    mFolder.Read(kFile), FileFor(
	                             "  <LastUsedPath>" + mFolder.PathOf("Documents/") +
	                             "</LastUsedPath>\n  <ShowToolTips>true</ShowToolTips>\n"
	                             "  <WarpCursorOnDrag>true</WarpCursorOnDrag>\n"
	                             "  <RandomizeOnLoad>true</RandomizeOnLoad>\n"));
	EXPECT_THAT(sMessages, IsEmpty());
}

TEST_F(TVortelPrefsTest, ValuesLastAndReachTheViews) {
	TVortelPrefs& prefs = Start();
	prefs.DefaultBankFilename().Set("/banks/Mine & <yours>.v2bnk");
	prefs.ShowToolTips().Set(false);
	EXPECT_FALSE(TBaseViewsPrefs::Instance()->ShowTooltips().Get());
	TVortelPrefs::Destroy();
	TBaseViewsPrefs::Instance()->ShowTooltips().Set(true);
	EXPECT_EQ(Start().DefaultBankFilename().Get(), "/banks/Mine & <yours>.v2bnk");
	EXPECT_FALSE(TBaseViewsPrefs::Instance()->ShowTooltips().Get());
}

TEST_F(TVortelPrefsTest, TheScaleStandsWhereTheNextStartLooksForIt) {
	Start().UiScaleFactor().Set("200%");
	EXPECT_EQ(Restart().UiScaleFactor().Get(), "200%");
	EXPECT_THAT(
	    mFolder.Read(kFile),
	    HasSubstr("  <GraphPortPrefs>\n    <UIScaleFactor>200%</UIScaleFactor>\n  </GraphPortPrefs>\n"));
	EXPECT_EQ(EarlyScaleFactor(), "200%");
	TVortelPrefs::Instance()->UiScaleFactor().Set({});
	EXPECT_TRUE(Restart().UiScaleFactor().Get().IsEmpty());
	EXPECT_THAT(mFolder.Read(kFile), Not(HasSubstr("GraphPort")));
}

TEST_F(TVortelPrefsTest, SettingsOfAnOlderVersionAreTakenOver) {
	WriteFile(
	    FileFor("<GraphPortPrefs><UIScaleFactor>2</UIScaleFactor></GraphPortPrefs>"
	            "<RandomizeOnLoad>No</RandomizeOnLoad><WarpCursorOnDrag>perhaps</WarpCursorOnDrag>"),
	    "V2.1.3");
	TVortelPrefs& prefs = Start();
	EXPECT_FALSE(prefs.RandomizeOnLoad().Get());
	EXPECT_TRUE(prefs.WarpCursorOnDrag().Get()) << "what cannot be read keeps its default";
	EXPECT_THAT(sMessages, IsEmpty());
}

TEST_F(TVortelPrefsTest, BrokenFileCostsOnlyTheSettings) {
	for (const char* text :
	     {"",
	      "\x7F"
	      "ELF",
	      "<VortelPrefs doc_version=\"0\"><RandomizeOnLoad>false", "<Skin/>",
	      "<!DOCTYPE a [<!ENTITY b SYSTEM \"/etc/passwd\">]><VortelPrefs><LastUsedPath>&b;"}) {
		WriteFile(text);
		sMessages.clear();
		EXPECT_TRUE(Start().RandomizeOnLoad().Get());
		ASSERT_EQ(sMessages.size(), 1u) << text;
		EXPECT_TRUE(sMessages[0].starts_with("Error: ")) << sMessages[0];
		TVortelPrefs::Destroy();
		EXPECT_TRUE(mFolder.Read(kFile).ends_with("<RandomizeOnLoad>true</RandomizeOnLoad>\n</VortelPrefs>\n"));
		EXPECT_EQ(sMessages.size(), 1u) << "overwritten without a word";
	}
}

TEST_F(TVortelPrefsTest, InstanceDoesNotTakeBackWhatAnotherHasSaved) {
	Start();
	InOtherInstance([] { Start().ShowToolTips().Set(false); });
	EXPECT_TRUE(TVortelPrefs::Instance()->ShowToolTips().Get()) << "each has its own values";
	InOtherInstance([] { TVortelPrefs::Instance()->SaveConfirmed(); });
	TVortelPrefs::Instance()->RandomizeOnLoad().Set(false);
	TVortelPrefs::Destroy();
	InOtherInstance([] { TVortelPrefs::Destroy(); });
	TVortelPrefs& prefs = Start();
	EXPECT_FALSE(prefs.ShowToolTips().Get());
	EXPECT_FALSE(prefs.RandomizeOnLoad().Get());
}

TEST_F(TVortelPrefsTest, FolderThatTakesNoFile) {
	mFolder.Write("Preferences", "a file where the folder should be");
	Start();
	TVortelPrefs::Instance()->SaveConfirmed();
	EXPECT_THAT(sMessages, IsEmpty()) << "only in the log";
	TVortelPrefs::Destroy();
	EXPECT_THAT(
	    sMessages,
	    ElementsAre("Warning: Failed to write the XML file '" + mFolder.PathOf(kFile) + "' (Not a directory)!"));
}

TEST_F(TVortelPrefsTest, FolderInThePlaceOfTheFile) {
	std::filesystem::create_directories(mFolder.PathOf(kFile));
	Start();
	TVortelPrefs::Destroy();
	EXPECT_THAT(
	    sMessages, ElementsAre(
	                   "Error: Failed to parse the XML file '" + mFolder.PathOf(kFile) + "' (Is a directory)!",
	                   "Warning: Failed to write the XML file '" + mFolder.PathOf(kFile) + "' (Is a directory)!"));
	EXPECT_THAT(Folders::Preferences().ListFiles("*").Count(), 0);
}

TEST_F(TVortelPrefsTest, FullOrReadOnlyDiskKeepsTheOldFile) {
	TSmallDisk disk;
	if (!disk.IsMounted())
		GTEST_SKIP() << TSmallDisk::kNotMounted;
	UseFolder(*disk);
	Start();
	const std::string old = (TVortelPrefs::Destroy(), disk->Read(kFile));
	ASSERT_FALSE(old.empty());
	disk.Fill();
	Start().RandomizeOnLoad().Set(false);
	Restart().RandomizeOnLoad().Set(false);
	disk.MakeReadOnly();
	TVortelPrefs::Destroy();
	const std::string message = "Warning: Failed to write the XML file '" + disk->PathOf(kFile) + "' (";
	EXPECT_THAT(sMessages, ElementsAre(message + "No space left on device)!", message + "Read-only file system)!"));
	EXPECT_EQ(disk->Read(kFile), old);
	EXPECT_EQ(Folders::Preferences().ListFiles("*", true).Count(), 1) << "no temporary file";
}

TEST_F(TVortelPrefsTest, ProcessesThatSaveAndDieAtAnyMomentLeaveAWholeFile) {
	Start();
	Restart();
	for (int round = 0; round < 20; ++round) {
		int saved[2];
		ASSERT_EQ(pipe(saved), 0);
		std::vector<pid_t> children;
		for (int i = 0; i < 2; ++i) {
			children.push_back(fork());
			if (children.back() != 0)
				continue;
			TVortelPrefs& prefs = *TVortelPrefs::Instance();
			for (int save = 0;; ++save) {
				prefs.LastUsedPath().Set(TString("/folder/").Repeat(1 + save % 2000));
				prefs.SaveChanges();
				EXPECT_EQ(write(saved[1], "", 1), 1);
			}
		}
		char byte = 0;
		for (int i = 0; i < 3 + round; ++i)
			ASSERT_EQ(read(saved[0], &byte, 1), 1);
		for (const pid_t child : children) {
			kill(child, SIGKILL);
			waitpid(child, nullptr, 0);
		}
		close(saved[0]);
		close(saved[1]);
		Restart();
		ASSERT_THAT(sMessages, IsEmpty());
		ASSERT_TRUE(TVortelPrefs::Instance()->LastUsedPath().Get().StartsWith("/folder/"));
	}
}
