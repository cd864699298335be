// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the #include lines of the whole tree: a folder knows the folders that the table gives it, and no others.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using TFolderSet = std::set<std::string>;

/// What each folder may include directly. What those may include follows from it.
const std::map<std::string, TFolderSet> kArrows{
    {"framework/foundation", {}},
    {"framework/document", {"framework/foundation"}},
    {"framework/graphics", {"framework/document"}},
    {"framework/gui", {"framework/graphics"}},
    {"platform", {"framework/gui", "framework/graphics", "framework/foundation"}},
    {"shell", {"framework/gui", "framework/document"}},
    {"shell/program", {"shell"}},
    {"shell/vst3", {"shell", "platform"}},
    {"shell/vst2", {"shell", "platform"}},
    {"shell/audiounit", {"shell", "platform"}},
    {"document", {"shell"}},
    {"effects", {"document"}},
    {"engine", {"effects"}},
    {"editor", {"engine", "document"}},
    {"plugin", {"editor", "engine", "platform", "shell/program", "shell/vst3", "shell/vst2", "shell/audiounit"}},
    {"tools", {"plugin"}},
};

/// System and host headers that only the outermost folders may see.
const std::vector<std::string> kSystemHeaders{"X11/", "xcb/", "pluginterfaces/", "public.sdk/", "sndfile", "CLI/"};
const TFolderSet kSystemFolders{"platform", "shell/vst3", "shell/vst2", "shell/audiounit", "tools", "plugin"};

TFolderSet Reachable(const std::string& folder) {
	TFolderSet reachable{folder};
	for (const std::string& next : kArrows.at(folder))
		reachable.merge(Reachable(next));
	return reachable;
}

/// The longest folder of the table that the path lies in.
std::optional<std::string> FolderOf(const std::string& path) {
	std::optional<std::string> found;
	for (const auto& [folder, arrows] : kArrows)
		if (path.starts_with(folder + "/") && (!found || folder.size() > found->size()))
			found = folder;
	return found;
}

struct TInclude {
	std::string mFile;
	std::string mTarget;
	bool mIsOwn; // with quotes, from the root
};

std::vector<TInclude> ReadIncludes() {
	std::vector<TInclude> includes;
	const fs::path root{VORTEL_SOURCE_DIR};
	for (const auto& [folder, arrows] : kArrows) {
		if (!fs::exists(root / folder))
			continue;
		for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
			const std::string file = fs::relative(entry.path(), root).generic_string();
			if ((entry.path().extension() != ".h" && entry.path().extension() != ".cpp") || FolderOf(file) != folder)
				continue;
			std::ifstream stream{entry.path()};
			for (std::string line; std::getline(stream, line);) {
				const auto start = line.find_first_of("\"<");
				if (!line.starts_with("#include") || start == std::string::npos)
					continue;
				const auto end = line.find_first_of("\">", start + 1);
				includes.push_back({file, line.substr(start + 1, end - start - 1), line[start] == '"'});
			}
		}
	}
	return includes;
}

TEST(TIncludeArrowsTest, EveryOwnIncludeFollowsAnArrow) {
	const auto includes = ReadIncludes();
	ASSERT_GT(includes.size(), 100u) << "the tree was not found";
	for (const TInclude& include : includes) {
		if (!include.mIsOwn)
			continue;
		const auto from = FolderOf(include.mFile);
		const auto to = FolderOf(include.mTarget);
		ASSERT_TRUE(to) << include.mFile << " includes " << include.mTarget << ", which is not written from the root";
		EXPECT_TRUE(Reachable(*from).contains(*to)) << include.mFile << " must not know " << include.mTarget;
	}
}

TEST(TIncludeArrowsTest, SystemAndHostHeadersStayOutside) {
	for (const TInclude& include : ReadIncludes()) {
		const bool isSystem = std::any_of(kSystemHeaders.begin(), kSystemHeaders.end(), [&](const std::string& header) {
			return include.mTarget.starts_with(header);
		});
		EXPECT_TRUE(!isSystem || kSystemFolders.contains(*FolderOf(include.mFile)))
		    << include.mFile << " must not include " << include.mTarget;
	}
}

} // namespace
