// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/x11/TX11Presenter.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>
#include <xcb/shm.h>

namespace {

constexpr std::size_t kSharedBytes = 2 * 1024 * 1024; // larger pictures go in several parts
constexpr int kWorthSharing = 4096;                   // pixels; below, a round trip less is worth more
constexpr std::size_t kRowAlignment = 4;

std::size_t BitsPerPixel(const TX11Connection& connection) {
	const xcb_setup_t* setup = xcb_get_setup(connection.Xcb());
	for (auto formats = xcb_setup_pixmap_formats_iterator(setup); formats.rem > 0; xcb_format_next(&formats))
		if (formats.data->depth == connection.Depth())
			return formats.data->bits_per_pixel;
	return 32;
}

std::size_t RowBytes(int width, std::size_t pixelBytes) {
	return (static_cast<std::size_t>(width) * pixelBytes + kRowAlignment - 1) & ~(kRowAlignment - 1);
}

/// A channel of 8 bits where the mask has its own.
uint32_t Placed(uint32_t channel, uint32_t mask) {
	const int shift = std::countr_zero(mask);
	const int width = std::popcount(mask);
	const uint32_t value = width >= 8 ? channel << (width - 8) : channel >> (8 - width);
	return (value << shift) & mask;
}

} // namespace

void TX11Presenter::Connect(TX11Connection& connection) {
	mpConnection = &connection;
	const xcb_visualtype_t& visual = connection.Visual();
	mPixelBytes = BitsPerPixel(connection) / 8;
	mIsPlain = mPixelBytes == 4 && xcb_get_setup(connection.Xcb())->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST &&
	           visual.red_mask == 0xFF0000 && visual.green_mask == 0xFF00 && visual.blue_mask == 0xFF;
	mContext = connection.NewId();
	const uint32_t withoutEvents = 0;
	xcb_create_gc(connection.Xcb(), mContext, connection.ServiceWindow(), XCB_GC_GRAPHICS_EXPOSURES, &withoutEvents);
}

void TX11Presenter::Disconnect() {
	StopSharing();
	mHasTriedSharing = false;
	mBuffer = {};
	mpConnection = nullptr;
}

