// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/TFile.h"

#include "framework/foundation/files/FileChanges.h"
#include "framework/foundation/text/TReadableException.h"
#include "tests/support/TTemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

struct TFileTest : testing::Test {
	TTemporaryFolder mFolder;
};

template <class TFunction>
std::string MessageOf(TFunction&& function) {
	try {
		function();
	} catch (const TReadableException& exception) {
		return exception.what();
	}
	return "nothing thrown";
}

const std::string kEndOfFile = "Unexpected end of file!";
const std::string kNoSpace = "File I/O error: Please make sure that there is enough space available on the device!";

} // namespace

TEST_F(TFileTest, NumbersStandInTheChosenByteOrder) {
	TFile file(mFolder.Path("numbers"));
	ASSERT_TRUE(file.Open());
	file.WriteInt32(0x01020304);
	file.SetByteOrder(TFile::kBigEndian);
	file.WriteInt8(5);
	file.WriteInt16(0x0607);
	file.WriteInt64(0x08090A0B0C0D0E0F);
	file.WriteFloat(1.0f);
	file.WriteDouble(-2.0);
	EXPECT_EQ(file.Size(), 27) << "also before anything is flushed";
	file.Seek(4);
	EXPECT_EQ(file.ReadInt8(), 5);
	EXPECT_EQ(file.ReadInt16(), 0x0607);
	EXPECT_EQ(file.ReadInt64(), 0x08090A0B0C0D0E0F);
	EXPECT_EQ(file.ReadFloat(), 1.0f);
	EXPECT_EQ(file.ReadDouble(), -2.0);
	file.Close();
	EXPECT_EQ(
	    mFolder.Read("numbers"),
	    std::string("\4\3\2\1\5\6\7\x8\x9\xA\xB\xC\xD\xE\xF\x3F\x80\0\0\xC0\0\0\0\0\0\0\0", 27));
}

TEST_F(TFileTest, NeitherTheEndNorTheLengthOfABlockIsTrusted) {
	for (const char* length : {"\xFF\xFF\xFF\x7F", "\xFF\xFF\xFF\xFF", "\4\0\0"}) {
		mFolder.Write("lying", std::string(length, 4) + "abc");
		TFile file(mFolder.Path("lying"));
		ASSERT_TRUE(file.Open(TFile::kReadOnly));
		TArray<uint8_t> block;
		EXPECT_EQ(MessageOf([&] { file.ReadBytes(block); }), kEndOfFile);
		EXPECT_EQ(block.Size(), 0);
		EXPECT_EQ(MessageOf([&] { file.ReadInt32(); }), kEndOfFile);
		file.Seek(5);
		char buffer[10] = {};
		int64_t bytes = 10;
		EXPECT_FALSE(file.Read(buffer, bytes));
		EXPECT_EQ(bytes, 2);
		EXPECT_STREQ(buffer, "bc");
	}
}

TEST_F(TFileTest, BlocksAndTextsComeBack) {
	TFile file(mFolder.Path("blocks"));
	ASSERT_TRUE(file.Open());
	const TString text(u"na\u00EFve \u20AC");
	file.WriteString(text, kUtf8Encoding);
	file.WriteBytes({});
	file.WriteBytes(TArray<uint8_t>{1, 2, 3});
	file.Seek(0);
	EXPECT_EQ(file.ReadInt32(), 10) << "bytes, not units";
	file.Seek(0);
	TString read;
	file.ReadString(read, kUtf8Encoding);
	EXPECT_EQ(read, text);
	TArray<uint8_t> block(5);
	file.ReadBytes(block);
	EXPECT_EQ(block.Size(), 0);
	file.ReadBytes(block);
	EXPECT_THAT(std::vector<int>(block.begin(), block.end()), ElementsAre(1, 2, 3));
}

