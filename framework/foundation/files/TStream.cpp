// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/TStream.h"

#include <algorithm>

void TStream::SetSize(int64_t size) {
	mBytes.resize(static_cast<std::size_t>(std::max<int64_t>(size, 0)));
	mPosition = std::min(mPosition, mBytes.size());
}

void TStream::Assign(std::span<const uint8_t> bytes) {
	mBytes.assign(bytes.begin(), bytes.end());
	mPosition = 0;
}

void TStream::Clear() noexcept {
	mBytes.clear();
	mPosition = 0;
}

bool TStream::Seek(int64_t position) {
	if (position < 0 || position > Size())
		return false;
	mPosition = static_cast<std::size_t>(position);
	return true;
}

bool TStream::Read(void* buffer, int64_t& bytes) {
	const int64_t wanted = std::max<int64_t>(bytes, 0);
	bytes = std::min(wanted, Size() - Position());
	std::copy_n(mBytes.data() + mPosition, bytes, static_cast<uint8_t*>(buffer));
	mPosition += static_cast<std::size_t>(bytes);
	return bytes == wanted;
}

bool TStream::Write(const void* buffer, int64_t& bytes) {
	bytes = std::max<int64_t>(bytes, 0);
	const std::size_t end = mPosition + static_cast<std::size_t>(bytes);
	if (end > mBytes.size())
		mBytes.resize(end);
	std::copy_n(static_cast<const uint8_t*>(buffer), bytes, mBytes.data() + mPosition);
	mPosition = end;
	return true;
}
