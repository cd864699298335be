// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/files/TReplacedFile.h"

#include "tools/vortel2/files/SpoolFile.h"
#include "tools/vortel2/files/ToolErrors.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// More than ever run side by side; one that finds no place is only not removed by the signal.
std::array<std::atomic<const char*>, 1024> sUnfinished{};
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

bool IsFolder(const std::string& path) {
	struct stat present;
	return stat(path.c_str(), &present) == 0 && S_ISDIR(present.st_mode);
}

} // namespace

TReplacedFile::TReplacedFile(std::string target) : mTarget(std::move(target)) {
	if (mTarget == kStandardStream) {
		mTarget = "standard output";
		if (isatty(STDOUT_FILENO) != 0)
			throw TWorkError(mTarget + ": is a terminal");
		mSpool = MakeSpoolFile();
		if (mSpool < 0)
			Fail();
		return;
	}
	TFileReplacement::RemoveAbandoned(mTarget);
	mReplacement.emplace(mTarget);
	if (!mReplacement->IsGood())
		Fail();
	Exchange(nullptr, mReplacement->TemporaryPath().c_str());
}

TReplacedFile::~TReplacedFile() {
	if (mReplacement)
		Exchange(mReplacement->TemporaryPath().c_str(), nullptr);
	if (mSpool >= 0)
		close(mSpool);
}

void TReplacedFile::Write(std::span<const uint8_t> bytes) {
	if (mReplacement ? !mReplacement->Write(bytes) : !WriteBytes(mSpool, bytes))
		Fail();
}

void TReplacedFile::Commit() {
	if (mReplacement ? !mReplacement->Commit() : lseek(mSpool, 0, SEEK_SET) != 0 || !CopyBytes(mSpool, STDOUT_FILENO))
		Fail();
}

void TReplacedFile::Fail() const {
	const int error = mReplacement ? mReplacement->Error() : errno;
	if (mReplacement && error == EINVAL)
		throw TWorkError(mTarget + ": is not a regular file");
	if (error == EISDIR && IsFolder(mTarget))
		throw TWorkError(mTarget + ": is a folder");
	throw TWorkError(mTarget + ": " + std::strerror(error));
}

void TReplacedFile::HandleSignals() {
	for (const int signal : {SIGINT, SIGTERM, SIGHUP})
		if (std::signal(signal, &RemoveUnfinishedAndEnd) == SIG_IGN)
			std::signal(signal, SIG_IGN);
	std::signal(SIGXFSZ, SIG_IGN);
}
