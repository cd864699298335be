// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TColor.h"

#include <array>
#include <cstdint>

/// How a pixel's value is made of a colour. There is one object for each format, which lives as long as the process.
class TPixelFormat {
public:
	enum TKind : int32_t {
		kRgb555 = 0,
		kRgb565 = 1,
		kBgr24 = 2, // bytes blue, green, red
		kBgra32 = 3 // bytes blue, green, red and one that is always 255
	};

	static const TPixelFormat& OfKind(TKind kind);
	/// The one that windows take.
	static const TPixelFormat& Standard() { return OfKind(kBgra32); }

	struct TChannel {
		uint32_t mMask;
		int mWidth; // bits
		int mShift;
	};

	int BitDepth() const noexcept { return mBitDepth; }

	int BytesPerPixel() const noexcept { return mBitDepth == 16 ? 2 : mBitDepth / 8; }

	uint32_t AlphaBits() const noexcept { return mAlphaBits; }

	const TChannel& Red() const noexcept { return mRed; }

	const TChannel& Green() const noexcept { return mGreen; }

	const TChannel& Blue() const noexcept { return mBlue; }

	TKind Kind() const noexcept { return mKind; }

	uint32_t MapColor(const TColor& color) const noexcept {
		return mRedValues[Index(color.mRed)] | mGreenValues[Index(color.mGreen)] | mBlueValues[Index(color.mBlue)] |
		       mAlphaBits;
	}

	/// The low bits that the format does not hold are 0.
	TColor UnmapColor(uint32_t value) const noexcept {
		return {Unmap(value, mRed), Unmap(value, mGreen), Unmap(value, mBlue)};
	}

private:
	using TValues = std::array<uint32_t, 256>;

	TPixelFormat(int bitDepth, TChannel red, TChannel green, TChannel blue);

	static TKind KindOf(int bitDepth, const TChannel& green);
	static TValues ValuesOf(const TChannel& channel);

	static constexpr std::size_t Index(int part) noexcept {
		return static_cast<std::size_t>(part < 0 ? 0 : part > 255 ? 255 : part);
	}

	static constexpr int Unmap(uint32_t value, const TChannel& channel) noexcept {
		return static_cast<int>(((value & channel.mMask) >> channel.mShift) << (8 - channel.mWidth));
	}

	int mBitDepth;
	uint32_t mAlphaBits;
	TChannel mRed;
	TChannel mGreen;
	TChannel mBlue;
	TKind mKind;
	TValues mRedValues;
	TValues mGreenValues;
	TValues mBlueValues;
};
