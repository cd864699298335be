// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/files/SpoolFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>

int MakeSpoolFile() {
	const char* folder = std::getenv("TMPDIR");
	std::string name = std::string(folder && *folder ? folder : "/tmp") + "/vortel2-XXXXXX";
	const int descriptor = mkostemp(name.data(), O_CLOEXEC);
	if (descriptor >= 0)
		unlink(name.c_str());
	return descriptor;
}

bool WriteBytes(int to, std::span<const uint8_t> bytes) {
	while (!bytes.empty()) {
		const ssize_t written = write(to, bytes.data(), bytes.size());
		if (written < 0 && errno != EINTR)
			return false;
		bytes = bytes.subspan(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
	}
	return true;
}

bool CopyBytes(int from, int to) {
	std::array<uint8_t, 65536> buffer;
	for (;;) {
		const ssize_t filled = read(from, buffer.data(), buffer.size());
		if (filled == 0)
			return true;
		if (filled < 0 && errno != EINTR)
			return false;
		if (filled > 0 && !WriteBytes(to, {buffer.data(), static_cast<std::size_t>(filled)}))
			return false;
	}
}