TEST_F(TFileTest, ReadsAndWritesMayAlternate) {
	TFile file(mFolder.Path("mixed"));
	ASSERT_TRUE(file.Open());
	for (int32_t value : {1, 2, 3})
		file.WriteInt32(value);
	file.Seek(0);
	EXPECT_EQ(file.ReadInt32(), 1);
	file.WriteInt32(20);
	EXPECT_EQ(file.ReadInt32(), 3);
	file.Seek(4);
	EXPECT_EQ(file.ReadInt32(), 20);
}

TEST_F(TFileTest, ModesDecideWhatBecomesOfOldContent) {
	mFolder.Write("old", "old");
	const std::pair<TFile::TMode, const char*> modes[] = {
	    {TFile::kReadOnly, "old"},
	    {TFile::kAppend, "oldnew"},
	    {TFile::kReadAppend, "oldnewnew"},
	    {TFile::kWriteOnly, "new"}};
	for (const auto& [mode, content] : modes) {
		TFile file(mFolder.Path("old"));
		EXPECT_TRUE(file.Open(mode));
		int64_t bytes = 3;
		EXPECT_EQ(file.Write("new", bytes), mode != TFile::kReadOnly);
		EXPECT_EQ(bytes, mode == TFile::kReadOnly ? 0 : 3);
		file.Close();
		EXPECT_EQ(mFolder.Read("old"), content);
	}
}

TEST_F(TFileTest, FolderAndMissingFileDoNotOpen) {
	for (const char* name : {"", "missing"}) {
		TFile file(mFolder.Path(name));
		EXPECT_FALSE(file.Open(TFile::kReadOnly) || file.Exists() || file.Delete());
	}
	EXPECT_EQ(TFile(mFolder.Path("missing")).Size(), 0);
}

TEST_F(TFileTest, ClosedFileAndFullDiskTakeNothing) {
	TFile closed(mFolder.Path("closed"));
	int64_t bytes = 1;
	char buffer = 0;
	EXPECT_FALSE(closed.Read(&buffer, bytes) || closed.Seek(0));
	EXPECT_EQ(bytes, 0);
	EXPECT_EQ(MessageOf([&] { closed.WriteInt32(1); }), kNoSpace);
	TFile full("/dev/full");
	ASSERT_TRUE(full.Open(TFile::kWriteOnly));
	full.WriteInt32(1);
	EXPECT_EQ(MessageOf([&] { full.Flush(); }), "Failed to flush the file to disk. Probably the disk is full.");
	EXPECT_EQ(MessageOf([&] { full.WriteBytes(TArray<uint8_t>(1000000)); }), kNoSpace);
}

TEST_F(TFileTest, ListenersLearnOfChangesOutsideTheIgnoredFolders) {
	struct TListener {
		void OnFileChange(const TString& path) {
			const std::string text = path.CString();
			mChanges.push_back(text.substr(text.rfind('/', text.size() - 2) + 1));
		}

		std::vector<std::string> mChanges;
	};

	TListener listener;
	FileChanges::AddListener({&listener, &TListener::OnFileChange});
	{
		TFile file(mFolder.Path("changed"));
		file.Open(TFile::kWriteOnly);
		file.Open(TFile::kReadOnly);
		file.Open(TFile::kAppend);
	}
	TFile(mFolder.Path("changed")).Delete();
	EXPECT_THAT(listener.mChanges, ElementsAre("changed", "changed", "changed"));
	FileChanges::IgnoreFolder(mFolder.Directory().Descend("ignored"));
	EXPECT_TRUE(mFolder.Directory().Descend("ignored/deep").Create(true));
	EXPECT_TRUE(mFolder.Directory().Descend("ignored too").Create(true));
	FileChanges::RemoveListener({&listener, &TListener::OnFileChange});
	EXPECT_TRUE(mFolder.Directory().Descend("unheard").Create(true));
	EXPECT_THAT(listener.mChanges, ElementsAre("changed", "changed", "changed", "ignored too/"));
}
