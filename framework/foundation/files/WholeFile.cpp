// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/WholeFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int kNoRegularFile = EINVAL;

class TDescriptor {
public:
	// Never waits for the other end of a pipe.
	explicit TDescriptor(const char* path) : mDescriptor(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}

	~TDescriptor() {
		if (mDescriptor >= 0)
			close(mDescriptor);
	}

	TDescriptor(const TDescriptor&) = delete;
	TDescriptor& operator=(const TDescriptor&) = delete;

	int Get() const { return mDescriptor; }

private:
	int mDescriptor;
};

/// 0, or the errno of what keeps the file from being read in one piece.
int WhyUnreadable(int descriptor, struct stat& status) {
	if (descriptor < 0 || fstat(descriptor, &status) != 0)
		return errno;
	if (!S_ISREG(status.st_mode))
		return S_ISDIR(status.st_mode) ? EISDIR : kNoRegularFile;
	return status.st_size > kLargestWholeFile ? EFBIG : 0;
}

/// As WhyUnreadable. A file that is shortened meanwhile ends early.
int ReadAll(int descriptor, std::string& bytes) {
	std::size_t done = 0;
	while (done < bytes.size()) {
		const ssize_t count = read(descriptor, bytes.data() + done, bytes.size() - done);
		if (count < 0 && errno != EINTR)
			return errno;
		if (count == 0)
			bytes.resize(done);
		done += count > 0 ? static_cast<std::size_t>(count) : 0;
	}
	return 0;
}

} // namespace

bool ReadWholeFile(const TString& path, std::string& bytes, TString& reason) {
	return ReadWholeFile(std::string(path.CString(kFileSystemEncoding)), bytes, reason);
}

bool ReadWholeFile(const std::string& path, std::string& bytes, TString& reason) {
	const TDescriptor file(path.c_str());
	struct stat status;
	int error = WhyUnreadable(file.Get(), status);
	if (error == 0) {
		bytes.resize(static_cast<std::size_t>(status.st_size));
		error = ReadAll(file.Get(), bytes);
	}
	if (error != 0)
		reason = error == kNoRegularFile ? "Not a regular file" : strerrordesc_np(error);
	return error == 0;
}
