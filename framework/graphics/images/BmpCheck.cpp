// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/images/ImageChecks.h"
#include "framework/graphics/images/TFileBytes.h"

#include <algorithm>
#include <cstdint>

namespace {

enum TCompression : uint32_t { kNone = 0, kRunsOf8 = 1, kRunsOf4 = 2, kMasks = 3 };

constexpr int64_t kFileHeader = 14;
constexpr int64_t kLargestSide = 1 << 26;

struct TBmpHeader {
	explicit TBmpHeader(const TFileBytes& file)
	    : mPixels(file.Long(10)),
	      mSize(file.Long(14)),
	      mWidth(static_cast<int32_t>(file.Long(18))),
	      mHeight(static_cast<int32_t>(file.Long(22))),
	      mPlanes(file.Short(26)),
	      mBits(file.Short(28)),
	      mCompression(file.Long(30)),
	      mColors(file.Long(46)) {}

	bool IsKnown() const {
		constexpr int64_t kSizes[] = {40, 52, 56, 108, 124};
		constexpr int64_t kBits[] = {1, 4, 8, 16, 24, 32};
		return std::ranges::count(kSizes, mSize) == 1 && std::ranges::count(kBits, mBits) == 1 && mPlanes == 1 &&
		       mWidth > 0 && mWidth <= kLargestSide && mHeight != 0 && Rows() <= kLargestSide && SuitsCompression();
	}

	bool SuitsCompression() const {
		switch (mCompression) {
		case kNone:
			return true;
		case kRunsOf8:
			return mBits == 8 && mHeight > 0;
		case kRunsOf4:
			return mBits == 4 && mHeight > 0;
		case kMasks:
			return mBits == 16 || mBits == 32;
		default:
			return false;
		}
	}

	int64_t Rows() const { return mHeight < 0 ? -mHeight : mHeight; }

	int64_t RowBytes() const { return (mWidth * mBits + 31) / 32 * 4; }

	/// Behind the palette or the masks.
	int64_t End() const {
		const int64_t most = mBits > 8 ? 0 : int64_t{1} << mBits;
		const int64_t colors = mColors == 0 ? most : std::min(mColors, most);
		return kFileHeader + mSize + colors * 4 + (mCompression == kMasks && mSize == 40 ? 12 : 0);
	}

	int64_t mPixels; // where they begin in the file
	int64_t mSize;   // of the header
	int64_t mWidth;
	int64_t mHeight; // below 0: the first row is the uppermost
	int64_t mPlanes;
	int64_t mBits;
	int64_t mCompression;
	int64_t mColors; // in the palette; 0: all
};

/// Whether the runs stay within the image and come to their end.
bool AreSoundRuns(const TFileBytes& file, const TBmpHeader& header) {
	int64_t x = 0;
	int64_t y = 0;
	const auto advance = [&](int64_t pixels) {
		x += pixels;
		return x <= header.mWidth && y < header.Rows();
	};
	int64_t at = header.mPixels;
	while (at + 2 <= file.Size()) {
		const int count = file.Byte(at);
		const int code = file.Byte(at + 1);
		at += 2;
		bool isInside = true;
		if (count > 0) {
			isInside = advance(count);
		} else if (code == 0) { // the end of the row
			x = 0;
			++y;
		} else if (code == 1) { // the end of the image
			return true;
		} else if (code == 2) { // a step
			y += file.Byte(at + 1);
			isInside = advance(file.Byte(at));
			at += 2;
		} else { // that many single pixels, filled up to an even number of bytes
			isInside = advance(code);
			at += ((code * header.mBits + 7) / 8 + 1) & ~int64_t{1};
		}
		if (!isInside)
			return false;
	}
	return false;
}

} // namespace

TImageSize CheckBmp(std::string_view bytes) {
	const TFileBytes file(bytes, false);
	if (!bytes.starts_with("BM"))
		return {};
	const TBmpHeader header(file);
	if (!header.IsKnown() || header.mPixels < header.End() || header.mPixels > file.Size())
		return {};
	const bool hasRuns = header.mCompression == kRunsOf8 || header.mCompression == kRunsOf4;
	const bool isWhole =
	    hasRuns ? AreSoundRuns(file, header) : header.mPixels + header.RowBytes() * header.Rows() <= file.Size();
	return isWhole ? TImageSize({header.mWidth, header.Rows()}) : std::nullopt;
}
