// SPDX-License-Identifier: GPL-3.0-or-later
#include "framework/foundation/files/TBinaryStream.h"

#include "framework/foundation/text/TReadableException.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

namespace {

[[noreturn]] void ThrowWriteError() {
	throw TReadableException("File I/O error: Please make sure that there is enough space available on the device!");
}

} // namespace

void TBinaryStream::ReadBytes(TArray<uint8_t>& block) {
	const int32_t length = ReadInt32();
	if (length < 0 || length > Size() - Position())
		throw TReadableException("Unexpected end of file!");
	block.SetSize(length);
	ReadAll(block.Items(), length);
}

void TBinaryStream::WriteBytes(std::span<const uint8_t> bytes) {
	if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int32_t>::max()))
		ThrowWriteError();
	WriteInt32(static_cast<int32_t>(bytes.size()));
	WriteAll(bytes.data(), static_cast<int64_t>(bytes.size()));
}

void TBinaryStream::ReadString(TString& text, int encoding) {
	TArray<uint8_t> block;
	ReadBytes(block);
	const std::string_view bytes(reinterpret_cast<const char*>(block.Items()), block.size());
	text.FromBytes(bytes, encoding);
}

void TBinaryStream::WriteString(const TString& text, int encoding) {
	std::string bytes;
	text.ToBytes(bytes, encoding);
	WriteBytes(std::span(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()));
}

void TBinaryStream::ReadAll(void* buffer, int64_t bytes) {
	if (bytes > 0 && !Read(buffer, bytes))
		throw TReadableException("Unexpected end of file!");
}

void TBinaryStream::WriteAll(const void* buffer, int64_t bytes) {
	if (bytes > 0 && !Write(buffer, bytes))
		ThrowWriteError();
}

template <class T>
T TBinaryStream::ReadNumber() {
	std::array<std::byte, sizeof(T)> bytes;
	ReadAll(bytes.data(), sizeof(T));
	if (IsSwapped())
		std::ranges::reverse(bytes);
	return std::bit_cast<T>(bytes);
}

template <class T>
void TBinaryStream::WriteNumber(T value) {
	auto bytes = std::bit_cast<std::array<std::byte, sizeof(T)>>(value);
	if (IsSwapped())
		std::ranges::reverse(bytes);
	WriteAll(bytes.data(), sizeof(T));
}

bool TBinaryStream::IsSwapped() const noexcept {
	return (mByteOrder == kLittleEndian) != (std::endian::native == std::endian::little);
}

template int8_t TBinaryStream::ReadNumber();
template int16_t TBinaryStream::ReadNumber();
template int32_t TBinaryStream::ReadNumber();
template int64_t TBinaryStream::ReadNumber();
template float TBinaryStream::ReadNumber();
template double TBinaryStream::ReadNumber();
template void TBinaryStream::WriteNumber(int8_t);
template void TBinaryStream::WriteNumber(int16_t);
template void TBinaryStream::WriteNumber(int32_t);
template void TBinaryStream::WriteNumber(int64_t);
template void TBinaryStream::WriteNumber(float);
template void TBinaryStream::WriteNumber(double);
