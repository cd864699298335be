// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TPixelCopyT.h"

#include "framework/graphics/surfaces/TNearestPixel.h"

#include <array>

TPtr<TPixelCopy> TPixelCopy::Create(TPixelCopySurface& surface) {
	switch (surface.Format().Kind()) {
	case TPixelFormat::kBgra32:
		return MakePtr<TPixelCopyT<unsigned int>>(surface);
	case TPixelFormat::kBgr24:
		return MakePtr<TPixelCopyT<char[3]>>(surface);
	default:
		return MakePtr<TPixelCopyT<unsigned short>>(surface);
	}
}

template <class TPixel>
uint32_t TPixelCopyT<TPixel>::Pixel(TPointT<int> point) const {
	return TAccess::Read(Address(mSurface, point));
}

template <class TPixel>
void TPixelCopyT<TPixel>::SetPixel(TPointT<int> point, uint32_t value) {
	TAccess::Write(Address(mSurface, point), value);
}

template <class TPixel>
void TPixelCopyT<TPixel>::VerticalLine(TPointT<int> point, int length, uint32_t value) {
	uint8_t* pixel = Address(mSurface, point);
	for (int i = 0; i < length; ++i, pixel += mSurface.RowBytes())
		TAccess::Write(pixel, value);
}

template <class TPixel>
void TPixelCopyT<TPixel>::HorizontalLine(TPointT<int> point, int length, uint32_t value) {
	FillRow(Address(mSurface, point), length, value);
}

template <class TPixel>
void TPixelCopyT<TPixel>::FillRow(uint8_t* row, int width, uint32_t value) noexcept {
	for (int x = 0; x < width; ++x)
		TAccess::Write(row + static_cast<std::ptrdiff_t>(x) * TAccess::kBytes, value);
}

// Copying a row that is in the cache is as fast as writing goes, whatever the compiler makes of FillRow.
template <class TPixel>
void TPixelCopyT<TPixel>::FillRect(const TRectT<int>& rect, uint32_t value) {
	uint8_t* const first = Address(mSurface, {rect.mLeft, rect.mTop});
	FillRow(first, rect.mWidth, value);
	const auto bytes = static_cast<std::size_t>(rect.mWidth) * TAccess::kBytes;
	for (int y = 1; y < rect.mHeight; ++y)
		std::memcpy(first + static_cast<std::ptrdiff_t>(y) * mSurface.RowBytes(), first, bytes);
}

template <class TPixel>
void TPixelCopyT<TPixel>::BlendRect(const TRectT<int>& rect, uint32_t value, float opacity) {
	const auto amount = static_cast<uint32_t>(opacity * 255.0f);
	for (int y = rect.mTop; y < rect.Bottom(); ++y)
		BlendRow(Address(mSurface, {rect.mLeft, y}), rect.mWidth, value, amount);
}

template <class TPixel>
void TPixelCopyT<TPixel>::BlendRow(uint8_t* row, int width, uint32_t value, uint32_t amount) const noexcept {
	const TPixelFormat& format = mSurface.Format();
	const auto part = static_cast<int>(amount);
	const TColor color = format.UnmapColor(value);
	const TColor share{color.mRed * part, color.mGreen * part, color.mBlue * part};
	const int rest = 255 - part;
	for (uint8_t* pixel = row; pixel != row + static_cast<std::ptrdiff_t>(width) * TAccess::kBytes;
	     pixel += TAccess::kBytes) {
		const TColor below = format.UnmapColor(TAccess::Read(pixel));
		const TColor mixed{
		    (share.mRed + below.mRed * rest) >> 8, (share.mGreen + below.mGreen * rest) >> 8,
		    (share.mBlue + below.mBlue * rest) >> 8};
		TAccess::Write(pixel, format.MapColor(mixed));
	}
}

