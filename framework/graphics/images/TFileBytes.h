// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string_view>

/// Numbers in a file's contents; what lies outside reads as 0.
class TFileBytes {
public:
	TFileBytes(std::string_view bytes, bool isBigEndian) : mBytes(bytes), mIsBigEndian(isBigEndian) {}

	int64_t Size() const noexcept { return static_cast<int64_t>(mBytes.size()); }

	uint8_t Byte(int64_t at) const noexcept {
		return at >= 0 && at < Size() ? static_cast<uint8_t>(mBytes[static_cast<std::size_t>(at)]) : uint8_t{0};
	}

	uint32_t Short(int64_t at) const noexcept { return Number(at, 2); }

	uint32_t Long(int64_t at) const noexcept { return Number(at, 4); }

private:
	uint32_t Number(int64_t at, int count) const noexcept {
		uint32_t value = 0;
		for (int i = 0; i < count; ++i)
			value = value << 8 | Byte(at + (mIsBigEndian ? i : count - 1 - i));
		return value;
	}

	std::string_view mBytes;
	bool mIsBigEndian;
};
