// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "framework/foundation/files/TBinaryStream.h"
#include "framework/foundation/memory/TStlAllocator.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// A growable block of bytes with a position, as hosts keep it with their projects. Reading begins at the front.
/// Copying copies the bytes. What makes it grow throws TOutOfMemoryException; the block then stays as it was.
class TStream final : public TBinaryStream {
public:
	TStream() = default;

	explicit TStream(std::span<const uint8_t> bytes) : mBytes(bytes.begin(), bytes.end()) {}

	explicit TStream(std::span<const std::byte> bytes)
	    : TStream(std::span(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size())) {}

	/// Valid until the block is changed.
	std::span<const uint8_t> Bytes() const noexcept { return mBytes; }

	std::span<uint8_t> Bytes() noexcept { return mBytes; }

	bool IsEmpty() const noexcept { return mBytes.empty(); }

	/// New bytes are 0. A position behind the end moves to the end.
	void SetSize(int64_t size);
	/// Replaces everything; the position is then at the front.
	void Assign(std::span<const uint8_t> bytes);
	void Clear() noexcept;

	int64_t Size() const override { return static_cast<int64_t>(mBytes.size()); }

	int64_t Position() const override { return static_cast<int64_t>(mPosition); }

	/// False outside 0 to Size().
	bool Seek(int64_t position) override;
	bool Read(void* buffer, int64_t& bytes) override;
	/// Overwrites what stands at the position and grows at the end.
	bool Write(const void* buffer, int64_t& bytes) override;

private:
	std::vector<uint8_t, TStlAllocator<uint8_t>> mBytes;
	std::size_t mPosition = 0;
};
