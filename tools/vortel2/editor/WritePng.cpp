// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/editor/WritePng.h"

#include "tools/vortel2/files/TReplacedFile.h"
#include "tools/vortel2/files/ToolErrors.h"

#include <png.h>

#include <vector>

namespace {

std::vector<uint8_t> RedGreenBlue(std::span<const uint32_t> pixels) {
	std::vector<uint8_t> bytes;
	bytes.reserve(pixels.size() * 3);
	for (const uint32_t pixel : pixels)
		for (const int shift : {16, 8, 0})
			bytes.push_back(static_cast<uint8_t>(pixel >> shift));
	return bytes;
}

} // namespace

void WritePng(const std::string& path, TPointT<int> size, std::span<const uint32_t> pixels) {
	png_image image{};
	image.version = PNG_IMAGE_VERSION;
	image.width = static_cast<png_uint_32>(size.mX);
	image.height = static_cast<png_uint_32>(size.mY);
	image.format = PNG_FORMAT_RGB;
	const std::vector<uint8_t> source = RedGreenBlue(pixels);
	std::vector<uint8_t> bytes(PNG_IMAGE_PNG_SIZE_MAX(image));
	png_alloc_size_t length = bytes.size();
	if (!png_image_write_to_memory(&image, bytes.data(), &length, 0, source.data(), 0, nullptr))
		throw TWorkError(path + ": " + image.message);
	TReplacedFile file(path);
	file.Write({bytes.data(), length});
	file.Commit();
}
