// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/TDirectory.h"

#include "framework/foundation/files/FileChanges.h"
#include "tests/support/TStringPrinter.h"
#include "tests/support/TTemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <utility>

using testing::ElementsAre;

TEST(TDirectoryTest, PathsAreNormalised) {
	const std::pair<const char*, const char*> paths[] = {
	    {"a\\b//c/./d/../e", "a/b/c/e/"},
	    {"", ""},
	    {"////", "/"},
	    {"/a/././b", "/a/b/"},
	    {"/a/b/../../c", "/c/"},
	    {"/a/..", "/"},
	    {"a/..", ""},
	    {"..", ""},
	    {"../a", ""},
	    {"/../a", ""},
	    {"a/../../b", ""},
	    {"/a..b/..c/d..", "/a..b/..c/d../"},
	};
	for (const auto& [text, normal] : paths)
		EXPECT_EQ(TDirectory(text).Path(), normal) << text;
	EXPECT_EQ(TDirectory("/a/b/").Ascend().Path(), "/a/");
	EXPECT_EQ(TDirectory("/").Ascend().Path(), "");
	EXPECT_EQ(TDirectory("/a").Descend("b"), TDirectory("\\a\\b"));
	EXPECT_EQ(TDirectory("/a").FilePath("b"), "/a/b");
	EXPECT_EQ(TDirectory("/a/b").Depth(), 2);
}

TEST(TDirectoryTest, CreateMakesTheParentsOnDemand) {
	const TTemporaryFolder folder;
	const TDirectory deep = folder.Directory().Descend("a/b/c");
	EXPECT_FALSE(deep.Create(false));
	EXPECT_TRUE(deep.Create(true));
	EXPECT_TRUE(deep.Create(false)) << "it exists";
	struct stat status;
	ASSERT_EQ(stat(deep.Path().CString(), &status), 0);
	EXPECT_EQ(status.st_mode & 0022, 0u) << "nobody else may write there";

	folder.Write("file", "");
	EXPECT_FALSE(folder.Directory().Descend("file").Descend("below").Create(true));
	EXPECT_FALSE(folder.Directory().Descend("file").Exists());
	EXPECT_FALSE(TDirectory().Create(true));
}

TEST(TDirectoryTest, DeleteRemovesTheTreeButDoesNotFollowLinks) {
	const TTemporaryFolder folder;
	folder.Directory().Descend("tree/below").Create(true);
	folder.Directory().Descend("outside").Create(true);
	folder.Write("outside/kept", "kept");
	folder.Write("tree/below/.hidden", "");
	std::filesystem::create_directory_symlink(folder.PathOf("outside"), folder.PathOf("tree/link"));
	EXPECT_TRUE(folder.Directory().Descend("tree").Delete());
	EXPECT_THAT(folder.Names(), ElementsAre("outside"));
	EXPECT_EQ(folder.Read("outside/kept"), "kept");
	EXPECT_FALSE(folder.Directory().Descend("tree").Delete());
}

TEST(TDirectoryTest, PatternsAreComparedFromTheEnd) {
	const auto matches = [](const char* name, const char* pattern) { return MatchesFilePatterns(name, {pattern}); };
	EXPECT_TRUE(matches("Config.XML", "*.xml") && matches("Config.xml", "*.XML"));
	EXPECT_TRUE(matches("no extension", "*") && matches("no extension", "*.*"));
	EXPECT_TRUE(matches("exact.txt", "Exact.txt"));
	EXPECT_TRUE(matches("anything.xml", "prefix*.xml")) << "what stands before the * does not count";
	EXPECT_FALSE(matches("xml", "*.xml") || matches("in exact.txt", "exact.txt") || matches("name", ""));
	EXPECT_TRUE(MatchesFilePatterns("b.wav", {"*.aif", "*.wav"}));
	EXPECT_FALSE(MatchesFilePatterns("b.wav", {}));
}

TEST(TDirectoryTest, ListingsTellFilesFromFolders) {
	const TTemporaryFolder folder;
	for (const char* name : {"b.xml", "A.XML", "c", ".hidden.xml"})
		folder.Write(name, "123");
	folder.Directory().Descend("sub.xml").Create(false);
	const TDirectory directory = folder.Directory();
	EXPECT_THAT(directory.ListFiles("*"), ElementsAre("A.XML", "b.xml", "c"));
	EXPECT_THAT(directory.ListFiles("*.xml", true), ElementsAre(".hidden.xml", "A.XML", "b.xml"));
	EXPECT_THAT(directory.ListFolders("*.xml"), ElementsAre("sub.xml"));
	EXPECT_TRUE(directory.HasFiles());
	EXPECT_FALSE(directory.Descend("sub.xml").HasFiles() || directory.Descend("missing").HasFiles());
}

TEST(TDirectoryTest, PropertiesOfListedAndMissingFiles) {
	const TTemporaryFolder folder;
	folder.Write(".hidden", "12345");
	const TList<TPtr<TFileProperties>> listed = folder.Directory().ListFileProperties({"*"}, true);
	ASSERT_EQ(listed.Count(), 1);
	EXPECT_EQ(listed[0]->mName, ".hidden");
	EXPECT_EQ(listed[0]->mSize, 5);
	EXPECT_EQ(listed[0]->mFlags, TFileProperties::kHidden);
	EXPECT_TRUE(listed[0]->mDate.IsValid() && listed[0]->mTime.IsValid());
	EXPECT_EQ((TFileProperties::TDate{2026, 7, 9}.Text()), "2026-07-09");
	EXPECT_EQ((TFileProperties::TTime{9, 5, 0}.Text()), "09:05:00");
	const auto missing = MakePtr<TFileProperties>(folder.Directory().Path(), "missing");
	EXPECT_FALSE(missing->mDate.IsValid() || missing->mTime.IsValid());
}

TEST(TDirectoryTest, LatestChangeLooksBelowOnDemand) {
	using namespace std::chrono_literals;
	const TTemporaryFolder folder;
	folder.Directory().Descend("sub").Create(false);
	folder.Write("sub/new", "");
	const auto now = std::filesystem::file_time_type::clock::now();
	std::filesystem::last_write_time(folder.PathOf("sub/new"), now);
	std::filesystem::last_write_time(folder.PathOf("sub"), now - 100s);
	std::filesystem::last_write_time(folder.PathOf(""), now - 200s);
	const int64_t shallow = folder.Directory().LatestChange(false);
	EXPECT_NEAR(static_cast<double>(folder.Directory().LatestChange(true) - shallow), 100.0, 1.0);
	EXPECT_EQ(folder.Directory().Descend("missing").LatestChange(true), 0);
}
