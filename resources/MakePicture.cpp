// SPDX-License-Identifier: GPL-3.0-or-later
// Turns a rendered drawing, a PNG with alpha, into one of the forms that the program reads:
//   make-picture IN.png OUT.bmp   24 bits over black
//   make-picture IN.png OUT.gif   black, white and transparent, as cursors are

#include <FreeImage.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string_view>

namespace {

struct TUnload {
	void operator()(FIBITMAP* image) const { FreeImage_Unload(image); }
};

using TImage = std::unique_ptr<FIBITMAP, TUnload>;

constexpr BYTE kTransparent = 0;
constexpr BYTE kBlack = 1;
constexpr BYTE kWhite = 2;

TImage OverBlack(FIBITMAP* source) {
	RGBQUAD black{};
	return TImage{FreeImage_Composite(source, FALSE, &black, nullptr)};
}

TImage AsCursor(FIBITMAP* source) {
	const unsigned width = FreeImage_GetWidth(source);
	const unsigned height = FreeImage_GetHeight(source);
	TImage image{FreeImage_Allocate(static_cast<int>(width), static_cast<int>(height), 8)};
	if (!image)
		return image;
	RGBQUAD* palette = FreeImage_GetPalette(image.get());
	palette[kWhite] = {255, 255, 255, 0};
	std::array<BYTE, 3> alphas{0, 255, 255};
	FreeImage_SetTransparencyTable(image.get(), alphas.data(), static_cast<int>(alphas.size()));
	for (unsigned y = 0; y < height; ++y)
		for (unsigned x = 0; x < width; ++x) {
			RGBQUAD pixel{};
			FreeImage_GetPixelColor(source, x, y, &pixel);
			BYTE entry = pixel.rgbReserved < 128 ? kTransparent : pixel.rgbGreen < 128 ? kBlack : kWhite;
			FreeImage_SetPixelIndex(image.get(), x, y, &entry);
		}
	return image;
}

} // namespace

int main(int count, char** arguments) {
	if (count != 3) {
		std::fputs("usage: make-picture IN.png OUT.bmp|OUT.gif\n", stderr);
		return 2;
	}
	const TImage loaded{FreeImage_Load(FIF_PNG, arguments[1], PNG_DEFAULT)};
	const TImage source{loaded ? FreeImage_ConvertTo32Bits(loaded.get()) : nullptr};
	const bool isCursor = std::string_view{arguments[2]}.ends_with(".gif");
	const TImage made = !source ? nullptr : isCursor ? AsCursor(source.get()) : OverBlack(source.get());
	if (!made || !FreeImage_Save(isCursor ? FIF_GIF : FIF_BMP, made.get(), arguments[2], 0)) {
		std::fprintf(stderr, "make-picture: %s could not be made of %s\n", arguments[2], arguments[1]);
		return 1;
	}
	return 0;
}