/// The memory has no name and goes with its last user, whatever becomes of us. A server at the other end of a network
/// refuses it.
void TX11Presenter::ShareMemory() {
	mHasTriedSharing = true;
	xcb_connection_t* xcb = mpConnection->Xcb();
	const auto* extension = xcb_get_extension_data(xcb, &xcb_shm_id);
	if (!mIsPlain || !extension || !extension->present)
		return;
	const auto version = mpConnection->Reply(xcb_shm_query_version_reply, xcb_shm_query_version(xcb));
	if (!version || (version->major_version == 1 && version->minor_version < 2))
		return;
	const int file = memfd_create("pixels", MFD_CLOEXEC);
	if (file < 0)
		return;
	void* memory = MAP_FAILED;
	if (ftruncate(file, kSharedBytes) == 0)
		memory = mmap(nullptr, kSharedBytes, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
	if (memory == MAP_FAILED) {
		close(file);
		return;
	}
	const TBrokenPipeGuard guard;
	mSegment = mpConnection->NewId();
	const auto cookie = xcb_shm_attach_fd_checked(xcb, mSegment, file, true); // takes the file over
	const TXcbPtr<xcb_generic_error_t> error(xcb_request_check(xcb, cookie));
	if (error || mpConnection->IsBroken())
		munmap(memory, kSharedBytes);
	else
		mpShared = static_cast<std::byte*>(memory);
}

void TX11Presenter::StopSharing() {
	if (!mpShared)
		return;
	if (std::exchange(mIsServerBehind, false))
		xcb_discard_reply(mpConnection->Xcb(), mFence.sequence);
	xcb_shm_detach(mpConnection->Xcb(), mSegment);
	munmap(std::exchange(mpShared, nullptr), kSharedBytes);
	mUsed = 0;
}

/// Until it has read what it was shown.
void TX11Presenter::WaitForServer() {
	if (std::exchange(mIsServerBehind, false))
		mpConnection->Reply(xcb_get_input_focus_reply, mFence);
	mUsed = 0;
}

void TX11Presenter::Present(xcb_window_t window, const TGluePixels& picture, std::span<const TRectT<int>> rects) {
	if (!mpConnection || !picture.mpPixels || mpConnection->IsBroken())
		return;
	if (!mHasTriedSharing)
		ShareMemory();
	const TBrokenPipeGuard guard;
	WaitForServer();
	for (const TRectT<int>& wanted : rects) {
		const TRectT<int> rect = wanted.Intersected({0, 0, picture.mSize.mX, picture.mSize.mY});
		if (rect.IsEmpty())
			continue;
		if (mpShared && rect.mWidth * rect.mHeight >= kWorthSharing)
			SendShared(window, picture, rect);
		else
			Send(window, picture, rect);
	}
	if (mUsed > 0) {
		mFence = xcb_get_input_focus(mpConnection->Xcb());
		mIsServerBehind = true;
	}
	xcb_flush(mpConnection->Xcb());
}

void TX11Presenter::SendShared(xcb_window_t window, const TGluePixels& picture, const TRectT<int>& rect) {
	const std::size_t rowBytes = RowBytes(rect.mWidth, 4);
	for (int done = 0; done < rect.mHeight;) {
		if (mUsed + rowBytes > kSharedBytes) {
			mFence = xcb_get_input_focus(mpConnection->Xcb());
			mIsServerBehind = true;
			WaitForServer();
		}
		const int rows = std::min(rect.mHeight - done, static_cast<int>((kSharedBytes - mUsed) / rowBytes));
		const TRectT<int> part{rect.mLeft, rect.mTop + done, rect.mWidth, rows};
		CopyRows(picture, part, mpShared + mUsed);
		xcb_shm_put_image(
		    mpConnection->Xcb(), window, mContext, static_cast<uint16_t>(part.mWidth), static_cast<uint16_t>(rows), 0,
		    0, static_cast<uint16_t>(part.mWidth), static_cast<uint16_t>(rows), static_cast<int16_t>(part.mLeft),
		    static_cast<int16_t>(part.mTop), mpConnection->Depth(), XCB_IMAGE_FORMAT_Z_PIXMAP, false, mSegment,
		    static_cast<uint32_t>(mUsed));
		mUsed += rowBytes * static_cast<std::size_t>(rows);
		done += rows;
	}
}

void TX11Presenter::Send(xcb_window_t window, const TGluePixels& picture, const TRectT<int>& rect) {
	const std::size_t rowBytes = RowBytes(rect.mWidth, mPixelBytes);
	const std::size_t longest = std::min(mpConnection->LongestRequest(), kSharedBytes);
	const int rowsAtOnce = std::max(1, static_cast<int>(longest / rowBytes));
	for (int done = 0; done < rect.mHeight; done += rowsAtOnce) {
		const int rows = std::min(rowsAtOnce, rect.mHeight - done);
		const TRectT<int> part{rect.mLeft, rect.mTop + done, rect.mWidth, rows};
		mBuffer.resize(rowBytes * static_cast<std::size_t>(rows));
		CopyRows(picture, part, mBuffer.data());
		xcb_put_image(
		    mpConnection->Xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, mContext, static_cast<uint16_t>(part.mWidth),
		    static_cast<uint16_t>(rows), static_cast<int16_t>(part.mLeft), static_cast<int16_t>(part.mTop), 0,
		    mpConnection->Depth(), static_cast<uint32_t>(mBuffer.size()),
		    reinterpret_cast<const uint8_t*>(mBuffer.data()));
	}
}

void TX11Presenter::CopyRows(const TGluePixels& picture, const TRectT<int>& rect, std::byte* to) const {
	const std::size_t rowBytes = RowBytes(rect.mWidth, mPixelBytes);
	for (int y = rect.mTop; y < rect.Bottom(); ++y, to += rowBytes) {
		const std::byte* from =
		    picture.mpPixels + std::ptrdiff_t{y} * picture.mRowBytes + std::ptrdiff_t{rect.mLeft} * 4;
		if (mIsPlain)
			std::memcpy(to, from, static_cast<std::size_t>(rect.mWidth) * 4);
		else
			ConvertRow(from, rect.mWidth, to);
	}
}

/// For displays of 16 or 30 bits and for servers whose bytes stand the other way round.
void TX11Presenter::ConvertRow(const std::byte* from, int width, std::byte* to) const {
	const xcb_visualtype_t& visual = mpConnection->Visual();
	const bool isBig = xcb_get_setup(mpConnection->Xcb())->image_byte_order == XCB_IMAGE_ORDER_MSB_FIRST;
	for (int x = 0; x < width; ++x, from += 4, to += mPixelBytes) {
		const uint32_t value = Placed(std::to_integer<uint32_t>(from[2]), visual.red_mask) |
		                       Placed(std::to_integer<uint32_t>(from[1]), visual.green_mask) |
		                       Placed(std::to_integer<uint32_t>(from[0]), visual.blue_mask);
		for (std::size_t i = 0; i < mPixelBytes; ++i)
			to[isBig ? mPixelBytes - 1 - i : i] = static_cast<std::byte>(value >> (8 * i));
	}
}
