// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/images/PngQuantizer.h"
#include "framework/graphics/images/TImage.h"
#include "framework/graphics/surfaces/TGraphPort.h"
#include "framework/graphics/surfaces/TPixelCopy.h"
#include "framework/graphics/surfaces/TPixelCopyAlphaMask.h"
#include "framework/graphics/surfaces/TPixelCopySurface.h"
#include "framework/graphics/surfaces/TSurfaceLock.h"

#include <algorithm>

namespace {

TImage::TFileFormat ImageFormatOf(TSurface::TFileFormat format) {
	switch (format) {
	case TSurface::kTiff:
		return TImage::kTiff;
	case TSurface::kPng:
	case TSurface::kPalettePng:
		return TImage::kPng;
	case TSurface::kJpeg:
		return TImage::kJpeg;
	default:
		return TImage::kBmp;
	}
}

} // namespace

void TPixelCopySurface::LoadAlphaMask(const TString& path) {
	const TPtr<TSurface> image = TGraphPort::Instance()->LoadImage(path, 0, {}, false);
	const auto mask = MakePtr<TPixelCopyAlphaMask>(mSize, 1.0f);
	const TPointT<int> size = image->Size();
	if (image->AlphaMask()) {
		mask->CopyRect({0, 0}, *image->AlphaMask(), {0, 0, size.mX, size.mY});
	} else {
		for (int y = 0; y < std::min(size.mY, mSize.mY); ++y) {
			for (int x = 0; x < std::min(size.mX, mSize.mX); ++x) {
				const TColor color = image->Pixel({x, y});
				const int brightness = (color.mRed + color.mGreen + color.mBlue) / 3;
				mask->SetValue({x, y}, static_cast<float>(brightness / 255.0));
			}
		}
	}
	mAlphaMask = mask;
}

void TPixelCopySurface::SaveToFile(const TString& path, TFileFormat format) {
	SaveDeviceRect(path, Bounds(), format);
}

void TPixelCopySurface::SaveRectToFile(const TString& path, const TRectT<int>& rect, TFileFormat format) {
	SaveDeviceRect(path, Scaled(rect, mScale).Intersected(Bounds()), format);
}

void TPixelCopySurface::SaveDeviceRect(const TString& path, const TRectT<int>& rect, TFileFormat format) {
	const TSurfaceLock lock(*this);
	// JPEG knows no transparency.
	const bool withAlpha = mAlphaMask && format != kJpeg;
	TImage image({rect.mWidth, rect.mHeight}, withAlpha ? 32 : 24);
	for (int y = 0; y < rect.mHeight; ++y) {
		uint8_t* pixel = image.Row(y);
		for (int x = 0; x < rect.mWidth; ++x) {
			const TPointT<int> place{rect.mLeft + x, rect.mTop + y};
			const TColor color = UnmapColor(mPixelCopy->Pixel(place));
			*pixel++ = static_cast<uint8_t>(color.mBlue);
			*pixel++ = static_cast<uint8_t>(color.mGreen);
			*pixel++ = static_cast<uint8_t>(color.mRed);
			if (withAlpha)
				*pixel++ = static_cast<uint8_t>(mAlphaMask->Value(place) * 255.0f);
		}
	}
	image.Save(path, ImageFormatOf(format));
	if (format == kPalettePng)
		QuantizePng(path, path, 0, 256);
}
