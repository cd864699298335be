// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/FileOperations.h"

#include "framework/foundation/files/FileChanges.h"
#include "tests/support/TSmallDisk.h"
#include "tests/support/TStringPrinter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using testing::ElementsAre;

namespace fs = std::filesystem;

TEST(FileOperationsTest, NamesBecomeLegalAndExtensionsBelongToTheLastElement) {
	EXPECT_EQ(LegalFileName("a:b?c\"d*e<f>g|h/i\\j\x01k\x7Fl.xml", false), "a_b_c_d_e_f_g_h_i_j_k_l.xml");
	EXPECT_EQ(LegalFileName("a/b\\c:d", true), "a/b\\c_d");
	EXPECT_EQ(FileExtension("/a.b/c.d.e"), "e");
	EXPECT_EQ(FileBaseName("/a.b/c.d.e"), "c.d");
	EXPECT_EQ(FileExtension("/a.b/c"), "");
	EXPECT_EQ(FileBaseName("a.b\\c"), "c");
	EXPECT_EQ(FileExtension("") + FileBaseName("a/"), "");
}

TEST(FileOperationsTest, UniqueNamesDifferAndPassOverWhatIsThere) {
	const TTemporaryFolder folder;
	const TString first = UniqueFileName(folder.Directory(), ".tmp");
	const TString number = first.SubString(first.FindChar(u'-', first.Length() - 1, true) + 1);
	const int next = TString::FromStringOrZero<int>(number) + 1;
	folder.Write("Vortel2_TmpFile-0-" + std::to_string(next) + ".tmp", "");
	EXPECT_EQ(
	    UniqueFileName(folder.Directory(), ".tmp"),
	    folder.Path("Vortel2_TmpFile-0-" + std::to_string(next + 1) + ".tmp"));
	EXPECT_TRUE(UniqueFolderName(folder.Directory()).Path().StartsWith(folder.Path("Vortel2_TmpPath-0-")));
}

TEST(FileOperationsTest, CopiesOverTheTargetAndWholeTrees) {
	const TTemporaryFolder folder;
	folder.Write("from", std::string(150000, 'x'));
	folder.Write("to", std::string(200000, 'y'));
	EXPECT_TRUE(CopyFile(folder.Path("from"), folder.Path("to")));
	EXPECT_EQ(folder.Read("to"), std::string(150000, 'x'));
	EXPECT_FALSE(CopyFile(folder.Path("to"), folder.Path("to"))) << "would empty the file";
	EXPECT_EQ(folder.Read("to").size(), 150000u);
	EXPECT_FALSE(CopyFile(folder.Path("missing"), folder.Path("to")));
	EXPECT_EQ(folder.Read("to").size(), 150000u);
	fs::create_directories(folder.PathOf("tree/deep"));
	folder.Write("tree/deep/leaf", "leaf");
	EXPECT_FALSE(CopyFile(folder.Path("tree"), folder.Path("copy")));
	EXPECT_TRUE(CopyFile(folder.Path("tree"), folder.Path("copy"), true));
	EXPECT_EQ(folder.Read("copy/deep/leaf"), "leaf");
}

TEST(FileOperationsTest, MovesFilesAndFolders) {
	const TTemporaryFolder folder;
	folder.Write("a", "a");
	folder.Write("b", "b");
	EXPECT_TRUE(MoveFile(folder.Path("a"), folder.Path("a")));
	EXPECT_TRUE(MoveFile(folder.Path("a"), folder.Path("b")));
	EXPECT_TRUE(MoveFile(folder.Path("b"), folder.Path("B"))) << "by way of a third name";
	EXPECT_THAT(folder.Names(), ElementsAre("B"));
	EXPECT_EQ(folder.Read("B"), "a");
	EXPECT_FALSE(MoveFile(folder.Path("missing"), folder.Path("B"))) << "the target is not given up for nothing";
	fs::create_directories(folder.PathOf("outer/inner"));
	folder.Write("outer/inner/leaf", "leaf");
	EXPECT_FALSE(MoveFile(folder.Path("outer/inner"), folder.Path("outer")));
	EXPECT_TRUE(MoveFile(folder.Path("outer"), folder.Path("B"))) << "a folder over a file";
	EXPECT_EQ(folder.Read("B/inner/leaf"), "leaf");
}

TEST(FileOperationsTest, MovesBetweenDisksOrLeavesTheSource) {
	TSmallDisk disk;
	if (!disk.IsMounted())
		GTEST_SKIP() << TSmallDisk::kNotMounted;
	const TTemporaryFolder folder;
	folder.Write("small", "small");
	folder.Write("large", std::string(200000, 'x'));
	EXPECT_TRUE(MoveFile(folder.Path("small"), disk->Path("small")));
	EXPECT_EQ(disk->Read("small"), "small");
	EXPECT_FALSE(MoveFile(folder.Path("large"), disk->Path("large")));
	EXPECT_FALSE(CopyFile(folder.Path("large"), disk->Path("large")));
	EXPECT_THAT(folder.Names(), ElementsAre("large"));
	EXPECT_EQ(folder.Read("large").size(), 200000u);
}
