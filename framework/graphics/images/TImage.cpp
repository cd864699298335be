// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/images/TImage.h"

#include "framework/foundation/files/TFileReplacement.h"
#include "framework/foundation/files/TLog.h"
#include "framework/foundation/files/WholeFile.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/images/ImageChecks.h"

#include <FreeImage.h>
#include <mutex>
#include <span>
#include <string>
#include <utility>

namespace {

constexpr const char* kLogCategory = "GraphPort";

struct TFormat {
	const char* mPattern;
	FREE_IMAGE_FORMAT mFormat;
};

constexpr TFormat kReadable[] = {{"*.bmp", FIF_BMP},   {"*.png", FIF_PNG},  {"*.jpg", FIF_JPEG},
                                 {"*.jpeg", FIF_JPEG}, {"*.tif", FIF_TIFF}, {"*.tiff", FIF_TIFF}};

struct TWriter {
	FREE_IMAGE_FORMAT mFormat;
	int mFlags;
};

/// By TImage::TFileFormat.
constexpr TWriter kWriters[] = {
    {FIF_BMP, BMP_SAVE_RLE},
    {FIF_TIFF, TIFF_PACKBITS},
    {FIF_PNG, PNG_Z_BEST_SPEED},
    {FIF_JPEG, JPEG_QUALITYGOOD | JPEG_ACCURATE}};

/// A file in memory, as the library reads and writes it.
class TMemoryFile {
public:
	TMemoryFile() : mpMemory(FreeImage_OpenMemory(nullptr, 0)) {}

	/// Only reads the bytes, which must outlive it.
	explicit TMemoryFile(std::string& bytes)
	    : mpMemory(FreeImage_OpenMemory(reinterpret_cast<BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size()))) {}

	~TMemoryFile() { FreeImage_CloseMemory(mpMemory); }

	TMemoryFile(const TMemoryFile&) = delete;
	TMemoryFile& operator=(const TMemoryFile&) = delete;

	FIBITMAP* Load(FREE_IMAGE_FORMAT format) { return FreeImage_LoadFromMemory(format, mpMemory, 0); }

	bool Save(FREE_IMAGE_FORMAT format, FIBITMAP* bitmap, int flags) {
		return FreeImage_SaveToMemory(format, bitmap, mpMemory, flags) != FALSE;
	}

	std::span<const uint8_t> Bytes() const {
		BYTE* bytes = nullptr;
		DWORD size = 0;
		FreeImage_AcquireMemory(mpMemory, &bytes, &size);
		return {bytes, size};
	}

private:
	FIMEMORY* mpMemory;
};

FREE_IMAGE_FORMAT FormatOf(const TString& path) {
	for (const TFormat& format : kReadable)
		if (path.WildcardMatches(format.mPattern, true))
			return format.mFormat;
	throw TReadableException(TString::Format("Failed to load bitmap '%s' (unsupported file format).", path));
}

TImageSize Check(std::string& bytes, FREE_IMAGE_FORMAT format) {
	switch (format) {
	case FIF_BMP:
		return CheckBmp(bytes);
	case FIF_JPEG:
		return SimplifyJpeg(bytes);
	case FIF_TIFF:
		return SimplifyTiff(bytes);
	default:
		return CheckPng(bytes);
	}
}

/// The library has initialised itself when it was loaded.
void LogFirstUse() {
	static std::once_flag sFirst;
	std::call_once(sFirst, [] { TLog::Instance()->LogText(kLogCategory, "Initializing Freeimage..."); });
}

[[noreturn]] void ThrowNotOpened(const TString& path, const TString& reason) {
	TLog::Instance()->LogString(kLogCategory, TString::Format("Image import error: %s", reason));
	throw TReadableException(
	    TString::Format("Failed to load bitmap '%s' (file failed to open or maybe no longer exists).", path));
}

} // namespace

TImage TImage::Read(const TString& path) {
	FormatOf(path); // before a file is looked for that nobody can read
	std::string bytes;
	TString reason;
	if (!ReadWholeFile(path, bytes, reason))
		ThrowNotOpened(path, reason);
	return FromBytes(std::move(bytes), path);
}

