// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/vortel2/plot/TPicture.h"

#include "tools/vortel2/files/TReplacedFile.h"

#include <agg_embedded_raster_fonts.h>
#include <agg_glyph_raster_bin.h>
#include <agg_pixfmt_rgb.h>
#include <agg_renderer_base.h>
#include <agg_renderer_raster_text.h>
#include <png.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <stdexcept>

namespace {

constexpr std::size_t kBytesPerPixel = 3;
constexpr std::size_t kPaletteSize = 256;

using TGlyphs = agg::glyph_raster_bin<agg::rgba8>;

TGlyphs Glyphs(TPicture::EFont font) {
	switch (font) {
	case TPicture::kSmall:
		return TGlyphs(agg::verdana12);
	case TPicture::kNormal:
		return TGlyphs(agg::verdana13_bold);
	default:
		return TGlyphs(agg::verdana16_bold);
	}
}

/// What the fonts can show.
std::string InAscii(std::string text) {
	std::replace_if(
	    text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c > '~'; }, '?');
	return text;
}

agg::rgba8 AggColor(TColor color, double opacity) {
	const auto part = [](int value) { return static_cast<unsigned>(value); };
	return {
	    part(color.mRed), part(color.mGreen), part(color.mBlue), static_cast<unsigned>(std::lround(255.0 * opacity))};
}

/// Draws on a block of pixels.
struct TCanvas {
	TCanvas(uint8_t* pixels, int32_t width, int32_t height)
	    : mBuffer(
	          pixels, static_cast<unsigned>(width), static_cast<unsigned>(height),
	          width * static_cast<int>(kBytesPerPixel)),
	      mFormat(mBuffer),
	      mRenderer(mFormat) {}

	agg::rendering_buffer mBuffer;
	agg::pixfmt_rgb24 mFormat;
	agg::renderer_base<agg::pixfmt_rgb24> mRenderer;
};

/// A picture of few colours is a third of the size when it names each colour by one byte.
class TPalette {
public:
	explicit TPalette(const std::vector<uint8_t>& pixels) {
		mIndices.reserve(pixels.size() / kBytesPerPixel);
		for (std::size_t i = 0; i < pixels.size() && mColors.size() <= kPaletteSize; i += kBytesPerPixel)
			Add({pixels[i], pixels[i + 1], pixels[i + 2]});
	}

	bool Suffices() const { return mColors.size() <= kPaletteSize; }

	const std::vector<png_color>& Colors() const { return mColors; }

	const std::vector<uint8_t>& Indices() const { return mIndices; }

private:
	void Add(png_color color) {
		const uint32_t key = uint32_t{color.red} << 16 | uint32_t{color.green} << 8 | color.blue;
		const auto [entry, isNew] = mKnown.try_emplace(key, static_cast<uint8_t>(mColors.size()));
		if (isNew)
			mColors.push_back(color);
		mIndices.push_back(entry->second);
	}

	std::map<uint32_t, uint8_t> mKnown;
	std::vector<png_color> mColors;
	std::vector<uint8_t> mIndices;
};

std::vector<uint8_t> Compressed(png_image& image, const void* pixels, const void* palette) {
	image.version = PNG_IMAGE_VERSION;
	std::vector<uint8_t> bytes(PNG_IMAGE_PNG_SIZE_MAX(image));
	png_alloc_size_t size = bytes.size();
	if (!png_image_write_to_memory(&image, bytes.data(), &size, 0, pixels, 0, palette))
		throw std::runtime_error(image.message);
	bytes.resize(size);
	return bytes;
}

} // namespace

TPicture::TPicture(int32_t width, int32_t height, TColor background)
    : mWidth(width),
      mHeight(height),
      mPixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * kBytesPerPixel) {
	Fill({0, 0, width, height}, background);
}

void TPicture::Fill(const TRectT<int>& area, TColor color, double opacity) {
	if (area.IsEmpty())
		return;
	TCanvas canvas(mPixels.data(), mWidth, mHeight);
	canvas.mRenderer.blend_bar(
	    area.mLeft, area.mTop, area.Right() - 1, area.Bottom() - 1, AggColor(color, opacity), agg::cover_full);
}

void TPicture::Text(int left, int bottom, const std::string& text, EFont font, TColor color) {
	TCanvas canvas(mPixels.data(), mWidth, mHeight);
	TGlyphs glyphs = Glyphs(font);
	agg::renderer_raster_htext_solid renderer(canvas.mRenderer, glyphs);
	renderer.color(AggColor(color, 1.0));
	constexpr bool kTopDown = true; // the rows of the buffer
	renderer.render_text(left, bottom, InAscii(text).c_str(), kTopDown);
}

int TPicture::TextWidth(const std::string& text, EFont font) {
	return static_cast<int>(Glyphs(font).width(InAscii(text).c_str()));
}

void TPicture::WritePng(TReplacedFile& file) const {
	const TPalette palette(mPixels);
	png_image image{};
	image.width = static_cast<png_uint_32>(mWidth);
	image.height = static_cast<png_uint_32>(mHeight);
	image.format = palette.Suffices() ? PNG_FORMAT_RGB_COLORMAP : PNG_FORMAT_RGB;
	image.colormap_entries = static_cast<png_uint_32>(palette.Suffices() ? palette.Colors().size() : 0);
	const auto& pixels = palette.Suffices() ? palette.Indices() : mPixels;
	file.Write(Compressed(image, pixels.data(), palette.Colors().data()));
}
