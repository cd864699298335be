// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/TXdgFolders.h"

#include "tests/support/TTemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

std::string LogFolder(const char* state, const char* home) {
	state ? setenv("XDG_STATE_HOME", state, 1) : unsetenv("XDG_STATE_HOME");
	home ? setenv("HOME", home, 1) : unsetenv("HOME");
	return TXdgFolders().LogDirectory().Path().CString();
}

TEST(TXdgFoldersTest, LogLiesInTheStateFolder) {
	EXPECT_EQ(LogFolder("/var/state", "/home/user"), "/var/state/Vortel2/");
	EXPECT_EQ(LogFolder("/var/state/", nullptr), "/var/state/Vortel2/");
	EXPECT_EQ(LogFolder(nullptr, "/home/user"), "/home/user/.local/state/Vortel2/");
}

TEST(TXdgFoldersTest, RelativePathsCountAsUnset) {
	EXPECT_EQ(LogFolder("state", "/home/user"), "/home/user/.local/state/Vortel2/");
	EXPECT_EQ(LogFolder("", "/home/user"), "/home/user/.local/state/Vortel2/");
	// Without any answer of the environment the password database has one.
	EXPECT_EQ(LogFolder("", "home").front(), '/');
}

/// The user's folders with one named in user-dirs.dirs.
std::string DocumentsFolder(const TTemporaryFolder& home, const std::string& userDirs) {
	setenv("HOME", home.PathOf("").c_str(), 1);
	setenv("XDG_CONFIG_HOME", home.PathOf("").c_str(), 1);
	home.Write("user-dirs.dirs", userDirs);
	const std::string path = TXdgFolders().DocumentsDirectory().Path().CString();
	return path.starts_with(home.PathOf("")) ? "~/" + path.substr(home.PathOf("").size()) : path;
}

TEST(TXdgFoldersTest, DocumentsLieWhereTheUserKeepsThem) {
	const TTemporaryFolder home;
	EXPECT_EQ(DocumentsFolder(home, "# comment\nXDG_DOCUMENTS_DIR=\"$HOME/My \\\"Papers\\\"\"\n"), "~/My \"Papers\"/");
	EXPECT_EQ(DocumentsFolder(home, "XDG_DOCUMENTS_DIR=\"/papers\"\nXDG_MUSIC_DIR=\"/music\""), "/papers/");
	for (const char* useless :
	     {"", "XDG_DOCUMENTS_DIR=\"papers\"", "XDG_DOCUMENTS_DIR=", "#XDG_DOCUMENTS_DIR=\"/papers\""})
		EXPECT_EQ(DocumentsFolder(home, useless), "~/Documents/");
}

TEST(TXdgFoldersTest, TrashKeepsTheNameAndTheWayBack) {
	const TTemporaryFolder home;
	setenv("XDG_DATA_HOME", home.PathOf("data").c_str(), 1);
	home.Write("my file", "1");
	EXPECT_TRUE(TXdgFolders().MoveToTrash(home.Path("my file")));
	home.Write("my file", "2");
	EXPECT_TRUE(TXdgFolders().MoveToTrash(home.Path("my file")));
	EXPECT_EQ(home.Read("data/Trash/files/my file"), "1");
	EXPECT_EQ(home.Read("data/Trash/files/my file.2"), "2");
	const std::string note = home.Read("data/Trash/info/my file.2.trashinfo");
	EXPECT_TRUE(note.starts_with("[Trash Info]\nPath=" + home.PathOf("my%20file") + "\nDeletionDate=")) << note;
}

} // namespace
