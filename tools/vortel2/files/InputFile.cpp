// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/files/InputFile.h"

#include "framework/foundation/files/WholeFile.h"
#include "tools/vortel2/files/SpoolFile.h"
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

int OpenForSeeking(const std::string& path) {
	if (path != kStandardStream)
		return OpenForReading(path);
	if (isatty(STDIN_FILENO) != 0)
		throw TWorkError("standard input: is a terminal");
	const int spool = MakeSpoolFile();
	if (spool >= 0 && CopyBytes(STDIN_FILENO, spool) && lseek(spool, 0, SEEK_SET) == 0)
		return spool;
	const TWorkError failure(std::string("standard input: ") + std::strerror(errno));
	if (spool >= 0)
		close(spool);
	throw failure;
}

std::string ReadInputFile(const std::string& path) {
	std::string bytes;
	TString reason;
	if (!ReadWholeFile(path, bytes, reason))
		throw TWorkError(path + ": " + reason.CString());
	return bytes;
}
