// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/TReplacedFile.h"

#include "tools/vortel2/ToolErrors.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::array<std::atomic<const char*>, 2> sUnfinished{};
static_assert(std::atomic<const char*>::is_always_lock_free, "a signal handler reads it");

/// Puts one pointer in the place of another; null stands for no file.
void Exchange(const char* from, const char* to) {
	for (auto& entry : sUnfinished) {
		const char* expected = from;
		if (entry.compare_exchange_strong(expected, to))
			return;
	}
}

void RemoveUnfinishedAndEnd(int signal) {
	for (const auto& entry : sUnfinished)
		if (const char* path = entry.load())
			unlink(path);
	std::signal(signal, SIG_DFL);
	raise(signal);
}

std::string BehindLinks(const std::string& path) {
	const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr), &std::free);
	return resolved ? std::string(resolved.get()) : path;
}

std::string Folder(const std::string& path) {
	const std::size_t slash = path.rfind('/');
	return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

} // namespace

TReplacedFile::TReplacedFile(std::string target) : mTarget(std::move(target)), mPath(BehindLinks(mTarget)) {
	if (mTarget.empty() || mTarget.back() == '/') {
		errno = mTarget.empty() ? ENOENT : EISDIR;
		Fail();
	}

	struct stat present {};

	if (stat(mPath.c_str(), &present) == 0) {
		if (S_ISDIR(present.st_mode))
			throw TWorkError(mTarget + ": is a folder");
		if (!S_ISREG(present.st_mode))
			throw TWorkError(mTarget + ": is not a regular file");
		if (access(mPath.c_str(), W_OK) != 0)
			Fail();
	}
	Open();
}

TReplacedFile::~TReplacedFile() {
	if (mDescriptor >= 0)
		close(mDescriptor);
	if (!mTemporary.empty()) {
		Exchange(mTemporary.c_str(), nullptr);
		unlink(mTemporary.c_str());
	}
}

void TReplacedFile::Open() {
	std::string name = Folder(mPath) + ".vortel2-XXXXXX";
	mDescriptor = mkstemp(name.data());
	if (mDescriptor < 0)
		Fail();
	mTemporary = name;
	Exchange(nullptr, mTemporary.c_str());
}

void TReplacedFile::Write(std::span<const uint8_t> bytes) const {
	while (!bytes.empty()) {
		const ssize_t written = write(mDescriptor, bytes.data(), bytes.size());
		if (written < 0 && errno != EINTR)
			Fail();
		bytes = bytes.subspan(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
	}
}

void TReplacedFile::Commit() {
	SetMode();
	const bool isWritten = fsync(mDescriptor) == 0;
	const bool isClosed = close(mDescriptor) == 0;
	mDescriptor = -1;
	if (!isWritten || !isClosed || std::rename(mTemporary.c_str(), mPath.c_str()) != 0)
		Fail();
	Exchange(mTemporary.c_str(), nullptr);
	mTemporary.clear();
}

/// The mode that the target has, or that a newly created file would get.
void TReplacedFile::SetMode() {
	struct stat present {};

	const mode_t mask = umask(0);
	umask(mask);
	const bool exists = stat(mPath.c_str(), &present) == 0;
	fchmod(mDescriptor, exists ? present.st_mode & 07777 : 0666 & ~mask);
}

void TReplacedFile::Fail() const {
	throw TWorkError(mTarget + ": " + std::strerror(errno));
}

void TReplacedFile::HandleSignals() {
	for (const int signal : {SIGINT, SIGTERM, SIGHUP})
		if (std::signal(signal, &RemoveUnfinishedAndEnd) == SIG_IGN)
			std::signal(signal, SIG_IGN);
	std::signal(SIGXFSZ, SIG_IGN);
}
