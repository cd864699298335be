// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/TDirectory.h"

#include "framework/foundation/files/FileChanges.h"

#include <algorithm>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t kRightsOfNewFolders = 0755;

bool IsFolder(const TString& path) {
	struct stat status;
	return stat(path.CString(kFileSystemEncoding), &status) == 0 && S_ISDIR(status.st_mode);
}

void ReplaceUntilGone(TString& path, const char* pattern) {
	while (path.Find(pattern) >= 0)
		path.ReplaceAll(pattern, "/");
}

/// Empty if the path climbs above its start.
TString WithoutParentElements(TString path) {
	const TString parent = "../";
	for (int32_t start = 0; start < path.Length();) {
		const int32_t end = path.FindChar(u'/', start) + 1;
		if (path.SubString(start, end) != parent) {
			start = end;
			continue;
		}
		if (start < 2)
			return {};
		const int32_t folder = path.FindChar(u'/', start - 2, true) + 1;
		path.Remove(folder, end);
		start = folder;
	}
	return path;
}

enum class TEntries : int8_t { kFiles, kFolders };

/// The names in a folder but "." and "..", in the order of the file system.
TList<TString> EntryNames(const TString& folder) {
	TList<TString> names;
	const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(folder.CString(kFileSystemEncoding)), &closedir);
	while (const dirent* entry = stream ? readdir(stream.get()) : nullptr) {
		TString name(entry->d_name, kFileSystemEncoding);
		if (name != "." && name != "..")
			names.Append(name);
	}
	return names;
}

TList<TString>
List(const TString& folder, TEntries wanted, const TList<TString>& patterns, bool withHidden, bool sorted) {
	TList<TString> names;
	for (const TString& name : EntryNames(folder)) {
		const bool isShown = withHidden || !name.StartsWithChar(u'.');
		if (isShown && MatchesFilePatterns(name, patterns) && IsFolder(folder + name) == (wanted == TEntries::kFolders))
			names.Append(name);
	}
	if (sorted)
		std::sort(names.begin(), names.end());
	return names;
}

/// A link to a folder is removed, not followed.
bool DeleteEntry(const TString& path) {
	struct stat status;
	if (lstat(path.CString(kFileSystemEncoding), &status) != 0)
		return false;
	if (S_ISDIR(status.st_mode))
		return TDirectory(path).Delete();
	return unlink(path.CString(kFileSystemEncoding)) == 0;
}

} // namespace

TDirectory::TDirectory(const TString& path) : mPath(path) {
	if (mPath.IsEmpty())
		return;
	mPath.ReplaceChar(u'\\', u'/');
	if (!mPath.EndsWithChar(u'/'))
		mPath.Append(u'/');
	ReplaceUntilGone(mPath, "//");
	ReplaceUntilGone(mPath, "/./");
	mPath = WithoutParentElements(mPath);
}

TDirectory TDirectory::Around(const TString& path) {
	return TDirectory(path.SubString(0, path.FindChar(u'/', path.Length() - 1, true) + 1));
}

int TDirectory::Depth() const {
	return mPath.CountChar(u'/') - 1;
}

TDirectory TDirectory::Ascend() const {
	return TDirectory(mPath + "..");
}

TDirectory TDirectory::Descend(const TString& name) const {
	return TDirectory(mPath + name);
}

TString TDirectory::FilePath(const TString& name) const {
	return mPath + name;
}

bool TDirectory::Exists() const {
	return !IsEmpty() && IsFolder(mPath);
}

bool TDirectory::Create(bool withParents) const {
	if (Exists())
		return true;
	if (IsEmpty() || (withParents && Depth() >= 2 && !Ascend().Create(true)))
		return false;
	const bool isNew = mkdir(mPath.CString(kFileSystemEncoding), kRightsOfNewFolders) == 0;
	if (!Exists())
		return false;
	if (isNew)
		ReportFileChange(mPath);
	return true;
}

bool TDirectory::Delete() const {
	if (!Exists())
		return false;
	for (const TString& name : EntryNames(mPath)) {
		if (!DeleteEntry(mPath + name))
			return false;
	}
	if (rmdir(mPath.CString(kFileSystemEncoding)) != 0)
		return false;
	ReportFileChange(mPath);
	return true;
}

TList<TString> TDirectory::ListFiles(const TString& pattern, bool withHidden, bool sorted) const {
	return ListFiles(TList<TString>{pattern}, withHidden, sorted);
}

TList<TString> TDirectory::ListFiles(const TList<TString>& patterns, bool withHidden, bool sorted) const {
	return List(mPath, TEntries::kFiles, patterns, withHidden, sorted);
}

TList<TString> TDirectory::ListFolders(const TString& pattern, bool withHidden, bool sorted) const {
	return List(mPath, TEntries::kFolders, {pattern}, withHidden, sorted);
}

TList<TPtr<TFileProperties>>
TDirectory::ListFileProperties(const TList<TString>& patterns, bool withHidden, bool sorted) const {
	TList<TPtr<TFileProperties>> properties;
	for (const TString& name : ListFiles(patterns, withHidden, sorted))
		properties.Append(MakePtr<TFileProperties>(mPath, name));
	return properties;
}

bool TDirectory::HasFiles() const {
	return !ListFiles("*", true, false).IsEmpty();
}

int64_t TDirectory::LatestChange(bool recursive) const {
	struct stat status;
	if (!Exists() || stat(mPath.CString(kFileSystemEncoding), &status) != 0)
		return 0;
	int64_t latest = status.st_mtime;
	for (const TString& name : EntryNames(mPath)) {
		const TString path = mPath + name;
		if (lstat(path.CString(kFileSystemEncoding), &status) != 0)
			continue;
		latest = std::max<int64_t>(latest, status.st_mtime);
		if (recursive && S_ISDIR(status.st_mode))
			latest = std::max(latest, TDirectory(path).LatestChange(true));
	}
	return latest;
}