TImage TImage::FromBytes(std::string bytes, const TString& path) {
	LogFirstUse();
	const FREE_IMAGE_FORMAT format = FormatOf(path);
	const TImageSize size = Check(bytes, format);
	if (!size)
		ThrowNotOpened(path, "it is damaged or of an unusual kind");
	if (size->mX > kMostPixels / size->mY)
		throw TReadableException(TString::Format("Failed to load bitmap '%s' (too many pixels).", path));

	TImage image(TMemoryFile(bytes).Load(format));
	if (!image.mpBitmap || !FreeImage_HasPixels(image.mpBitmap) ||
	    image.Size() != TPointT<int>{static_cast<int>(size->mX), static_cast<int>(size->mY)})
		ThrowNotOpened(path, "the pixels cannot be read");
	return image;
}

TImage::TImage(TPointT<int> size, int bitDepth)
    : mpBitmap(
          FreeImage_Allocate(size.mX, size.mY, bitDepth, FI_RGBA_RED_MASK, FI_RGBA_GREEN_MASK, FI_RGBA_BLUE_MASK)) {
	LogFirstUse();
	if (!mpBitmap)
		throw TReadableException("Failed to create a bitmap.");
}

TImage::TImage(TImage&& other) noexcept : mpBitmap(std::exchange(other.mpBitmap, nullptr)) {}

TImage& TImage::operator=(TImage&& other) noexcept {
	std::swap(mpBitmap, other.mpBitmap);
	return *this;
}

TImage::~TImage() {
	FreeImage_Unload(mpBitmap);
}

TPointT<int> TImage::Size() const {
	return {static_cast<int>(FreeImage_GetWidth(mpBitmap)), static_cast<int>(FreeImage_GetHeight(mpBitmap))};
}

int TImage::BitDepth() const {
	return static_cast<int>(FreeImage_GetBPP(mpBitmap));
}

bool TImage::HasAlpha() const {
	return FreeImage_GetColorType(mpBitmap) == FIC_RGBALPHA;
}

bool TImage::IsOfFormat(int bitDepth, int greenBits) const {
	if (FreeImage_GetImageType(mpBitmap) != FIT_BITMAP || BitDepth() != bitDepth)
		return false;
	if (bitDepth != 16)
		return bitDepth > 16;
	return FreeImage_GetGreenMask(mpBitmap) == (greenBits == 6 ? FI16_565_GREEN_MASK : FI16_555_GREEN_MASK);
}

bool TImage::ConvertTo(int bitDepth, int greenBits) {
	if (IsOfFormat(bitDepth, greenBits))
		return true;
	// Grey of 16 bits is known to one conversion only.
	if (FreeImage_GetImageType(mpBitmap) == FIT_UINT16) {
		TImage grey(FreeImage_ConvertTo8Bits(mpBitmap));
		if (!grey.mpBitmap)
			return false;
		*this = std::move(grey);
	}
	TImage converted(
	    bitDepth == 32   ? FreeImage_ConvertTo32Bits(mpBitmap)
	    : bitDepth == 24 ? FreeImage_ConvertTo24Bits(mpBitmap)
	    : greenBits == 6 ? FreeImage_ConvertTo16Bits565(mpBitmap)
	                     : FreeImage_ConvertTo16Bits555(mpBitmap));
	if (!converted.mpBitmap)
		return false;
	*this = std::move(converted);
	return true;
}

uint8_t* TImage::Row(int y) {
	return FreeImage_GetScanLine(mpBitmap, Size().mY - 1 - y);
}

const uint8_t* TImage::Row(int y) const {
	return FreeImage_GetScanLine(mpBitmap, Size().mY - 1 - y);
}

int TImage::RowBytes() const {
	return static_cast<int>(FreeImage_GetLine(mpBitmap));
}

void TImage::Save(const TString& path, TFileFormat format) const {
	const TWriter& writer = kWriters[format];
	TMemoryFile file;
	TString reason = "the format does not take it";
	if (file.Save(writer.mFormat, mpBitmap, writer.mFlags)) {
		reason = ReplaceFileContents(path, file.Bytes());
		if (reason.IsEmpty())
			return;
	}
	TLog::Instance()->LogString(kLogCategory, TString::Format("'%s' was not written: %s", path, reason));
	throw TReadableException("Failed to save a bitmap.");
}
