// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/FileOperations.h"

#include "framework/foundation/files/FileChanges.h"
#include "framework/foundation/files/Folders.h"
#include "framework/foundation/files/TFile.h"
#include "framework/foundation/files/TSystemFolders.h"
#include "framework/foundation/values/ProductInfo.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>

namespace {

constexpr int64_t kCopyBuffer = 65536; // bytes
constexpr std::u16string_view kIllegalUnits = u":?\"*<>|";

std::filesystem::path SystemPath(const TString& path) {
	return path.CString(kFileSystemEncoding);
}

bool Exists(const TString& path) {
	struct stat status;
	return lstat(path.CString(kFileSystemEncoding), &status) == 0;
}

bool IsSameFile(const TString& a, const TString& b) {
	std::error_code failure;
	return std::filesystem::equivalent(SystemPath(a), SystemPath(b), failure);
}

bool CopyContents(const TString& source, const TString& target) {
	TFile in(source);
	TFile out(target);
	if (IsSameFile(source, target) || !in.Open(TFile::kReadOnly) || !out.Open(TFile::kWriteOnly))
		return false;
	std::array<uint8_t, kCopyBuffer> buffer;
	int64_t bytes = kCopyBuffer;
	for (bool goesOn = true; goesOn;) {
		goesOn = in.Read(buffer.data(), bytes = kCopyBuffer);
		if (!out.Write(buffer.data(), bytes))
			return false;
	}
	return in.Position() == in.Size() && out.Close();
}

bool CopyTree(const TString& source, const TString& target) {
	using enum std::filesystem::copy_options;
	std::error_code failure;
	std::filesystem::copy(
	    SystemPath(source), SystemPath(target), recursive | copy_symlinks | overwrite_existing, failure);
	return !failure;
}

bool Remove(const TString& path) {
	std::error_code failure;
	std::filesystem::remove_all(SystemPath(path), failure);
	return !failure;
}

bool Rename(const TString& source, const TString& target) {
	if (std::rename(source.CString(kFileSystemEncoding), target.CString(kFileSystemEncoding)) == 0)
		return true;
	// Between two file systems nothing can be renamed.
	return errno == EXDEV && CopyTree(source, target) && Remove(source);
}

/// A file system that ignores case takes both names for the same file.
bool RenameToOtherCase(const TString& source, const TString& target) {
	const TString between = UniqueFileName(TDirectory::Around(source), "");
	return Rename(source, between) && (Rename(between, target) || (Rename(between, source), false));
}

/// A file over a file is replaced in one step; what cannot be is removed first.
bool Replace(const TString& source, const TString& target) {
	const bool hasFolder = TDirectory(source).Exists() || TDirectory(target).Exists();
	if (TDirectory(source).Path().StartsWith(TDirectory(target).Path()))
		return false; // the target is a folder around the source
	return (!hasFolder || Remove(target)) && Rename(source, target);
}

/// Counts up until nothing of that name is there.
TString UniqueName(std::atomic<uint64_t>& counter, const TDirectory& folder, const char* kind, const TString& end) {
	for (;;) {
		const uint64_t number = counter.fetch_add(1, std::memory_order_relaxed);
		const TString high = TString::ToString(static_cast<uint32_t>(number >> 32));
		const TString low = TString::ToString(static_cast<uint32_t>(number));
		const TString path =
		    folder.FilePath(TString(ProductInfo::kProductName) + kind + high + TString("-") + low + end);
		if (!Exists(path))
			return path;
	}
}

bool IsIllegal(char16_t unit, bool allowSeparators) {
	const bool isSeparator = unit == u'/' || unit == u'\\';
	return unit < 32 || unit == 127 || kIllegalUnits.find(unit) != kIllegalUnits.npos ||
	       (isSeparator && !allowSeparators);
}

/// Where the extension's "." stands, else -1; and where the last element begins.
struct TNameParts {
	explicit TNameParts(const TString& path)
	    : mStart(
	          std::max(path.FindChar(u'/', path.Length() - 1, true), path.FindChar(u'\\', path.Length() - 1, true)) +
	          1),
	      mDot(path.FindChar(u'.', path.Length() - 1, true)) {
		if (mDot < mStart)
			mDot = -1;
	}

	int32_t mStart;
	int32_t mDot;
};

} // namespace

bool CopyFile(const TString& source, const TString& target, bool recursive) {
	if (!(recursive ? CopyTree(source, target) : CopyContents(source, target)))
		return false;
	ReportFileChange(TDirectory::Around(target).Path());
	return true;
}

bool MoveFile(const TString& source, const TString& target) {
	if (source == target)
		return true;
	const bool differsByCase = source.CompareIgnoringCase(target) == 0;
	if (!Exists(source) || !(differsByCase ? RenameToOtherCase(source, target) : Replace(source, target)))
		return false;
	ReportFileChange(TDirectory::Around(source).Path());
	ReportFileChange(TDirectory::Around(target).Path());
	return true;
}

bool MoveToTrash(const TString& path) {
	const TSystemFolders* system = Folders::System();
	if (!system || !Exists(path) || !system->MoveToTrash(path))
		return false;
	ReportFileChange(TDirectory::Around(path).Path());
	return true;
}

TString LegalFileName(const TString& name, bool allowSeparators) {
	TString legal = name;
	for (int32_t i = 0; i < legal.Length(); ++i)
		if (IsIllegal(legal[i], allowSeparators))
			legal.SetChar(i, u'_');
	return legal;
}

TString FileExtension(const TString& path) {
	const TNameParts parts(path);
	return parts.mDot < 0 ? TString() : path.SubString(parts.mDot + 1);
}

TString FileBaseName(const TString& path) {
	const TNameParts parts(path);
	return path.SubString(parts.mStart, parts.mDot);
}

TString UniqueFileName(const TDirectory& folder, const TString& extension) {
	static constinit std::atomic<uint64_t> sCounter{0};
	return UniqueName(sCounter, folder, "_TmpFile-", extension);
}

TDirectory UniqueFolderName(const TDirectory& folder) {
	static constinit std::atomic<uint64_t> sCounter{0};
	return UniqueName(sCounter, folder, "_TmpPath-", "");
}
