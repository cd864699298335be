// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/graphics/surfaces/TPixelCopy.h"
#include "framework/graphics/surfaces/TPixelCopySurface.h"

#include <cstring>

/// A pixel's value in memory.
template <class TPixel>
struct TPixelAccess {
	static constexpr int kBytes = sizeof(TPixel);

	static uint32_t Read(const uint8_t* bytes) noexcept {
		TPixel value;
		std::memcpy(&value, bytes, sizeof value);
		return value;
	}

	static void Write(uint8_t* bytes, uint32_t value) noexcept {
		const auto pixel = static_cast<TPixel>(value);
		std::memcpy(bytes, &pixel, sizeof pixel);
	}
};

template <>
struct TPixelAccess<char[3]> {
	static constexpr int kBytes = 3;

	static uint32_t Read(const uint8_t* bytes) noexcept {
		return static_cast<uint32_t>(bytes[0] | bytes[1] << 8 | bytes[2] << 16);
	}

	static void Write(uint8_t* bytes, uint32_t value) noexcept {
		bytes[0] = static_cast<uint8_t>(value);
		bytes[1] = static_cast<uint8_t>(value >> 8);
		bytes[2] = static_cast<uint8_t>(value >> 16);
	}
};

/// TPixelCopy for pixels that are kept as TPixel.
template <class TPixel>
class TPixelCopyT final : public TPixelCopy {
public:
	explicit TPixelCopyT(TPixelCopySurface& surface) : mSurface(surface) {}

	uint32_t Pixel(TPointT<int> point) const override;
	void SetPixel(TPointT<int> point, uint32_t value) override;
	void VerticalLine(TPointT<int> point, int length, uint32_t value) override;
	void HorizontalLine(TPointT<int> point, int length, uint32_t value) override;
	void FillRect(const TRectT<int>& rect, uint32_t value) override;
	void BlendRect(const TRectT<int>& rect, uint32_t value, float opacity) override;
	void CopyRect(TPointT<int> destPoint, const TPixelCopySurface& source, const TRectT<int>& sourceRect) override;
	void
	StretchRect(const TRectT<int>& destRect, const TPixelCopySurface& source, const TRectT<int>& sourceRect) override;
	void CopyRectKeyed(TPointT<int> destPoint, const TPixelCopySurface& source, const TRectT<int>& sourceRect) override;

private:
	using TAccess = TPixelAccess<TPixel>;

	static uint8_t* Address(const TPixelCopySurface& surface, TPointT<int> point) noexcept {
		return surface.Row(point.mY) + static_cast<std::ptrdiff_t>(point.mX) * TAccess::kBytes;
	}

	static void FillRow(uint8_t* row, int width, uint32_t value) noexcept;
	void BlendRow(uint8_t* row, int width, uint32_t value, uint32_t amount) const noexcept;

	TPixelCopySurface& mSurface;
};
