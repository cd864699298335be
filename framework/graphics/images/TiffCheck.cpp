// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/graphics/images/ImageChecks.h"
#include "framework/graphics/images/TFileBytes.h"

#include <algorithm>
#include <map>

namespace {

enum TTag : uint32_t {
	kWidth = 256,
	kHeight = 257,
	kBitsPerSample = 258,
	kCompression = 259,
	kPhotometric = 262,
	kFillOrder = 266,
	kStripOffsets = 273,
	kSamplesPerPixel = 277,
	kRowsPerStrip = 278,
	kStripByteCounts = 279,
	kPlanar = 284,
	kFax3Options = 292,
	kFax4Options = 293,
	kPredictor = 317,
	kColorMap = 320,
	kTileWidth = 322,
	kExtraSamples = 338,
	kSampleFormat = 339,
};

constexpr uint32_t kKept[] = {kWidth,        kHeight,       kBitsPerSample,   kCompression,  kPhotometric,
                              kFillOrder,    kStripOffsets, kSamplesPerPixel, kRowsPerStrip, kStripByteCounts,
                              kPlanar,       kFax3Options,  kFax4Options,     kPredictor,    kColorMap,
                              kExtraSamples, kSampleFormat};
constexpr int64_t kHeaderBytes = 8;
constexpr int64_t kEntryBytes = 12;
constexpr uint32_t kShort = 3;
constexpr uint32_t kLong = 4;

/// The description of a file's first image.
class TTiffDirectory {
public:
	TTiffDirectory(const TFileBytes& file, int64_t at) : mFile(file) {
		const int64_t count = file.Short(at);
		mIsWhole = at >= kHeaderBytes && at + 2 + count * kEntryBytes <= file.Size();
		for (int64_t i = 0; mIsWhole && i < count; ++i) {
			const int64_t entry = at + 2 + i * kEntryBytes;
			mEntries.try_emplace(file.Short(entry), entry);
		}
	}

	bool Has(uint32_t tag) const { return mEntries.contains(tag); }

	/// Where the entry stands.
	int64_t EntryOf(uint32_t tag) const { return mEntries.at(tag); }

	int64_t CountOf(uint32_t tag) const { return Has(tag) ? mFile.Long(EntryOf(tag) + 4) : 0; }

	int64_t Value(uint32_t tag, int64_t index, int64_t missing) const {
		if (index >= CountOf(tag))
			return missing;
		const int64_t entry = EntryOf(tag);
		const int64_t bytes = mFile.Short(entry + 2) == kShort ? 2 : 4;
		const int64_t start = CountOf(tag) * bytes <= 4 ? entry + 8 : int64_t{mFile.Long(entry + 8)};
		return bytes == 2 ? mFile.Short(start + index * 2) : mFile.Long(start + index * 4);
	}

	/// Whether it is whole, and one of an ordinary image.
	bool IsSound() const {
		return mIsWhole && !Has(kTileWidth) && HasSoundEntries() && HasKnownSamples() && HasKnownCompression() &&
		       HasSoundStrips();
	}

private:
	bool HasSoundEntries() const {
		return std::ranges::all_of(kKept, [this](uint32_t tag) {
			if (!Has(tag))
				return true;
			const uint32_t type = mFile.Short(EntryOf(tag) + 2);
			const int64_t bytes = CountOf(tag) * (type == kShort ? 2 : 4);
			const int64_t start = mFile.Long(EntryOf(tag) + 8);
			return (type == kShort || type == kLong) && bytes > 0 && (bytes <= 4 || start + bytes <= mFile.Size());
		});
	}

	bool HasKnownSamples() const {
		const int64_t samples = Value(kSamplesPerPixel, 0, 1);
		const int64_t bits = Value(kBitsPerSample, 0, 1);
		const int64_t format = Value(kSampleFormat, 0, 1);
		constexpr int64_t kMostSamples = 4;
		if (samples > kMostSamples)
			return false;
		for (int64_t i = 1; i < samples; ++i)
			if (Value(kBitsPerSample, i, bits) != bits || Value(kSampleFormat, i, format) != format)
				return false;
		const bool isByteWise = bits == 8 || bits == 16;
		const bool isGrey = samples == 1 && (bits == 1 || bits == 4 || isByteWise || bits == 32);
		const bool isColor = (samples == 3 || samples == 4) && (isByteWise || (bits == 32 && format == 3));
		return (isGrey || isColor) && HasMatchingColors(samples, bits);
	}

