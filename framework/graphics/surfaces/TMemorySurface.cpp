// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TMemorySurface.h"

#include "framework/foundation/memory/Memory.h"
#include "framework/foundation/text/TReadableException.h"
#include "framework/graphics/images/TImage.h"
#include "framework/graphics/surfaces/TAggWorkspace.h"
#include "framework/graphics/surfaces/TPixelCopy.h"
#include "framework/graphics/surfaces/TPixelCopyAggRenderer.h"

#include <cstddef>

namespace {

int RowBytesFor(int width, const TPixelFormat& format) {
	return (width * format.BytesPerPixel() + 15) & ~15;
}

/// The size itself, if a surface can have it.
TPointT<int> Checked(TPointT<int> size) {
	if (size.mX < 1 || size.mY < 1 || int64_t{size.mX} * size.mY > TImage::kMostPixels)
		throw TReadableException(TString::Format(
		    "Internal Error: Failed to create an offscreen surface with size %s,%s", TString::ToString(size.mX),
		    TString::ToString(size.mY)));
	return size;
}

} // namespace

TMemorySurface::TMemorySurface(TPointT<int> size, const TPixelFormat& format, const TPtr<TAggWorkspace>& workspace)
    : TPixelCopySurface(Checked(size), format),
      mWorkspace(workspace),
      mBlockRowBytes(RowBytesFor(size.mX, format)),
      mpBlock(static_cast<uint8_t*>(Memory::AllocateAligned(
          "#SurfaceMemory", static_cast<std::size_t>(mBlockRowBytes) * static_cast<std::size_t>(size.mY), 16))) {}

TMemorySurface::~TMemorySurface() {
	Memory::FreeAligned(mpBlock);
}

void TMemorySurface::MapPixels() {
	if (IsMapped())
		return;
	mPixels = mpBlock;
	mRowBytes = mBlockRowBytes;
	mPixelCopy = TPixelCopy::Create(*this);
	mRenderer = TPixelCopyAggRenderer::Create(*this, mWorkspace);
}

void TMemorySurface::UnmapPixels() {
	mRenderer = nullptr;
	mPixelCopy = nullptr;
	mPixels = nullptr;
	mRowBytes = 0;
}

bool TMemorySurface::Lock() {
	mIsLocked = true;
	return true;
}
