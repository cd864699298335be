// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/text/TString.h"
#include "framework/foundation/values/TPointT.h"

#include <cstdint>
#include <string>

struct FIBITMAP;

/// An image as it stands in a file: BMP, PNG, JPEG or TIFF, told by the name. Everything throws TReadableException.
///
/// The library behind it is shared with the host: nothing that holds for the process is set, so its own messages are
/// not heard; what fails is logged in our words.
class TImage {
public:
	enum TFileFormat : int32_t { kBmp, kTiff, kPng, kJpeg };

	/// More are refused before memory is asked for: no picture of an interface comes near.
	static constexpr int64_t kMostPixels = int64_t{1} << 26;

	static TImage Read(const TString& path);
	/// The same for a file's contents. The name tells the format, and stands in messages.
	static TImage FromBytes(std::string bytes, const TString& path);

	/// Black, of 24 or 32 bits: bytes blue, green, red and alpha.
	TImage(TPointT<int> size, int bitDepth);
	TImage(TImage&& other) noexcept;
	TImage& operator=(TImage&& other) noexcept;
	~TImage();

	TPointT<int> Size() const;
	int BitDepth() const;
	/// Whether there is a channel for it in which something is not solid.
	bool HasAlpha() const;
	/// greenBits tell the two kinds of 16 bits apart. Returns false for what cannot be converted, such as floats.
	bool ConvertTo(int bitDepth, int greenBits);

	/// Rows are counted from the top.
	uint8_t* Row(int y);
	const uint8_t* Row(int y) const;
	int RowBytes() const;

	/// Replaces the file as a whole.
	void Save(const TString& path, TFileFormat format) const;

private:
	explicit TImage(FIBITMAP* bitmap) noexcept : mpBitmap(bitmap) {}

	bool IsOfFormat(int bitDepth, int greenBits) const;

	FIBITMAP* mpBitmap;
};
