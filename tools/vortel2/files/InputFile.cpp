// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/files/InputFile.h"

#include "framework/foundation/files/WholeFile.h"
#include "tools/vortel2/files/ToolErrors.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

int OpenForReading(const std::string& path) {
	const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
	if (descriptor < 0)
		throw TWorkError(path + ": " + std::strerror(errno));

	struct stat status {};

	if (fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
		close(descriptor);
		throw TWorkError(path + ": is a folder");
	}
	return descriptor;
}

std::string ReadInputFile(const std::string& path) {
	std::string bytes;
	TString reason;
	if (!ReadWholeFile(path, bytes, reason))
		throw TWorkError(path + ": " + reason.CString());
	return bytes;
}
