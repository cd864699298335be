// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/TXdgFolders.h"

#include <gtest/gtest.h>

#include <cstdlib>

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

} // namespace
