// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11CursorImages.h"

#include <algorithm>
#include <string_view>
#include <vector>
#include <xcb/render.h>
#include <xcb/xcb_renderutil.h>

namespace {

constexpr uint8_t kDepthWithAlpha = 32;
constexpr int kLargestSide = 256;
constexpr uint16_t kArrowGlyph = 68; // "left_ptr" of the font of cursors; its mask follows it
constexpr std::string_view kCursorFont = "cursor";

uint32_t Multiplied(uint32_t pixel) {
	const uint32_t alpha = pixel >> 24;
	uint32_t result = alpha << 24;
	for (const int shift : {0, 8, 16})
		result |= (((pixel >> shift) & 0xFF) * alpha + 127) / 255 << shift;
	return result;
}

} // namespace

void TX11CursorImages::Connect(TX11Connection& connection) {
	mpConnection = &connection;
	mFormat = 0;
	xcb_connection_t* xcb = connection.Xcb();
	const auto* extension = xcb_get_extension_data(xcb, &xcb_render_id);
	if (!extension || !extension->present)
		return;
	const auto version = connection.Reply(xcb_render_query_version_reply, xcb_render_query_version(xcb, 0, 5));
	if (!version || (version->major_version == 0 && version->minor_version < 5))
		return;
	const auto formats = connection.Reply(xcb_render_query_pict_formats_reply, xcb_render_query_pict_formats(xcb));
	const auto* format =
	    formats ? xcb_render_util_find_standard_format(formats.get(), XCB_PICT_STANDARD_ARGB_32) : nullptr;
	if (format)
		mFormat = format->id;
}

void TX11CursorImages::Disconnect() {
	Clear();
	if (mArrow != 0)
		xcb_free_cursor(mpConnection->Xcb(), std::exchange(mArrow, 0));
	mpConnection = nullptr;
}

void TX11CursorImages::Define(int id, const TCursorImage& image) {
	if (!mpConnection)
		return;
	const xcb_cursor_t cursor = MakeCursor(image);
	const xcb_cursor_t previous = std::exchange(mCursors[id], cursor);
	if (previous != 0)
		xcb_free_cursor(mpConnection->Xcb(), previous);
}

void TX11CursorImages::Clear() {
	for (const auto& [id, cursor] : mCursors)
		if (cursor != 0)
			xcb_free_cursor(mpConnection->Xcb(), cursor);
	mCursors.clear();
}

xcb_cursor_t TX11CursorImages::CursorOf(int id) {
	const auto found = mCursors.find(id);
	if (found != mCursors.end() && found->second != 0)
		return found->second;
	if (mArrow == 0)
		mArrow = MakeArrow();
	return mArrow;
}

/// 0 for what no server takes.
xcb_cursor_t TX11CursorImages::MakeCursor(const TCursorImage& image) const {
	const auto [width, height] = image.mSize;
	if (mFormat == 0 || width < 1 || height < 1 || width > kLargestSide || height > kLargestSide ||
	    image.mPixels.size() < static_cast<std::size_t>(width * height))
		return 0;
	std::vector<uint32_t> pixels(static_cast<std::size_t>(width * height));
	std::transform(image.mPixels.begin(), image.mPixels.begin() + width * height, pixels.begin(), &Multiplied);
	if (xcb_get_setup(mpConnection->Xcb())->image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST)
		for (uint32_t& pixel : pixels)
			pixel = __builtin_bswap32(pixel);

	const TBrokenPipeGuard guard;
	xcb_connection_t* xcb = mpConnection->Xcb();
	const auto w = static_cast<uint16_t>(width);
	const auto h = static_cast<uint16_t>(height);
	const xcb_pixmap_t pixmap = mpConnection->NewId();
	const xcb_gcontext_t context = mpConnection->NewId();
	const xcb_render_picture_t picture = mpConnection->NewId();
	const xcb_cursor_t cursor = mpConnection->NewId();
	xcb_create_pixmap(xcb, kDepthWithAlpha, pixmap, mpConnection->Root(), w, h);
	xcb_create_gc(xcb, context, pixmap, 0, nullptr);
	xcb_put_image(
	    xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context, w, h, 0, 0, 0, kDepthWithAlpha,
	    static_cast<uint32_t>(pixels.size() * 4), reinterpret_cast<const uint8_t*>(pixels.data()));
	xcb_render_create_picture(xcb, picture, pixmap, mFormat, 0, nullptr);
	xcb_render_create_cursor(
	    xcb, cursor, picture, static_cast<uint16_t>(std::clamp(image.mHotSpot.mX, 0, width - 1)),
	    static_cast<uint16_t>(std::clamp(image.mHotSpot.mY, 0, height - 1)));
	xcb_render_free_picture(xcb, picture);
	xcb_free_gc(xcb, context);
	xcb_free_pixmap(xcb, pixmap);
	return cursor;
}

xcb_cursor_t TX11CursorImages::MakeArrow() const {
	if (!mpConnection)
		return XCB_CURSOR_NONE;
	xcb_connection_t* xcb = mpConnection->Xcb();
	constexpr uint16_t kWhite = 0xFFFF;
	const xcb_font_t font = mpConnection->NewId();
	const xcb_cursor_t cursor = mpConnection->NewId();
	xcb_open_font(xcb, font, static_cast<uint16_t>(kCursorFont.size()), kCursorFont.data());
	xcb_create_glyph_cursor(xcb, cursor, font, font, kArrowGlyph, kArrowGlyph + 1, 0, 0, 0, kWhite, kWhite, kWhite);
	xcb_close_font(xcb, font);
	return cursor;
}
