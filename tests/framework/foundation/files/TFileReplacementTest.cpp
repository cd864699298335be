// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/TFileReplacement.h"

#include "tests/support/TSmallDisk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string Replace(const TString& path, const std::string& contents) {
	const std::span bytes(reinterpret_cast<const uint8_t*>(contents.data()), contents.size());
	const TString reason = ReplaceFileContents(path, bytes);
	return reason.IsEmpty() ? "done" : reason.CString();
}

mode_t ModeOf(const std::string& path) {
	struct stat status {};

	stat(path.c_str(), &status);
	return status.st_mode & 07777;
}

} // namespace

TEST(TFileReplacementTest, KeepsRightsAndLinksAndGivesNewFilesThoseOfTheUser) {
	const TTemporaryFolder folder;
	const mode_t previousMask = umask(027);
	EXPECT_EQ(Replace(folder.Path("new"), "1"), "done");
	umask(previousMask);
	EXPECT_EQ(ModeOf(folder.PathOf("new")), 0640u);
	ASSERT_EQ(symlink("new", folder.PathOf("link").c_str()), 0);
	chmod(folder.PathOf("new").c_str(), 0604);
	EXPECT_EQ(Replace(folder.Path("link"), "22"), "done");
	EXPECT_EQ(folder.Read("new"), "22");
	EXPECT_EQ(ModeOf(folder.PathOf("new")), 0604u);
	EXPECT_TRUE(std::filesystem::is_symlink(folder.PathOf("link")));
	EXPECT_THAT(folder.Names(), ElementsAre("link", "new"));
}

TEST(TFileReplacementTest, OldContentsStayUntilTheNewOnesAreWhole) {
	const TTemporaryFolder folder;
	folder.Write("file", "old");
	{
		TFileReplacement replacement(folder.Path("file"));
		replacement.Write(std::vector<uint8_t>(100000, 'x'));
		EXPECT_EQ(folder.Read("file"), "old");
	}
	EXPECT_EQ(folder.Read("file"), "old");
	EXPECT_THAT(folder.Names(), ElementsAre("file"));
}

TEST(TFileReplacementTest, FullDisk) {
	TSmallDisk disk;
	if (!disk.IsMounted())
		GTEST_SKIP() << TSmallDisk::kNotMounted;
	disk->Write("file", "old");
	EXPECT_EQ(Replace(disk->Path("file"), std::string(200000, 'x')), "No space left on device");
	disk.Fill();
	EXPECT_EQ(Replace(disk->Path("file"), "x"), "No space left on device");
	EXPECT_EQ(disk->Read("file"), "old");
	EXPECT_THAT(disk->Names(), ElementsAre("file", "filling"));
}

TEST(TFileReplacementTest, PlacesThatTakeNoFile) {
	TSmallDisk disk;
	if (!disk.IsMounted())
		GTEST_SKIP() << TSmallDisk::kNotMounted;
	disk->Write("file", "old");
	ASSERT_EQ(mkfifo(disk->PathOf("pipe").c_str(), 0600), 0);
	disk.MakeReadOnly();
	EXPECT_EQ(Replace(disk->Path("file"), "new"), "Read-only file system");
	EXPECT_EQ(Replace(disk->Path("other"), "new"), "Read-only file system");
	EXPECT_EQ(Replace(disk->Path(""), "new"), "Is a directory");
	EXPECT_EQ(Replace(disk->Path("vanished/file"), "new"), "No such file or directory");
	EXPECT_EQ(Replace(disk->Path("file/file"), "new"), "Not a directory");
	EXPECT_EQ(Replace(disk->Path("pipe"), "new"), "Not a regular file");
	EXPECT_EQ(Replace("", "new"), "No such file or directory");
	EXPECT_EQ(disk->Read("file"), "old");
}

TEST(TFileReplacementTest, ProcessesThatReplaceAFileAtOnceLeaveOneOfTheContentsWhole) {
	const TTemporaryFolder folder;
	const std::string contents[] = {std::string(50000, 'a'), std::string(70000, 'b')};
	std::vector<pid_t> children;
	for (const std::string& mine : contents) {
		children.push_back(fork());
		if (children.back() != 0)
			continue;
		bool good = true;
		for (int i = 0; i < 50; ++i)
			good &= Replace(folder.Path("file"), mine) == "done";
		_exit(good ? 0 : 1);
	}
	int torn = 0;
	for (int i = 0; i < 200; ++i) {
		const std::string seen = folder.Read("file");
		torn += !seen.empty() && seen != contents[0] && seen != contents[1];
	}
	for (const pid_t child : children) {
		int status = -1;
		waitpid(child, &status, 0);
		EXPECT_EQ(status, 0);
	}
	EXPECT_EQ(torn, 0);
	EXPECT_THAT(folder.Names(), ElementsAre("file"));
}
