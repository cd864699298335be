// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/images/PngQuantizer.h"

#include "framework/foundation/files/TFileReplacement.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/files/WholeFile.h"
#include "framework/foundation/memory/Memory.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/images/PngFile.h"
#include "framework/graphics/images/TImage.h"
#include "framework/graphics/images/TNeuQuant.h"

#include <algorithm>
#include <memory>

namespace {

struct TFreeMemory {
	void operator()(uint8_t* memory) const noexcept { Memory::Free(memory); }
};

using TBytes = std::unique_ptr<uint8_t, TFreeMemory>;

TBytes AllocateBytes(std::size_t count) {
	try {
		return TBytes(static_cast<uint8_t*>(Memory::Allocate("#PngQuantizer", count)));
	} catch (const TOutOfMemoryException&) {
		throw TReadableException("pngquant readpng:  unable to allocate image data\n");
	}
}

/// What libpng said goes to the log, the message to the user.
[[noreturn]] void ThrowPngFault(const TPngContext& png, const char* message) {
	TLog::Instance()->Log("GraphPort", "Libpng error: '%s'", png.Message());
	throw TReadableException(message);
}

struct TPixels {
	std::size_t Count() const {
		return static_cast<std::size_t>(mHeader.mWidth) * static_cast<std::size_t>(mHeader.mHeight);
	}

	std::span<const uint8_t> Bytes() const { return {mBytes.get(), Count() * 4}; }

	TPngHeader mHeader;
	TBytes mBytes; // red, green, blue, alpha
};

TPixels ReadPixels(const TString& path) {
	constexpr const char* kNotRead = "Failed to read the source PNG image for conversion.";
	std::string file;
	TString reason;
	if (!ReadWholeFile(path, file, reason))
		throw TReadableException("Cannot open file for reading");
	TPngReader reader({reinterpret_cast<const uint8_t*>(file.data()), file.size()});
	TPixels pixels;
	if (!reader.ReadHeader(pixels.mHeader))
		ThrowPngFault(reader, kNotRead);
	if (pixels.Count() > static_cast<std::size_t>(TImage::kMostPixels))
		throw TReadableException(kNotRead);
	pixels.mBytes = AllocateBytes(pixels.Count() * 4);
	if (!reader.ReadPixels(pixels.mBytes.get()))
		ThrowPngFault(reader, kNotRead);
	return pixels;
}

/// Where each entry goes: those that are not solid to the front, so that the file's table of transparency ends with
/// them.
std::vector<uint8_t> PlacesByAlpha(const std::vector<TNeuQuant::TColor>& colors, TPngPalette& palette) {
	std::vector<uint8_t> places;
	palette.mColors.resize(colors.size());
	int front = 0;
	int back = static_cast<int>(colors.size()) - 1;
	for (const TNeuQuant::TColor& color : colors) {
		const int place = color[3] < 255 ? front++ : back--;
		palette.mColors[static_cast<std::size_t>(place)] = color;
		places.push_back(static_cast<uint8_t>(place));
	}
	if (front != back + 1)
		throw TReadableException("Internal PNG conversion error.");
	palette.mTransparent = front;
	return places;
}

TBytes IndicesOf(const TPixels& pixels, const TNeuQuant& network, const std::vector<uint8_t>& places) {
	TBytes indices = AllocateBytes(pixels.Count());
	const uint8_t* pixel = pixels.mBytes.get();
	for (std::size_t i = 0; i < pixels.Count(); ++i, pixel += 4) {
		const int entry = network.BestEntry({pixel[0], pixel[1], pixel[2], pixel[3]});
		indices.get()[i] = places[static_cast<std::size_t>(entry)];
	}
	return indices;
}

int SampleFactorFor(std::size_t pixels) {
	return static_cast<int>(std::min<std::size_t>(10, pixels / 262144 + 1));
}

} // namespace

void QuantizePng(const TString& source, const TString& target, int sampleFactor, int numberOfColors) {
	const TPixels pixels = ReadPixels(source);
	TFileReplacement file(target);
	if (!file.IsGood())
		throw TReadableException(
		    source == target ? "Can not open access the PNG dest file for writing."
		                     : "Can not open the PNG dest file for writing.");

	TNeuQuant network(std::clamp(numberOfColors, 2, 256));
	network.Learn(pixels.Bytes(), sampleFactor < 1 ? SampleFactorFor(pixels.Count()) : sampleFactor);
	TPngPalette palette;
	const std::vector<uint8_t> places = PlacesByAlpha(network.Palette(), palette);
	const TBytes indices = IndicesOf(pixels, network, places);

	constexpr const char* kNotWritten = "Failed to write the PNG image.";
	TPngWriter writer;
	if (!writer.Write(pixels.mHeader, palette, indices.get()))
		ThrowPngFault(writer, kNotWritten);
	if (!file.Write(writer.Bytes()) || !file.Commit())
		throw TReadableException(kNotWritten);
}
