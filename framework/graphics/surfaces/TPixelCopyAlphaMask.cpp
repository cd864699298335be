// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TPixelCopyAlphaMask.h"

#include "framework/graphics/surfaces/TNearestPixel.h"

#include <algorithm>
#include <cstring>

namespace {

uint8_t ByteOf(float value) {
	return static_cast<uint8_t>(std::clamp(value, 0.0f, 1.0f) * 255.0f);
}

// All masks are of this class.
const TPixelCopyAlphaMask& MaskOf(const TAlphaMask& mask) {
	return static_cast<const TPixelCopyAlphaMask&>(mask);
}

} // namespace

TPixelCopyAlphaMask::TPixelCopyAlphaMask(TPointT<int> size, float value) : mSize(size), mBytes(size.mX * size.mY) {
	Fill(value);
}

float TPixelCopyAlphaMask::Value(TPointT<int> point) const {
	return static_cast<float>(Row(point.mY)[point.mX] / 255.0);
}

void TPixelCopyAlphaMask::SetValue(TPointT<int> point, float value) {
	if (Bounds().Contains(point))
		Row(point.mY)[point.mX] = ByteOf(value);
}

void TPixelCopyAlphaMask::Fill(float value) {
	std::fill(mBytes.begin(), mBytes.end(), ByteOf(value));
}

void TPixelCopyAlphaMask::CopyRect(TPointT<int> destPoint, const TAlphaMask& source, const TRectT<int>& sourceRect) {
	const TPixelCopyAlphaMask& from = MaskOf(source);
	const TPointT<int> shift{sourceRect.mLeft - destPoint.mX, sourceRect.mTop - destPoint.mY};
	const TRectT<int> available = sourceRect.Intersected(from.Bounds());
	const TRectT<int> dest = Bounds().Intersected(
	    {available.mLeft - shift.mX, available.mTop - shift.mY, available.mWidth, available.mHeight});
	const bool backwards = &from == this && shift.mY < 0;
	for (int i = 0; i < dest.mHeight; ++i) {
		const int y = dest.mTop + (backwards ? dest.mHeight - 1 - i : i);
		std::memmove(
		    Row(y) + dest.mLeft, from.Row(y + shift.mY) + dest.mLeft + shift.mX, static_cast<std::size_t>(dest.mWidth));
	}
}

void TPixelCopyAlphaMask::StretchRect(
    const TRectT<int>& destRect, const TAlphaMask& source, const TRectT<int>& sourceRect) {
	const TPixelCopyAlphaMask& from = MaskOf(source);
	const TRectT<int> visible = destRect.Intersected(Bounds());
	const TNearestPixel column(sourceRect.mWidth, destRect.mWidth);
	const TNearestPixel row(sourceRect.mHeight, destRect.mHeight);
	for (int y = visible.mTop; y < visible.Bottom(); ++y) {
		const uint8_t* const line =
		    from.Row(std::clamp(sourceRect.mTop + row(y - destRect.mTop), 0, from.mSize.mY - 1));
		for (int x = visible.mLeft; x < visible.Right(); ++x)
			Row(y)[x] = line[std::clamp(sourceRect.mLeft + column(x - destRect.mLeft), 0, from.mSize.mX - 1)];
	}
}
