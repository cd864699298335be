// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/TTemporaryFolder.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <string>

/// The process in a locale such as "de_DE.UTF-8", made for the occasion: machines have only a few installed.
class TTestLocale {
public:
	explicit TTestLocale(const std::string& name) {
		if (name != "C")
			Make(name);
		setenv("LOCPATH", mFolder.Directory().Path().CString(), 1);
		EXPECT_TRUE(std::setlocale(LC_ALL, name.c_str())) << name;
	}

	~TTestLocale() {
		std::setlocale(LC_ALL, "C");
		unsetenv("LOCPATH");
	}

	TTestLocale(const TTestLocale&) = delete;
	TTestLocale& operator=(const TTestLocale&) = delete;

private:
	void Make(const std::string& name) {
		const std::string language = name.substr(0, name.find('.'));
		const std::string command = "localedef --no-archive -i " + language + " -f UTF-8 " + mFolder.PathOf(name);
		EXPECT_EQ(std::system(command.c_str()), 0) << "the package locales is missing";
	}

	TTemporaryFolder mFolder;
};
