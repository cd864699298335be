// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

struct png_struct_def;
struct png_info_def;

/// What both sides of a PNG's conversion share.
struct TPngHeader {
	int mWidth = 0;
	int mHeight = 0;
	int mInterlacing = 0;
	bool mHasGamma = false;
	double mGamma = 0.0;
};

/// libpng leaves its functions by longjmp when something is wrong. So nothing in the operations here that calls it has
/// a destructor to run, and each of them answers with a bool.
class TPngContext {
public:
	TPngContext(const TPngContext&) = delete;
	TPngContext& operator=(const TPngContext&) = delete;

	/// What was wrong, in libpng's words.
	const char* Message() const noexcept { return mMessage.data(); }

	[[noreturn]] static void OnError(png_struct_def* png, const char* message);
	static void OnWarning(png_struct_def*, const char*) {}

protected:
	TPngContext() = default;
	~TPngContext() = default;

	png_struct_def* mpPng = nullptr;
	png_info_def* mpInfo = nullptr;

private:
	std::array<char, 128> mMessage{};
};

/// A PNG in memory, as pixels of four bytes: red, green, blue, alpha.
class TPngReader final : public TPngContext {
public:
	/// The bytes must outlive the reader.
	explicit TPngReader(std::span<const uint8_t> file);
	~TPngReader();

	bool ReadHeader(TPngHeader& header);
	/// For width times height times 4 bytes.
	bool ReadPixels(uint8_t* pixels);

private:
	static void OnRead(png_struct_def* png, uint8_t* target, std::size_t count);

	std::span<const uint8_t> mRest;
	int mRowBytes = 0;
	int mHeight = 0;
	int mPasses = 1;
};

struct TPngPalette {
	std::vector<std::array<int, 4>> mColors; // red, green, blue, alpha
	int mTransparent = 0;                    // these many, from the first on, have an alpha below 255
};

/// Writes indices into a palette as a PNG of 8 bits.
class TPngWriter final : public TPngContext {
public:
	TPngWriter();
	~TPngWriter();

	bool Write(const TPngHeader& header, const TPngPalette& palette, const uint8_t* indices);

	std::span<const uint8_t> Bytes() const noexcept { return mBytes; }

private:
	static void OnWrite(png_struct_def* png, uint8_t* bytes, std::size_t count);
	void SetPalette(const TPngPalette& palette);

	std::vector<uint8_t> mBytes;
};
