// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/WholeFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

/// Closes what it holds.
class TDescriptor {
public:
	explicit TDescriptor(int descriptor) : mDescriptor(descriptor) {}

	~TDescriptor() { Close(); }

	TDescriptor(const TDescriptor&) = delete;
	TDescriptor& operator=(const TDescriptor&) = delete;

	int Get() const { return mDescriptor; }

	bool IsOpen() const { return mDescriptor >= 0; }

	bool Close() { return mDescriptor < 0 || close(std::exchange(mDescriptor, -1)) == 0; }

private:
	int mDescriptor;
};

TString LastError() {
	return TString(std::strerror(errno), kPlatformEncoding);
}

std::string NativePath(const TString& path) {
	std::string bytes;
	path.ToBytes(bytes, kFileSystemEncoding);
	return bytes;
}

std::string BehindLinks(const std::string& path) {
	const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr), &std::free);
	return resolved ? std::string(resolved.get()) : path;
}

bool WriteAll(int descriptor, std::string_view bytes) {
	while (!bytes.empty()) {
		const ssize_t written = write(descriptor, bytes.data(), bytes.size());
		if (written < 0 && errno == EINTR)
			continue;
		if (written <= 0)
			return false;
		bytes.remove_prefix(static_cast<std::size_t>(written));
	}
	return true;
}

/// The mode that the target has, or that a newly created file would get.
mode_t ModeFor(const std::string& path) {
	struct stat present {};

	if (stat(path.c_str(), &present) == 0)
		return present.st_mode & 07777;
	const mode_t mask = umask(0);
	umask(mask);
	return 0666 & ~mask;
}

bool WriteTemporary(TDescriptor& file, const std::string& target, std::string_view bytes) {
	return WriteAll(file.Get(), bytes) && fchmod(file.Get(), ModeFor(target)) == 0 && fsync(file.Get()) == 0;
}

} // namespace

bool WholeFile::Read(const TString& path, std::string& bytes, TString& reason) {
	// Never waits for the other end of a pipe.
	TDescriptor file(open(NativePath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));

	struct stat status {};

	if (!file.IsOpen() || fstat(file.Get(), &status) != 0) {
		reason = LastError();
		return false;
	}
	if (!S_ISREG(status.st_mode)) {
		reason = S_ISDIR(status.st_mode) ? "Is a directory" : "Not a regular file";
		return false;
	}
	if (status.st_size > kLargest) {
		reason = "File too large";
		return false;
	}
	bytes.resize(static_cast<std::size_t>(status.st_size));
	std::size_t done = 0;
	while (done < bytes.size()) {
		const ssize_t count = read(file.Get(), bytes.data() + done, bytes.size() - done);
		if (count < 0 && errno == EINTR)
			continue;
		if (count < 0) {
			reason = LastError();
			return false;
		}
		if (count == 0)
			break; // somebody has shortened it meanwhile
		done += static_cast<std::size_t>(count);
	}
	bytes.resize(done);
	return true;
}

bool WholeFile::Replace(const TString& path, std::string_view bytes, TString& reason) {
	const std::string target = BehindLinks(NativePath(path));

	struct stat present {};

	if (stat(target.c_str(), &present) == 0 && !S_ISREG(present.st_mode)) {
		reason = S_ISDIR(present.st_mode) ? "Is a directory" : "Not a regular file";
		return false;
	}
	if (access(target.c_str(), W_OK) != 0 && errno != ENOENT) {
		reason = LastError();
		return false;
	}
	std::string temporary = target + ".XXXXXX";
	TDescriptor file(mkostemp(temporary.data(), O_CLOEXEC));
	if (!file.IsOpen()) {
		reason = LastError();
		return false;
	}
	const bool isDone =
	    WriteTemporary(file, target, bytes) && file.Close() && std::rename(temporary.c_str(), target.c_str()) == 0;
	if (!isDone) {
		reason = LastError();
		unlink(temporary.c_str());
	}
	return isDone;
}
