// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/surfaces/TPixelFormat.h"

const TPixelFormat& TPixelFormat::OfKind(TKind kind) {
	static const TPixelFormat formats[] = {
	    {16, {0x7C00, 5, 10}, {0x03E0, 5, 5}, {0x001F, 5, 0}},
	    {16, {0xF800, 5, 11}, {0x07E0, 6, 5}, {0x001F, 5, 0}},
	    {24, {0xFF0000, 8, 16}, {0xFF00, 8, 8}, {0xFF, 8, 0}},
	    {32, {0xFF0000, 8, 16}, {0xFF00, 8, 8}, {0xFF, 8, 0}},
	};
	return formats[kind];
}

TPixelFormat::TPixelFormat(int bitDepth, TChannel red, TChannel green, TChannel blue)
    : mBitDepth(bitDepth),
      mAlphaBits(bitDepth == 32 ? 0xFF000000 : 0),
      mRed(red),
      mGreen(green),
      mBlue(blue),
      mKind(KindOf(bitDepth, green)),
      mRedValues(ValuesOf(red)),
      mGreenValues(ValuesOf(green)),
      mBlueValues(ValuesOf(blue)) {}

TPixelFormat::TKind TPixelFormat::KindOf(int bitDepth, const TChannel& green) {
	if (bitDepth == 32)
		return kBgra32;
	if (bitDepth == 24)
		return kBgr24;
	return green.mWidth == 6 ? kRgb565 : kRgb555;
}

TPixelFormat::TValues TPixelFormat::ValuesOf(const TChannel& channel) {
	TValues values;
	for (uint32_t i = 0; i < values.size(); ++i)
		values[i] = (i >> (8 - channel.mWidth)) << channel.mShift;
	return values;
}
