// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/files/CheckFiles.h"

#include "tools/vortel2/files/SpoolFile.h"
#include "tools/vortel2/files/ToolErrors.h"

#include <filesystem>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string InodeOf(const struct stat& status) {
	return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
}

/// Equal where two paths lead to one file, also through links, or would once it is there. Empty for what is no file.
std::string IdentityOf(const std::string& path, bool isRead) {
	struct stat status;
	if (path == kStandardStream)
		return isRead && fstat(STDIN_FILENO, &status) == 0 && S_ISREG(status.st_mode) ? InodeOf(status) : "";
	if (stat(path.c_str(), &status) == 0)
		return InodeOf(status);
	std::error_code error;
	const auto resolved = std::filesystem::weakly_canonical(path, error);
	return error ? path : resolved.string();
}

} // namespace

void CheckOutputs(std::span<const TNamedFile> outputs, std::span<const TNamedFile> inputs) {
	std::map<std::string, std::string> taken; // by what
	for (const TNamedFile& input : inputs)
		if (!input.mPath.empty())
			taken.emplace(IdentityOf(input.mPath, true), input.mArgument);
	taken.erase("");
	for (const TNamedFile& output : outputs) {
		if (output.mPath.empty())
			continue;
		const std::string identity = output.mPath == kStandardStream ? output.mPath : IdentityOf(output.mPath, false);
		const auto [other, isFree] = taken.emplace(identity, output.mArgument);
		if (!isFree)
			throw TUsageError(output.mArgument + ": \"" + output.mPath + "\" is also " + other->second);
	}
}
