// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/sound/OggPages.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <numeric>
#include <span>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::size_t kHeader = 27; // then a length for each segment
constexpr std::size_t kStreamNumber = 14;
constexpr std::size_t kChecksum = 22;
constexpr std::size_t kSegments = 26;

/// The format's own: polynomial 0x04c11db7, nothing inverted.
uint32_t ChecksumOf(std::span<const uint8_t> bytes) {
	uint32_t checksum = 0;
	for (const uint8_t byte : bytes) {
		checksum ^= static_cast<uint32_t>(byte) << 24;
		for (int bit = 0; bit < 8; ++bit)
			checksum = checksum << 1 ^ (checksum & 0x80000000u ? 0x04c11db7u : 0u);
	}
	return checksum;
}

bool ReadAt(int descriptor, std::span<uint8_t> bytes, off_t place) {
	const ssize_t filled = pread(descriptor, bytes.data(), bytes.size(), place);
	if (filled >= 0 && static_cast<std::size_t>(filled) < bytes.size())
		errno = EIO;
	return filled == static_cast<ssize_t>(bytes.size());
}

void Number(std::span<uint8_t> page) {
	std::fill_n(page.begin() + kStreamNumber, 4, uint8_t{0});
	std::fill_n(page.begin() + kChecksum, 4, uint8_t{0});
	const uint32_t checksum = ChecksumOf(page);
	for (std::size_t i = 0; i < 4; ++i)
		page[kChecksum + i] = static_cast<uint8_t>(checksum >> 8 * i);
}

} // namespace

bool NumberOggPages(int descriptor) {
	const off_t end = lseek(descriptor, 0, SEEK_END);
	std::vector<uint8_t> page;
	for (off_t place = 0; place < end; place += static_cast<off_t>(page.size())) {
		page.resize(kHeader);
		if (!ReadAt(descriptor, page, place))
			return false;
		page.resize(kHeader + page[kSegments]);
		if (!ReadAt(descriptor, page, place))
			return false;
		page.resize(std::accumulate(page.begin() + kHeader, page.end(), page.size()));
		if (!ReadAt(descriptor, page, place))
			return false;
		Number(page);
		if (pwrite(descriptor, page.data(), page.size(), place) != static_cast<ssize_t>(page.size()))
			return false;
	}
	return end >= 0;
}
