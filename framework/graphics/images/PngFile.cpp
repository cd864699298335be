// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/images/PngFile.h"

#include "framework/graphics/images/ImageChecks.h"
#include "framework/graphics/images/TFileBytes.h"

#include <algorithm>
#include <csetjmp>
#include <cstring>
#include <new>
#include <png.h>

TImageSize CheckPng(std::string_view bytes) {
	const TFileBytes file(bytes, true);
	const int64_t width = file.Long(16);
	const int64_t height = file.Long(20);
	const bool isPng =
	    bytes.starts_with("\x89PNG\r\n\x1A\n") && file.Size() >= 24 && bytes.substr(12).starts_with("IHDR");
	return isPng && width > 0 && height > 0 ? TImageSize({width, height}) : std::nullopt;
}

void TPngContext::OnError(png_struct_def* png, const char* message) {
	auto* const context = static_cast<TPngContext*>(png_get_error_ptr(png));
	std::strncpy(context->mMessage.data(), message, context->mMessage.size() - 1);
	png_longjmp(png, 1);
}

TPngReader::TPngReader(std::span<const uint8_t> file) : mRest(file) {
	mpPng = png_create_read_struct(PNG_LIBPNG_VER_STRING, static_cast<TPngContext*>(this), &OnError, &OnWarning);
	if (mpPng)
		mpInfo = png_create_info_struct(mpPng);
}

TPngReader::~TPngReader() {
	png_destroy_read_struct(&mpPng, &mpInfo, nullptr);
}

void TPngReader::OnRead(png_struct_def* png, uint8_t* target, std::size_t count) {
	auto* const reader = static_cast<TPngReader*>(png_get_io_ptr(png));
	if (count > reader->mRest.size())
		png_error(png, "Read Error");
	std::memcpy(target, reader->mRest.data(), count);
	reader->mRest = reader->mRest.subspan(count);
}

bool TPngReader::ReadHeader(TPngHeader& header) {
	if (!mpInfo || setjmp(png_jmpbuf(mpPng)) != 0)
		return false;
	png_set_read_fn(mpPng, this, &OnRead);
	png_read_info(mpPng, mpInfo);
	header.mWidth = static_cast<int>(png_get_image_width(mpPng, mpInfo));
	header.mHeight = static_cast<int>(png_get_image_height(mpPng, mpInfo));
	header.mInterlacing = png_get_interlace_type(mpPng, mpInfo);
	header.mHasGamma = png_get_gAMA(mpPng, mpInfo, &header.mGamma) != 0;

	png_set_expand(mpPng);
	png_set_strip_16(mpPng);
	png_set_gray_to_rgb(mpPng);
	png_set_filler(mpPng, 0xFF, PNG_FILLER_AFTER);
	mPasses = png_set_interlace_handling(mpPng);
	png_read_update_info(mpPng, mpInfo);
	mRowBytes = static_cast<int>(png_get_rowbytes(mpPng, mpInfo));
	mHeight = header.mHeight;
	return mRowBytes == header.mWidth * 4;
}

bool TPngReader::ReadPixels(uint8_t* pixels) {
	if (setjmp(png_jmpbuf(mpPng)) != 0)
		return false;
	for (int pass = 0; pass < mPasses; ++pass)
		for (int y = 0; y < mHeight; ++y)
			png_read_row(mpPng, pixels + static_cast<std::ptrdiff_t>(y) * mRowBytes, nullptr);
	png_read_end(mpPng, nullptr);
	return true;
}

TPngWriter::TPngWriter() {
	mpPng = png_create_write_struct(PNG_LIBPNG_VER_STRING, static_cast<TPngContext*>(this), &OnError, &OnWarning);
	if (mpPng)
		mpInfo = png_create_info_struct(mpPng);
}

TPngWriter::~TPngWriter() {
	png_destroy_write_struct(&mpPng, &mpInfo);
}

void TPngWriter::OnWrite(png_struct_def* png, uint8_t* bytes, std::size_t count) {
	std::vector<uint8_t>& target = static_cast<TPngWriter*>(png_get_io_ptr(png))->mBytes;
	bool isWritten = true;
	try {
		target.insert(target.end(), bytes, bytes + count);
	} catch (const std::bad_alloc&) {
		isWritten = false;
	}
	if (!isWritten)
		png_error(png, "Write Error");
}

void TPngWriter::SetPalette(const TPngPalette& palette) {
	std::array<png_color, PNG_MAX_PALETTE_LENGTH> colors{};
	std::array<png_byte, PNG_MAX_PALETTE_LENGTH> alphas{};
	const int count = static_cast<int>(palette.mColors.size());
	for (std::size_t i = 0; i < palette.mColors.size(); ++i) {
		const auto& [red, green, blue, alpha] = palette.mColors[i];
		colors[i] = {static_cast<png_byte>(red), static_cast<png_byte>(green), static_cast<png_byte>(blue)};
		alphas[i] = static_cast<png_byte>(alpha);
	}
	png_set_PLTE(mpPng, mpInfo, colors.data(), count);
	if (palette.mTransparent > 0)
		png_set_tRNS(mpPng, mpInfo, alphas.data(), palette.mTransparent, nullptr);
}

bool TPngWriter::Write(const TPngHeader& header, const TPngPalette& palette, const uint8_t* indices) {
	if (!mpInfo || setjmp(png_jmpbuf(mpPng)) != 0)
		return false;
	png_set_write_fn(mpPng, this, &OnWrite, nullptr);
	png_set_IHDR(
	    mpPng, mpInfo, static_cast<png_uint_32>(header.mWidth), static_cast<png_uint_32>(header.mHeight), 8,
	    PNG_COLOR_TYPE_PALETTE, header.mInterlacing, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
	if (header.mHasGamma)
		png_set_gAMA(mpPng, mpInfo, header.mGamma);
	SetPalette(palette);
	png_write_info(mpPng, mpInfo);
	const int passes = png_set_interlace_handling(mpPng);
	for (int pass = 0; pass < passes; ++pass)
		for (int y = 0; y < header.mHeight; ++y)
			png_write_row(mpPng, indices + static_cast<std::ptrdiff_t>(y) * header.mWidth);
	png_write_end(mpPng, nullptr);
	return true;
}
