// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/InputFile.h"

#include "tools/vortel2/ToolErrors.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

[[noreturn]] void Fail(const std::string& path, int error) {
	throw TWorkError(path + ": " + std::strerror(error));
}

} // namespace

int OpenForReading(const std::string& path) {
	const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
	if (descriptor < 0)
		Fail(path, errno);

	struct stat status {};

	if (fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
		close(descriptor);
		throw TWorkError(path + ": is a folder");
	}
	return descriptor;
}

std::vector<uint8_t> ReadWholeFile(const std::string& path) {
	const int descriptor = OpenForReading(path);
	std::vector<uint8_t> contents;
	std::array<uint8_t, 65536> buffer;
	ssize_t size = 0;
	while ((size = read(descriptor, buffer.data(), buffer.size())) > 0)
		contents.insert(contents.end(), buffer.data(), buffer.data() + size);
	const int error = size < 0 ? errno : 0;
	close(descriptor);
	if (error != 0)
		Fail(path, error);
	return contents;
}
