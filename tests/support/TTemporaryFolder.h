// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TDirectory.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

/// A fresh folder for a test; gone with everything in it at the end.
class TTemporaryFolder {
public:
	TTemporaryFolder() {
		std::string pattern = (std::filesystem::temp_directory_path() / "vortel-test-XXXXXX").string();
		mPath = std::string(mkdtemp(pattern.data())) + "/";
	}

	~TTemporaryFolder() {
		std::error_code ignored;
		std::filesystem::remove_all(mPath, ignored);
	}

	TTemporaryFolder(const TTemporaryFolder&) = delete;
	TTemporaryFolder& operator=(const TTemporaryFolder&) = delete;

	TDirectory Directory() const { return TDirectory(TString(mPath.c_str())); }

	std::string PathOf(const std::string& name) const { return mPath + name; }

	TString Path(const std::string& name) const { return TString(PathOf(name).c_str()); }

	void Write(const std::string& name, const std::string& bytes) const {
		std::ofstream(PathOf(name), std::ios::binary) << bytes;
	}

	/// The names in it, sorted.
	std::vector<std::string> Names() const {
		std::vector<std::string> names;
		for (const auto& entry : std::filesystem::directory_iterator(mPath))
			names.push_back(entry.path().filename());
		std::sort(names.begin(), names.end());
		return names;
	}

	std::string Read(const std::string& name) const {
		std::ifstream stream(PathOf(name), std::ios::binary);
		return {std::istreambuf_iterator<char>(stream), {}};
	}

private:
	std::string mPath; // ends with "/"
};
