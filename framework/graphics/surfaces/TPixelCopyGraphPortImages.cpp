// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/memory/Memory.h"
#include "framework/foundation/memory/TArray.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/images/TImage.h"
#include "framework/graphics/surfaces/TMemorySurface.h"
#include "framework/graphics/surfaces/TPixelCopyAlphaMask.h"
#include "framework/graphics/surfaces/TPixelCopyGraphPort.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int kLeastUncachedPixels = 1000;
constexpr int kBytesWithAlpha = 4;

std::span<uint8_t> MaskBytes(const TSurface& surface) {
	auto* const mask = static_cast<TPixelCopyAlphaMask*>(surface.AlphaMask());
	return mask ? mask->Bytes() : std::span<uint8_t>{};
}

/// Into the mask of the surface.
void MoveAlphaOut(const TImage& image, TPixelCopySurface& surface) {
	surface.CreateAlphaMask(1.0f);
	uint8_t* mask = MaskBytes(surface).data();
	const TPointT<int> size = image.Size();
	for (int y = 0; y < size.mY; ++y)
		for (const uint8_t* pixel = image.Row(y); pixel != image.Row(y) + size.mX * kBytesWithAlpha;
		     pixel += kBytesWithAlpha)
			*mask++ = pixel[3];
}

/// A pixel has no alpha: its fourth byte is always the same.
void CopyRows(const TImage& image, TPixelCopySurface& surface) {
	const auto bytes = static_cast<std::size_t>(std::min(image.RowBytes(), surface.RowBytes()));
	for (int y = 0; y < image.Size().mY; ++y) {
		uint8_t* const row = surface.Row(y);
		std::memcpy(row, image.Row(y), bytes);
		if (surface.Format().Kind() == TPixelFormat::kBgra32)
			for (std::size_t i = 3; i < bytes; i += kBytesWithAlpha)
				row[i] = 0xFF;
	}
}

} // namespace

class TPixelCopyGraphPort::TCachedBitmap final : public TReferenceCountable {
public:
	explicit TCachedBitmap(const TPixelCopySurface& surface)
	    : mSize(surface.Size()),
	      mRowBytes(surface.RowBytes()),
	      mPixels(static_cast<uint8_t*>(Memory::Allocate("#SurfaceCache", PixelBytes()))) {
		std::memcpy(mPixels, surface.Pixels(), PixelBytes());
		const std::span<const uint8_t> mask = MaskBytes(surface);
		mMask.SetSize(static_cast<int32_t>(mask.size()));
		std::copy(mask.begin(), mask.end(), mMask.begin());
	}

	~TCachedBitmap() override { Memory::Free(mPixels); }

	TCachedBitmap(const TCachedBitmap&) = delete;
	TCachedBitmap& operator=(const TCachedBitmap&) = delete;

	TPointT<int> Size() const noexcept { return mSize; }

	void CopyTo(TPixelCopySurface& surface, bool ignoreAlpha) const {
		std::memcpy(surface.Pixels(), mPixels, PixelBytes());
		if (ignoreAlpha || mMask.IsEmpty())
			return;
		surface.CreateAlphaMask(1.0f);
		std::copy(mMask.begin(), mMask.end(), MaskBytes(surface).begin());
	}

private:
	std::size_t PixelBytes() const noexcept {
		return static_cast<std::size_t>(mRowBytes) * static_cast<std::size_t>(mSize.mY);
	}

	TPointT<int> mSize;
	int mRowBytes;
	uint8_t* mPixels;
	TArray<uint8_t> mMask; // empty: it had none
};

TPtr<TPixelCopySurface> TPixelCopyGraphPort::CreateImageSurface(
    TPointT<int> size, const TSurface::TLostCallback& lostCallback, const char* failure, const TString& path) {
	try {
		const TPtr<TSurface> surface = CreateSurface(size, 0, lostCallback);
		return TPtr<TPixelCopySurface>(static_cast<TPixelCopySurface*>(surface.Get()));
	} catch (const TReadableException&) {
		throw TReadableException(TString::Format(failure, path));
	}
}

TPtr<TSurface> TPixelCopyGraphPort::LoadImage(
    const TString& path, uint32_t /*flags*/, const TSurface::TLostCallback& lostCallback, bool ignoreAlpha) {
	if (const auto cached = mCachedBitmaps.find(path); cached != mCachedBitmaps.end()) {
		const TPtr<TPixelCopySurface> surface = CreateImageSurface(
		    cached->second->Size(), lostCallback,
		    "Internal Error: Failed to create an offscreen surface for cached image file '%s'", path);
		cached->second->CopyTo(*surface, ignoreAlpha);
		return surface;
	}

	TImage image = TImage::Read(path);
	const bool hasAlpha = image.HasAlpha();
	if (hasAlpha && !ignoreAlpha && image.BitDepth() != 32)
		throw TReadableException(TString::Format(
		    "Failed to load bitmap '%s' (only 32bit RGBA images or any other format without alpha mask are supported).",
		    path));
	const TPointT<int> size = image.Size();
	const TPtr<TPixelCopySurface> surface = CreateImageSurface(
	    size, lostCallback, "Failed to convert bitmap '%s' to an offscreen surface (unknown error)", path);
	if (hasAlpha && !ignoreAlpha)
		MoveAlphaOut(image, *surface);
	if (!image.ConvertTo(mFormat.BitDepth(), mFormat.Green().mWidth))
		throw TReadableException("Internal Error: Failed to convert a bitmap to the screens format.");
	CopyRows(image, *surface);
	// An image whose alpha was not wanted may be asked for with it later.
	if (size.mX * size.mY < kLeastUncachedPixels && !(hasAlpha && ignoreAlpha))
		mCachedBitmaps.insert_or_assign(path, MakePtr<TCachedBitmap>(*surface));
	return surface;
}
