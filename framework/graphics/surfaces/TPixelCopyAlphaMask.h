// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/memory/TArray.h"
#include "framework/graphics/surfaces/TAlphaMask.h"

#include <cstddef>
#include <cstdint>
#include <span>

/// One byte for each pixel, rows without gaps.
class TPixelCopyAlphaMask final : public TAlphaMask {
public:
	TPixelCopyAlphaMask(TPointT<int> size, float value);

	TPointT<int> Size() const override { return mSize; }

	float Value(TPointT<int> point) const override;
	void SetValue(TPointT<int> point, float value) override;
	void Fill(float value) override;
	void CopyRect(TPointT<int> destPoint, const TAlphaMask& source, const TRectT<int>& sourceRect) override;
	void StretchRect(const TRectT<int>& destRect, const TAlphaMask& source, const TRectT<int>& sourceRect) override;

	std::span<uint8_t> Bytes() noexcept { return {mBytes.Items(), mBytes.size()}; }

	std::span<const uint8_t> Bytes() const noexcept { return {mBytes.Items(), mBytes.size()}; }

	const uint8_t* Row(int y) const noexcept { return mBytes.Items() + static_cast<std::ptrdiff_t>(y) * mSize.mX; }

private:
	uint8_t* Row(int y) noexcept { return mBytes.Items() + static_cast<std::ptrdiff_t>(y) * mSize.mX; }

	TRectT<int> Bounds() const noexcept { return {0, 0, mSize.mX, mSize.mY}; }

	TPointT<int> mSize;
	TArray<uint8_t> mBytes;
};