	bool HasMatchingColors(int64_t samples, int64_t bits) const {
		constexpr int64_t kWhiteIsZero = 0, kBlackIsZero = 1, kRgb = 2, kPalette = 3;
		if (Value(kPlanar, 0, 1) != 1 || CountOf(kExtraSamples) > 1)
			return false;
		switch (Value(kPhotometric, 0, -1)) {
		case kWhiteIsZero:
		case kBlackIsZero:
			return samples == 1;
		case kRgb:
			return samples >= 3 && (samples == 4) == Has(kExtraSamples);
		case kPalette:
			return samples == 1 && bits <= 8 && CountOf(kColorMap) == int64_t{3} << bits;
		default:
			return false;
		}
	}

	bool HasKnownCompression() const {
		constexpr int64_t kFax[] = {2, 3, 4};
		constexpr int64_t kOthers[] = {1, 5, 8, 32773, 32946}; // none, LZW, deflate, packed bits, deflate
		const int64_t compression = Value(kCompression, 0, 1);
		const bool isBilevel = Value(kBitsPerSample, 0, 1) == 1 && Value(kSamplesPerPixel, 0, 1) == 1;
		return std::ranges::count(kOthers, compression) == 1 ||
		       (isBilevel && std::ranges::count(kFax, compression) == 1);
	}

	bool HasSoundStrips() const {
		constexpr int64_t kLargestSide = 1 << 26;
		const int64_t width = Value(kWidth, 0, 0);
		const int64_t height = Value(kHeight, 0, 0);
		if (width < 1 || height < 1 || width > kLargestSide || height > kLargestSide)
			return false;
		const int64_t rows = std::min(Value(kRowsPerStrip, 0, height), height);
		const int64_t strips = rows < 1 ? 0 : (height + rows - 1) / rows;
		if (strips == 0 || CountOf(kStripOffsets) != strips || CountOf(kStripByteCounts) != strips)
			return false;
		for (int64_t i = 0; i < strips; ++i)
			if (Value(kStripOffsets, i, 0) + Value(kStripByteCounts, i, 0) > mFile.Size())
				return false;
		return true;
	}

	const TFileBytes& mFile;
	bool mIsWhole;
	std::map<uint32_t, int64_t> mEntries; // by tag
};

} // namespace

TImageSize SimplifyTiff(std::string& bytes) {
	const bool isBigEndian = bytes.starts_with("MM");
	if (!isBigEndian && !bytes.starts_with("II"))
		return {};
	std::string simple;
	const TFileBytes file(bytes, isBigEndian);
	const TTiffDirectory directory(file, file.Long(4));
	if (file.Short(2) != 42 || !directory.IsSound())
		return {};
	const TPointT<int64_t> size{directory.Value(kWidth, 0, 0), directory.Value(kHeight, 0, 0)};

	const auto append = [&](uint32_t value, int count) {
		for (int i = 0; i < count; ++i)
			simple += static_cast<char>(value >> (8 * (isBigEndian ? count - 1 - i : i)));
	};
	// The same file, behind it a directory of what is kept.
	simple = bytes.substr(0, 4);
	append(static_cast<uint32_t>(bytes.size() + bytes.size() % 2), 4);
	simple.append(bytes, static_cast<std::size_t>(kHeaderBytes));
	simple.resize(bytes.size() + bytes.size() % 2);
	append(static_cast<uint32_t>(std::ranges::count_if(kKept, [&](uint32_t tag) { return directory.Has(tag); })), 2);
	for (const uint32_t tag : kKept)
		if (directory.Has(tag))
			simple.append(bytes, static_cast<std::size_t>(directory.EntryOf(tag)), kEntryBytes);
	append(0, 4);
	bytes = std::move(simple);
	return size;
}
