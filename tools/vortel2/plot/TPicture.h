// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/values/TColor.h"
#include "framework/foundation/values/TRectT.h"

#include <cstdint>
#include <string>
#include <vector>

class TReplacedFile;

/// Pixels to draw on, and the PNG file they become. Everything is clipped to the picture; opacity is 0 to 1. Texts are
/// drawn in a font of the program's own, so that a picture is the same on every machine; it knows ASCII.
class TPicture {
public:
	enum EFont : uint8_t { kSmall, kNormal, kTitle };

	TPicture(int32_t width, int32_t height, TColor background);

	int32_t Width() const noexcept { return mWidth; }

	int32_t Height() const noexcept { return mHeight; }

	void Fill(const TRectT<int>& area, TColor color, double opacity = 1.0);

	/// bottom is the font's base line.
	void Text(int left, int bottom, const std::string& text, EFont font, TColor color);
	static int TextWidth(const std::string& text, EFont font);

	/// Writes and does not commit. Throws a TWorkError that names the file's target.
	void WritePng(TReplacedFile& file) const;

private:
	int32_t mWidth;
	int32_t mHeight;
	std::vector<uint8_t> mPixels; // red, green, blue
};
