// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/TFileReplacement.h"

#include "framework/foundation/files/FileOperations.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int kNoRegularFile = EINVAL;
/// No other temporary file ends so. UniqueFileName makes what stands before it.
constexpr const char* kEnding = ".unfinished";
constexpr std::string_view kBeginning = "Vortel2_TmpFile-";

std::string Bytes(const TString& path) {
	std::string bytes;
	path.ToBytes(bytes, kFileSystemEncoding);
	return bytes;
}

/// With its "/" at the end; empty for a path that is only a name.
std::string FolderOf(const std::string& path) {
	return path.substr(0, path.rfind('/') + 1);
}

std::string BehindLinks(const std::string& path) {
	const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr), &std::free);
	return resolved ? std::string(resolved.get()) : path;
}

/// After a power failure the folder could still hold the old name. Not every file system can do this.
void BringToDisk(const std::string& folder) {
	const int descriptor = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
	if (descriptor < 0)
		return;
	fsync(descriptor);
	close(descriptor);
}

struct TFolderCloser {
	void operator()(DIR* folder) const noexcept { closedir(folder); }
};

/// Whoever writes such a file holds its lock.
void RemoveIfAbandoned(const std::string& path) {
	const int descriptor = open(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
	if (descriptor < 0)
		return;
	struct stat status;
	if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid() &&
	    flock(descriptor, LOCK_EX | LOCK_NB) == 0)
		unlink(path.c_str());
	close(descriptor);
}

/// False if somebody took the file for an abandoned one before it was locked. Without locks it is nobody's.
bool IsOurs(int descriptor) {
	struct stat status;
	if (flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
		return false;
	return fstat(descriptor, &status) != 0 || status.st_nlink > 0;
}

} // namespace

TFileReplacement::TFileReplacement(const TString& path) : TFileReplacement(Bytes(path)) {}

// A "/" at the end says that a folder is meant; resolving would take it away.
TFileReplacement::TFileReplacement(const std::string& path) : mPath(path.ends_with('/') ? path : BehindLinks(path)) {
	if (Check())
		Open();
}

TFileReplacement::~TFileReplacement() {
	if (mDescriptor >= 0)
		close(mDescriptor);
	if (!mTemporary.empty())
		unlink(mTemporary.c_str());
}

bool TFileReplacement::Require(bool condition) {
	if (!condition && mError == 0)
		mError = errno == 0 ? EIO : errno;
	return IsGood();
}

bool TFileReplacement::Check() {
	struct stat present;
	if (mPath.empty() || mPath.ends_with('/')) {
		mError = mPath.empty() ? ENOENT : EISDIR;
	} else if (stat(mPath.c_str(), &present) == 0) {
		if (!S_ISREG(present.st_mode))
			mError = S_ISDIR(present.st_mode) ? EISDIR : kNoRegularFile;
		else // the rename would not ask for the file's own rights
			Require(access(mPath.c_str(), W_OK) == 0);
	}
	return IsGood();
}

void TFileReplacement::Open() {
	for (;;) {
		mTemporary = FolderOf(mPath) + UniqueFileName({}, kEnding).CString();
		mDescriptor = open(mTemporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
		if (mDescriptor < 0 && errno == EEXIST)
			continue; // another process took the name first
		if (mDescriptor < 0 || IsOurs(mDescriptor))
			break;
		close(mDescriptor);
	}
	if (!Require(mDescriptor >= 0)) {
		mTemporary.clear();
		return;
	}
	struct stat present;
	if (stat(mPath.c_str(), &present) == 0)
		fchmod(mDescriptor, present.st_mode & 07777);
}

bool TFileReplacement::Write(std::span<const uint8_t> bytes) {
	while (IsGood() && !bytes.empty()) {
		const ssize_t written = write(mDescriptor, bytes.data(), bytes.size());
		if (written > 0)
			bytes = bytes.subspan(static_cast<std::size_t>(written));
		else
			Require(written < 0 && errno == EINTR);
	}
	return IsGood();
}

bool TFileReplacement::Commit() {
	if (!IsGood() || !Require(fsync(mDescriptor) == 0))
		return false;
	const int lock = dup(mDescriptor); // until the file has its name
	const bool isDone = Require(close(std::exchange(mDescriptor, -1)) == 0) &&
	                    Require(std::rename(mTemporary.c_str(), mPath.c_str()) == 0);
	if (lock >= 0)
		close(lock);
	if (!isDone)
		return false;
	mTemporary.clear();
	BringToDisk(FolderOf(mPath));
	return true;
}

void TFileReplacement::RemoveAbandoned(const std::string& target) {
	const std::string folder = FolderOf(target.ends_with('/') ? target : BehindLinks(target));
	const std::unique_ptr<DIR, TFolderCloser> listing(opendir(folder.empty() ? "." : folder.c_str()));
	while (const dirent* entry = listing ? readdir(listing.get()) : nullptr) {
		const std::string_view name = entry->d_name;
		if (name.starts_with(kBeginning) && name.ends_with(kEnding))
			RemoveIfAbandoned(folder + entry->d_name);
	}
}

TString TFileReplacement::ErrorText() const {
	if (mError == kNoRegularFile)
		return "Not a regular file";
	const char* text = mError == 0 ? "" : strerrordesc_np(mError);
	return text ? TString(text) : TString();
}

TString ReplaceFileContents(const TString& path, std::span<const uint8_t> bytes) {
	TFileReplacement replacement(path);
	replacement.Write(bytes);
	replacement.Commit();
	return replacement.ErrorText();
}
