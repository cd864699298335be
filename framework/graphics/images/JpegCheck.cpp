// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/images/ImageChecks.h"
#include "framework/graphics/images/TFileBytes.h"

#include <algorithm>

namespace {

enum TMarker : uint8_t {
	kTemporary = 0x01,
	kFirstFrame = 0xC0, // width and height
	kLastFrame = 0xCF,
	kHuffmanTables = 0xC4,
	kExtension = 0xC8,
	kArithmeticTables = 0xCC,
	kFirstRestart = 0xD0,
	kLastRestart = 0xD7,
	kStart = 0xD8,
	kScan = 0xDA,
	kJfif = 0xE0,
	kAdobe = 0xEE, // how the colours are meant
	kLastApplication = 0xEF,
	kComment = 0xFE
};

bool StandsAlone(uint8_t marker) {
	return marker == kTemporary || (marker >= kFirstRestart && marker <= kLastRestart);
}

bool IsFrame(uint8_t marker) {
	return marker >= kFirstFrame && marker <= kLastFrame && marker != kHuffmanTables && marker != kExtension &&
	       marker != kArithmeticTables;
}

bool IsForOthers(uint8_t marker) {
	return marker == kComment || (marker > kJfif && marker <= kLastApplication && marker != kAdobe);
}

/// Each is another walk over the whole image.
int64_t NumberOfScans(std::string_view bytes) {
	int64_t scans = 0;
	for (std::size_t at = bytes.find("\xFF\xDA"); at != std::string_view::npos; at = bytes.find("\xFF\xDA", at + 2))
		++scans;
	return scans;
}

} // namespace

TImageSize SimplifyJpeg(std::string& bytes) {
	constexpr int64_t kMostWork = int64_t{1} << 30; // pixels in all scans
	const TFileBytes file(bytes, true);
	if (file.Byte(0) != 0xFF || file.Byte(1) != kStart)
		return {};
	std::string simple = bytes.substr(0, 2);
	TPointT<int64_t> size;
	int64_t at = 2;
	while (file.Byte(at) == 0xFF && file.Byte(at + 1) != kScan) {
		const uint8_t marker = file.Byte(at + 1);
		if (marker == 0xFF) { // filling
			++at;
			continue;
		}
		const int64_t length = StandsAlone(marker) ? 2 : 2 + int64_t{file.Short(at + 2)};
		if (at + length > file.Size() || (!StandsAlone(marker) && length < 4))
			return {};
		if (IsFrame(marker))
			size = {file.Short(at + 7), file.Short(at + 5)};
		if (!IsForOthers(marker))
			simple.append(bytes, static_cast<std::size_t>(at), static_cast<std::size_t>(length));
		at += length;
	}
	simple.append(bytes, static_cast<std::size_t>(std::min(at, file.Size())));
	const int64_t scans = NumberOfScans(simple);
	if (size.mX < 1 || size.mY < 1 || scans == 0 || size.mX * size.mY > kMostWork / scans)
		return {};
	bytes = std::move(simple);
	return size;
}
