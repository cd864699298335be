// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/images/PngFile.h"
#include "framework/graphics/images/TImage.h"
#include "fuzz/FuzzFramework.h"

#include <dlfcn.h>
#include <string>
#include <vector>
#include <zlib.h>

namespace {

constexpr int64_t kPixelsWorthReading = 1 << 20;

/// The library for TIFF would fill the log with all it meets.
void SilenceTiff() {
	for (const char* name : {"TIFFSetErrorHandler", "TIFFSetWarningHandler"})
		if (void* const set = dlsym(RTLD_DEFAULT, name))
			reinterpret_cast<void* (*)(void*)>(set)(nullptr);
}

/// What a surface does with an image.
void Use(TImage& image) {
	const TPointT<int> size = image.Size();
	FuzzFramework::Require(size.mX > 0 && size.mY > 0 && int64_t{size.mX} * size.mY <= TImage::kMostPixels);
	if (int64_t{size.mX} * size.mY > kPixelsWorthReading)
		return;
	image.HasAlpha();
	if (!image.ConvertTo(32, 8))
		return;
	FuzzFramework::Require(image.Size() == size && image.BitDepth() == 32 && image.RowBytes() >= size.mX * 4);
	unsigned sum = 0;
	for (int y = 0; y < size.mY; ++y)
		for (int x = 0; x < size.mX * 4; ++x)
			sum += image.Row(y)[x];
	image.ConvertTo(16, static_cast<int>(5 + sum % 2));
}

/// Without it nothing that was changed gets behind the first check.
void CorrectPngChecksums(std::string& file) {
	auto* const bytes = reinterpret_cast<uint8_t*>(file.data());
	constexpr std::size_t kSignature = 8;
	for (std::size_t at = kSignature; at + 12 <= file.size();) {
		const std::size_t length = std::size_t{bytes[at]} << 24 | std::size_t{bytes[at + 1]} << 16 |
		                           std::size_t{bytes[at + 2]} << 8 | bytes[at + 3];
		if (length > file.size() - at - 12)
			return;
		const auto sum = static_cast<uint32_t>(crc32(0, bytes + at + 4, static_cast<uInt>(length + 4)));
		for (std::size_t i = 0; i < 4; ++i)
			bytes[at + 8 + length + i] = static_cast<uint8_t>(sum >> (24 - 8 * i));
		at += 12 + length;
	}
}

void ReadForQuantizing(const std::string& bytes) {
	TPngReader reader({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
	TPngHeader header;
	if (!reader.ReadHeader(header) || int64_t{header.mWidth} * header.mHeight > kPixelsWorthReading)
		return;
	std::vector<uint8_t> pixels(static_cast<std::size_t>(header.mWidth) * static_cast<std::size_t>(header.mHeight) * 4);
	reader.ReadPixels(pixels.data());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
	[[maybe_unused]] static const bool sIsSilent = (SilenceTiff(), true);
	std::string bytes(reinterpret_cast<const char*>(data), size);
	if (bytes.starts_with("\x89PNG"))
		CorrectPngChecksums(bytes);
	for (const char* name : {"a.bmp", "a.png", "a.jpg", "a.tif"}) {
		try {
			TImage image = TImage::FromBytes(bytes, name);
			Use(image);
		} catch (const TReadableException&) {
		}
	}
	ReadForQuantizing(bytes);
	return 0;
}
