// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/TXdgFolders.h"

#include "framework/foundation/files/FileOperations.h"
#include "framework/foundation/files/TFile.h"
#include "framework/foundation/files/TFileReplacement.h"
#include "framework/foundation/files/WholeFile.h"
#include "framework/foundation/values/ProductInfo.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <pwd.h>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <unistd.h>

namespace {

TDirectory AbsoluteFolder(const char* path) {
	return path && path[0] == '/' ? TDirectory(TString(path, kFileSystemEncoding)) : TDirectory();
}

/// The password database knows users whose environment says nothing, as under some service managers.
TDirectory Home() {
	TDirectory home = AbsoluteFolder(std::getenv("HOME"));
	if (!home.IsEmpty())
		return home;
	const passwd* user = getpwuid(getuid());
	return AbsoluteFolder(user ? user->pw_dir : nullptr);
}

/// The variable's folder, else one below the home folder; empty without either.
TDirectory BaseDirectory(const char* variable, const char* belowHome) {
	const TDirectory named = AbsoluteFolder(std::getenv(variable));
	const TDirectory home = named.IsEmpty() ? Home() : TDirectory();
	return home.IsEmpty() ? named : home.Descend(belowHome);
}

TDirectory OfProduct(const TDirectory& base) {
	return base.IsEmpty() ? base : base.Descend(ProductInfo::kProductName);
}

/// The quoted part of a line such as XDG_DOCUMENTS_DIR="$HOME/Papers", where a backslash makes the next character
/// plain. Empty for any other line.
std::string QuotedValue(std::string_view line, std::string_view key) {
	const std::size_t start = line.find_first_not_of(" \t");
	if (start == line.npos || !line.substr(start).starts_with(key))
		return {};
	line.remove_prefix(start + key.size());
	std::string value;
	for (std::size_t i = 0; i < line.size() && line[i] != '"'; ++i) {
		if (line[i] == '\\' && i + 1 < line.size())
			++i;
		value += line[i];
	}
	return value;
}

TDirectory NamedInUserDirs(std::string_view key) {
	std::string bytes;
	TString reason;
	if (!ReadWholeFile(BaseDirectory("XDG_CONFIG_HOME", ".config").FilePath("user-dirs.dirs"), bytes, reason))
		return {};
	std::istringstream file(bytes);
	std::string found;
	for (std::string line; std::getline(file, line);)
		if (std::string value = QuotedValue(line, key); !value.empty())
			found = std::move(value);
	constexpr std::string_view kHome = "$HOME/";
	if (!found.starts_with(kHome))
		return AbsoluteFolder(found.c_str());
	return Home().Descend(TString(found.c_str() + kHome.size(), kFileSystemEncoding));
}

std::string PercentEncoded(const TString& path) {
	std::string bytes;
	path.ToBytes(bytes, kFileSystemEncoding);
	constexpr std::string_view kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.~/";
	constexpr const char* kDigits = "0123456789ABCDEF";
	std::string encoded;
	for (const char byte : bytes) {
		if (kPlain.find(byte) != kPlain.npos)
			encoded += byte;
		else
			(encoded += '%') += {kDigits[(byte >> 4) & 15], kDigits[byte & 15]};
	}
	return encoded;
}

std::string TrashNote(const TString& absolutePath) {
	const std::time_t now = std::time(nullptr);
	std::tm time{};
	char date[32] = "";
	if (localtime_r(&now, &time))
		std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &time);
	return "[Trash Info]\nPath=" + PercentEncoded(absolutePath) + "\nDeletionDate=" + date + "\n";
}

TString LastElement(const TString& path) {
	return path.SubString(path.FindChar(u'/', path.Length() - 1, true) + 1);
}

TString AbsolutePath(const TString& path) {
	if (path.StartsWithChar(u'/'))
		return path;
	const std::unique_ptr<char, decltype(&std::free)> here(getcwd(nullptr, 0), &std::free);
	return here ? TDirectory(TString(here.get(), kFileSystemEncoding)).FilePath(path) : path;
}

} // namespace

TDirectory TXdgFolders::HomeDirectory() const {
	return Home();
}

TDirectory TXdgFolders::DocumentsDirectory() const {
	const TDirectory named = NamedInUserDirs("XDG_DOCUMENTS_DIR=\"");
	if (!named.IsEmpty())
		return named;
	const TDirectory home = Home();
	return home.IsEmpty() ? home : home.Descend("Documents");
}

TDirectory TXdgFolders::PreferencesDirectory() const {
	return OfProduct(BaseDirectory("XDG_CONFIG_HOME", ".config"));
}

TDirectory TXdgFolders::LogDirectory() const {
	return OfProduct(BaseDirectory("XDG_STATE_HOME", ".local/state"));
}

TDirectory TXdgFolders::TemporaryDirectory() const {
	const TDirectory named = AbsoluteFolder(std::getenv("TMPDIR"));
	return named.IsEmpty() ? TDirectory("/tmp/") : named;
}

bool TXdgFolders::MoveToTrash(const TString& path) const {
	const TDirectory trash = BaseDirectory("XDG_DATA_HOME", ".local/share").Descend("Trash");
	const TDirectory files = trash.Descend("files");
	const TDirectory notes = trash.Descend("info");
	if (!files.Create(true) || !notes.Create(true))
		return false;
	TString name = LastElement(path);
	for (int copy = 2; TFile(files.FilePath(name)).Exists() || TDirectory(files.FilePath(name)).Exists(); ++copy)
		name = LastElement(path) + "." + TString::ToString(copy);
	const std::string note = TrashNote(AbsolutePath(path));
	const TString notePath = notes.FilePath(name + ".trashinfo");
	const std::span bytes(reinterpret_cast<const uint8_t*>(note.data()), note.size());
	if (!ReplaceFileContents(notePath, bytes).IsEmpty())
		return false;
	return MoveFile(path, files.FilePath(name)) || (TFile(notePath).Delete(), false);
}
