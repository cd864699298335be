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

/// What each folder may include directly. What those may include follows from it. Only the outermost choose a platform.
const std::map<std::string, TFolderSet> kArrows{
    {"framework/foundation", {}},
    {"framework/document", {"framework/foundation"}},
    {"framework/graphics", {"framework/document", "platform"}},
    {"framework/gui", {"framework/graphics"}},
    {"platform", {"framework/foundation"}},
    {"platform/linux", {"platform"}},
    {"platform/headless", {"platform"}},
    {"platform/audiounit", {"platform"}},
    {"shell", {"framework/gui"}},
    {"shell/program", {"shell"}},
    {"shell/vst3", {"shell"}},
    {"shell/vst2", {"shell"}},
    {"shell/audiounit", {"shell", "platform/audiounit"}},
    {"document", {"shell"}},
    {"effects", {"document"}},
    {"engine", {"effects"}},
    {"editor", {"engine"}},
    {"plugin", {"editor", "engine", "platform/linux", "shell/program", "shell/vst3", "shell/vst2", "shell/audiounit"}},
    {"tools", {"plugin", "platform/headless"}},
};

/// The rooms of the folders that have some, lowest first: a room includes itself and those before it. What lies in the
/// folder itself stands above its rooms.
const std::map<std::string, std::vector<std::string>> kRooms{
    {"framework/foundation", {"memory", "values", "instance", "threads", "text", "files", "commands", "process"}},
    {"framework/document", {"observables", "xml", "nodes", "undo"}},
    {"framework/graphics", {"images", "surfaces", "bitmaps", "fonts", "skin"}},
    {"framework/gui",
     {"events", "keyboard", "windows", "views", "layout", "text", "controls", "tooltips", "scrolling", "menus",
      "dialogs"}},
    {"platform/linux", {"text", "fonts", "dialogs", "x11"}},
    {"effects", {"blocks"}},
    {"editor", {"skin", "support", "menus", "sequencer", "devices", "panels"}},
    {"tools/vortel2",
     {"files", "options", "manual", "sound", "documents", "plot", "render", "editor", "gallery", "open", "commands"}},
};

/// System and host headers that only the outermost folders may see.
const std::vector<std::string> kSystemHeaders{"X11/",    "xcb/",     "xkbcommon/",      "fontconfig/",
                                              "dbus/",   "systemd/", "pluginterfaces/", "public.sdk/",
                                              "sndfile", "CLI/"};
const TFolderSet kSystemFolders{"platform/linux", "shell/vst3", "shell/vst2", "shell/audiounit", "tools", "plugin"};

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

/// Of "framework/document/nodes/TDocumentNode.h": the folder with its rooms, and the place of the file's room in their
/// order. Nothing where there are no rooms; an unknown room's place is -1.
struct TPlace {
	std::string mFolder;
	int mRoom;
};

std::optional<TPlace> PlaceOf(const std::string& path) {
	for (const auto& [folder, rooms] : kRooms) {
		if (!path.starts_with(folder + "/"))
			continue;
		const std::string rest = path.substr(folder.size() + 1);
		const auto slash = rest.find('/');
		if (slash == std::string::npos)
			return TPlace{folder, static_cast<int>(rooms.size())};
		const auto room = std::find(rooms.begin(), rooms.end(), rest.substr(0, slash));
		return TPlace{folder, room == rooms.end() ? -1 : static_cast<int>(room - rooms.begin())};
	}
	return std::nullopt;
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

TEST(TIncludeArrowsTest, NoRoomIncludesOneAboveIt) {
	for (const TInclude& include : ReadIncludes()) {
		const auto from = PlaceOf(include.mFile);
		EXPECT_TRUE(!from || from->mRoom >= 0) << "the order of the rooms does not name that of " << include.mFile;
		const auto to = PlaceOf(include.mTarget);
		EXPECT_FALSE(include.mIsOwn && from && to && from->mFolder == to->mFolder && to->mRoom > from->mRoom)
		    << include.mFile << " must not know " << include.mTarget << ", which stands above it";
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