// Byte by byte, in numbers of 16 bits: so a compiler takes several in one instruction. The share of the fourth byte is
// what keeps it at 255.
template <>
void TPixelCopyT<unsigned int>::BlendRow(uint8_t* row, int width, uint32_t value, uint32_t amount) const noexcept {
	constexpr int kBytes = 16;
	const auto rest = static_cast<uint16_t>(255 - amount);
	std::array<uint16_t, kBytes> shares;
	for (std::size_t i = 0; i < kBytes; ++i) {
		const uint32_t part = value >> (8 * (i % 4)) & 0xFF;
		shares[i] = static_cast<uint16_t>(i % 4 == 3 ? 0xFFFFu - 255u * rest : part * amount);
	}
	const auto blend = [&](uint8_t below, std::size_t i) {
		return static_cast<uint8_t>(static_cast<uint16_t>(shares[i] + below * rest) >> 8);
	};
	const auto count = static_cast<std::size_t>(width) * 4;
	std::size_t done = 0;
	for (; done + kBytes <= count; done += kBytes)
		for (std::size_t i = 0; i < kBytes; ++i)
			row[done + i] = blend(row[done + i], i);
	for (std::size_t i = 0; done + i < count; ++i)
		row[done + i] = blend(row[done + i], i);
}

template <class TPixel>
void TPixelCopyT<TPixel>::CopyRect(
    TPointT<int> destPoint, const TPixelCopySurface& source, const TRectT<int>& sourceRect) {
	const auto bytes = static_cast<std::size_t>(sourceRect.mWidth) * TAccess::kBytes;
	// Within one surface, rows that move down go last one first.
	const bool backwards = &source == &mSurface && destPoint.mY > sourceRect.mTop;
	for (int i = 0; i < sourceRect.mHeight; ++i) {
		const int y = backwards ? sourceRect.mHeight - 1 - i : i;
		std::memmove(
		    Address(mSurface, {destPoint.mX, destPoint.mY + y}),
		    Address(source, {sourceRect.mLeft, sourceRect.mTop + y}), bytes);
	}
}

template <class TPixel>
void TPixelCopyT<TPixel>::StretchRect(
    const TRectT<int>& destRect, const TPixelCopySurface& source, const TRectT<int>& sourceRect) {
	const TNearestPixel column(sourceRect.mWidth, destRect.mWidth);
	const TNearestPixel row(sourceRect.mHeight, destRect.mHeight);
	for (int y = 0; y < destRect.mHeight; ++y) {
		const uint8_t* const from = Address(source, {sourceRect.mLeft, sourceRect.mTop + row(y)});
		uint8_t* to = Address(mSurface, {destRect.mLeft, destRect.mTop + y});
		for (int x = 0; x < destRect.mWidth; ++x, to += TAccess::kBytes)
			TAccess::Write(to, TAccess::Read(from + static_cast<std::ptrdiff_t>(column(x)) * TAccess::kBytes));
	}
}

template <class TPixel>
void TPixelCopyT<TPixel>::CopyRectKeyed(
    TPointT<int> destPoint, const TPixelCopySurface& source, const TRectT<int>& sourceRect) {
	constexpr uint32_t kColorBits = 0xFFFFFF;
	const uint32_t key = source.MapColor(source.KeyColor()) & kColorBits;
	for (int y = 0; y < sourceRect.mHeight; ++y) {
		const uint8_t* from = Address(source, {sourceRect.mLeft, sourceRect.mTop + y});
		uint8_t* to = Address(mSurface, {destPoint.mX, destPoint.mY + y});
		for (int x = 0; x < sourceRect.mWidth; ++x, from += TAccess::kBytes, to += TAccess::kBytes)
			if (const uint32_t value = TAccess::Read(from); (value & kColorBits) != key)
				TAccess::Write(to, value);
	}
}

template class TPixelCopyT<unsigned short>;
template class TPixelCopyT<char[3]>;
template class TPixelCopyT<unsigned int>;
